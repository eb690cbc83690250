// SPDX-License-Identifier: LGPL-3.0-or-later
#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include "base/files/FileManager.h"
#include "testing/files/Files.h"
#include "testing/files/FullDisk.h"
#include "testing/main/Shown.h"

using velmora::base::Failure;
using velmora::base::FileManager;
using velmora::base::Result;

namespace {

class Files : public testing::Test {
 protected:
  QString path(const QString& name) const { return folder.path() + '/' + name; }
  void make(const QString& name, const QByteArray& contents = "x") const {
    velmora::testkit::writeFile(path(name), contents);
  }
  QByteArray contents(const QString& name) const { return velmora::testkit::readFile(path(name)); }
  QStringList entries(const QString& start) const {
    QStringList all;
    files.enumeratorAtPath(start, [&all](const QString& entry) {
      all.append(entry);
      return true;
    });
    all.sort();
    return all;
  }

  QTemporaryDir folder;
  FileManager files;
};

TEST_F(Files, ExistWhetherFileOrFolder) {
  make("record.growth");
  QDir().mkpath(path("folder"));
  QFile::link(path("nowhere"), path("dangling"));
  QFile::link(path("folder"), path("toFolder"));
  EXPECT_TRUE(files.fileExistsAtPath(path("record.growth")));
  EXPECT_TRUE(files.fileExistsAtPath(path("folder")));
  EXPECT_FALSE(files.fileExistsAtPath(path("absent")));
  EXPECT_FALSE(files.fileExistsAtPath(path("dangling")));
  EXPECT_FALSE(files.isDirectory(path("record.growth")));
  EXPECT_TRUE(files.isDirectory(path("folder")));
  EXPECT_TRUE(files.isDirectory(path("toFolder")));
  EXPECT_FALSE(files.isDirectory(path("absent")));
}

TEST_F(Files, AreEnumeratedAtAnyDepthWithFoldersAndHiddenOnes) {
  make("a.growth");
  make(".hidden");
  make("sub/b.growth");
  make("sub/.folder/c.growth");
  QDir().mkpath(path("empty"));
  const QStringList expected{".hidden",     "a.growth", "empty", "sub", "sub/.folder", "sub/.folder/c.growth",
                             "sub/b.growth"};
  EXPECT_EQ(entries(folder.path()), expected);
  EXPECT_EQ(entries(folder.path() + '/'), expected) << "a slash at the end changes nothing";
}

TEST_F(Files, AreEnumeratedWithoutFollowingLinks) {
  make("sub/record.growth");
  QFile::link(folder.path(), path("sub/loop"));
  QFile::link(path("nowhere"), path("dangling"));
  EXPECT_EQ(entries(folder.path()), (QStringList{"dangling", "sub", "sub/loop", "sub/record.growth"}));
}

TEST_F(Files, AreNotEnumeratedWhereThereIsNoFolder) {
  make("record.growth");
  EXPECT_TRUE(entries(path("absent")).isEmpty());
  EXPECT_TRUE(entries(path("record.growth")).isEmpty());
}

TEST_F(Files, AreNotEnumeratedWithoutAFolderNamed) {
  files.enumeratorAtPath(QString(), [](const QString& path) {
    ADD_FAILURE() << path.toStdString() << " stands where the program runs, not in a folder that was named";
    return false;
  });
}

TEST_F(Files, AreEnumeratedUntilTheVisitorHasEnough) {
  for (const char* name : {"a", "b", "c"}) make(name);
  int visits = 0;
  files.enumeratorAtPath(folder.path(), [&visits](const QString&) { return ++visits < 2; });
  EXPECT_EQ(visits, 2);
}

TEST_F(Files, AreListedDirectlyInsideAFolderHiddenOnesIncluded) {
  make("b");
  make(".a");
  make("sub/c");
  QStringList names = files.contentsOfDirectoryAtPath(folder.path());
  names.sort();
  EXPECT_EQ(names, (QStringList{".a", "b", "sub"}));
  EXPECT_TRUE(files.contentsOfDirectoryAtPath(path("absent")).isEmpty());
}

TEST_F(Files, TellWhenTheyWereModified) {
  make("record.growth");
  const QDateTime then(QDate(2020, 2, 29), QTime(12, 0));
  {
    QFile file(path("record.growth"));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.setFileTime(then, QFileDevice::FileModificationTime));
  }
  EXPECT_EQ(files.modificationDate(path("record.growth")), then);
  EXPECT_FALSE(files.modificationDate(path("absent")).isValid());
}

TEST_F(Files, GetFoldersWithEveryFolderAbove) {
  EXPECT_TRUE(files.createDirectory(path("a/b/c")).ok());
  EXPECT_TRUE(files.isDirectory(path("a/b/c")));
  EXPECT_TRUE(files.createDirectory(path("a/b/c")).ok()) << "one that is there already is no failure";
  make("file");
  const Result<> below = files.createDirectory(path("file/below"));
  EXPECT_FALSE(below.ok());
  EXPECT_TRUE(below.error().contains("file/below"));
}

