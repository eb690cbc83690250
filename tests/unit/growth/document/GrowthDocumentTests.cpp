// SPDX-License-Identifier: LGPL-3.0-or-later
#include "apps/growth/document/GrowthDocument.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QTest>

#include "apps/growth/testing/GrowthApplication.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;
using namespace velmora::testkit;

using growth::GrowthApplication;
using growth::Measure;
using user::textOf;

namespace {

const platform::Alert alreadyDefined{"This entry has already been defined", "Modify", "Cancel", "",
                                     "Are you sure you want to modify this item?"};

QStringList datesOf(const GrowthDocument& document) {
  QStringList all;
  for (const growth::Examination& examination : document.record().examinations) {
    all.append(examination.date.day.toString(Qt::ISODate));
  }
  return all;
}

}  // namespace

TEST(GrowthDocument, BeginsWithOneEmptyExamination) {
  GrowthApplication application;
  GrowthDocument& document = application.newRecord();
  EXPECT_EQ(document.lastExam(), 0U);
  EXPECT_EQ(textOf(document, "examNumberField"), "1 of 1");
  EXPECT_FALSE(document.isDocumentEdited());
  EXPECT_TRUE(document.getJPEGData().isEmpty()) << "there is nothing to chart";
}

TEST(GrowthDocument, HasItsOwnWindowWithEveryOutlet) {
  GrowthApplication application;
  GrowthDocument& document = application.newRecord();
  for (const char* name :
       {"referenceIDField",  "birthDateField",    "examDateField",       "ageField",
        "examNumberField",   "tabView",           "previousStudyButton", "nextStudyButton",
        "newStudyButton",    "deleteStudyButton", "nameField",           "sexPopUp",
        "weightField",       "heightField",       "headField",           "weightResultField",
        "heightResultField", "headResultField",   "weightGraphView",     "heightGraphView",
        "headGraphView"}) {
    EXPECT_NE(document.window()->findChild<QWidget*>(name), nullptr) << name;
  }
}

TEST(GrowthDocument, IsFilledByAStudyChosenInTheViewer) {
  GrowthApplication application;
  GrowthDocument& document = application.newRecord();
  application.chooseStudy("12/34", QDate(2022, 1, 1), QDate(2024, 1, 17));
  EXPECT_EQ(textOf(document, "referenceIDField"), "12-34");
  EXPECT_EQ(textOf(document, "nameField"), "Doe^Jack");
  EXPECT_EQ(textOf(document, "birthDateField"), "01/01/2022");
  EXPECT_EQ(textOf(document, "examDateField"), "17/01/2024");
  EXPECT_EQ(textOf(document, "ageField"), "2 y 0 m 16 d");
  EXPECT_EQ(document.record().identifier, "12-34");
  EXPECT_EQ(document.record().birthDate.day, QDate(2022, 1, 1));
  EXPECT_EQ(datesOf(document), QStringList{"2024-01-17"});
  EXPECT_TRUE(document.isDocumentEdited());
}

TEST(GrowthDocument, TakesMeasurementsTypedAfterTheStudyWasChosen) {
  GrowthApplication application;
  GrowthDocument& document = application.newRecord();
  application.chooseStudy("AB1", QDate(2022, 1, 1), QDate(2024, 1, 17));
  application.chooseSex(document, GrowthApplication::SexItem::Male);
  user::enter(user::field(document, "weightField"), "14");
  user::enter(user::field(document, "heightField"), "88.5");
  EXPECT_EQ(textOf(document, "weightResultField"), "z-score 0.86, centile 80.5");
  const growth::Examination& examination = document.record().examinations.first();
  EXPECT_EQ(examination.of(Measure::Weight).value, 14.0);
  EXPECT_EQ(examination.of(Measure::Height).value, 88.5);
  EXPECT_FALSE(examination.of(Measure::Head).value);
}

TEST(GrowthDocument, OfAReturningPatientGetsASecondExamination) {
  GrowthApplication application;
  application.typeBoy("17/1/2024", "14");
  application.saveAndReopen().close();
  application.newRecord();
  application.chooseStudy("BOY1", QDate(1999, 9, 9), QDate(2024, 6, 1));
  GrowthDocument& record = application.front();
  EXPECT_EQ(record.fileURL().toLocalFile(), application.pathOfRecord("BOY1"));
  EXPECT_EQ(datesOf(record), (QStringList{"2024-01-17", "2024-06-01"}));
  EXPECT_EQ(record.currentExam(), 1U);
  EXPECT_EQ(textOf(record, "examNumberField"), "2 of 2");
  EXPECT_EQ(textOf(record, "birthDateField"), "01/01/2022") << "the file keeps its own";
  EXPECT_EQ(textOf(record, "nameField"), "Doe^Jack");
  EXPECT_EQ(textOf(record, "weightField"), "");
  EXPECT_EQ(application.controller.documents().size(), 1);
}

