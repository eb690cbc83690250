// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The export folder of a batch export: missing, a file, erased, or not looked at.
#include "testing/files/Files.h"
#include "tests/unit/velmora/batch/BatchTesting.h"

using namespace velmora;
using namespace velmora::testkit;

namespace settings = velmora::settings;
using batch_testing::BatchExport;

namespace {

const platform::Alert NotAvailable{
    "The export folder is not available", "OK", "", "",
    "You can select a new export folder by choosing the Preferences menu item."};

class BatchErasing : public BatchExport {
 protected:
  /// Exports nothing, and erases first.
  void eraseOnly() {
    open();
    if (!erase()->isChecked()) erase()->click();
    user::type(days(), "0");
    user::click(ok());
  }
  QString inExportFolder(const QString& name) { return application.exportFolder() + '/' + name; }
};

}  // namespace

TEST_F(BatchExport, StopsWithAnAlertWithoutAnExportFolder) {
  write("A", 60);
  writeFile(application.home.path("Desktop/old.jpg"), "old");
  QDir(application.exportFolder()).removeRecursively();
  store(settings::AutoDelete, true);
  application.desktop.alerts.expect(NotAvailable, platform::AlertDefaultReturn);
  exportDays("7");
  EXPECT_TRUE(posted.isEmpty());
  EXPECT_FALSE(QDir(application.exportFolder()).exists());
  EXPECT_EQ(readFile(application.home.path("Desktop/old.jpg")), "old");
  EXPECT_FALSE(progressShown());
}

TEST_F(BatchExport, StopsWithAnAlertWithAnEmptyExportFolderSetting) {
  write("A", 60);
  store(settings::ExportDirectory, "");
  application.desktop.alerts.expect(NotAvailable, platform::AlertDefaultReturn);
  exportDays("7");
  EXPECT_TRUE(posted.isEmpty());
}

TEST_F(BatchExport, StopsWithAnAlertWhenTheExportFolderIsALinkThatLeadsNowhere) {
  write("A", 60);
  ASSERT_TRUE(QFile::link(application.home.path("gone"), application.home.path("link")));
  store(settings::ExportDirectory, "~/link");
  application.desktop.alerts.expect(NotAvailable, platform::AlertDefaultReturn);
  exportDays("7");
  EXPECT_TRUE(posted.isEmpty());
}

TEST_F(BatchExport, LooksForNoExportFolderWhileChartsGoToOsirix) {
  application.turnOn(settings::ExportToOsiriX);
  QDir(application.exportFolder()).removeRecursively();
  write("A", 60);
  exportDays("7");
  EXPECT_EQ(posted.size(), 1);
  EXPECT_EQ(application.controller.exportToOsirixArray().size(), 1);
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
}

TEST_F(BatchExport, ErasesNothingAndLosesNoFileWhenTheExportFolderIsAFile) {
  const QString file = application.home.path("Charts.jpg");
  writeFile(file, "not a folder");
  store(settings::ExportDirectory, file);
  store(settings::AutoDelete, true);
  for (const char* name : {"A", "B"}) write(name, 60);
  exportDays("7");
  EXPECT_EQ(posted.size(), 2);
  EXPECT_EQ(readFile(file), "not a folder");
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty()) << "each chart fails as a single one does";
  EXPECT_TRUE(charts().isEmpty());
  application.pass(1);
  EXPECT_TRUE(application.controller.documents().isEmpty());
}

TEST_F(BatchExport, WritesToTheDesktopWhenTheExportFolderGoesMeanwhile) {
  application.home.makeFolder("Desktop");
  for (const char* name : {"A", "B"}) write(name, 60);
  int turn = 0;
  betweenFiles([&] {
    if (++turn == 2) QDir(application.exportFolder()).removeRecursively();
  });
  exportDays("7");
  EXPECT_EQ(posted.size(), 2);
  EXPECT_EQ(fileNames(application.home.path("Desktop")).size(), 1);
}

// Erasing.

