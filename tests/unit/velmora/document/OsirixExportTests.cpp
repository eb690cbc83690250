// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include "link/protocol/LinkPayload.h"
#include "platform/text/DateFormatter.h"
#include "testing/application/RecordApplication.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;
using namespace velmora::testkit;

namespace settings = velmora::settings;

namespace {

/// A document whose charts go to OsiriX.
class OsirixExport : public testing::Test {
 protected:
  OsirixExport() {
    application.turnOn(settings::ExportToOsiriX);
    document = &application.newRecord();
  }
  /// What the export of the front document sends in the end.
  QVariantMap reply() {
    application.front()->doExport(true);
    application.pass(10);
    return application.replies().isEmpty() ? QVariantMap() : application.replies().last().userInfo;
  }
  RecordApplication application;
  RecordingDocument* document;
};

}  // namespace

TEST_F(OsirixExport, SendsBackTheStudyThatItReceived) {
  application.chooseStudy(study("AB1"));
  const QVariantMap sent = reply();
  EXPECT_EQ(sent.value("OsiriXStudyID"), QVariant("1.2.840.99"));
  EXPECT_EQ(sent.value("Name"), QVariant("Doe^Jane"));
  EXPECT_EQ(sent.value("Identifier"), QVariant("AB1"));
}

TEST_F(OsirixExport, SendsEveryFieldInItsType) {
  application.chooseStudy(study("AB1"));
  const QVariantMap sent = reply();
  EXPECT_EQ(sent.keys(), (QStringList{"DateOfBirth", "DateOfStudy", "Identifier", "JPEG", "Name",
                                      "OsiriXStudyID", "StudyDescription"}));
  EXPECT_EQ(sent.value("DateOfBirth").typeId(), QMetaType::QDateTime);
  EXPECT_EQ(sent.value("DateOfBirth").toDateTime().date(), QDate(2021, 6, 30));
  EXPECT_EQ(sent.value("DateOfStudy").typeId(), QMetaType::QDateTime);
  EXPECT_EQ(sent.value("DateOfStudy").toDateTime().date(), QDate(2024, 4, 29));
  EXPECT_EQ(sent.value("StudyDescription"), QVariant("Recorder Chart"));
  EXPECT_EQ(sent.value("JPEG").typeId(), QMetaType::QByteArray);
  EXPECT_EQ(sent.value("JPEG").toByteArray(), document->getJPEGData());
}

TEST_F(OsirixExport, SendsAStudyIdentifierOfAnyTypeAsItCame) {
  QVariantMap request = study("AB1");
  request.insert("OsiriXStudyID", QVariantList{"a", QByteArray("\0x", 2)});
  application.chooseStudy(request);
  EXPECT_EQ(reply().value("OsiriXStudyID"), request.value("OsiriXStudyID"));
}

TEST_F(OsirixExport, OfATypedDocumentSendsNameAndStudyAsEmptyTexts) {
  user::enter(user::field(*document, "referenceIDField"), "ab1");
  const QVariantMap sent = reply();
  EXPECT_EQ(sent.value("Identifier"), QVariant("AB1"));
  EXPECT_EQ(sent.value("Name"), QVariant(QString("")));
  EXPECT_EQ(sent.value("OsiriXStudyID"), QVariant(QString("")));
}

TEST_F(OsirixExport, AfterARequestWithoutAStudySendsNone) {
  application.chooseStudy({{"Identifier", "AB1"}});
  EXPECT_FALSE(reply().contains("OsiriXStudyID"));
}

TEST_F(OsirixExport, WithoutAnIdentifierSendsItEmpty) {
  const QVariantMap sent = reply();
  EXPECT_TRUE(sent.contains("Identifier"));
  EXPECT_EQ(sent.value("Identifier"), QVariant(QString("")));
}

TEST_F(OsirixExport, SendsTheIdentifierAsTheFieldShowsIt) {
  document->setIdentifier("ab/1");
  EXPECT_EQ(reply().value("Identifier"), QVariant("ab/1"));
}

TEST_F(OsirixExport, LeavesOutDatesThatDoNotRead) {
  for (const char* text : {"", "soon", "2020", "31/02/2020"}) {
    user::field(*document, "birthDateField")->setText(text);
    user::field(*document, "examDateField")->setText(text);
    const QVariantMap sent = reply();
    EXPECT_FALSE(sent.contains("DateOfBirth")) << text;
    EXPECT_FALSE(sent.contains("DateOfStudy")) << text;
  }
  EXPECT_EQ(application.replies().size(), 4);
}