TEST(GrowthDocument, OfAReturningPatientPutsAnEarlierStudyInItsPlace) {
  GrowthApplication application;
  application.typeBoy("17/1/2024", "14");
  application.saveAndReopen();
  application.chooseStudy("BOY1", QDate(2022, 1, 1), QDate(2023, 3, 1));
  GrowthDocument& record = application.front();
  EXPECT_EQ(datesOf(record), (QStringList{"2023-03-01", "2024-01-17"}));
  EXPECT_EQ(record.currentExam(), 0U) << "the new one stays the one shown";
  EXPECT_EQ(textOf(record, "examDateField"), "01/03/2023");
  EXPECT_EQ(textOf(record, "weightField"), "");
}

TEST(GrowthDocument, FindsTheFileOfATypedIdentifier) {
  GrowthApplication application;
  application.typeBoy("17/1/2024", "14");
  application.saveAndReopen().close();
  GrowthDocument& document = application.newRecord();
  application.desktop.alerts.expect(
      {"Patient Data Found", "Open", "Cancel", "",
       "A previously saved data file is available for patient 'BOY1'.  Would you like to open it?"},
      platform::AlertDefaultReturn);
  user::enter(user::field(document, "referenceIDField"), "boy1");
  application.desktop.runLoop.settle();
  EXPECT_EQ(application.front().fileURL().toLocalFile(), application.pathOfRecord("BOY1"));
  EXPECT_EQ(application.controller.documents().size(), 1);
}

TEST(GrowthDocument, LooksForNoFileWhenOtherFieldsAreTyped) {
  GrowthApplication application;
  application.typeBoy("17/1/2024", "14");
  application.saveAndReopen();
  user::enter(user::field(application.front(), "weightField"), "15");
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
}

TEST(GrowthDocument, BringsExaminationsIntoOrderAfterAnEdit) {
  GrowthApplication application;
  GrowthDocument& document = application.typeBoy("17/1/2024", "14");
  user::click(user::button(document, "newStudyButton"));
  EXPECT_EQ(document.currentExam(), 1U);
  EXPECT_EQ(textOf(document, "examNumberField"), "2 of 2");
  EXPECT_TRUE(user::field(document, "examDateField")->hasFocus());
  user::enter(user::field(document, "examDateField"), "1/2/2023");
  EXPECT_EQ(datesOf(document), (QStringList{"2023-02-01", "2024-01-17"}));
  EXPECT_EQ(document.currentExam(), 0U);
  EXPECT_EQ(textOf(document, "examNumberField"), "1 of 2");
  user::enter(user::field(document, "weightField"), "11.5");
  EXPECT_EQ(document.record().examinations.first().of(Measure::Weight).value, 11.5);
  EXPECT_EQ(document.record().examinations.last().of(Measure::Weight).value, 14.0);
}

TEST(GrowthDocument, ShowsEachExaminationWhenSteppedThrough) {
  GrowthApplication application;
  GrowthDocument& document = application.typeBoy("17/1/2023", "10");
  application.addExamination(document, "17/1/2024", "14");
  user::click(user::button(document, "previousStudyButton"));
  EXPECT_EQ(textOf(document, "weightField"), "10");
  EXPECT_EQ(textOf(document, "examDateField"), "17/01/2023");
  EXPECT_EQ(textOf(document, "examNumberField"), "1 of 2");
  EXPECT_EQ(textOf(document, "ageField"), "1 y 0 m 16 d");
  user::click(user::button(document, "previousStudyButton"));
  EXPECT_EQ(textOf(document, "weightField"), "10") << "there is none before the first";
  user::click(user::button(document, "nextStudyButton"));
  EXPECT_EQ(textOf(document, "weightField"), "14");
  EXPECT_EQ(textOf(document, "weightResultField"), "z-score 0.86, centile 80.5");
  user::click(user::button(document, "nextStudyButton"));
  EXPECT_EQ(textOf(document, "examNumberField"), "2 of 2") << "nor one after the last";
}

TEST(GrowthDocument, StoresAnEditThatAStepInterrupts) {
  GrowthApplication application;
  GrowthDocument& document = application.typeBoy("17/1/2023", "10");
  user::click(user::button(document, "newStudyButton"));
  user::enter(user::field(document, "examDateField"), "17/1/2024");
  user::type(user::field(document, "weightField"), "14.5");
  user::click(user::button(document, "previousStudyButton"));
  EXPECT_EQ(textOf(document, "weightField"), "10");
  EXPECT_EQ(document.record().examinations.last().of(Measure::Weight).value, 14.5);
}

