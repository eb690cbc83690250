// SPDX-License-Identifier: LGPL-3.0-or-later
#include "orv/documents/OrvKeptCopies.h"
#include "orv/documents/OrvWrittenFolders.h"

#include "tests/unit/orv/documents/NoteDocument.h"

using namespace velmora;

namespace {

class KeptCopies : public testing_support::NoteDocuments {
 protected:
  /// Writes a file, keeps it as an earlier version, and lets a second pass: copies are named by the time.
  void keep(const QString& file, const QByteArray& contents) {
    testkit::writeFile(file, contents);
    copies.keepEarlierVersion(file, contents).value();
    desktop.runLoop.advance(1);
  }
  QList<QByteArray> versions(const QString& file) {
    QList<QByteArray> all;
    const QString folderOfVersions = copies.earlierVersionsFolder(file);
    for (const QString& name : testkit::fileNames(folderOfVersions))
      all.append(testkit::readFile(folderOfVersions + '/' + name));
    return all;
  }

  OrvKeptCopies copies{desktop.fileManager, desktop.runLoop, "org.velmora.tests"};
};

TEST_F(KeptCopies, OfAFileAreInTheOrderOfTime) {
  for (const char* contents : {"one", "two", "three"}) keep(path("record.note"), contents);
  EXPECT_EQ(versions(path("record.note")), (QList<QByteArray>{"one", "two", "three"}));
  EXPECT_EQ(testkit::readFile(path("record.note")), "three") << "the file itself stays";
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
  testkit::setModified(file, now.addDays(-days));
}

TEST_F(KeptCopies, AreBoundedInAgeExceptTheNewest) {
  const QString file = path("record.note");
  const QString versionsFolder = copies.earlierVersionsFolder(file);
  for (const char* contents : {"too old", "old enough", "young"}) keep(file, contents);
  const QStringList kept = testkit::fileNames(versionsFolder);
  makeOld(versionsFolder + '/' + kept.at(0), desktop.runLoop.now(), OrvKeptCopies::OldestDays + 1);
  makeOld(versionsFolder + '/' + kept.at(1), desktop.runLoop.now(), OrvKeptCopies::OldestDays - 1);
  keep(file, "newest");
  EXPECT_EQ(versions(file), (QList<QByteArray>{"old enough", "young", "newest"}));

  // Years later everything is too old, and the newest copy stays all the same.
  for (const QString& name : testkit::fileNames(versionsFolder)) {
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
  const QString rescue = copies.keepRescueCopy("record.note", "secret").value();
  ::umask(before);
  EXPECT_EQ(testkit::permissionsOf(kept()), 0700u);
  const QString versionsFolder = copies.earlierVersionsFolder(path("record.note"));
  EXPECT_EQ(testkit::permissionsOf(versionsFolder + '/' + testkit::fileNames(versionsFolder).value(0)),
            0600u);
  EXPECT_EQ(testkit::permissionsOf(rescue), 0600u);
}

TEST_F(KeptCopies, StopNothingWhenTheyCannotBeKept) {
  testkit::writeFile(kept(), "a file where the folder would be");
  const testkit::LogRecorder log;
  testkit::writeFile(path("record.note"), "contents");
  EXPECT_FALSE(copies.keepEarlierVersion(path("record.note"), "contents").ok());
  EXPECT_EQ(log.lines().size(), 1);
  EXPECT_FALSE(copies.keepRescueCopy("record.note", "contents").ok());
  EXPECT_EQ(log.lines().size(), 2);
}

/// The names of their folders and files are those of patients.
TEST_F(KeptCopies, AreNotNamedInTheLogWhenTheyCannotBeKept) {
  const QString rescue = QStringLiteral("12-345.note");
  const QString record = path(rescue);
  QDir().mkpath(kept());
  testkit::writeFile(kept() + "/Earlier Versions", "a file where the folder would be");
  const testkit::LogRecorder log;
  EXPECT_FALSE(copies.keepEarlierVersion(record, "contents").ok());
  EXPECT_EQ(log.lines(), QStringList{"No folder for copies could be made in " + kept()});

  /// A disk that has filled up.
  class FullDisk : public base::FileManager {
    base::Result<> writePrivately(const QString&, const QByteArray&) override {
      return base::Failure{QStringLiteral("No space left on device")};
    }
  } full;
  OrvKeptCopies onFullDisk(full, desktop.runLoop, "org.velmora.tests");
  EXPECT_FALSE(onFullDisk.keepRescueCopy(rescue, "contents").ok());
  EXPECT_EQ(log.lines().mid(1),
            QStringList{"A file could not be kept in " + kept() + ": No space left on device"});
}

TEST_F(KeptCopies, ForRescueKeepTheNameTheTimeAndTheExtension) {
  const QString copy = copies.keepRescueCopy("12-345.note", "precious").value();
  const QString time = desktop.runLoop.now().toUTC().toString("yyyyMMdd-HHmmss-zzz");
  EXPECT_EQ(copy, kept() + "/Rescued/12-345 " + time + ".note");
  EXPECT_EQ(testkit::readFile(copy), "precious");
}

TEST_F(KeptCopies, ForRescueStayInTheirFolderWhateverTheName) {
  const QString longName = QString(300, QChar(0x8EAB)) + ".note";
  for (const QString& name :
       {QString("../../etc/record.note"), QString("a/b"), longName, QString(".."), QString()}) {
    const QString copy = copies.keepRescueCopy(name, "precious").value();
    ASSERT_FALSE(copy.isNull()) << qPrintable(name);
    EXPECT_EQ(QFileInfo(copy).canonicalPath(), QFileInfo(copies.rescueFolder()).canonicalFilePath());
    EXPECT_EQ(testkit::readFile(copy), "precious");
    desktop.runLoop.advance(1);
  }
}

TEST_F(KeptCopies, ForRescueAreNotMadeOfNothing) {
  EXPECT_FALSE(copies.keepRescueCopy("record.note", QByteArray()).ok());
  EXPECT_FALSE(QDir(kept()).exists());
}

TEST_F(KeptCopies, OfWhatIsKeptAlreadyAreNotMadeAgain) {
  const QString file = path("record.note");
  keep(file, "one");
  const QString first = copies.keepEarlierVersion(file, "two").value();
  desktop.runLoop.advance(1);
  EXPECT_EQ(copies.keepEarlierVersion(file, "two").value(), first);
  EXPECT_EQ(versions(file), (QList<QByteArray>{"one", "two"}));
  keep(file, "one");
  EXPECT_EQ(versions(file), (QList<QByteArray>{"one", "two", "one"})) << "only the newest counts";
}

TEST_F(KeptCopies, OfAnotherAreOnlyBoundedInAge) {
  using Origin = OrvKeptCopies::Origin;
  const QString file = path("record.note");
  const int many = OrvKeptCopies::MostVersions + 5;
  for (int i = 0; i < many; ++i) {
    copies.keepEarlierVersion(file, "theirs " + QByteArray::number(i), Origin::Another).value();
    copies.keepEarlierVersion(file, "mine " + QByteArray::number(i)).value();
    desktop.runLoop.advance(1);
  }
  const QList<QByteArray> all = versions(file);
  EXPECT_EQ(all.size(), many + OrvKeptCopies::MostVersions);
  EXPECT_TRUE(all.contains("theirs 0"));
  EXPECT_FALSE(all.contains("mine 4"));
  EXPECT_TRUE(all.contains("mine 5"));
  const QString versionsFolder = copies.earlierVersionsFolder(file);
  const QString oldest = versionsFolder + '/' + testkit::fileNames(versionsFolder).first();
  makeOld(oldest, desktop.runLoop.now(), OrvKeptCopies::OldestDays + 1);
  keep(file, "newest");
  EXPECT_FALSE(versions(file).contains("theirs 0"));
}

TEST_F(KeptCopies, OfAnotherAreMarkedEvenWhenTheSameIsKeptAsOnesOwn) {
  const QString file = path("record.note");
  const QString own = copies.keepEarlierVersion(file, "restored").value();
  const QString another = copies.keepEarlierVersion(file, "restored", OrvKeptCopies::Origin::Another).value();
  EXPECT_NE(own, another);
  EXPECT_EQ(copies.keepEarlierVersion(file, "restored").value(), another) << "one is enough from here on";
}

TEST_F(KeptCopies, GrowOldThoughTheirRecordIsNotSavedAgain) {
  const QString file = path("record.note");
  for (const char* contents : {"old", "newest"}) keep(file, contents);
  const QString rescue = copies.keepRescueCopy("record.note", "old").value();
  const QString young = copies.keepRescueCopy("record.note", "young").value();
  const QString versionsFolder = copies.earlierVersionsFolder(file);
  for (const QString& name : testkit::fileNames(versionsFolder))
    makeOld(versionsFolder + '/' + name, desktop.runLoop.now(), OrvKeptCopies::OldestDays + 1);
  makeOld(rescue, desktop.runLoop.now(), OrvKeptCopies::OldestDays + 1);
  copies.removeAbandonedCopies({"note"});
  EXPECT_EQ(versions(file), QList<QByteArray>{"newest"});
  EXPECT_FALSE(QFile::exists(rescue));
  EXPECT_TRUE(QFile::exists(young));
}

// Where files have been written.

class WrittenFolders : public testing_support::NoteDocuments {
 protected:
  OrvWrittenFolders folders{desktop.fileManager, "org.velmora.tests"};
};

TEST_F(WrittenFolders, AreRememberedOnceEach) {
  EXPECT_EQ(folders.all(), QStringList());
  QDir().mkpath(path("a"));
  for (const char* name : {"record.note", "a/record.note", "a/other.note", "record.note"})
    folders.add(path(name));
  EXPECT_EQ(folders.all(), (QStringList{folder.path(), path("a")}));
  EXPECT_EQ(OrvWrittenFolders(desktop.fileManager, "org.velmora.tests").all(), folders.all());
  EXPECT_EQ(testkit::permissionsOf(kept() + "/Written Folders.json"), 0600u);
}

TEST_F(WrittenFolders, ThatAreNotThereAreNone) {
  folders.add(path("absent/record.note"));
  EXPECT_EQ(folders.all(), QStringList());
}

TEST_F(WrittenFolders, AreBoundedAndTheFirstGoes) {
  for (int i = 0; i <= OrvWrittenFolders::MostFolders; ++i) {
    QDir().mkpath(path(QString::number(i)));
    folders.add(path(QString::number(i) + "/record.note"));
  }
  EXPECT_EQ(folders.all().size(), OrvWrittenFolders::MostFolders);
  EXPECT_EQ(folders.all().first(), path("1"));
}

TEST_F(WrittenFolders, OfADamagedListAreForgotten) {
  QDir().mkpath(kept());
  for (const char* rubbish : {"", "[1, {}, null]", "{\"a\": 1}", "[\"unfinished"}) {
    testkit::writeFile(kept() + "/Written Folders.json", rubbish);
    EXPECT_EQ(folders.all(), QStringList()) << rubbish;
  }
  folders.add(path("record.note"));
  EXPECT_EQ(folders.all(), QStringList{folder.path()});
}

}  // namespace
