// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <array>
#include <utility>

#include "base/files/FileManager.h"
#include "testing/files/Files.h"
#include "testing/files/FullDisk.h"
#include "testing/main/Shown.h"

using velmora::base::Failure;
using velmora::base::FileManager;
using velmora::base::Result;
using velmora::testkit::FullDisk;
using velmora::testkit::permissionsOf;
using velmora::testkit::readFile;

namespace {

class DurableWriting : public testing::Test {
 protected:
  QString path(const QString& name) const { return folder.path() + '/' + name; }
  QByteArray contents(const QString& name) const { return readFile(path(name)); }
  QStringList names() const { return files.contentsOfDirectoryAtPath(folder.path()); }

  QTemporaryDir folder;
  FileManager files;
};

TEST_F(DurableWriting, MakesAFile) {
  EXPECT_TRUE(files.writeDurably(path("record"), "contents").ok());
  EXPECT_EQ(contents("record"), "contents");
  EXPECT_EQ(names(), QStringList{"record"});
}

TEST_F(DurableWriting, WritesEmptyAndLargeFilesWhole) {
  EXPECT_TRUE(files.writeDurably(path("empty"), QByteArray()).ok());
  ASSERT_TRUE(QFile::exists(path("empty")));
  EXPECT_EQ(contents("empty"), "");
  QByteArray large(3 * 1024 * 1024 + 17, '\0');
  for (qsizetype i = 0; i < large.size(); ++i) large[i] = static_cast<char>(i * 31 % 251);
  EXPECT_TRUE(files.writeDurably(path("large"), large).ok());
  EXPECT_TRUE(contents("large") == large);
}

TEST_F(DurableWriting, PutsANewFileInPlaceOfTheOldOneInsteadOfWritingIntoIt) {
  ASSERT_TRUE(files.writeDurably(path("record"), "a longer old record").ok());
  // A second name for the old file shows what happens to it: nothing.
  ASSERT_EQ(::link(QFile::encodeName(path("record")).constData(), QFile::encodeName(path("old")).constData()),
            0);
  ASSERT_TRUE(files.writeDurably(path("record"), "new").ok());
  EXPECT_EQ(contents("record"), "new");
  EXPECT_EQ(contents("old"), "a longer old record");
}

TEST_F(DurableWriting, KeepsTheRightsOfTheFileThatItReplaces) {
  ASSERT_TRUE(files.writeDurably(path("record"), "old").ok());
  ASSERT_TRUE(QFile::setPermissions(path("record"), QFile::ReadOwner | QFile::WriteOwner));
  ASSERT_TRUE(files.writeDurably(path("record"), "new").ok());
  EXPECT_EQ(permissionsOf(path("record")), 0600u);
}

TEST_F(DurableWriting, WritesTheFileThatALinkPointsTo) {
  QDir().mkpath(path("shared"));
  ASSERT_TRUE(files.writeDurably(path("shared/record"), "old").ok());
  ASSERT_TRUE(QFile::link(path("shared/record"), path("link")));
  ASSERT_TRUE(files.writeDurably(path("link"), "new").ok());
  EXPECT_TRUE(QFileInfo(path("link")).isSymLink());
  EXPECT_EQ(contents("shared/record"), "new");
}

/// Contents that fit into the buffer of a file, and contents that do not, fail in different places.
class DurableWritingOnAFullDisk : public DurableWriting, public testing::WithParamInterface<int> {};

TEST_P(DurableWritingOnAFullDisk, LeavesTheOldFileAndNothingElse) {
  ASSERT_TRUE(files.writeDurably(path("record"), "old").ok());
  const QByteArray newContents(GetParam(), 'n');
  Result<> written;
  {
    const FullDisk disk(static_cast<rlim_t>(GetParam() / 2));
    written = files.writeDurably(path("record"), newContents);
  }
  EXPECT_FALSE(written.ok());
  EXPECT_FALSE(written.error().isEmpty());
  EXPECT_EQ(contents("record"), "old");
  EXPECT_EQ(names(), QStringList{"record"});
  EXPECT_TRUE(files.writeDurably(path("record"), newContents).ok()) << "with room again it goes on";
}

TEST_P(DurableWritingOnAFullDisk, LeavesNoFileWhereThereWasNone) {
  {
    const FullDisk disk(static_cast<rlim_t>(GetParam() / 2));
    EXPECT_FALSE(files.writeDurably(path("record"), QByteArray(GetParam(), 'n')).ok());
  }
  EXPECT_TRUE(names().isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Sizes, DurableWritingOnAFullDisk, testing::Values(100, 16384, 1024 * 1024));

TEST_F(DurableWriting, FailsWithAReasonWhereNoFileCanBe) {
  ASSERT_TRUE(files.writeDurably(path("file"), "contents").ok());
  QDir().mkpath(path("folder"));
  for (const char* place : {"folder", "absent/record", "file/record"}) {
    const Result<> written = files.writeDurably(path(place), "contents");
    EXPECT_FALSE(written.ok()) << place;
    EXPECT_FALSE(written.error().isEmpty()) << place;
  }
  EXPECT_FALSE(files.writeDurably("", "contents").ok());
  EXPECT_FALSE(files.writeDurably("/proc/record", "contents").ok());
  EXPECT_EQ(names(), (QStringList{"file", "folder"}));
  EXPECT_EQ(contents("file"), "contents");
  EXPECT_TRUE(files.contentsOfDirectoryAtPath(path("folder")).isEmpty());
}

// The last look, at what is about to be replaced.

TEST_F(DurableWriting, LooksOnceMoreRightBeforeItReplaces) {
  ASSERT_TRUE(files.writeDurably(path("record"), "old").ok());
  int looks = 0;
  const auto look = [&] {
    ++looks;
    EXPECT_EQ(contents("record"), "old");
    QStringList all = names();
    all.removeAll("record");
    EXPECT_EQ(all.size(), 1) << "the new file is there under another name";
    EXPECT_EQ(contents(all.value(0)), "new") << "and whole";
    return Result<>();
  };
  EXPECT_TRUE(files.writeDurably(path("record"), "new", look).ok());
  EXPECT_EQ(looks, 1);
  EXPECT_EQ(contents("record"), "new");
}

TEST_F(DurableWriting, IsGivenUpByTheFinalCheck) {
  ASSERT_TRUE(files.writeDurably(path("record"), "old").ok());
  const auto refuse = [] { return Failure{"It is another's."}; };
  EXPECT_EQ(files.writeDurably(path("record"), "new", refuse).error(), "It is another's.");
  EXPECT_EQ(files.writeDurably(path("absent"), "new", refuse).error(), "It is another's.");
  EXPECT_EQ(contents("record"), "old");
  EXPECT_EQ(names(), QStringList{"record"});
}

TEST_F(DurableWriting, LooksAgainAtWhatAppearsWhereNothingStood) {
  QList<QByteArray> seen;
  const auto look = [&] {
    seen.append(contents("record"));
    if (seen.size() == 1) {
      EXPECT_TRUE(FileManager().writeDurably(path("record"), "another's").ok());
    }
    return Result<>();
  };
  EXPECT_TRUE(files.writeDurably(path("record"), "mine", look).ok());
  EXPECT_EQ(seen, (QList<QByteArray>{QByteArray(), "another's"}));
  EXPECT_TRUE(seen.first().isNull()) << "nothing was there yet";
  EXPECT_EQ(contents("record"), "mine");
  EXPECT_EQ(names(), QStringList{"record"});
}

TEST_F(DurableWriting, DoesNotReplaceWhatAppearedAndMustStay) {
  int looks = 0;
  const auto look = [&]() -> Result<> {
    if (++looks == 2) return Failure{"It is another's."};
    EXPECT_TRUE(FileManager().writeDurably(path("record"), "another's").ok());
    return Result<>();
  };
  EXPECT_EQ(files.writeDurably(path("record"), "mine", look).error(), "It is another's.");
  EXPECT_EQ(contents("record"), "another's");
  EXPECT_EQ(names(), QStringList{"record"});
}

// Who may read and write what is written.

class RightsOfWrittenFiles : public DurableWriting {
 protected:
  RightsOfWrittenFiles() : maskBefore_(::umask(022)) {}
  ~RightsOfWrittenFiles() override { ::umask(maskBefore_); }

  struct stat status(const QString& name) const {
    struct stat found {};
    EXPECT_EQ(::stat(QFile::encodeName(path(name)).constData(), &found), 0) << qPrintable(name);
    return found;
  }
  unsigned rights(const QString& name) const { return permissionsOf(path(name)); }
  /// Writes, and gives the rights of the temporary file as they were on the way.
  mode_t rightsOnTheWay(const QString& name) {
    mode_t seen = 0;
    const auto look = [&] {
      for (const QString& each : names()) {
        if (each.endsWith(".unfinished")) seen = rights(each);
      }
      return Result<>();
    };
    EXPECT_TRUE(files.writeDurably(path(name), "new", look).ok());
    return seen;
  }
  void makeOld(const QString& name, mode_t mode, gid_t group) {
    ASSERT_TRUE(files.writeDurably(path(name), "old").ok());
    const QByteArray file = QFile::encodeName(path(name));
    ASSERT_EQ(::chown(file.constData(), static_cast<uid_t>(-1), group), 0);
    ASSERT_EQ(::chmod(file.constData(), mode), 0);
  }

 private:
  mode_t maskBefore_;
};

constexpr gid_t Colleagues = 4321;
constexpr uid_t Nobody = 65534;

TEST_F(RightsOfWrittenFiles, AreTheUsersAloneUntilTheyAreInPlace) {
  EXPECT_EQ(rightsOnTheWay("record"), 0600u);
  EXPECT_EQ(rights("record"), 0644u) << "as of any new file";
  ASSERT_EQ(::chmod(QFile::encodeName(path("record")).constData(), 0666), 0);
  EXPECT_EQ(rightsOnTheWay("record"), 0600u);
  EXPECT_EQ(rights("record"), 0666u) << "as of the file before";
}

TEST_F(RightsOfWrittenFiles, OfAFileThatAppearedMeanwhileAreThatFiles) {
  bool first = true;
  const auto look = [&] {
    if (std::exchange(first, false)) {
      EXPECT_TRUE(FileManager().writeDurably(path("record"), "another's").ok());
      ::chmod(QFile::encodeName(path("record")).constData(), 0664);
    }
    return Result<>();
  };
  ASSERT_TRUE(files.writeDurably(path("record"), "mine", look).ok());
  EXPECT_EQ(rights("record"), 0664u);
}

TEST_F(RightsOfWrittenFiles, LeaveASharedFileToItsGroup) {
  if (::geteuid() != 0) GTEST_SKIP() << "giving a file to any group takes the rights of the superuser";
  makeOld("record", 0660, Colleagues);
  ASSERT_TRUE(files.writeDurably(path("record"), "new").ok());
  EXPECT_EQ(status("record").st_gid, Colleagues);
  EXPECT_EQ(rights("record"), 0660u);
}

TEST_F(RightsOfWrittenFiles, GiveAnotherGroupNoMoreThanEverybody) {
  if (::geteuid() != 0) GTEST_SKIP() << "taking a group away from a user takes the rights of the superuser";
  makeOld("record", 0660, Colleagues);
  makeOld("read by all", 0664, Colleagues);
  // He owns both, and is in another group.
  for (const char* name : {"record", "read by all", ""}) {
    ASSERT_EQ(::chown(QFile::encodeName(path(name)).constData(), Nobody, static_cast<gid_t>(-1)), 0);
  }
  ASSERT_EQ(::setresuid(Nobody, Nobody, 0), 0);
  const auto superuserAgain = qScopeGuard([] { EXPECT_EQ(::setresuid(0, 0, 0), 0); });
  for (const char* name : {"record", "read by all"}) {
    EXPECT_TRUE(files.writeDurably(path(name), "new").ok()) << name;
    EXPECT_NE(status(name).st_gid, Colleagues) << name;
  }
  EXPECT_EQ(rights("record"), 0600u);
  EXPECT_EQ(rights("read by all"), 0644u);
}

/// An access list as acl(5) has it in an extended attribute: the version 2, then tag, rights and identifier
/// of each entry; little-endian.
QByteArray accessList(std::initializer_list<std::array<quint32, 3>> entries) {
  const auto number = [](quint32 value, int bytes) {
    QByteArray all;
    for (int i = 0; i < bytes; ++i) all.append(static_cast<char>(value >> (8 * i)));
    return all;
  };
  QByteArray list = number(2, 4);
  for (const auto& [tag, rights, identifier] : entries)
    list += number(tag, 2) + number(rights, 2) + number(identifier, 4);
  return list;
}

constexpr quint32 Nobodys = 0xffffffff;  // the identifier of an entry that names nobody
constexpr quint32 Owner = 0x01, NamedUser = 0x02, OwningGroup = 0x04, Mask = 0x10, Others = 0x20;
constexpr const char* OwnList = "system.posix_acl_access";
constexpr const char* ListOfNewFiles = "system.posix_acl_default";

class AccessLists : public RightsOfWrittenFiles {
 protected:
  QByteArray listOf(const QString& name) const {
    QByteArray list(4096, '\0');
    const ssize_t size = ::getxattr(QFile::encodeName(path(name)).constData(), OwnList, list.data(), 4096);
    return size < 0 ? QByteArray() : list.left(size);
  }
  static bool give(const QString& place, const char* which, const QByteArray& list) {
    return ::setxattr(QFile::encodeName(place).constData(), which, list.constData(),
                      static_cast<size_t>(list.size()), 0) == 0;
  }
  const QByteArray ofOneColleague = accessList({{Owner, 6, Nobodys},
                                                {NamedUser, 6, 1234},
                                                {OwningGroup, 4, Nobodys},
                                                {Mask, 6, Nobodys},
                                                {Others, 0, Nobodys}});
};

TEST_F(AccessLists, StayWithAFileThatIsReplaced) {
  ASSERT_TRUE(files.writeDurably(path("record"), "old").ok());
  if (!give(path("record"), OwnList, ofOneColleague)) GTEST_SKIP() << "this file system has no access lists";
  EXPECT_EQ(rightsOnTheWay("record"), 0600u);
  EXPECT_EQ(listOf("record"), ofOneColleague);
}

TEST_F(AccessLists, OfNewFilesAreTheFoldersAndOfReplacedOnesTheirOwn) {
  ASSERT_TRUE(files.writeDurably(path("private"), "old").ok());
  ASSERT_EQ(::chmod(QFile::encodeName(path("private")).constData(), 0640), 0);
  if (!give(folder.path(), ListOfNewFiles, ofOneColleague))
    GTEST_SKIP() << "this file system has no access lists";
  EXPECT_EQ(rightsOnTheWay("record"), 0600u);
  EXPECT_EQ(listOf("record"), ofOneColleague) << "a new file has what the folder gives";
  ASSERT_TRUE(files.writeDurably(path("private"), "new").ok());
  EXPECT_EQ(listOf("private"), QByteArray()) << "the colleague could not read this one";
  EXPECT_EQ(rights("private"), 0640u);
}

// What is for the user alone.

class PrivateFiles : public DurableWriting {
 protected:
  unsigned rights(const QString& name) const { return permissionsOf(path(name)); }
};

TEST_F(PrivateFiles, AreForTheUserAloneWhateverTheMaskAndWhateverStoodThere) {
  ASSERT_TRUE(files.writeDurably(path("record"), "old").ok());
  ASSERT_EQ(::chmod(QFile::encodeName(path("record")).constData(), 0444), 0);
  for (const unsigned mask : {0u, 0777u}) {
    const mode_t before = ::umask(mask);
    const Result<> written = files.writePrivately(path("record"), "new");
    const Result<> made = files.createPrivateDirectory(path("a/b"));
    ::umask(before);
    EXPECT_TRUE(written.ok()) << qPrintable(written.error());
    EXPECT_TRUE(made.ok()) << qPrintable(made.error());
    EXPECT_EQ(contents("record"), "new");
    EXPECT_EQ(rights("record"), 0600u);
    EXPECT_EQ(rights("a"), 0700u);
    EXPECT_EQ(rights("a/b"), 0700u);
    QDir(path("a")).removeRecursively();
  }
  EXPECT_EQ(names(), QStringList{"record"});
}

TEST_F(PrivateFiles, TakeThePlaceOfALinkAndLeaveWhatItLeadsTo) {
  ASSERT_TRUE(files.writeDurably(path("another's"), "old").ok());
  ASSERT_TRUE(QFile::link(path("another's"), path("record")));
  ASSERT_TRUE(files.writePrivately(path("record"), "new").ok());
  EXPECT_EQ(contents("another's"), "old");
  EXPECT_EQ(contents("record"), "new");
  EXPECT_FALSE(QFileInfo(path("record")).isSymLink());
}

TEST_F(PrivateFiles, AreNotHalfThereOnAFullDisk) {
  ASSERT_TRUE(files.writePrivately(path("record"), "old").ok());
  {
    const FullDisk disk(4096);
    EXPECT_FALSE(files.writePrivately(path("record"), QByteArray(8192, 'n')).ok());
  }
  EXPECT_EQ(contents("record"), "old");
  EXPECT_EQ(names(), QStringList{"record"});
}

TEST_F(PrivateFiles, StandInFoldersThatAreMadePrivateToo) {
  ASSERT_TRUE(QDir().mkpath(path("open")));
  ASSERT_EQ(::chmod(QFile::encodeName(path("open")).constData(), 0755), 0);
  EXPECT_TRUE(files.createPrivateDirectory(path("open")).ok());
  EXPECT_EQ(rights("open"), 0700u);
  ASSERT_TRUE(files.writeDurably(path("file"), "contents").ok());
  EXPECT_EQ(files.createPrivateDirectory(path("file")).error(), path("file") + " is not a folder");
  EXPECT_TRUE(files.createPrivateDirectory(path("file/below")).error().startsWith("cannot make the folder "));
}

// What was cut off.

class AbandonedFiles : public DurableWriting {
 protected:
  void make(const QString& name, int minutesAgo) {
    QDir().mkpath(QFileInfo(path(name)).path());
    QFile file(path(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_TRUE(file.setFileTime(QDateTime::currentDateTime().addSecs(-60 * minutesAgo),
                                 QFileDevice::FileModificationTime));
  }
  bool stands(const QString& name) const { return QFile::exists(path(name)); }
  static constexpr int Old = FileManager::AbandonedAfterMinutes + 1;
  static constexpr int Young = FileManager::AbandonedAfterMinutes - 1;
};

TEST_F(AbandonedFiles, GoOnceNobodyElsewhereCanBeWritingThemAnyMore) {
  make(".0123456789abcdef.note.unfinished", Old);
  make(".1123456789abcdef.note.unfinished", Young);
  make(".2123456789abcdef.note.unfinished", -Old);
  files.removeAbandonedFiles(folder.path(), {"note"});
  EXPECT_EQ(names(), (QStringList{".1123456789abcdef.note.unfinished", ".2123456789abcdef.note.unfinished"}));
}

TEST_F(AbandonedFiles, GoWithAKnownExtensionOrWithNone) {
  make(".0123456789abcdef.unfinished", Old);
  make(".0123456789abcdef.other.unfinished", Old);
  make("unfinished", Old);
  files.removeAbandonedFiles(folder.path(), {"note"});
  EXPECT_EQ(names(), (QStringList{".0123456789abcdef.other.unfinished", "unfinished"}));
}

TEST_F(AbandonedFiles, GoAtOnceFromAFolderOfTheProgramsOwn) {
  make(".0123456789abcdef.note.unfinished", 0);
  make(".1123456789abcdef.unfinished", -Old);
  make(".2123456789abcdef.28.unfinished", Young);
  make("note", Old);
  files.removeAbandonedFiles(folder.path(), FileManager::AnyExtension, FileManager::Depth::Folder,
                             std::chrono::minutes(0));
  EXPECT_EQ(names(), QStringList{"note"});
}

TEST_F(AbandonedFiles, GoFromFoldersBelowWhenAskedFor) {
  const QString deep = "a/b/.0123456789abcdef.note.unfinished";
  make(deep, Old);
  files.removeAbandonedFiles(folder.path(), {"note"});
  EXPECT_TRUE(stands(deep));
  files.removeAbandonedFiles(folder.path(), {"note"}, FileManager::Depth::Everything);
  EXPECT_FALSE(stands(deep));
  files.removeAbandonedFiles(QString(), {"note"}, FileManager::Depth::Everything);
}

}  // namespace
