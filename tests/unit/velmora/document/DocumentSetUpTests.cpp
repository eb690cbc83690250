// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include <QPushButton>

#include "platform/text/DateFormatter.h"
#include "testing/application/RecordApplication.h"
#include "testing/files/Files.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;
using namespace velmora::testkit;

namespace settings = velmora::settings;
using user::textOf;

namespace {

/// A document of the framework's own class, as an application without a subclass would have it.
VelmoraDocument& plainDocument(RecordApplication& application) {
  application.controller.setDocumentFactory(
      [&] { return std::make_unique<VelmoraDocument>(application.desktop.services, application.delegate); });
  auto& document = dynamic_cast<VelmoraDocument&>(*application.controller.openUntitledDocument(true));
  user::bringToFront(document);
  return document;
}

}  // namespace

TEST(DocumentSetUp, LoadsTheWindowNamedVelmoraDocument) {
  RecordApplication application;
  EXPECT_EQ(application.newRecord().windowNibName(), "VelmoraDocument");
}

TEST(DocumentSetUp, SetsPrintingToOnePortraitPageEveryTimeAWindowLoads) {
  RecordApplication application;
  platform::PrintInfo& info = application.desktop.sharedPrintInfo;
  for (int window = 0; window < 2; ++window) {
    info = {platform::PrintInfo::Orientation::Landscape,
            platform::PrintInfo::Pagination::Clip,
            platform::PrintInfo::Pagination::Auto,
            {}};
    application.newRecord();
    EXPECT_EQ(info.orientation, platform::PrintInfo::Orientation::Portrait);
    EXPECT_EQ(info.horizontalPagination, platform::PrintInfo::Pagination::Fit);
    EXPECT_EQ(info.verticalPagination, platform::PrintInfo::Pagination::Fit);
  }
}

TEST(DocumentSetUp, BeginsWithAnEmptyNameAndAnEmptyStudy) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  EXPECT_FALSE(document.patientName().isNull());
  EXPECT_EQ(document.patientName(), "");
  EXPECT_EQ(document.osiriXStudyID(), QVariant(QString("")));
}

TEST(DocumentSetUp, TakesTheExtensionFromTheSettingsWhenTheWindowLoads) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  EXPECT_EQ(document.dataFileExtension(), "rec");
  application.desktop.defaults.setObject("other", settings::DataFileExtension);
  EXPECT_EQ(document.dataFileExtension(), "rec");
  EXPECT_EQ(application.newRecord().dataFileExtension(), "other");
}

TEST(DocumentSetUp, HasNoExtensionWhenTheSettingsHaveNone) {
  RecordApplication application;
  application.desktop.defaults.registerDefaults({{settings::DataFileExtension, QVariant()}});
  EXPECT_TRUE(application.newRecord().dataFileExtension().isNull());
}

TEST(DocumentSetUp, GivesTheButtonsTheArrowKeys) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  EXPECT_EQ(user::button(document, "previousStudyButton")->shortcut(), QKeySequence(Qt::Key_Left));
  EXPECT_EQ(user::button(document, "nextStudyButton")->shortcut(), QKeySequence(Qt::Key_Right));
}

TEST(DocumentSetUp, BeginsBlankUnchangedAndReadyForExport) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  EXPECT_TRUE(document.isBlank());
  EXPECT_FALSE(document.isDocumentEdited());
  EXPECT_EQ(document.currentExam(), 0U);
  EXPECT_FALSE(document.lookUpRequired());
  EXPECT_TRUE(document.shouldShowGraphHilite());
  EXPECT_FALSE(document.getJPEGData().isEmpty());
}

TEST(DocumentSetUp, StartsNoEdit) {
  RecordApplication application;
  application.writeRecord("AB1");
  RecordingDocument& document = application.openRecord("AB1");
  EXPECT_FALSE(document.isDocumentEdited());
  EXPECT_FALSE(user::field(document, "referenceIDField")->hasFocus());
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty()) << "a filled field would ask when it is entered";
}

TEST(DocumentSetUp, PutsDatesIntoTheirProperForm) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  for (const char* name : {"birthDateField", "examDateField"}) {
    user::enter(user::field(document, name), "3/4/2020");
    EXPECT_EQ(textOf(document, name), "03/04/2020");
  }
}

TEST(DocumentSetUp, KeepsATextThatIsNoDateAndSaysSo) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  QLineEdit* field = user::field(document, "examDateField");
  user::enter(field, "next week");
  EXPECT_EQ(field->text(), "next week");
  EXPECT_EQ(field->toolTip(), "This is not a date. A date looks like 14/03/2019.");
  user::enter(field, "3/4/2020");
  EXPECT_EQ(field->toolTip(), "");
}

