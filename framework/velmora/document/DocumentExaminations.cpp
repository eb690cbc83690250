// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The document's examinations: adding, deleting, stepping, and the display of where one is.
#include <QLabel>
#include <QLineEdit>

#include "platform/controls/Alert.h"
#include "platform/controls/Effects.h"
#include "platform/printing/GraphicsContext.h"
#include "platform/text/Localization.h"
#include "platform/Services.h"
#include "velmora/document/VelmoraDocument.h"

using namespace velmora;

using velmora::platform::localizedString;

void VelmoraDocument::doNewRecord(const QObject*) {
  holdsMoreThanIdentifier_ = true;
  updateChangeCount(platform::ChangeType::Done);
  synchronizeToData();
  addExamination();
  synchronizeFromData();
  platform::TextFieldEditing::selectText(examDateField_);
}

void VelmoraDocument::doDeleteRecord(const QObject*) {
  if (lastExam() == 0) {
    services().effects.beep();
    return;
  }
  const platform::Alert alert{
      localizedString("VelmoraDocument", "Are you sure you want to remove this exam?"),
      localizedString("VelmoraDocument", "Remove"), localizedString("OrvVersion", "Cancel"), QString(),
      QString()};
  // While the sheet waits, the viewer may add an examination to this record, and that one is shown then. The
  // answer was about the one that was shown before.
  const auto answered = [this, exam = currentExam_, last = lastExam()](int returnCode) {
    const bool shownStill = currentExam_ == exam && lastExam() == last;
    if (shownStill) return deleteAlertDidEnd(returnCode);
    if (returnCode == platform::AlertDefaultReturn) services().effects.beep();
  };
  services().alerts.beginSheetModalForWindow(alert, windowForSheet(), this, answered);
}

void VelmoraDocument::deleteAlertDidEnd(int returnCode) {
  if (returnCode != platform::AlertDefaultReturn) return;
  holdsMoreThanIdentifier_ = true;
  updateChangeCount(platform::ChangeType::Done);
  // Loaded, not stored: what was typed into the examination that goes is thrown away with it.
  synchronizeFromData();
  deleteCurrentExamination();
  if (currentExam_ != 0) --currentExam_;
  synchronizeFromData();

  QPoint point;
  if (examNumberField_) {
    point = examNumberField_->mapToGlobal(QPoint(examNumberField_->width(), examNumberField_->height() / 2));
  } else if (const QWidget* window = windowForSheet()) {
    point = window->mapToGlobal(QPoint(0, 0));
  }
  services().effects.showPoof(point);
}

void VelmoraDocument::doNextRecord(const QObject*) {
  if (currentExam_ == lastExam()) return;
  synchronizeToData();
  ++currentExam_;
  synchronizeFromData();
}

void VelmoraDocument::doPreviousRecord(const QObject*) {
  if (currentExam_ == 0) return;
  synchronizeToData();
  --currentExam_;
  synchronizeFromData();
}

void VelmoraDocument::setCurrentRecordFromClick(const QPointF&) {
  synchronizeToData();
  currentExam_ = 0;
  synchronizeFromData();
}

void VelmoraDocument::directUpdateDisplayAndSetDirty(const QObject* sender) {
  holdsMoreThanIdentifier_ = true;
  updateChangeCount(platform::ChangeType::Done);
  directUpdateDisplay(sender);
}

void VelmoraDocument::directUpdateDisplay(const QObject*) { updateDisplay(); }

void VelmoraDocument::updateDisplay() {
  synchronizeToData();
  showExamNumber();
}

void VelmoraDocument::showExamNumber() {
  if (!examNumberField_) return;
  examNumberField_->setText(
      platform::formatted(localizedString("VelmoraDocument", "%ld of %ld"),
                          {QString::number(currentExam_ + 1), QString::number(lastExam() + 1)}));
}

bool VelmoraDocument::shouldShowGraphHilite() const {
  return showGraphHilite_ && services().graphics.currentContextDrawingToScreen();
}
