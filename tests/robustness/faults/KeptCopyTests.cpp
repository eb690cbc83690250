// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTimeZone>

#include "orv/documents/OrvKeptCopies.h"
#include "testing/files/Files.h"
#include "tests/robustness/faults/GrowthDesk.h"
#include "tests/robustness/shim/SystemCalls.h"

using namespace velmora;

namespace {

/// A clock that a test sets.
class SetClock : public testkit::VirtualRunLoop {
 public:
  QDateTime time{QDate(2024, 5, 2), QTime(8, 0), QTimeZone::utc()};
  QDateTime now() const override { return time; }
};

class KeptCopies : public testing::Test {
 protected:
  QString record() const { return home.path(QStringLiteral("Records/A1.growth")); }
  QString folder() const { return copies.earlierVersionsFolder(record()); }
  QStringList names() const { return testkit::fileNames(folder()); }
  /// Makes a copy look as if it had been kept then.
  static void setAge(const QString& copy, const QDateTime& then) {
    QFile file(copy);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.setFileTime(then, QFileDevice::FileModificationTime));
  }

  testkit::TemporaryHome home;
  base::FileManager files;
  SetClock clock;
  OrvKeptCopies copies{files, clock, QStringLiteral("org.velmora.growth")};
};

TEST_F(KeptCopies, AreReadableByTheUserAlone) {
  const QString version = copies.keepEarlierVersion(record(), "old").value();
  const QString rescued = copies.keepRescueCopy(QStringLiteral("A1.growth"), "unsaved").value();
  EXPECT_EQ(testkit::permissionsOf(version), 0600u);
  EXPECT_EQ(testkit::permissionsOf(rescued), 0600u);
  EXPECT_EQ(testkit::permissionsOf(home.path(QStringLiteral(".local/share/org.velmora.growth"))), 0700u);
}

TEST_F(KeptCopies, OfOneRecordAreAtMostTwentyTheNewest) {
  for (int i = 0; i < 50; ++i) {
    clock.time = clock.time.addSecs(60);
    copies.keepEarlierVersion(record(), QByteArray::number(i)).value();
  }
  ASSERT_EQ(names().size(), OrvKeptCopies::MostVersions);
  EXPECT_EQ(testkit::readFile(folder() + QLatin1Char('/') + names().first()), "30");
  EXPECT_EQ(testkit::readFile(folder() + QLatin1Char('/') + names().last()), "49");
}

TEST_F(KeptCopies, GoAfterAYearExceptTheNewest) {
  clock.time = QDateTime::currentDateTimeUtc();
  const QString old = copies.keepEarlierVersion(record(), "old").value();
  const QString oldRescued = copies.keepRescueCopy(QStringLiteral("A1.growth"), "old").value();
  setAge(old, clock.time.addDays(-OrvKeptCopies::OldestDays - 1));
  setAge(oldRescued, clock.time.addDays(-OrvKeptCopies::OldestDays - 1));
  clock.time = clock.time.addSecs(60);
  const QString newer = copies.keepEarlierVersion(record(), "newer").value();
  const QString newRescued = copies.keepRescueCopy(QStringLiteral("A1.growth"), "new").value();
  EXPECT_FALSE(QFile::exists(old));
  EXPECT_TRUE(QFile::exists(newer));
  EXPECT_FALSE(QFile::exists(oldRescued));
  EXPECT_TRUE(QFile::exists(newRescued));
}

TEST_F(KeptCopies, OfTheSameMomentAreAllKept) {
  QSet<QString> versions;
  QSet<QString> rescued;
  for (int i = 0; i < 5; ++i) {
    versions.insert(copies.keepEarlierVersion(record(), QByteArray::number(i)).value());
    rescued.insert(copies.keepRescueCopy(QStringLiteral("A1.growth"), QByteArray::number(i)).value());
  }
  EXPECT_EQ(versions.size(), 5);
  EXPECT_EQ(rescued.size(), 5);
  for (const QString& copy : versions + rescued) EXPECT_TRUE(QFile::exists(copy)) << qPrintable(copy);
}

TEST_F(KeptCopies, MadeAfterTheClockWasPutBackAreNotTheFirstToGo) {
  clock.time = QDateTime::currentDateTimeUtc().addDays(100);
  for (int i = 0; i < OrvKeptCopies::MostVersions; ++i) {
    clock.time = clock.time.addSecs(60);
    copies.keepEarlierVersion(record(), "of the wrong clock " + QByteArray::number(i)).value();
  }
  clock.time = clock.time.addDays(-100);
  const QString copy = copies.keepEarlierVersion(record(), "of the right clock").value();
  EXPECT_EQ(testkit::readFile(copy), "of the right clock");
  EXPECT_EQ(testkit::readFile(folder() + QLatin1Char('/') + names().last()), "of the right clock");
  EXPECT_EQ(names().size(), OrvKeptCopies::MostVersions);
}

TEST_F(KeptCopies, LeaveFilesAloneThatAreNoCopies) {
  copies.keepEarlierVersion(record(), "old").value();
  testkit::writeFile(folder() + QStringLiteral("/notes.txt"), "a person's");
  for (int i = 0; i < 30; ++i) copies.keepEarlierVersion(record(), "newer " + QByteArray::number(i)).value();
  EXPECT_TRUE(QFile::exists(folder() + QStringLiteral("/notes.txt")));
}