TEST_F(BatchErasing, RemovesJpgInAnyLetterCaseDirectlyInTheFolder) {
  const QStringList go{"a.jpg", "b.JPG", "c.Jpg", "two words.jpg", ".hidden.jpg", "a.b.jpG"};
  const QStringList stay{"d.jpeg", "e.png", "jpg", ".jpg", "f.jpg.txt", "gjpg", "sub/h.jpg", "i.jpg/j.jpg"};
  for (const QString& name : go + stay) writeFile(inExportFolder(name), "picture");
  eraseOnly();
  for (const QString& name : go) EXPECT_FALSE(QFile::exists(inExportFolder(name))) << qPrintable(name);
  for (const QString& name : stay) EXPECT_TRUE(QFile::exists(inExportFolder(name))) << qPrintable(name);
}

TEST_F(BatchErasing, RemovesALinkAndNotWhatItLeadsTo) {
  const QString picture = application.home.path("elsewhere.jpg");
  writeFile(picture, "picture");
  writeFile(application.home.path("album/k.jpg"), "picture");
  ASSERT_TRUE(QFile::link(picture, inExportFolder("link.jpg")));
  ASSERT_TRUE(QFile::link(application.home.path("album"), inExportFolder("album.jpg")));
  eraseOnly();
  EXPECT_FALSE(QFile::exists(inExportFolder("link.jpg")));
  EXPECT_EQ(readFile(picture), "picture");
  EXPECT_TRUE(QFile::exists(inExportFolder("album.jpg/k.jpg")));
}

TEST_F(BatchErasing, HappensBeforeTheFirstChartIsWritten) {
  write("A", 60);
  writeFile(inExportFolder("A.jpg"), "earlier");
  writeFile(inExportFolder("B.jpg"), "earlier");
  open();
  erase()->click();
  user::click(ok());
  EXPECT_EQ(charts(), QStringList{"A.jpg"});
  EXPECT_NE(readFile(inExportFolder("A.jpg")), "earlier");
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty()) << "nothing is left to overwrite";
}

TEST_F(BatchErasing, HappensOnlyWhereItIsAskedFor) {
  writeFile(inExportFolder("a.jpg"), "earlier");
  exportDays("0");
  EXPECT_TRUE(QFile::exists(inExportFolder("a.jpg")));
}

TEST_F(BatchErasing, DoesNotHappenWhileChartsGoToOsirix) {
  writeFile(inExportFolder("a.jpg"), "earlier");
  store(settings::AutoDelete, true);
  application.turnOn(settings::ExportToOsiriX);
  write("A", 60);
  exportDays("7");
  EXPECT_TRUE(QFile::exists(inExportFolder("a.jpg")));
  EXPECT_EQ(posted.size(), 1);
}

TEST_F(BatchErasing, LeavesTheRecordsOfAFolderThatIsForBoth) {
  store(settings::ExportDirectory, "~/Records");
  const QString record = write("A", 60);
  writeFile(application.saveFolder() + "/A.jpg", "earlier");
  const QByteArray before = readFile(record);
  open();
  erase()->click();
  user::click(ok());
  EXPECT_EQ(readFile(record), before);
  EXPECT_EQ(posted, QStringList{record});
  EXPECT_TRUE(readFile(application.saveFolder() + "/A.jpg").startsWith("\xff\xd8"));
}

TEST_F(BatchErasing, GoesOnWhereOneFileCannotBeRemoved) {
  struct Stubborn : base::FileManager {
    base::Result<> removeItem(const QString& path) override {
      asked.append(path);
      return base::Failure{"protected"};
    }
    QStringList asked;
  } files;
  TestServices& desktop = application.desktop;
  platform::Services services = testkit::with(desktop.services, files);
  BatchExportController controller(services);
  for (const char* name : {"a.jpg", "b.jpg"}) writeFile(inExportFolder(name), "picture");
  controller.doErasePreviouslyExportedFiles();
  EXPECT_EQ(files.asked.size(), 2);
  EXPECT_TRUE(desktop.alerts.shown().isEmpty());
}

TEST_F(BatchErasing, DoesNothingWithoutAFolder) {
  open();
  for (const QString& folder :
       {application.home.path("nowhere"), QString(""), application.pathOfRecord("A")}) {
    writeFile(application.pathOfRecord("A"), "a file");
    store(settings::ExportDirectory, folder);
    batch().doErasePreviouslyExportedFiles();
  }
  EXPECT_EQ(readFile(application.pathOfRecord("A")), "a file");
}
