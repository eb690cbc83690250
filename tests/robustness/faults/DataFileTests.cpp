// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Files that are no records, or no longer.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include "orv/documents/OrvChecksum.h"
#include "testing/files/Files.h"
#include "testing/files/OrdinaryUser.h"
#include "tests/robustness/faults/GrowthDesk.h"

using namespace velmora;

using faults::GrowthDesk;

namespace {

class DataFile : public testing::Test {
 protected:
  DataFile() {
    desk.savedRecord(QStringLiteral("A1"));
    desk.closeAll();
    whole = testkit::readFile(desk.pathOfRecord(QStringLiteral("A1")));
  }

  QString path(const QString& name = QStringLiteral("X")) const { return desk.pathOfRecord(name); }
  QString whyNot(const QByteArray& contents) {
    // Anew each time: file systems put a file that is written over on the disk at once, which takes its time.
    QFile::remove(path());
    testkit::writeFile(path(), contents);
    return desk.whyNotOpened(path());
  }
  /// The whole record with one member of its header changed, and a checksum that is right again.
  QByteArray with(const QString& member, const QJsonValue& value) const {
    QJsonObject file = QJsonDocument::fromJson(whole).object();
    file.insert(member, value);
    file.insert(QStringLiteral("checksum"), QString::fromLatin1(orv::emptyChecksum()));
    return orv::withChecksum(QJsonDocument(file).toJson());
  }

  GrowthDesk desk;
  QByteArray whole;
};

TEST_F(DataFile, OpensWhenItIsWhole) { EXPECT_EQ(whyNot(whole), QString()); }

TEST_F(DataFile, ThatIsEmptyIsRefused) { EXPECT_EQ(whyNot(""), QStringLiteral("The file is empty.")); }

TEST_F(DataFile, CutAtEveryLengthIsRefused) {
  int refused = 0;
  for (qsizetype length = 1; length < whole.size(); ++length) {
    const QString reason = whyNot(whole.left(length));
    ASSERT_TRUE(reason.startsWith(QStringLiteral("The file is damaged"))) << length << qPrintable(reason);
    ++refused;
  }
  EXPECT_EQ(refused, whole.size() - 1);
  std::printf("%d cut files\n", refused);
}

TEST_F(DataFile, WithOneBitFlippedAnywhereIsRefused) {
  int refused = 0;
  for (qsizetype byte = 0; byte < whole.size(); ++byte) {
    for (int bit = 0; bit < 8; ++bit) {
      QByteArray flipped = whole;
      flipped[byte] = static_cast<char>(flipped.at(byte) ^ (1 << bit));
      const QString reason = whyNot(flipped);
      ASSERT_FALSE(reason.isEmpty()) << "byte " << byte << " bit " << bit;
      ++refused;
    }
  }
  EXPECT_EQ(refused, whole.size() * 8);
  std::printf("%d flipped bits\n", refused);
}

TEST_F(DataFile, WithAnythingBehindItsEndIsRefused) {
  for (const char* tail : {" ", "\n", "}", "x", "{}"}) EXPECT_FALSE(whyNot(whole + tail).isEmpty()) << tail;
}

TEST_F(DataFile, OfAnotherKindIsRefused) {
  const QString notOurs = QStringLiteral("The file is not a record of this application.");
  EXPECT_EQ(whyNot("{}"), notOurs);
  EXPECT_EQ(whyNot(with(QStringLiteral("format"), QStringLiteral("org.velmora.other"))), notOurs);
  for (const QByteArray& foreign :
       {QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16), QByteArray("<?xml version=\"1.0\"?>"),
        QByteArray(1000, '\0'), QByteArray("[1, 2]"), QByteArray("\xff\xfe{\0}\0", 6)}) {
    EXPECT_FALSE(whyNot(foreign).isEmpty()) << foreign.constData();
  }
  EXPECT_FALSE(whyNot(QByteArray(100000, '[')).isEmpty()) << "nested beyond measure";
}

TEST_F(DataFile, OfANewerVersionIsRefusedByItsName) {
  QJsonObject file = QJsonDocument::fromJson(with(QStringLiteral("version"), 2)).object();
  EXPECT_EQ(whyNot(QJsonDocument(file).toJson()),
            QStringLiteral("The file was written by a newer version of the application (Growth 0.1)."));
}

