// SPDX-License-Identifier: LGPL-3.0-or-later
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <csignal>

#include "platform/FileManager.h"
#include "tests/platform/Shown.h"

using platform::FileManager;
using platform::FileResult;

namespace {

/// While one lives no file of this process can grow beyond `bytes`: writes fall short and fail in the middle,
/// as on a disk that fills. It holds for the superuser too, whom no permission stops.
class SmallDisk {
 public:
  explicit SmallDisk(rlim_t bytes) : handlerBefore_(std::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &before_);
    rlimit small = before_;
    small.rlim_cur = bytes;
    ::setrlimit(RLIMIT_FSIZE, &small);
  }
  ~SmallDisk() {
    ::setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handlerBefore_);
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;

 private:
  rlimit before_{};
  void (*handlerBefore_)(int);
};

class DurableWriting : public testing::Test {
 protected:
  QString path(const QString& name) const { return folder.path() + '/' + name; }
  QByteArray contents(const QString& name) const {
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(cannot be read)");
  }
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
  struct stat status {};
  ASSERT_EQ(::stat(QFile::encodeName(path("record")).constData(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0600u);
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
  FileResult written;
  {
    const SmallDisk disk(static_cast<rlim_t>(GetParam() / 2));
    written = files.writeDurably(path("record"), newContents);
  }
  EXPECT_FALSE(written.ok());
  EXPECT_FALSE(written.error.isEmpty());
  EXPECT_EQ(contents("record"), "old");
  EXPECT_EQ(names(), QStringList{"record"});
  EXPECT_TRUE(files.writeDurably(path("record"), newContents).ok()) << "with room again it goes on";
}

TEST_P(DurableWritingOnAFullDisk, LeavesNoFileWhereThereWasNone) {
  {
    const SmallDisk disk(static_cast<rlim_t>(GetParam() / 2));
    EXPECT_FALSE(files.writeDurably(path("record"), QByteArray(GetParam(), 'n')).ok());
  }
  EXPECT_TRUE(names().isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Sizes, DurableWritingOnAFullDisk, testing::Values(100, 16384, 1024 * 1024));

TEST_F(DurableWriting, FailsWithAReasonWhereNoFileCanBe) {
  ASSERT_TRUE(files.writeDurably(path("file"), "contents").ok());
  QDir().mkpath(path("folder"));
  for (const char* place : {"folder", "absent/record", "file/record"}) {
    const FileResult written = files.writeDurably(path(place), "contents");
    EXPECT_FALSE(written.ok()) << place;
    EXPECT_FALSE(written.error.isEmpty()) << place;
  }
  EXPECT_FALSE(files.writeDurably("", "contents").ok());
  EXPECT_FALSE(files.writeDurably("/proc/record", "contents").ok());
  EXPECT_EQ(names(), (QStringList{"file", "folder"}));
  EXPECT_EQ(contents("file"), "contents");
  EXPECT_TRUE(files.contentsOfDirectoryAtPath(path("folder")).isEmpty());
}

}  // namespace
