// SPDX-License-Identifier: LGPL-3.0-or-later
//
// A study is chosen in the viewer while an alert of the program is open: nothing changes under the alert, and
// once it has closed the request is handled. A sheet belongs to one window and holds nothing up.
#include <gtest/gtest.h>

#include <QFile>

#include "testing/desktop/DesktopApplication.h"
#include "testing/files/Files.h"
#include "testing/waiting/Waiting.h"
#include "testing/window/DialogAnswers.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;
using namespace velmora::testkit;

namespace {

/// Whose study is chosen under the alert.
const QString Chosen = QStringLiteral("chosen");

}  // namespace

class LinkUnderAlerts : public ::testing::Test {
 protected:
  /// What the person sees while the viewer sends: nothing.
  std::function<void()> studyIsChosen(const QString& identifier = Chosen) {
    return [this, identifier] {
      const QString before = application_.identifierInFront();
      application_.chooseStudy(identifier);
      letEventsPass();
      EXPECT_EQ(application_.identifierInFront(), before);
      EXPECT_NE(before, identifier);
    };
  }
  void expectTheRequestIsHandled(const QString& identifier = Chosen) {
    waitUntil([&] { return application_.identifierInFront() == identifier; });
    EXPECT_EQ(application_.front()->patientName(), QStringLiteral("Doe^Jane"));
    EXPECT_TRUE(answers_.done());
  }

  DesktopApplication application_;
  DialogAnswers answers_;
};

TEST_F(LinkUnderAlerts, BothQuestionsOfTheFirstRun) {
  application_.desktop.defaults.setInteger(0, velmora::settings::VersionCheckInterval);
  application_.newRecord();
  answers_.expect(QStringLiteral("Periodically check for updates?"), studyIsChosen(QStringLiteral("earlier")),
                  QStringLiteral("Don't Check"));
  answers_.expect(QStringLiteral("Set Up Database?"), studyIsChosen(), QStringLiteral("No"));
  application_.controller.applicationDidFinishLaunching();
  expectTheRequestIsHandled();
}

TEST_F(LinkUnderAlerts, TheSheetBeforeAnExaminationIsDeleted) {
  application_.keepRecord(QStringLiteral("1"));
  RecordingDocument& record = application_.openRecord(QStringLiteral("1"));
  answers_.expect(
      QStringLiteral("Are you sure you want to remove this exam?"),
      [&] {
        application_.chooseStudy(Chosen);
        waitUntil([&] { return record.identifier() == Chosen; });
      },
      QStringLiteral("Remove"));
  record.doDeleteRecord(&record);
  waitUntil([&] { return record.exams.size() == 1; });
  EXPECT_EQ(application_.front(), &record);
}

TEST_F(LinkUnderAlerts, TheQuestionBeforeAnIdentifierIsModified) {
  RecordingDocument& record = application_.newRecord();
  record.setIdentifier(QStringLiteral("known"));
  answers_.expect(QStringLiteral("This entry has already been defined"), studyIsChosen(),
                  QStringLiteral("Cancel"));
  user::click(user::field(record, "referenceIDField"));
  expectTheRequestIsHandled();
}

TEST_F(LinkUnderAlerts, TheQuestionWhetherAnEarlierFileIsOpenedAnsweredNo) {
  application_.keepRecord(QStringLiteral("KNOWN"));
  RecordingDocument& record = application_.newRecord();
  answers_.expect(QStringLiteral("Patient Data Found"), studyIsChosen(), QStringLiteral("Cancel"));
  user::type(user::field(record, "referenceIDField"), QStringLiteral("known"));
  record.setLookUpRequired(true);
  user::pressReturn(user::field(record, "referenceIDField"));
  expectTheRequestIsHandled();
}

TEST_F(LinkUnderAlerts, TheQuestionWhetherAnEarlierFileIsOpenedAnsweredYes) {
  application_.keepRecord(QStringLiteral("KNOWN"));
  RecordingDocument& record = application_.newRecord();
  answers_.expect(QStringLiteral("Patient Data Found"), studyIsChosen(), QStringLiteral("Open"));
  // The request, which came first, filled the window that is then closed for the file: its user is told.
  answers_.expect(QStringLiteral("'%1' was closed with unsaved changes").arg(Chosen), {},
                  QStringLiteral("OK"));
  user::type(user::field(record, "referenceIDField"), QStringLiteral("known"));
  record.setLookUpRequired(true);
  user::pressReturn(user::field(record, "referenceIDField"));
  waitUntil([&] { return application_.identifierInFront() == QStringLiteral("KNOWN") && answers_.done(); });
  EXPECT_EQ(application_.front()->exams.size(), 2);  // the file's own, nothing of the request's
}

