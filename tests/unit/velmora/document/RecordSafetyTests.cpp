// SPDX-License-Identifier: LGPL-3.0-or-later
//
// A record stays with its patient, and nothing that was entered is lost, where windows, files and identifiers
// meet in ways that nobody planned.
#include <gtest/gtest.h>

#include <QTabWidget>

#include "link/protocol/LinkProtocol.h"
#include "orv/documents/OrvKeptCopies.h"
#include "testing/application/RecordApplication.h"
#include "testing/files/Files.h"
#include "velmora/resources/Notifications.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;
using namespace velmora::testkit;

namespace settings = velmora::settings;
using velmora::platform::Alert;
using velmora::platform::AlertAlternateReturn;
using velmora::platform::AlertDefaultReturn;

namespace {

const Alert identifierChanged{
    "The identifier of this record has changed", "New File", "Same File", "Cancel",
    "It was 'AB1' and is now 'CD2'. With a new file the record of 'AB1' stays as it was last "
    "saved."};

class RecordSafety : public testing::Test {
 protected:
  RecordSafety() {
    application.turnOn(settings::AutoSave);
    application.keepRecord("AB1", {"01/01/2020"});
  }
  QStringList files() const { return fileNames(application.saveFolder()); }

  RecordApplication application;
};

}  // namespace

TEST_F(RecordSafety, GivesARecordWithAnotherIdentifierAFileOfItsOwn) {
  const QByteArray before = readFile(application.pathOfRecord("AB1"));
  RecordingDocument& record = application.openRecord("AB1");
  record.setIdentifier("CD2");
  application.desktop.alerts.expect(identifierChanged, AlertDefaultReturn);
  record.saveDocument();
  EXPECT_EQ(files(), (QStringList{"AB1.rec", "CD2.rec"}));
  EXPECT_EQ(readFile(application.pathOfRecord("AB1")), before);
}

TEST_F(RecordSafety, KeepsTheFileOfACorrectedIdentifierWhenTheUserSaysSo) {
  RecordingDocument& record = application.openRecord("AB1");
  record.setIdentifier("CD2");
  application.desktop.alerts.expect(identifierChanged, AlertAlternateReturn);
  record.saveDocument();
  EXPECT_EQ(files(), QStringList{"AB1.rec"});
  EXPECT_TRUE(readFile(application.pathOfRecord("AB1")).contains("CD2"));
}

TEST_F(RecordSafety, AsksNothingWhileTheIdentifierStands) {
  RecordingDocument& record = application.openRecord("AB1");
  record.saveDocument();
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
}

TEST_F(RecordSafety, AddsNoExaminationToAFileThatHoldsAnotherPatient) {
  RecordingDocument& record = application.openRecord("AB1");
  record.setIdentifier("CD2");
  application.desktop.alerts.expect(identifierChanged, AlertAlternateReturn);
  record.saveDocument();
  record.close();
  application.newRecord();
  application.desktop.alerts.expect(
      {"No examination was added to 'AB1'", "OK", "", "",
       "The file was saved for patient 'AB1', but the identifier in it reads 'CD2'."},
      AlertDefaultReturn);
  application.desktop.distributedCenter.deliver(velmora::link::notificationName("org.velmora.recorder"),
                                                velmora::link::RequestObject, {{"Identifier", "AB1"}});
  application.pass(0.2);
  ASSERT_NE(application.front(), nullptr);
  EXPECT_EQ(application.front()->exams, QStringList{"01/01/2020"});
  EXPECT_EQ(application.front()->patientName(), "");
}

TEST_F(RecordSafety, ClosesAnotherWindowOfTheFileThatIsSavedAndKeepsItsChanges) {
  RecordingDocument& older = application.openRecord("AB1");
  user::enter(user::field(older, "examDateField"), "2/2/2021");
  RecordingDocument& newer = application.newRecord();
  newer.setIdentifier("AB1");
  user::enter(user::field(newer, "examDateField"), "3/3/2022");
  const OrvKeptCopies copies(application.desktop.fileManager, application.desktop.runLoop,
                             "org.velmora.recorder");
  const QString stamp = application.desktop.runLoop.now().toUTC().toString("yyyyMMdd-HHmmss-zzz");
  application.desktop.alerts.expect(
      {"Another version of the record 'AB1.rec' was in its place.", "OK", "", "",
       "Yours has been saved. The other one, which somebody else may have written, was kept as '" +
           copies.earlierVersionsFolder(application.pathOfRecord("AB1")) + '/' + stamp + " another.rec'."},
      AlertDefaultReturn);
  application.desktop.alerts.expect(closedWithChanges(application, "AB1"), AlertDefaultReturn,
                                    [&] { EXPECT_EQ(application.rescueCopies().size(), 1); });
  newer.saveDocument();
  application.settle();
  ASSERT_EQ(application.controller.documents().size(), 1);
  EXPECT_EQ(application.front()->exams, QStringList{"03/03/2022"}) << "what was saved last is what is shown";
  EXPECT_EQ(application.rescueCopies().size(), 1) << "the older window had unsaved changes";
}

TEST_F(RecordSafety, ClosesAnotherWindowOfTheFileWithoutAWordWhenItHadNoChanges) {
  application.openRecord("AB1");
  RecordingDocument& newer = application.newRecord();
  newer.setIdentifier("AB1");
  user::enter(user::field(newer, "examDateField"), "3/3/2022");
  QFile::remove(application.pathOfRecord("AB1"));
  newer.saveDocument();
  application.settle();
  EXPECT_EQ(application.controller.documents().size(), 1);
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
}

