// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include "testing/application/RecordApplication.h"
#include "testing/files/Files.h"
#include "velmora/resources/Notifications.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora::testkit;

namespace platform = velmora::platform;

namespace settings = velmora::settings;

namespace {

class BatchOpenQueue : public testing::Test {
 protected:
  void request(const QString& path) {
    application.desktop.notificationCenter.postNotificationName(velmora::notifications::BatchOpen, path);
  }
  QStringList charts() const { return fileNames(application.exportFolder()); }
  RecordApplication application;
};

}  // namespace

TEST_F(BatchOpenQueue, OpensAndExportsEachFileWithinItsOwnPost) {
  for (const char* name : {"A", "B", "C"}) application.writeRecord(name);
  request(application.pathOfRecord("A"));
  EXPECT_EQ(charts(), QStringList{"A.jpg"});
  request(application.pathOfRecord("B"));
  EXPECT_EQ(charts(), (QStringList{"A.jpg", "B.jpg"}));
  request(application.pathOfRecord("C"));
  EXPECT_EQ(charts(), (QStringList{"A.jpg", "B.jpg", "C.jpg"}));
  EXPECT_EQ(application.controller.documents().size(), 3) << "they are closed later";
  EXPECT_TRUE(application.controller.batchArray().isEmpty());
}

TEST_F(BatchOpenQueue, ClosesEachDocumentOneSecondAfterItsExport) {
  application.writeRecord("A");
  application.writeRecord("B");
  request(application.pathOfRecord("A"));
  application.pass(0.5);
  request(application.pathOfRecord("B"));
  application.pass(0.499);
  EXPECT_EQ(application.controller.documents().size(), 2);
  application.pass(0.001);
  ASSERT_EQ(application.controller.documents().size(), 1);
  EXPECT_EQ(application.front()->identifier(), "B");
  application.pass(0.5);
  EXPECT_TRUE(application.controller.documents().isEmpty());
  EXPECT_EQ(charts().size(), 2) << "the steps left behind export nothing again";
}

TEST_F(BatchOpenQueue, ExportsAndClosesADataFileThatIsOpenAlready) {
  application.writeRecord("A");
  RecordingDocument& open = application.openRecord("A");
  open.updateChangeCount(platform::ChangeType::Done);
  request(application.pathOfRecord("A"));
  EXPECT_EQ(charts(), QStringList{"A.jpg"});
  EXPECT_EQ(application.controller.documents().size(), 1) << "it is not opened twice";
  application.pass(1);
  EXPECT_TRUE(application.controller.documents().isEmpty()) << "without a question";
}

TEST_F(BatchOpenQueue, PassesOverAPathThatDoesNotExist) {
  request(application.pathOfRecord("nobody"));
  EXPECT_TRUE(application.controller.batchArray().isEmpty());
  EXPECT_TRUE(charts().isEmpty());
  EXPECT_TRUE(application.controller.documents().isEmpty());
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
  application.pass(5);
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
}

TEST_F(BatchOpenQueue, PassesOverADamagedFileAndGoesOn) {
  writeFile(application.pathOfRecord("A"), "no record");
  application.writeRecord("B");
  request(application.pathOfRecord("A"));
  request(application.pathOfRecord("B"));
  EXPECT_EQ(charts(), QStringList{"B.jpg"});
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
}

TEST_F(BatchOpenQueue, SendsTheChartsToOsirixWhereTheSettingSaysSo) {
  application.turnOn(settings::ExportToOsiriX);
  application.writeRecord("A");
  application.writeRecord("B");
  request(application.pathOfRecord("A"));
  request(application.pathOfRecord("B"));
  EXPECT_TRUE(charts().isEmpty());
  ASSERT_EQ(application.controller.exportToOsirixArray().size(), 2);
  application.pass(5);
  ASSERT_EQ(application.replies().size(), 2);
  EXPECT_EQ(application.replies().first().userInfo.value("Identifier"), QVariant("A"));
  EXPECT_EQ(application.replies().last().userInfo.value("Identifier"), QVariant("B"));
}

TEST_F(BatchOpenQueue, ShowsNoPanelButAsksBeforeItOverwrites) {
  application.writeRecord("A");
  writeFile(application.exportFolder() + "/A.jpg", "earlier");
  application.desktop.alerts.expect(
      {"A file with that name already exists", "Overwrite", "Skip", "",
       "A file named 'A.jpg' is already present in '" + application.exportFolder() + "/'."},
      platform::AlertAlternateReturn);
  request(application.pathOfRecord("A"));
  EXPECT_EQ(readFile(application.exportFolder() + "/A.jpg"), "earlier");
  EXPECT_TRUE(application.desktop.panels.savePanels().isEmpty());
}

TEST_F(BatchOpenQueue, OpensNothingInAStepOnAnEmptyQueue) {
  application.controller.delayBatchOpen();
  application.pass(5);
  EXPECT_TRUE(application.controller.documents().isEmpty());
}
