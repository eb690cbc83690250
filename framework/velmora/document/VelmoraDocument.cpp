// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Making the document and its window, and the patient's setters. The document's other jobs stand in files of
// their own: DocumentExaminations, DocumentEditing, DocumentLookUp, DocumentExport, DocumentSaving,
// DocumentPrinting.
#include "velmora/document/VelmoraDocument.h"

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>

#include "base/log/AssertionFailure.h"
#include "platform/text/DateFormatter.h"
#include "base/log/Guard.h"
#include "platform/text/Localization.h"
#include "platform/printing/Printing.h"
#include "platform/Services.h"
#include "platform/settings/UserDefaults.h"
#include "platform/controls/WidgetHabits.h"
#include "platform/documents/WindowController.h"
#include "velmora/document/VelmoraGraphView.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;

using velmora::platform::localizedString;

namespace {

platform::DateFormatter shortDateFormatter() {
  platform::DateFormatter formatter;
  formatter.setDateStyle(platform::DateFormatter::Style::Short);
  return formatter;
}

}  // namespace

VelmoraDocument::VelmoraDocument(platform::Services& services, VelmoraApplicationDelegate& delegate)
    : OrvAutoNameDocument(services), delegate_(delegate) {}

VelmoraDocument::~VelmoraDocument() {
  // The window outlives this part of the object by a moment, and must not tell it anything any more.
  if (QWidget* window = windowForSheet()) {
    platform::TextFieldEditing::detach(window);
    window->disconnect(this);
    for (QObject* part : window->findChildren<QObject*>()) part->disconnect(this);
  }
}

void VelmoraDocument::windowControllerDidLoadNib(platform::WindowController& windowController) {
  OrvAutoNameDocument::windowControllerDidLoadNib(windowController);
  connectOutlets(windowController.window());

  platform::PrintInfo& printInfo = services().sharedPrintInfo;
  printInfo.orientation = platform::PrintInfo::Orientation::Portrait;
  printInfo.horizontalPagination = platform::PrintInfo::Pagination::Fit;
  printInfo.verticalPagination = platform::PrintInfo::Pagination::Fit;

  lastPrintedDate_ = platform::distantPast();
  base::requireValue(lastPrintedDate_.isValid(), "VelmoraDocument");
  setDataFileExtension(services().defaults.stringForKey(velmora::settings::DataFileExtension));
  // Empty, not absent: both always travel with an exported chart.
  setName(QStringLiteral(""));
  setOsiriXStudyID(QStringLiteral(""));

  becomeDelegateOfTextFields(windowController.window());
  if (previousStudyButton_) previousStudyButton_->setShortcut(Qt::Key_Left);
  if (nextStudyButton_) nextStudyButton_->setShortcut(Qt::Key_Right);

  currentDataPointsVisible_ = true;
  showGraphHilite_ = true;
  lookUpRequired_ = false;
  closeRequested_ = false;
  closeAfterSave_ = false;
}

void VelmoraDocument::windowIsSetUp() {
  if (!fileURL().isEmpty()) savedName_ = preferredFileName(false);
}

void VelmoraDocument::connectOutlets(QWidget* window) {
  referenceIDField_ = window->findChild<QLineEdit*>(QStringLiteral("referenceIDField"));
  birthDateField_ = window->findChild<QLineEdit*>(QStringLiteral("birthDateField"));
  examDateField_ = window->findChild<QLineEdit*>(QStringLiteral("examDateField"));
  ageField_ = window->findChild<QLineEdit*>(QStringLiteral("ageField"));
  examNumberField_ = window->findChild<QLabel*>(QStringLiteral("examNumberField"));
  tabView_ = window->findChild<QTabWidget*>(QStringLiteral("tabView"));
  previousStudyButton_ = window->findChild<QAbstractButton*>(QStringLiteral("previousStudyButton"));
  nextStudyButton_ = window->findChild<QAbstractButton*>(QStringLiteral("nextStudyButton"));
  connectButton(previousStudyButton_, &VelmoraDocument::doPreviousRecord);
  connectButton(nextStudyButton_, &VelmoraDocument::doNextRecord);
  connectButton(window->findChild<QAbstractButton*>(QStringLiteral("newStudyButton")),
                &VelmoraDocument::doNewRecord);
  connectButton(window->findChild<QAbstractButton*>(QStringLiteral("deleteStudyButton")),
                &VelmoraDocument::doDeleteRecord);
  for (QWidget* widget : window->findChildren<QWidget*>()) {
    if (auto* chart = dynamic_cast<VelmoraGraphView*>(widget)) chart->setOwningDocument(this);
  }
}

void VelmoraDocument::connectButton(QAbstractButton* button,
                                    void (VelmoraDocument::*command)(const QObject*)) {
  if (!button) return;
  QObject::connect(button, &QAbstractButton::clicked, this,
                   [this, button, command] { base::guarded("button", [&] { (this->*command)(button); }); });
}

void VelmoraDocument::becomeDelegateOfTextFields(QWidget* window) {
  for (QComboBox* menu : window->findChildren<QComboBox*>()) platform::ignoreWheelWithoutFocus(menu);
  if (tabView_) platform::keepArrowKeys(tabView_->tabBar());
  for (QLineEdit* field : window->findChildren<QLineEdit*>()) {
    // The text part of another control belongs to that control.
    const bool partOfAnother =
        dynamic_cast<QAbstractSpinBox*>(field->parent()) || dynamic_cast<QComboBox*>(field->parent());
    if (field->isReadOnly() || partOfAnother || field->property("ownDelegate").toBool()) continue;
    auto* editing = new platform::TextFieldEditing(field, this);
    if (field != birthDateField_ && field != examDateField_) continue;
    const QString example = shortDateFormatter().stringFromDate(QDate(2019, 3, 14));
    editing->setFormatter(
        [](const QString& text) {
          const QDate day = shortDateFormatter().dayFromString(text);
          return day.isValid() ? shortDateFormatter().stringFromDate(day) : QString();
        },
        platform::formatted(localizedString("VelmoraDocument", "This is not a date. A date looks like %@."),
                            {example}));
    if (field->placeholderText().isEmpty()) {
      field->setPlaceholderText(
          platform::formatted(localizedString("VelmoraDocument", "for example %@"), {example}));
    }
  }
}

void VelmoraDocument::setIdentifier(const QString& identifier) {
  if (referenceIDField_) referenceIDField_->setText(identifier);
}

QString VelmoraDocument::identifier() const {
  return referenceIDField_ ? referenceIDField_->text() : QString();
}

void VelmoraDocument::setBirthDate(const QDateTime& date) { showDate(birthDateField_, date); }
void VelmoraDocument::setExamDate(const QDateTime& date) { showDate(examDateField_, date); }

void VelmoraDocument::showDate(QLineEdit* field, const QDateTime& date) {
  if (field) field->setText(shortDateFormatter().stringFromDate(date));
}

QString VelmoraDocument::shownDate(const QDate& day) { return shortDateFormatter().stringFromDate(day); }

QDate VelmoraDocument::dayOfShownDate(const QString& text) {
  return shortDateFormatter().dayFromString(text);
}