TEST_F(LinkUnderAlerts, TheQuestionBeforeAChartIsOverwritten) {
  RecordingDocument& record = application_.newRecord();
  record.setIdentifier(QStringLiteral("1"));
  record.setCurrentDataPointsVisible(true);
  record.autoExport();
  const QString chart = fileNames(application_.home.path(QStringLiteral("Charts"))).value(0);
  ASSERT_FALSE(chart.isEmpty());
  answers_.expect(QStringLiteral("A file with that name already exists"), studyIsChosen(),
                  QStringLiteral("Overwrite"));
  record.autoExport();
  // The chart of the patient that was in front, under that patient's name.
  EXPECT_EQ(fileNames(application_.home.path(QStringLiteral("Charts"))), QStringList{chart});
  expectTheRequestIsHandled();
}

TEST_F(LinkUnderAlerts, TheQuestionBeforeAChangedRecordCloses) {
  RecordingDocument& record = application_.newRecord();
  record.setIdentifier(QStringLiteral("1"));
  application_.desktop.defaults.setObject(false, velmora::settings::AutoSave);
  record.directUpdateDisplayAndSetDirty(nullptr);
  answers_.expect(QStringLiteral("Save changes to document?"), studyIsChosen(), QStringLiteral("Cancel"));
  record.performClose();
  expectTheRequestIsHandled();
  EXPECT_FALSE(record.isClosed());
}

TEST_F(LinkUnderAlerts, TheQuestionBeforeTheOnlyRecordCloses) {
  RecordingDocument& record = application_.newRecord();
  record.setIdentifier(QStringLiteral("1"));
  application_.desktop.defaults.setObject(false, velmora::settings::AutoSave);
  record.directUpdateDisplayAndSetDirty(nullptr);
  answers_.expect(QStringLiteral("Save changes to document?"), studyIsChosen(), QStringLiteral("Don't Save"));
  record.performClose();
  waitUntil([&] { return application_.controller.documents().isEmpty(); });
  waitUntil(
      [&] { return !application_.log.lines().filter(QStringLiteral("no document is open")).isEmpty(); });
  EXPECT_EQ(application_.log.lines().filter(QStringLiteral("no document is open")).size(), 1);
}

TEST_F(LinkUnderAlerts, TheSavePanel) {
  RecordingDocument& record = application_.newRecord();
  record.setIdentifier(QStringLiteral("1"));
  application_.desktop.defaults.setObject(false, velmora::settings::AutoSave);
  answers_.expect(QStringLiteral("Save"), studyIsChosen(), QStringLiteral("Cancel"));
  record.saveDocumentAs();
  expectTheRequestIsHandled();
}

TEST_F(LinkUnderAlerts, TheNoticeAboutASecondCopy) {
  RecordingDocument& record = application_.newRecord();
  record.printDocument({}, false);
  answers_.expect(QStringLiteral("Recently Printed"), studyIsChosen(), QStringLiteral("OK"));
  record.printDocument({}, false);
  EXPECT_EQ(application_.desktop.printer.jobs.size(), 2);
  expectTheRequestIsHandled();
}

TEST_F(LinkUnderAlerts, TheNoticeThatARecordCouldNotBeSaved) {
  RecordingDocument& record = application_.newRecord();
  record.setIdentifier(QStringLiteral("1"));
  bool saved = true;
  answers_.expect(QStringLiteral("The record '1.rec' could not be saved."), studyIsChosen(),
                  QStringLiteral("OK"));
  record.saveToURL(
      QUrl::fromLocalFile(application_.home.path(QStringLiteral("Records/no/such/folder/1.rec"))),
      QStringLiteral("rec"), platform::SaveOperation::SaveAs,
      [&](platform::Document*, bool didSave) { saved = didSave; });
  EXPECT_FALSE(saved);
  expectTheRequestIsHandled();
}