TEST_F(RecordSafety, TellsOnceWhereTheChangesAreThatABatchExportClosesOver) {
  application.keepRecord("CD2", {"05/05/2022"});
  application.keepRecord("EF3", {"06/06/2022"});
  QStringList copies;
  for (const char* name : {"AB1", "EF3"}) {
    user::enter(user::field(application.openRecord(name), "examDateField"), "2/2/2021");
    application.desktop.notificationCenter.postNotificationName(velmora::notifications::BatchOpen,
                                                                application.pathOfRecord(name));
    copies.append(application.home.path(".local/share/org.velmora.recorder/Rescued/") + name + ' ' +
                  application.desktop.runLoop.now().addSecs(1).toUTC().toString("yyyyMMdd-HHmmss-zzz") +
                  ".rec");
  }
  application.desktop.notificationCenter.postNotificationName(velmora::notifications::BatchOpen,
                                                              application.pathOfRecord("CD2"));
  application.desktop.alerts.expect(
      {"The batch export has closed records with unsaved changes", "OK", "", "",
       "Copies with the changes were kept as:\n" + copies.join('\n')},
      AlertDefaultReturn, [&] { EXPECT_TRUE(application.controller.documents().isEmpty()) << "it is over"; });
  application.pass(1.0);
  EXPECT_TRUE(application.desktop.alerts.allCame());
  EXPECT_EQ(application.rescueCopies().size(), 2);
  // The next one has nothing to tell.
  QDir(application.exportFolder()).removeRecursively();
  application.home.makeFolder("Charts");
  application.desktop.notificationCenter.postNotificationName(velmora::notifications::BatchOpen,
                                                              application.pathOfRecord("CD2"));
  application.pass(1.0);
}

TEST_F(RecordSafety, TellsOfABatchExportThoughTheUserHasClosedOneOfItsRecords) {
  application.keepRecord("CD2", {"05/05/2022"});
  user::enter(user::field(application.openRecord("AB1"), "examDateField"), "2/2/2021");
  for (const char* name : {"AB1", "CD2"}) {
    application.desktop.notificationCenter.postNotificationName(velmora::notifications::BatchOpen,
                                                                application.pathOfRecord(name));
  }
  application.openRecord("CD2").performClose();
  application.pass(0.5);
  ASSERT_EQ(application.controller.documents().size(), 1);
  const QString copy =
      application.home.path(".local/share/org.velmora.recorder/Rescued/AB1 ") +
      application.desktop.runLoop.now().addMSecs(500).toUTC().toString("yyyyMMdd-HHmmss-zzz") + ".rec";
  application.desktop.alerts.expect({"The batch export has closed records with unsaved changes", "OK", "", "",
                                     "Copies with the changes were kept as:\n" + copy},
                                    AlertDefaultReturn);
  application.pass(0.5);
  EXPECT_TRUE(application.desktop.alerts.allCame());
}

TEST_F(RecordSafety, ShowsARecordAfterItsFirstSaveAsItWasBefore) {
  RecordingDocument& record = application.newRecord();
  record.setIdentifier("CD2");
  record.setName("Doe, Robin");
  record.setOsiriXStudyID("2.25.1");
  record.window()->setGeometry(40, 50, 640, 480);
  record.directUpdateDisplayAndSetDirty(nullptr);
  record.saveDocument();
  application.settle();
  RecordingDocument* reopened = application.front();
  ASSERT_NE(reopened, nullptr);
  EXPECT_EQ(reopened->fileURL().toLocalFile(), application.pathOfRecord("CD2"));
  EXPECT_EQ(reopened->patientName(), "Doe, Robin");
  EXPECT_EQ(reopened->osiriXStudyID(), "2.25.1");
  EXPECT_EQ(reopened->window()->size(), QSize(640, 480));
}

TEST_F(RecordSafety, AsksOnceHoweverOftenTheCloseButtonIsPressed) {
  RecordingDocument& record = application.openRecord("AB1");
  user::enter(user::field(record, "examDateField"), "2/2/2021");
  application.desktop.alerts.expect({"Save changes to document?", "Save", "Don't Save", "Cancel", ""},
                                    platform::AlertOtherReturn);
  record.performClose();
  record.performClose();
  application.settle();
  EXPECT_FALSE(record.isClosed());
}

TEST_F(RecordSafety, KeepsChangesWhenTheSaveFolderIsGoneAndThePanelIsCancelledAtClosing) {
  RecordingDocument& record = application.newRecord();
  record.setIdentifier("CD2");
  user::enter(user::field(record, "examDateField"), "2/2/2021");
  QDir(application.saveFolder()).removeRecursively();
  application.desktop.alerts.expect({"Save changes to document?", "Save", "Don't Save", "Cancel", ""},
                                    AlertDefaultReturn);
  application.desktop.panels.expectSave({});
  application.desktop.alerts.expect(closedWithChanges(application, "CD2"), AlertDefaultReturn);
  record.performClose();
  application.settle();
  EXPECT_TRUE(application.controller.documents().isEmpty());
  EXPECT_EQ(application.rescueCopies().size(), 1);
}