TEST_F(OsirixExport, SendsTheOneDateThatReads) {
  user::field(*document, "birthDateField")->setText("about Easter");
  user::field(*document, "examDateField")->setText("29/04/2024");
  const QVariantMap sent = reply();
  EXPECT_FALSE(sent.contains("DateOfBirth"));
  EXPECT_EQ(sent.value("DateOfStudy").toDateTime().date(), QDate(2024, 4, 29));
}

TEST_F(OsirixExport, ReadsBackWhatItShowsInEveryLanguage) {
  for (const char* name : {"de_DE", "en_US", "en_GB", "fr_FR", "ja_JP", "ar_EG", "fa_IR", "hi_IN", "C"}) {
    QLocale::setDefault(QLocale(QString::fromLatin1(name)));
    document->setBirthDate(platform::noonOf(QDate(2019, 12, 31)));
    document->setExamDate(platform::noonOf(QDate(2024, 2, 29)));
    const QVariantMap sent = reply();
    EXPECT_EQ(sent.value("DateOfBirth").toDateTime().date(), QDate(2019, 12, 31)) << name;
    EXPECT_EQ(sent.value("DateOfStudy").toDateTime().date(), QDate(2024, 2, 29)) << name;
  }
}

TEST_F(OsirixExport, PostsNothingWithoutDataPoints) {
  document->setCurrentDataPointsVisible(false);
  document->doExportToOsirix();
  EXPECT_TRUE(application.controller.exportToOsirixArray().isEmpty());
  EXPECT_TRUE(reply().isEmpty());
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
}

TEST_F(OsirixExport, PostsTheDictionaryItselfAsTheObject) {
  const QObject observer;
  QList<platform::Notification> heard;
  application.desktop.notificationCenter.addObserver(
      &observer, "BatchExportToOsirix", [&](const platform::Notification& each) { heard.append(each); });
  document->setIdentifier("AB1");
  document->autoExport();
  ASSERT_EQ(heard.size(), 1);
  EXPECT_EQ(heard.first().object.toMap().value("Identifier"), QVariant("AB1"));
  EXPECT_TRUE(heard.first().userInfo.isEmpty());
  EXPECT_TRUE(application.replies().isEmpty()) << "only queued by now";
}

TEST_F(OsirixExport, SendsTheRecordOfAReturningPatientWithoutAStudy) {
  application.turnOn(settings::AutoSave);
  application.keepRecord("AB1");
  application.chooseStudy(study("AB1"));
  application.pass(0.1);
  const QVariantMap sent = reply();
  EXPECT_EQ(sent.value("Identifier"), QVariant("AB1"));
  EXPECT_EQ(sent.value("OsiriXStudyID"), QVariant(QString("")));
  EXPECT_EQ(sent.value("DateOfBirth").toDateTime().date(), QDate(2020, 4, 3));
  EXPECT_EQ(sent.value("DateOfStudy").toDateTime().date(), QDate(2024, 4, 29));
}

TEST(ReplyPayload, LeavesOutWhatIsAbsent) {
  velmora::link::ChartExport chart;
  EXPECT_EQ(velmora::link::replyPayload(chart).keys(),
            (QStringList{"Identifier", "JPEG", "StudyDescription"}));
  chart.name = "";
  chart.studyID = "";
  EXPECT_EQ(velmora::link::replyPayload(chart).keys(),
            (QStringList{"Identifier", "JPEG", "Name", "OsiriXStudyID", "StudyDescription"}));
  chart.birthDate = QDate(2020, 2, 1).startOfDay();
  chart.examDate = QDate(2024, 2, 2).startOfDay();
  EXPECT_EQ(velmora::link::replyPayload(chart).size(), 7);
}

TEST(FileNameIdentifier, HasADashForEverySlash) {
  EXPECT_EQ(velmora::link::fileNameIdentifier("12/345"), "12-345");
  EXPECT_EQ(velmora::link::fileNameIdentifier("/1//2/"), "-1--2-");
  EXPECT_EQ(velmora::link::fileNameIdentifier("12-345"), "12-345");
  EXPECT_EQ(velmora::link::fileNameIdentifier("12\\345"), "12\\345");
  EXPECT_EQ(velmora::link::fileNameIdentifier(""), "");
}
