// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/document/RecordFields.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTabBar>
#include <QTabWidget>

#include "base/log/Guard.h"
#include "platform/controls/Alert.h"
#include "platform/controls/EventFilters.h"
#include "platform/controls/TextFieldEditing.h"
#include "platform/text/Localization.h"
#include "velmora/document/ShortDates.h"

using velmora::platform::localizedString;

namespace velmora {

namespace {

void connectButton(QAbstractButton* button, const QObject* record,
                   const std::function<void(const QObject*)>& command) {
  if (!button) return;
  QObject::connect(button, &QAbstractButton::clicked, record,
                   [button, command] { base::guarded("button", [&] { command(button); }); });
}

}  // namespace

void RecordFields::connectWindow(QWidget& window, const QObject* record, const Commands& commands) {
  const auto find = [&window](auto& outlet, const char* name) {
    outlet = window.findChild<decltype(outlet.data())>(QString::fromLatin1(name));
  };
  find(referenceIDField_, "referenceIDField");
  find(birthDateField_, "birthDateField");
  find(examDateField_, "examDateField");
  find(ageField_, "ageField");
  find(examNumberField_, "examNumberField");
  find(tabView_, "tabView");
  find(previousStudyButton_, "previousStudyButton");
  find(nextStudyButton_, "nextStudyButton");
  QPointer<QAbstractButton> newStudyButton;
  QPointer<QAbstractButton> deleteStudyButton;
  find(newStudyButton, "newStudyButton");
  find(deleteStudyButton, "deleteStudyButton");
  connectButton(previousStudyButton_, record, commands.previous);
  connectButton(nextStudyButton_, record, commands.next);
  connectButton(newStudyButton, record, commands.add);
  connectButton(deleteStudyButton, record, commands.remove);
  if (previousStudyButton_) previousStudyButton_->setShortcut(Qt::Key_Left);
  if (nextStudyButton_) nextStudyButton_->setShortcut(Qt::Key_Right);
}

void RecordFields::watchTextFields(QWidget& window, platform::TextFieldDelegate* delegate,
                                   const ShortDates& dates) const {
  for (QComboBox* menu : window.findChildren<QComboBox*>()) platform::ignoreWheelWithoutFocus(menu);
  if (tabView_) platform::keepArrowKeys(tabView_->tabBar());
  for (QLineEdit* field : window.findChildren<QLineEdit*>()) {
    // The text part of another control belongs to that control.
    const bool partOfAnother =
        dynamic_cast<QAbstractSpinBox*>(field->parent()) || dynamic_cast<QComboBox*>(field->parent());
    if (field->isReadOnly() || partOfAnother || field->property("ownDelegate").toBool()) continue;
    auto* editing = new platform::TextFieldEditing(field, delegate);
    if (field == birthDateField_ || field == examDateField_) dates.format(*field, *editing);
  }
}

void RecordFields::letGo(QWidget& window, const QObject* record) {
  platform::TextFieldEditing::detach(&window);
  window.disconnect(record);
  for (QObject* part : window.findChildren<QObject*>()) part->disconnect(record);
}

void RecordFields::setIdentifier(const QString& identifier) {
  if (referenceIDField_) referenceIDField_->setText(identifier);
}

QString RecordFields::identifier() const { return referenceIDField_ ? referenceIDField_->text() : QString(); }

void RecordFields::setBirthDate(const QDateTime& date) {
  if (birthDateField_) birthDateField_->setText(ShortDates::text(date));
}

void RecordFields::setExamDate(const QDateTime& date) {
  if (examDateField_) examDateField_->setText(ShortDates::text(date));
}

bool RecordFields::mayEdit(const QLineEdit* field, platform::Alerts& alerts) const {
  const bool tellsThePatient = field && (field == referenceIDField_ || field == birthDateField_);
  if (!tellsThePatient || field->text().isEmpty()) return true;
  const int answer = alerts.runModal(
      {localizedString("VelmoraDocument", "This entry has already been defined"),
       localizedString("VelmoraDocument", "Modify"), localizedString("OrvVersion", "Cancel"), QString(),
       localizedString("VelmoraDocument", "Are you sure you want to modify this item?")});
  return answer != platform::AlertAlternateReturn && answer != platform::AlertStopped;
}

QPoint RecordFields::placeOfExamNumber(const QWidget* window) const {
  if (examNumberField_) {
    return examNumberField_->mapToGlobal(QPoint(examNumberField_->width(), examNumberField_->height() / 2));
  }
  return window ? window->mapToGlobal(QPoint(0, 0)) : QPoint();
}

}  // namespace velmora
