// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Saves on a disk that is full.
#include <gtest/gtest.h>
#include <sys/mount.h>

#include <QDir>
#include <QFileInfo>

#include "platform/controls/Alert.h"
#include "testing/files/Files.h"
#include "testing/files/FullDisk.h"
#include "tests/robustness/faults/GrowthDesk.h"
#include "tests/robustness/shim/SystemCalls.h"

using namespace velmora;

using faults::firstWeight;
using faults::GrowthDesk;
using faults::recordIn;
using faults::SystemCalls;

namespace {

class FullDisk : public testing::Test {
 protected:
  FullDisk() : document(&desk.savedRecord(QStringLiteral("A1"))), old(oldBytes()) {
    desk.enterWeight(*document, QStringLiteral("12.5"));
  }

  QString file() const { return desk.pathOfRecord(QStringLiteral("A1")); }
  QByteArray oldBytes() const { return testkit::readFile(file()); }
  void expectFailedSave(const QString& reason) {
    ASSERT_FALSE(desk.alerts.shown.isEmpty());
    const platform::Alert& alert = desk.alerts.shown.last();
    EXPECT_EQ(alert.messageText, QStringLiteral("The record 'A1.growth' could not be saved."));
    EXPECT_TRUE(alert.informativeText.startsWith(reason)) << qPrintable(alert.informativeText);
    EXPECT_TRUE(document->isDocumentEdited());
    EXPECT_EQ(testkit::readFile(file()), old);
    EXPECT_EQ(desk.strayFiles(), QStringList());
  }

  GrowthDesk desk;
  GrowthDocument* document;
  QByteArray old;
  testkit::LogRecorder log;
};

TEST_F(FullDisk, InTheSaveFolderAtEveryByteLeavesTheOldRecordAndARescueCopy) {
  qint64 room = 0;
  for (;; ++room) {
    desk.alerts.shown.clear();
    for (const QString& copy : desk.rescued()) QFile::remove(desk.rescueFolder() + QLatin1Char('/') + copy);
    bool saved = false;
    {
      const SystemCalls disk = SystemCalls::onDiskWithRoomFor(desk.saveFolder(), room);
      document->saveDocument([&saved](platform::Document*, bool didSave) { saved = didSave; });
    }
    if (saved) break;
    SCOPED_TRACE(testing::Message() << "room for " << room << " bytes");
    expectFailedSave(QStringLiteral("No space left on device"));
    ASSERT_EQ(desk.rescued().size(), 1);
    EXPECT_EQ(firstWeight(recordIn(desk, desk.rescueFolder() + QLatin1Char('/') + desk.rescued().first())),
              QStringLiteral("12.5"));
    if (HasFailure()) return;
  }
  EXPECT_EQ(room, QFileInfo(file()).size());
  EXPECT_EQ(firstWeight(recordIn(desk, file())), QStringLiteral("12.5"));
  std::printf("%lld places of a full disk\n", static_cast<long long>(room));
}

TEST_F(FullDisk, EverywhereAtEveryByteLeavesTheOldRecordAndAsksForAnotherPlace) {
  const qint64 step = faults::tortures() ? 1 : 7;
  qint64 limit = 0;
  for (;; limit += step) {
    desk.alerts.shown.clear();
    {
      const testkit::FullDisk full(static_cast<rlim_t>(limit));
      document->saveDocument();
    }
    if (!document->isDocumentEdited()) break;
    SCOPED_TRACE(testing::Message() << "files of " << limit << " bytes");
    expectFailedSave(QStringLiteral("File too large"));
    EXPECT_EQ(desk.alerts.shown.last().defaultButton, QStringLiteral("Save Elsewhere..."));
    EXPECT_TRUE(desk.rescued().isEmpty());
    if (HasFailure()) return;
  }
  EXPECT_GE(limit, QFileInfo(file()).size());
}

TEST_F(FullDisk, EverywhereStillSavesElsewhere) {
  desk.desktop.panels.expectSave(
      QUrl::fromLocalFile(desk.home.makeFolder(QStringLiteral("Stick")) + QStringLiteral("/A1.growth")));
  desk.alerts.answer = [](const platform::Alert&) { return platform::AlertDefaultReturn; };
  {
    // The stick has room, the two folders that the program knows have none.
    const SystemCalls disk = SystemCalls::onDiskWithRoomFor(desk.saveFolder(), 0);
    QDir(desk.home.path(QStringLiteral(".local/share/org.velmora.growth"))).removeRecursively();
    testkit::writeFile(desk.home.path(QStringLiteral(".local/share/org.velmora.growth")), "no folder");
    document->saveDocument();
  }
  EXPECT_EQ(firstWeight(recordIn(desk, desk.home.path(QStringLiteral("Stick/A1.growth")))),
            QStringLiteral("12.5"));
  EXPECT_TRUE(document->isDocumentEdited());
}

TEST_F(FullDisk, OfARealFileSystemLeavesTheOldRecord) {
  const QString mount = desk.home.makeFolder(QStringLiteral("Records/small"));
  const QByteArray path = QFile::encodeName(mount);
  if (::mount("none", path.constData(), "tmpfs", 0, "size=64k") != 0) {
    GTEST_SKIP() << "mounting a file system of 64 KiB takes the rights of the superuser";
  }
  const auto unmount = qScopeGuard([&path] { ::umount(path.constData()); });
  const QString record = mount + QStringLiteral("/A1.growth");
  ASSERT_TRUE(QFile::copy(file(), record));
  desk.closeAll();
  GrowthDocument& small = desk.opened(record);
  // Until nothing more fits, in ever smaller pieces.
  for (int size = 32768; size > 0; size /= 2) {
    for (int i = 0;
         desk.desktop.fileManager
             .writeDurably(mount + QStringLiteral("/filling-%1-%2").arg(size).arg(i), QByteArray(size, 'x'))
             .ok();
         ++i) {
    }
  }
  desk.alerts.shown.clear();
  desk.enterWeight(small, QStringLiteral("12.5"));
  small.saveDocument();
  ASSERT_EQ(desk.alerts.shown.size(), 1);
  EXPECT_TRUE(
      desk.alerts.shown.first().informativeText.startsWith(QStringLiteral("No space left on device")));
  EXPECT_TRUE(small.isDocumentEdited());
  EXPECT_EQ(testkit::readFile(record), old);
  EXPECT_EQ(desk.rescued().size(), 1);
  desk.closeAll();
}

}  // namespace