TEST_F(KeptCopies, RescueARecordWhateverItsName) {
  const QStringList identifiers{QStringLiteral("a/b"),
                                QStringLiteral(".."),
                                QStringLiteral("."),
                                QString(300, QLatin1Char('x')),
                                QString(300, QChar(0x5B57)),
                                QStringLiteral("😀").repeated(150),
                                QStringLiteral("a\nb\x7f\x1b"),
                                QString(QLatin1Char('a')) + QChar(QChar::Null) + QLatin1Char('b'),
                                QString(QChar(0xD800)) + QLatin1Char('x'),
                                QStringLiteral("%1%s%n"),
                                QStringLiteral("../../escape")};
  for (const QString& identifier : identifiers) {
    const QString copy = copies.keepRescueCopy(identifier + QStringLiteral(".growth"), "unsaved").value();
    ASSERT_FALSE(copy.isEmpty()) << qPrintable(identifier);
    EXPECT_EQ(QFileInfo(copy).absolutePath(), copies.rescueFolder());
    EXPECT_EQ(testkit::readFile(copy), "unsaved") << qPrintable(copy);
    EXPECT_TRUE(copy.endsWith(QStringLiteral(".growth"))) << qPrintable(copy);
    const QString version =
        copies.keepEarlierVersion(home.path(QStringLiteral("Records/") + identifier), "old").value();
    EXPECT_EQ(testkit::readFile(version), "old") << qPrintable(version);
  }
}

TEST_F(KeptCopies, ThatWereCutOffAreRemoved) {
  const QString version = copies.keepEarlierVersion(record(), "old").value();
  const QString rescued = copies.keepRescueCopy(QStringLiteral("A1.growth"), "unsaved").value();
  const QString cutVersion = folder() + QStringLiteral("/.0123456789abcdef.growth.unfinished");
  const QString cutRescue = copies.rescueFolder() + QStringLiteral("/.0123456789abcdef.growth.unfinished");
  testkit::writeFile(cutVersion, "o");
  testkit::writeFile(cutRescue, "u");
  for (const QString& cut : {cutVersion, cutRescue})
    setAge(cut, QDateTime::currentDateTime().addSecs(-120 * base::FileManager::AbandonedAfterMinutes));
  copies.removeAbandonedCopies({QStringLiteral("growth")});
  EXPECT_FALSE(QFile::exists(cutVersion));
  EXPECT_FALSE(QFile::exists(cutRescue));
  EXPECT_TRUE(QFile::exists(version));
  EXPECT_TRUE(QFile::exists(rescued));
}

/// A folder whose name is new is on the disk only when the folder above it is.
TEST_F(KeptCopies, OutliveAPowerCutWithTheFoldersThatWereMadeForThem) {
  const faults::SystemCalls calls(home.path());
  ASSERT_TRUE(copies.keepEarlierVersion(record(), "old").ok());
  // ".local", "share", the application's folder, "Earlier Versions", the record's: each makes a new name
  // above.
  EXPECT_EQ(calls.names().count("fsync folder"), 5 + 1) << "and the copy's own name";
}

/// A copy that a save or a look-up left, opened by the user.
class OpenedCopy : public testing::Test {
 protected:
  GrowthDocument& openCopyOf(const QString& identifier) {
    GrowthDocument& dropped = desk.newRecord(identifier);
    dropped.keepUnsavedChanges();
    dropped.close();
    desk.desktop.runLoop.settle();
    return desk.opened(desk.rescueFolder() + QLatin1Char('/') + desk.rescued().first());
  }

  faults::GrowthDesk desk;
  testkit::LogRecorder log;
};

TEST_F(OpenedCopy, ComesHomeWhenItIsSaved) {
  GrowthDocument& document = openCopyOf(QStringLiteral("A1"));
  EXPECT_TRUE(document.isDocumentEdited());
  document.saveDocument();
  desk.desktop.runLoop.settle();
  EXPECT_EQ(faults::firstWeight(faults::recordIn(desk, desk.pathOfRecord(QStringLiteral("A1")))),
            QStringLiteral("10"));
  EXPECT_TRUE(desk.controller.fileIsInCachedDatabaseFiles(QStringLiteral("A1")));
  EXPECT_TRUE(desk.alerts.shown.isEmpty());
  EXPECT_EQ(desk.rescued().size(), 1) << "the copy stays until it is old";
}

TEST_F(OpenedCopy, ReplacesNoNewerRecordUnseen) {
  GrowthDocument& newer = desk.savedRecord(QStringLiteral("A1"));
  desk.enterWeight(newer, QStringLiteral("12"));
  newer.saveDocument();
  newer.close();
  desk.desktop.runLoop.settle();
  openCopyOf(QStringLiteral("A1")).saveDocument();
  desk.desktop.runLoop.settle();
  ASSERT_EQ(desk.alerts.shown.size(), 1);
  EXPECT_EQ(desk.alerts.shown.first().messageText,
            QStringLiteral("Another version of the record 'A1.growth' was in its place."));
  const QStringList another = desk.files().filter(QStringLiteral(" another.growth"));
  ASSERT_EQ(another.size(), 1);
  EXPECT_EQ(faults::firstWeight(faults::recordIn(desk, desk.home.path(another.first()))),
            QStringLiteral("12"));
}

}  // namespace