TEST_F(DataFile, WithHalfACharacterInTheIdentifierIsRefused) {
  QByteArray file = whole;
  file.replace("\"A1\"", "\"A\\ud8001\"");
  QJsonObject json = QJsonDocument::fromJson(file).object();
  ASSERT_FALSE(json.isEmpty());
  file.replace(file.indexOf("\"checksum\": \"") + 13, 64, orv::emptyChecksum());
  EXPECT_EQ(whyNot(orv::withChecksum(file)), QStringLiteral("The file is damaged (identifier)."));
}

TEST_F(DataFile, Of200MegabytesIsRefusedUnread) {
  QFile large(path());
  ASSERT_TRUE(large.open(QIODevice::WriteOnly));
  ASSERT_TRUE(large.resize(200LL * 1024 * 1024));
  large.close();
  EXPECT_EQ(desk.whyNotOpened(path()), QStringLiteral("It is too large (200 MB)."));
}

TEST_F(DataFile, ThatMayNotBeReadIsRefused) {
  testkit::writeFile(path(), whole);
  const testkit::OrdinaryUser user(desk.home.path());
  QFile::setPermissions(path(), QFile::WriteOwner);
  EXPECT_EQ(desk.whyNotOpened(path()), QStringLiteral("Permission denied"));
}

TEST_F(DataFile, ThatIsAFolderIsRefused) {
  QDir().mkpath(path());
  EXPECT_EQ(desk.whyNotOpened(path()), QStringLiteral("It is not a file."));
}

TEST_F(DataFile, ThatIsADanglingLinkIsRefused) {
  ASSERT_TRUE(QFile::link(path(QStringLiteral("gone")), path()));
  EXPECT_EQ(desk.whyNotOpened(path()), QStringLiteral("No such file or directory"));
}

TEST_F(DataFile, ThatIsALinkToItselfIsRefused) {
  ASSERT_TRUE(QFile::link(path(), path()));
  EXPECT_EQ(desk.whyNotOpened(path()), QStringLiteral("Too many levels of symbolic links"));
}

TEST_F(DataFile, ThatIsANamedPipeIsRefusedAndNotWaitedFor) {
  ASSERT_EQ(::mkfifo(QFile::encodeName(path()).constData(), 0600), 0);
  EXPECT_EQ(desk.whyNotOpened(path()), QStringLiteral("It is not a file."));
}

TEST_F(DataFile, ThatDoesNotExistIsRefused) {
  EXPECT_EQ(desk.whyNotOpened(path()), QStringLiteral("No such file or directory"));
  EXPECT_FALSE(desk.whyNotOpened(QString()).isEmpty());
}

/// What stands under a record's name when it is saved is no file, and stays what it is.
TEST_F(DataFile, IsNotWrittenOverAPipeAFolderOrALinkToItself) {
  testkit::LogRecorder log;
  ASSERT_EQ(::mkfifo(QFile::encodeName(path(QStringLiteral("P"))).constData(), 0600), 0);
  QDir().mkpath(path(QStringLiteral("F")));
  ASSERT_TRUE(QFile::link(path(QStringLiteral("L")), path(QStringLiteral("L"))));
  for (const char* name : {"P", "F", "L"}) {
    desk.alerts.shown.clear();
    GrowthDocument& document = desk.newRecord(QString::fromLatin1(name));
    document.saveDocument();
    EXPECT_TRUE(document.isDocumentEdited()) << name;
    ASSERT_EQ(desk.alerts.shown.size(), 1) << name;
    EXPECT_EQ(desk.alerts.shown.first().messageText,
              QStringLiteral("The record '%1.growth' could not be saved.").arg(QString::fromLatin1(name)));
    desk.desktop.runLoop.settle();
  }
  // Nor when the user has agreed in the panel to replace it.
  desk.alerts.shown.clear();
  GrowthDocument& confirmed = desk.newRecord(QStringLiteral("C"));
  desk.desktop.defaults.setObject(false, QStringLiteral("Auto Save"));
  desk.desktop.panels.expectSave(QUrl::fromLocalFile(path(QStringLiteral("P"))));
  confirmed.saveDocument();
  ASSERT_EQ(desk.alerts.shown.size(), 1);
  EXPECT_TRUE(desk.alerts.shown.first().informativeText.startsWith(QStringLiteral("It is not a file.")));
  struct stat status {};
  ASSERT_EQ(::stat(QFile::encodeName(path(QStringLiteral("P"))).constData(), &status), 0);
  EXPECT_TRUE(S_ISFIFO(status.st_mode));
  EXPECT_TRUE(QFileInfo(path(QStringLiteral("F"))).isDir());
  EXPECT_TRUE(QFileInfo(path(QStringLiteral("L"))).isSymLink());
}

}  // namespace