TEST(GrowthDocument, RemovesAnExaminationAfterTheQuestion) {
  GrowthApplication application;
  GrowthDocument& document = application.typeBoy("17/1/2023", "10");
  user::click(user::button(document, "newStudyButton"));
  user::enter(user::field(document, "examDateField"), "17/1/2024");
  application.desktop.alerts.expect(
      {"Are you sure you want to remove this exam?", "Remove", "Cancel", "", ""}, 1);
  user::click(user::button(document, "deleteStudyButton"));
  application.desktop.alerts.answerSheet(1, document.window());
  EXPECT_EQ(datesOf(document), QStringList{"2023-01-17"});
  EXPECT_EQ(textOf(document, "weightField"), "10");
  EXPECT_EQ(textOf(document, "examNumberField"), "1 of 1");
  user::click(user::button(document, "deleteStudyButton"));
  EXPECT_EQ(application.desktop.feedback.beeps, 1) << "the only one is never removed";
}

TEST(GrowthDocument, AsksBeforeIdentityIsEditedAndNotBeforeMeasurements) {
  GrowthApplication application;
  GrowthDocument& document = application.typeBoy("17/1/2024", "14");
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
  application.desktop.alerts.expect(alreadyDefined, platform::AlertAlternateReturn);
  user::click(user::field(document, "referenceIDField"));
  application.desktop.alerts.expect(alreadyDefined, platform::AlertAlternateReturn);
  user::click(user::field(document, "birthDateField"));
  EXPECT_TRUE(application.desktop.alerts.allCame());
  user::enter(user::field(document, "weightField"), "14.1");
  EXPECT_EQ(document.record().examinations.first().of(Measure::Weight).value, 14.1);
}

TEST(GrowthDocument, KeepsTheAgeFieldOutOfReachOfTyping) {
  GrowthApplication application;
  GrowthDocument& document = application.typeBoy("17/1/2024", "14");
  QLineEdit* age = user::field(document, "ageField");
  user::click(age);
  QTest::keyClicks(age, "9");
  EXPECT_EQ(age->text(), "2 y 0 m 16 d");
}

TEST(GrowthDocument, IsChangedByTheSexChosen) {
  GrowthApplication application;
  application.typeBoy("17/1/2024", "14");
  GrowthDocument& document = application.saveAndReopen();
  ASSERT_FALSE(document.isDocumentEdited());
  application.chooseSex(document, GrowthApplication::SexItem::Female);
  EXPECT_TRUE(document.isDocumentEdited());
  EXPECT_EQ(document.record().sex, growth::Sex::Female);
  EXPECT_EQ(dynamic_cast<QComboBox*>(user::widget(document, "sexPopUp"))->currentText(), "Female");
}

TEST(GrowthDocument, PrintsTheLatestExamination) {
  GrowthApplication application;
  GrowthDocument& document = application.typeBoy("17/1/2023", "10");
  application.addExamination(document, "17/1/2024", "14");
  user::click(user::button(document, "previousStudyButton"));
  QString printed;
  application.desktop.printer.whilePrinting = [&](QWidget*) { printed = textOf(document, "weightField"); };
  document.window()->findChild<QAction*>("doPrint")->trigger();
  application.desktop.runLoop.settle();
  EXPECT_EQ(printed, "14");
}

TEST(GrowthDocument, SendsTheChartWithTheStudyBackToTheViewer) {
  GrowthApplication application;
  application.desktop.defaults.setObject(true, velmora::settings::ExportToOsiriX);
  GrowthDocument& document = application.newRecord();
  application.chooseStudy("AB1", QDate(2022, 1, 1), QDate(2024, 1, 17));
  application.chooseSex(document, GrowthApplication::SexItem::Male);
  user::type(user::field(document, "weightField"), "14");
  document.window()->findChild<QAction*>("doExport")->trigger();
  application.desktop.runLoop.advance(1);
  ASSERT_EQ(application.desktop.distributedCenter.posted().size(), 1);
  const QVariantMap reply = application.desktop.distributedCenter.posted().first().userInfo;
  EXPECT_EQ(reply.value("OsiriXStudyID"), QVariant("1.2.840.99"));
  EXPECT_EQ(reply.value("StudyDescription"), QVariant("Growth Chart"));
  EXPECT_EQ(reply.value("DateOfStudy").toDateTime().date(), QDate(2024, 1, 17));
  EXPECT_EQ(reply.value("JPEG").toByteArray(), document.getJPEGData());
  EXPECT_FALSE(reply.value("JPEG").toByteArray().isEmpty());
}

TEST(GrowthDocument, ClosesThroughTheQuestionAndSavesUnderTheIdentifier) {
  GrowthApplication application;
  GrowthDocument& document = application.typeBoy("17/1/2024", "14");
  application.desktop.alerts.expect({"Save changes to document?", "Save", "Don't Save", "Cancel", ""},
                                    platform::AlertDefaultReturn);
  document.window()->close();
  application.desktop.runLoop.settle();
  EXPECT_TRUE(application.controller.documents().isEmpty());
  EXPECT_TRUE(QFile::exists(application.pathOfRecord("BOY1")));
}
