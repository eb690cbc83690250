// SPDX-License-Identifier: LGPL-3.0-or-later
#include "orv/OrvKeptCopies.h"

#include "tests/orv/documents/NoteDocument.h"

namespace {

class KeptCopies : public testing_support::NoteDocuments {
 protected:
  /// Writes a file, keeps it as an earlier version, and lets a second pass: copies are named by the time.
  void keep(const QString& file, const QByteArray& contents) {
    write(file, contents);
    copies.keepEarlierVersion(file, contents);
    desktop.runLoop.advance(1);
  }
  QList<QByteArray> versions(const QString& file) {
    QList<QByteArray> all;
    const QString folderOfVersions = copies.earlierVersionsFolder(file);
    for (const QString& name : names(folderOfVersions)) all.append(contentsOf(folderOfVersions + '/' + name));
    return all;
  }

  OrvKeptCopies copies{desktop.fileManager, desktop.runLoop, "org.velmora.tests"};
};

TEST_F(KeptCopies, OfAFileAreInTheOrderOfTime) {
  for (const char* contents : {"one", "two", "three"}) keep(path("record.note"), contents);
  EXPECT_EQ(versions(path("record.note")), (QList<QByteArray>{"one", "two", "three"}));
  EXPECT_EQ(contentsOf(path("record.note")), "three") << "the file itself stays";
}

TEST_F(KeptCopies, OfFilesOfOneNameInTwoFoldersAreKeptApart) {
  QDir().mkpath(path("a"));
  QDir().mkpath(path("b"));
  keep(path("a/record.note"), "of a");
  keep(path("b/record.note"), "of b");
  EXPECT_EQ(versions(path("a/record.note")), QList<QByteArray>{"of a"});
  EXPECT_EQ(versions(path("b/record.note")), QList<QByteArray>{"of b"});
}

TEST_F(KeptCopies, AreBoundedInNumberAndTheOldestGo) {
  const int saves = OrvKeptCopies::MostVersions + 5;
  for (int i = 0; i < saves; ++i) keep(path("record.note"), QByteArray::number(i));
  const QList<QByteArray> all = versions(path("record.note"));
  ASSERT_EQ(all.size(), OrvKeptCopies::MostVersions);
  EXPECT_EQ(all.first(), QByteArray::number(5));
  EXPECT_EQ(all.last(), QByteArray::number(saves - 1));
}

/// Files have the real time, the clock here is virtual: what is kept is given an age by hand.
void makeOld(const QString& file, const QDateTime& now, int days) {
  QFile opened(file);
  ASSERT_TRUE(opened.open(QIODevice::ReadWrite));
  ASSERT_TRUE(opened.setFileTime(now.addDays(-days), QFileDevice::FileModificationTime));
}

TEST_F(KeptCopies, AreBoundedInAgeExceptTheNewest) {
  const QString file = path("record.note");
  const QString versionsFolder = copies.earlierVersionsFolder(file);
  for (const char* contents : {"too old", "old enough", "young"}) keep(file, contents);
  const QStringList kept = names(versionsFolder);
  makeOld(versionsFolder + '/' + kept.at(0), desktop.runLoop.now(), OrvKeptCopies::OldestDays + 1);
  makeOld(versionsFolder + '/' + kept.at(1), desktop.runLoop.now(), OrvKeptCopies::OldestDays - 1);
  keep(file, "newest");
  EXPECT_EQ(versions(file), (QList<QByteArray>{"old enough", "young", "newest"}));

  // Years later everything is too old, and the newest copy stays all the same.
  for (const QString& name : names(versionsFolder)) {
    makeOld(versionsFolder + '/' + name, desktop.runLoop.now(), 3 * OrvKeptCopies::OldestDays);
  }
  keep(file, "after years");
  EXPECT_EQ(versions(file), QList<QByteArray>{"after years"});
}

TEST_F(KeptCopies, KeepTheNewestEvenOfAClockThatRunsAhead) {
  constexpr double FiftyYears = 50 * 365.25 * 24 * 3600;
  desktop.runLoop.advance(FiftyYears);
  keep(path("record.note"), "older");
  keep(path("record.note"), "newest");
  EXPECT_EQ(versions(path("record.note")), QList<QByteArray>{"newest"});
}

TEST_F(KeptCopies, AreForTheUserAlone) {
  const mode_t before = ::umask(0);
  keep(path("record.note"), "secret");
  const QString rescue = copies.keepRescueCopy("record.note", "secret");
  ::umask(before);
  EXPECT_EQ(rights(kept()), 0700u);
  const QString versionsFolder = copies.earlierVersionsFolder(path("record.note"));
  EXPECT_EQ(rights(versionsFolder + '/' + names(versionsFolder).value(0)), 0600u);
  EXPECT_EQ(rights(rescue), 0600u);
}

TEST_F(KeptCopies, StopNothingWhenTheyCannotBeKept) {
  write(kept(), "a file where the folder would be");
  const platform::testing::LogRecorder log;
  write(path("record.note"), "contents");
  EXPECT_TRUE(copies.keepEarlierVersion(path("record.note"), "contents").isNull());
  EXPECT_EQ(log.lines().size(), 1);
  EXPECT_TRUE(copies.keepRescueCopy("record.note", "contents").isNull());
  EXPECT_EQ(log.lines().size(), 2);
}

TEST_F(KeptCopies, ForRescueKeepTheNameTheTimeAndTheExtension) {
  const QString copy = copies.keepRescueCopy("12-345.note", "precious");
  const QString time = desktop.runLoop.now().toUTC().toString("yyyyMMdd-HHmmss-zzz");
  EXPECT_EQ(copy, kept() + "/Rescued/12-345 " + time + ".note");
  EXPECT_EQ(contentsOf(copy), "precious");
}

TEST_F(KeptCopies, ForRescueStayInTheirFolderWhateverTheName) {
  const QString longName = QString(300, QChar(0x8EAB)) + ".note";
  for (const QString& name :
       {QString("../../etc/record.note"), QString("a/b"), longName, QString(".."), QString()}) {
    const QString copy = copies.keepRescueCopy(name, "precious");
    ASSERT_FALSE(copy.isNull()) << qPrintable(name);
    EXPECT_EQ(QFileInfo(copy).canonicalPath(), QFileInfo(copies.rescueFolder()).canonicalFilePath());
    EXPECT_EQ(contentsOf(copy), "precious");
    desktop.runLoop.advance(1);
  }
}

TEST_F(KeptCopies, ForRescueAreNotMadeOfNothing) {
  EXPECT_TRUE(copies.keepRescueCopy("record.note", QByteArray()).isNull());
  EXPECT_FALSE(QDir(kept()).exists());
}

}  // namespace
