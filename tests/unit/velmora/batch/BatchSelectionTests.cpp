// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Which files of the save folder a batch export takes.
#include <QElapsedTimer>

#include "testing/files/Files.h"
#include "testing/files/OrdinaryUser.h"
#include "testing/standins/LogRecorder.h"
#include "tests/unit/velmora/batch/BatchTesting.h"

using namespace velmora;
using namespace velmora::testkit;

namespace settings = velmora::settings;
using batch_testing::BatchExport;
using batch_testing::Day;
using batch_testing::sorted;

TEST_F(BatchExport, TakesWhatWasSavedLessThanSoManyDaysAgo) {
  const QString hourAgo = write("hour", 3600);
  const QString almost = write("almost", 7 * Day - 1);
  write("exactly", 7 * Day);
  write("longer", 7 * Day + 1);
  exportDays("7");
  EXPECT_EQ(sorted(posted), sorted({hourAgo, almost}));
  EXPECT_EQ(charts(), (QStringList{"ALMOST.jpg", "HOUR.jpg"}));
}

TEST_F(BatchExport, TakesNothingSavedExactlySoManyDaysAgo) {
  write("A", Day);
  exportDays("1");
  EXPECT_TRUE(posted.isEmpty());
  batch_testing::setModified(application.pathOfRecord("A"),
                             application.desktop.runLoop.now().addMSecs(1 - 1000 * Day));
  exportDays("1");
  EXPECT_EQ(posted, QStringList{application.pathOfRecord("A")});
}

TEST_F(BatchExport, TakesOnlyWhatLiesInTheFutureWithZeroDays) {
  write("now", 0);
  write("past", 1);
  const QString future = write("future", -1);
  exportDays("0");
  EXPECT_EQ(posted, QStringList{future});
}

TEST_F(BatchExport, TakesOnlyWhatLiesFurtherAheadThanANegativeNumberOfDays) {
  write("now", 0);
  write("tomorrow", -Day);
  write("two days ahead", -2 * Day);
  const QString later = write("later", -2 * Day - 1);
  exportDays("-2");
  EXPECT_EQ(posted, QStringList{later});
  EXPECT_EQ(stored().value(settings::BatchExportDays), QVariant(-2));
}

TEST_F(BatchExport, TakesFilesDatedInTheFuture) {
  const QString future = write("future", -400 * Day);
  exportDays("7");
  EXPECT_EQ(posted, QStringList{future});
}

TEST_F(BatchExport, TakesEverythingWithMoreDaysThanThereWere) {
  const QString old = write("old", 50 * 365 * Day);
  for (const char* absurd : {"99999999999", "9223372036854775807"}) {
    posted.clear();
    exportDays(absurd);
    EXPECT_EQ(posted, QStringList{old}) << absurd;
    application.pass(2);
    QFile::remove(application.exportFolder() + "/OLD.jpg");
  }
  EXPECT_EQ(stored().value(settings::BatchExportDays), QVariant(std::numeric_limits<qint64>::max()));
  posted.clear();
  exportDays("-9223372036854775808");
  EXPECT_TRUE(posted.isEmpty());
}

TEST_F(BatchExport, TakesFilesInSubFoldersAtAnyDepth) {
  const QString above = write("A", 60);
  const QString below = write("2024/May/B", 60);
  const QString hidden = write(".earlier/C", 60);
  exportDays("7");
  EXPECT_EQ(sorted(posted), sorted({above, below, hidden}));
  EXPECT_TRUE(posted.contains(application.saveFolder() + "/2024/May/B.rec"));
}

TEST_F(BatchExport, ComparesTheExtensionExactly) {
  const QString right = write("A", 60);
  for (const char* other : {"A.REC", "A.Rec", "A.re", "A.recs", "Arec", ".rec", "A.rec.bak", "A"}) {
    const QString path = application.saveFolder() + '/' + QString::fromLatin1(other);
    writeFile(path, readFile(right));
    saved(path, 60);
  }
  exportDays("7");
  EXPECT_EQ(posted, QStringList{right});
}

TEST_F(BatchExport, GoesInTheOrderOfTheFolder) {
  for (const char* name : {"m", "a", "z/q", "z/b", "k", "c/d/e"}) write(name, 60);
  QStringList order;
  application.desktop.fileManager.enumeratorAtPath(application.saveFolder(), [&](const QString& path) {
    if (path.endsWith(".rec")) order.append(application.saveFolder() + '/' + path);
    return true;
  });
  exportDays("7");
  EXPECT_EQ(posted, order);
}

TEST_F(BatchExport, ReadsTheNumberInTheFieldNotTheOneThatIsStored) {
  write("A", 3 * Day);
  open();
  store(settings::BatchExportDays, 7);
  user::type(days(), "2");
  batch().doBatchExport();
  EXPECT_TRUE(posted.isEmpty());
  user::type(days(), "4");
  batch().doBatchExport();
  EXPECT_EQ(posted.size(), 1);
}

TEST_F(BatchExport, JudgesEveryAgeByTheMomentAtWhichItBegins) {
  write("A", Day - 2);
  write("B", Day - 2);
  betweenFiles([this] { application.pass(10); });
  exportDays("1");
  EXPECT_EQ(posted.size(), 2);
}