TEST_F(Files, AreRemovedAndFoldersWithAllThatIsInThem) {
  make("folder/deep/file");
  make("outside/file");
  QFile::link(path("outside"), path("folder/link"));
  EXPECT_TRUE(files.removeItem(path("folder")).ok());
  EXPECT_FALSE(files.fileExistsAtPath(path("folder")));
  EXPECT_EQ(contents("outside/file"), "x") << "what a link points to is not inside the folder";

  QFile::link(path("outside"), path("link"));
  EXPECT_TRUE(files.removeItem(path("link")).ok());
  EXPECT_FALSE(QFileInfo(path("link")).isSymLink());
  EXPECT_EQ(contents("outside/file"), "x");
  EXPECT_FALSE(files.removeItem(path("absent")).ok());
}

TEST_F(Files, AreCopiedAndFoldersWithAllThatIsInThem) {
  make("source/Contents/Info.plist", "info");
  make("source/.hidden", "hidden");
  ASSERT_TRUE(QFile::setPermissions(path("source/.hidden"), QFile::ReadOwner | QFile::ExeOwner));
  ASSERT_EQ(::symlink("Contents", QFile::encodeName(path("source/Current")).constData()), 0);

  ASSERT_TRUE(files.copyItem(path("source"), path("copy")).ok());
  EXPECT_EQ(entries(path("copy")), (QStringList{".hidden", "Contents", "Contents/Info.plist", "Current"}));
  EXPECT_EQ(contents("copy/Contents/Info.plist"), "info");
  EXPECT_TRUE(QFileInfo(path("copy/.hidden")).permission(QFile::ExeOwner));

  // A link inside a bundle stays inside it: the copy must work when the source is gone.
  ASSERT_TRUE(files.removeItem(path("source")).ok());
  EXPECT_EQ(contents("copy/Current/Info.plist"), "info");
}

TEST_F(Files, AreNotCopiedOverWhatIsThere) {
  make("source", "new");
  make("taken", "old");
  QFile::link(path("nowhere"), path("dangling"));
  EXPECT_FALSE(files.copyItem(path("source"), path("taken")).ok());
  EXPECT_EQ(contents("taken"), "old");
  EXPECT_FALSE(files.copyItem(path("source"), path("dangling")).ok());
  EXPECT_FALSE(files.copyItem(path("absent"), path("copy")).ok());
  EXPECT_FALSE(files.fileExistsAtPath(path("copy")));
  EXPECT_FALSE(files.copyItem(path("source"), path("no/folder/here")).ok());
}

TEST_F(Files, AreCopiedWholeOrNotAtAll) {
  make("source/a", "x");
  ASSERT_EQ(::mkfifo(QFile::encodeName(path("source/pipe")).constData(), 0600), 0);
  EXPECT_EQ(files.copyItem(path("source"), path("copy")).error(),
            "'" + path("source/pipe") + "' is not a file.");
  EXPECT_EQ(files.contentsOfDirectoryAtPath(folder.path()), QStringList{"source"});
  EXPECT_FALSE(files.copyItem(path("source"), path("source/inner")).ok()) << "into itself there is no end";
  EXPECT_EQ(entries(path("source")), (QStringList{"a", "pipe"}));
}

TEST_F(Files, AreNotThereWhenTheCopyingIsKilled) {
  make("source", QByteArray(100000, 'x'));
  const auto copyUntilKilled = [this] {
    const rlimit noCore{};
    ::setrlimit(RLIMIT_CORE, &noCore);
    const velmora::testkit::FullDisk disk(50000);
    std::signal(SIGXFSZ, SIG_DFL);
    const Result<> copied = files.copyItem(path("source"), path("copy"));
    std::_Exit(copied.ok() ? 0 : 1);
  };
  EXPECT_EXIT(copyUntilKilled(), testing::KilledBySignal(SIGXFSZ), "");
  EXPECT_FALSE(files.fileExistsAtPath(path("copy")));
}

TEST_F(Files, AreReadWholeUpToALimit) {
  make("record", "0123456789");
  EXPECT_EQ(files.readFile(path("record")).valueOr("unread"), "0123456789");
  EXPECT_TRUE(files.readFile(path("record"), 10).ok());
  const Result<QByteArray> tooLarge = files.readFile(path("record"), 9);
  EXPECT_FALSE(tooLarge.ok());
  EXPECT_TRUE(tooLarge.error().startsWith("It is too large")) << qPrintable(tooLarge.error());
}

TEST_F(Files, AreReadOnlyWhenTheyAreFiles) {
  ASSERT_EQ(::mkfifo(QFile::encodeName(path("pipe")).constData(), 0600), 0);
  EXPECT_EQ(files.readFile(path("pipe")).error(), "It is not a file.") << "or the reader would hang";
  EXPECT_EQ(files.readFile("/dev/zero").error(), "It is not a file.");
  EXPECT_EQ(files.readFile(folder.path()).error(), "It is not a file.");
  EXPECT_FALSE(files.readFile(path("absent")).ok());
  EXPECT_FALSE(files.readFile(path("absent")).error().isEmpty());
}

}  // namespace