TEST(DocumentSetUp, ToleratesAWindowWithoutAnyOutlet) {
  RecordApplication application;
  application.turnOn(settings::AutoSave);
  writeFile(application.home.path("bare/VelmoraDocument.ui"),
            "<ui version=\"4.0\"><class>Bare</class>"
            "<widget class=\"QMainWindow\" name=\"Bare\">"
            "<widget class=\"QWidget\" name=\"contents\"/></widget></ui>");
  application.desktop.interfaceFiles.addSearchPath(application.home.path("bare"));
  RecordingDocument& document = application.newRecord();
  document.setIdentifier("AB1");
  document.setBirthDate(platform::noonOf(QDate(2020, 1, 1)));
  document.setExamDate(platform::noonOf(QDate(2020, 1, 1)));
  EXPECT_EQ(document.identifier(), "");
  EXPECT_EQ(document.preferredFileName(false), "");
  document.doNewRecord(nullptr);
  document.doPreviousRecord(nullptr);
  document.doNextRecord(nullptr);
  document.updateDisplay();
  document.directUpdateDisplayAndSetDirty(nullptr);
  document.deleteAlertDidEnd(platform::AlertDefaultReturn);
  EXPECT_EQ(document.exams.size(), 1);
  EXPECT_EQ(application.desktop.feedback.poofs, QList<QPoint>{document.window()->mapToGlobal(QPoint(0, 0))})
      << "without a field to stand at";
  EXPECT_TRUE(document.getJPEGData().isEmpty());
  document.doExport(false);
  document.doExportToOsirix();
  document.printDocument({}, false);
  EXPECT_TRUE(fileNames(application.exportFolder()).isEmpty());
}

TEST(FrameworkDocument, HasExactlyOneExamination) {
  RecordApplication application;
  VelmoraDocument& document = plainDocument(application);
  EXPECT_EQ(document.lastExam(), 0U);
  document.doNextRecord(nullptr);
  EXPECT_EQ(document.currentExam(), 0U);
  document.doPreviousRecord(nullptr);
  EXPECT_EQ(document.currentExam(), 0U);
  document.doDeleteRecord(nullptr);
  EXPECT_EQ(application.desktop.feedback.beeps, 1);
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
  document.updateDisplay();
  EXPECT_EQ(textOf(document, "examNumberField"), "1 of 1");
  EXPECT_FALSE(document.isDocumentEdited());
}

TEST(FrameworkDocument, SavesAndOpensAgain) {
  RecordApplication application;
  application.turnOn(settings::AutoSave);
  VelmoraDocument& document = plainDocument(application);
  document.setIdentifier("AB1");
  document.saveDocument();
  ASSERT_NE(application.controller.currentDocument(), nullptr);
  EXPECT_EQ(application.controller.currentDocument()->fileURL().toLocalFile(),
            application.pathOfRecord("AB1"));
}

TEST(PatientSetters, NeverMarkTheDocumentChanged) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  document.setName("Doe^Jane");
  document.setIdentifier("AB1");
  document.setBirthDate(platform::noonOf(QDate(2020, 2, 29)));
  document.setExamDate(platform::noonOf(QDate(2024, 2, 29)));
  document.setOsiriXStudyID("1.2.3");
  EXPECT_FALSE(document.isDocumentEdited());
  EXPECT_TRUE(document.isBlank());
  EXPECT_FALSE(document.lookUpRequired());
  EXPECT_TRUE(document.calls.isEmpty());
}

TEST(PatientSetters, KeepTheSameNameWhenGivenItAgain) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  document.setName("Doe^Jane");
  document.setName(document.patientName());
  EXPECT_EQ(document.patientName(), "Doe^Jane");
  document.setOsiriXStudyID("1.2.3");
  document.setOsiriXStudyID(document.osiriXStudyID());
  EXPECT_EQ(document.osiriXStudyID(), QVariant("1.2.3"));
  document.setDataFileExtension(document.dataFileExtension());
  EXPECT_EQ(document.dataFileExtension(), "rec");
}

TEST(PatientSetters, ShowDatesInTheShortStyleWithAFourDigitYear) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  document.setBirthDate(platform::noonOf(QDate(2005, 2, 1)));
  document.setExamDate(platform::noonOf(QDate(1999, 12, 31)));
  EXPECT_EQ(textOf(document, "birthDateField"), "01/02/2005");
  EXPECT_EQ(textOf(document, "examDateField"), "31/12/1999");
  document.setExamDate(QDateTime());
  EXPECT_EQ(textOf(document, "examDateField"), "");
}

TEST(PatientSetters, ShowANameInNoFieldOfTheFramework) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  document.setName("Doe^Jane");
  for (const QLineEdit* field : document.window()->findChildren<QLineEdit*>()) {
    EXPECT_EQ(field->text(), "") << qPrintable(field->objectName());
  }
}