TEST_F(BatchExport, FindsThreeRecordsAmongTenThousandFiles) {
  QStringList three;
  const QByteArray nothing;
  for (int i = 0; i < 10000; ++i) {
    const bool record = i % 2 == 0;
    const QString path = QStringLiteral("%1/%2/file%3.%4")
                             .arg(application.saveFolder(), QString::number(i % 20), QString::number(i),
                                  record ? QStringLiteral("rec") : QStringLiteral("txt"));
    writeFile(path, nothing);
    saved(path, 30 * Day);
  }
  for (const char* name : {"3/A", "11/B", "C"}) three.append(write(name, 60));
  exportDays("7");
  EXPECT_EQ(sorted(posted), sorted(three));
  EXPECT_EQ(charts().size(), 3);
  EXPECT_EQ(application.controller.documents().size(), 3);
}

// Links.

TEST_F(BatchExport, EndsThoughLinksLeadInACircle) {
  const QString record = write("ward/A", 60);
  const QString folder = application.saveFolder();
  ASSERT_TRUE(QFile::link(folder, folder + "/ward/up"));
  ASSERT_TRUE(QFile::link(folder + "/ward", folder + "/ward/self"));
  ASSERT_TRUE(QFile::link("circle.rec", folder + "/circle.rec"));
  exportDays("7");
  EXPECT_EQ(posted, QStringList{record});
}

TEST_F(BatchExport, SkipsALinkThatLeadsNowhere) {
  ASSERT_TRUE(QFile::link(application.home.path("gone"), application.saveFolder() + "/A.rec"));
  exportDays("7");
  EXPECT_TRUE(posted.isEmpty()) << "nothing tells when it was modified";
}

// Nothing to take.

TEST_F(BatchExport, SaysNothingWhenNothingWasSavedLately) {
  write("A", 30 * Day);
  exportDays("7");
  EXPECT_TRUE(posted.isEmpty());
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
  EXPECT_FALSE(progressShown());
}

TEST_F(BatchExport, SaysNothingWithoutASaveFolder) {
  for (const QString& folder : {application.home.path("nowhere"), QString("")}) {
    store(settings::SaveDirectory, folder);
    exportDays("99999");
    EXPECT_TRUE(posted.isEmpty());
  }
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
}

TEST_F(BatchExport, SaysNothingWhenTheSaveFolderIsAFile) {
  store(settings::SaveDirectory, write("A", 60));
  exportDays("7");
  EXPECT_TRUE(posted.isEmpty());
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
}

TEST_F(BatchExport, PassesOverFoldersThatCannotBeRead) {
  const QString open = write("A", 60);
  write("locked/B", 60);
  QDir().mkpath(application.saveFolder() + "/empty.rec");
  const OrdinaryUser user(application.home.path());
  const QString locked = application.saveFolder() + "/locked";
  ASSERT_TRUE(QFile::setPermissions(locked, {}));
  exportDays("7");
  ASSERT_TRUE(QFile::setPermissions(locked, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
  EXPECT_TRUE(posted.contains(open));
  EXPECT_FALSE(posted.contains(locked + "/B.rec"));
  EXPECT_EQ(charts(), QStringList{"A.jpg"});
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
}

TEST_F(BatchExport, TakesNothingFromASaveFolderThatCannotBeRead) {
  write("A", 60);
  const OrdinaryUser user(application.home.path());
  ASSERT_TRUE(QFile::setPermissions(application.saveFolder(), {}));
  exportDays("7");
  ASSERT_TRUE(QFile::setPermissions(application.saveFolder(),
                                    QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
  EXPECT_TRUE(posted.isEmpty());
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
}

TEST_F(BatchExport, TakesNothingWhileTheApplicationNamesNoDataFiles) {
  write("A", 60);
  writeFile(application.saveFolder() + "/note", "no extension");
  for (const QVariant& none : {QVariant(), QVariant("")}) {
    application.desktop.defaults.registerDefaults({{settings::DataFileExtension, none}});
    exportDays("99999");
    EXPECT_TRUE(posted.isEmpty());
  }
}

// Records that make trouble.

TEST_F(BatchExport, GoesOnAfterARecordThatCannotBeOpened) {
  for (const char* name : {"A", "B", "C", "D"}) write(name, 60);
  for (const char* name : {"B", "D"}) {
    writeFile(application.pathOfRecord(name), "no record");
    saved(application.pathOfRecord(name), 60);
  }
  exportDays("7");
  EXPECT_EQ(posted.size(), 4);
  EXPECT_EQ(charts(), (QStringList{"A.jpg", "C.jpg"}));
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
}

TEST_F(BatchExport, GoesOnAfterARecordThatGoesMeanwhile) {
  for (const char* name : {"A", "B", "C"}) write(name, 60);
  int turn = 0;
  betweenFiles([&] {
    if (++turn == 2) QDir(application.saveFolder()).removeRecursively();
  });
  exportDays("7");
  EXPECT_EQ(posted.size(), 3);
  EXPECT_EQ(charts().size(), 1);
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
}

TEST_F(BatchExport, GoesOnAfterARecordWhoseWindowFails) {
  const LogRecorder log;
  for (const char* name : {"A", "B", "C"}) write(name, 60);
  int made = 0;
  struct Failing : RecordingDocument {
    using RecordingDocument::RecordingDocument;
    void windowControllerDidLoadNib(platform::WindowController&) override {
      throw std::runtime_error("broken");
    }
  };
  application.controller.setDocumentFactory([&]() -> std::unique_ptr<platform::Document> {
    if (++made == 2) return std::make_unique<Failing>(application.desktop.services, application.delegate);
    return std::make_unique<RecordingDocument>(application.desktop.services, application.delegate);
  });
  exportDays("7");
  EXPECT_EQ(made, 3);
  EXPECT_EQ(charts().size(), 2);
  EXPECT_TRUE(log.lines().contains("batch export: broken")) << qPrintable(log.lines().join('\n'));
  EXPECT_FALSE(progressShown());
}
