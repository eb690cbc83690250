// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/document/ExaminationNavigator.h"

#include "platform/controls/Alert.h"
#include "platform/controls/Feedback.h"
#include "platform/text/Localization.h"

using velmora::platform::localizedString;

namespace velmora {

void ExaminationNavigator::goTo(quint64 index) {
  record_.synchronizeToData();
  current_ = index;
  record_.synchronizeFromData();
}

void ExaminationNavigator::next() {
  if (current_ == record_.lastExam()) return;
  record_.synchronizeToData();
  ++current_;
  record_.synchronizeFromData();
}

void ExaminationNavigator::previous() {
  if (current_ == 0) return;
  record_.synchronizeToData();
  --current_;
  record_.synchronizeFromData();
}

void ExaminationNavigator::add() {
  record_.synchronizeToData();
  record_.addExamination();
  record_.synchronizeFromData();
}

void ExaminationNavigator::askToRemove(QWidget* window, const QObject* owner,
                                       std::function<void(int returnCode)> didEnd) {
  if (record_.lastExam() == 0) return feedback_.beep();
  const platform::Alert alert{
      localizedString("VelmoraDocument", "Are you sure you want to remove this exam?"),
      localizedString("VelmoraDocument", "Remove"), localizedString("OrvVersion", "Cancel"), QString(),
      QString()};
  // While the sheet waits, the viewer may add an examination to this record, and that one is shown then. The
  // answer was about the one that was shown before.
  const auto answered = [this, exam = current_, last = record_.lastExam(),
                         didEnd = std::move(didEnd)](int returnCode) {
    if (current_ == exam && record_.lastExam() == last) return didEnd(returnCode);
    if (returnCode == platform::AlertDefaultReturn) feedback_.beep();
  };
  alerts_.beginSheetModalForWindow(alert, window, owner, answered);
}

void ExaminationNavigator::removeCurrent() {
  // Loaded, not stored: what was typed into the examination that goes is thrown away with it.
  record_.synchronizeFromData();
  record_.deleteCurrentExamination();
  if (current_ != 0) --current_;
  record_.synchronizeFromData();
}

QString ExaminationNavigator::position() const {
  return platform::formatted(localizedString("VelmoraDocument", "%ld of %ld"),
                             {QString::number(current_ + 1), QString::number(record_.lastExam() + 1)});
}

}  // namespace velmora
