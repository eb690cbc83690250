// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <limits>

#include "bridge/cli/ReplyFolder.h"
#include "bridge/cli/ReplySummary.h"
#include "bridge/cli/StudyJson.h"
#include "link/protocol/LinkPayload.h"
#include "testing/bus/LinkOnTheBus.h"
#include "testing/files/EnvironmentVariable.h"
#include "testing/files/Files.h"
#include "testing/files/Noise.h"
#include "testing/main/Shown.h"

using namespace velmora::testkit;
using namespace velmora::testkit::bus;

namespace {

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

}  // namespace

TEST(LinkRequest, TakesEveryKeyOfTheWireFromJson) {
  const auto study = bridge::studyFromJson(
      R"({"Identifier":"12/345/6","Name":null,"DateOfStudy":"2024-05-02","OsiriXStudyID":{"a":[1,0.5,true,"x"]}})");
  ASSERT_TRUE(study.ok());
  const auto request = velmora::link::requestPayload(*study);
  ASSERT_TRUE(request.ok()) << qPrintable(request.error());
  const QVariantMap studyId{{text("a"), QVariantList{qint64(1), 0.5, true, text("x")}}};
  EXPECT_EQ(*request, (QVariantMap{{text("Identifier"), text("12/345/6")},
                                   {text("DateOfStudy"), QDateTime(QDate(2024, 5, 2), QTime(12, 0))},
                                   {text("OsiriXStudyID"), studyId}}));
}

TEST(LinkRequest, SaysWhatIsWrongWithAStudy) {
  struct Row {
    const char* json;
    const char* error;
  };
  const Row rows[] = {
      {R"({})", "identifier is missing"},
      {R"({"Identifier":null})", "identifier is missing"},
      {R"({"Identifier":""})", "identifier is empty"},
      {R"({"Identifier":5})", "Identifier is not a string"},
      {R"({"Identifier":"1","Name":[]})", "Name is not a string"},
      {R"({"Identifier":"1","DateOfBirth":"yesterday"})", "DateOfBirth: \"yesterday\" is not a date"},
      {R"({"Identifier":"1","DateOfStudy":20240502})", "DateOfStudy"},
      {R"({"Identifier":"1","DateofBirth":"2019-03-14"})", "no key \"DateofBirth\""},
      {R"([1])", "not a JSON object"},
      {R"({"Identifier":)", "not JSON"},
      {"", "not JSON"},
  };
  for (const Row& row : rows) {
    const auto study = bridge::studyFromJson(row.json);
    const auto request = study ? velmora::link::requestPayload(*study) : study;
    EXPECT_TRUE(request.error().contains(text(row.error))) << row.json << ": " << qPrintable(request.error());
  }
}

TEST(LinkReply, BecomesJsonWithoutTheChart) {
  const velmora::testkit::EnvironmentVariable zone("TZ", "Europe/Berlin");
  const QJsonObject json = bridge::jsonOf(replyWithEveryKey());
  EXPECT_EQ(QJsonDocument(json).toJson(QJsonDocument::Compact),
            QByteArray(R"({"DateOfBirth":{"date":"2019-03-14","instant":"2019-03-14T11:00:00.000Z"},)"
                       R"("DateOfStudy":{"date":"2024-05-02","instant":"2024-05-02T10:00:00.000Z"},)"
                       R"("Identifier":"12-345-6","Name":"Jörg","OsiriXStudyID":"1.2.3",)"
                       R"("StudyDescription":"Growth Chart"})"));
}

TEST(LinkReply, KeepsNumbersBytesAndNestedValuesInJson) {
  const QVariantMap values{{text("bytes"), QByteArray("\xff\0", 2)},
                           {text("infinite"), std::numeric_limits<double>::infinity()},
                           {text("list"), QVariantList{true, QVariantMap{{text("k"), 0.5}}}},
                           {text("whole"), std::numeric_limits<qint64>::max()}};
  EXPECT_EQ(QJsonDocument(bridge::jsonOf(values)).toJson(QJsonDocument::Compact),
            QByteArray(R"({"bytes":{"base64":"/wA="},"infinite":"inf","list":[true,{"k":0.5}],)"
                       R"("whole":9223372036854775807})"));
}

TEST(LinkReply, IsSummedUpInOneLine) {
  const QDateTime arrival(QDate(2024, 5, 2), QTime(9, 30, 1, 5));
  EXPECT_EQ(bridge::summaryOf(replyWithEveryKey(), text("0001"), arrival),
            text("0001\t2024-05-02T09:30:01.005\t12-345-6\tGrowth Chart\t100 bytes\t1.2.3"));
  QVariantMap hostile = replyWithEveryKey();
  hostile.insert(text("Identifier"), text("1\n0002\t\\\x1b[2J\u2028\u202e"));
  hostile.insert(text("OsiriXStudyID"), QVariantList{qint64(1), text("a\nb")});
  EXPECT_EQ(
      bridge::summaryOf(hostile, text("0001"), arrival),
      text("0001\t2024-05-02T09:30:01.005\t1\\u000a0002\\u0009\\\\\\u001b[2J\\u2028\\u202e\tGrowth Chart\t"
           "100 bytes\t[1,\"a\\\\nb\"]"));
}

TEST(ReplyFolder, CountsOnFromWhatIsThereAndOverwritesNothing) {
  const QTemporaryDir temporary;
  const QDir folder(temporary.filePath(text("a/b")));
  ASSERT_TRUE(folder.mkpath(text(".")));
  for (const char* name : {"0003.json", "0007.jpg", "9999999999999.jpg", "0900.txt", "x0800.jpg"}) {
    QFile file(folder.filePath(text(name)));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  }
  bridge::ReplyFolder replies(folder.path());
  ASSERT_EQ(replies.open().error(), QString());
  EXPECT_EQ(replies.nextNumber(), text("0008"));
  EXPECT_EQ(replies.write(replyWithEveryKey()).error(), QString());
  EXPECT_EQ(replies.write({{text("Identifier"), text("1")}}).error(), QString());
  EXPECT_EQ(velmora::testkit::readFile(folder.filePath(text("0008.jpg"))), noise(100));
  EXPECT_EQ(QJsonDocument::fromJson(velmora::testkit::readFile(folder.filePath(text("0008.json")))).object(),
            bridge::jsonOf(replyWithEveryKey()));
  EXPECT_FALSE(folder.exists(text("0009.jpg")));
  EXPECT_TRUE(folder.exists(text("0009.json")));
  EXPECT_EQ(velmora::testkit::readFile(folder.filePath(text("0007.jpg"))), QByteArray());
}

TEST(ReplyFolder, IsWrittenByOneReceiverAtATime) {
  const QTemporaryDir temporary;
  bridge::ReplyFolder first(temporary.path());
  ASSERT_EQ(first.open().error(), QString());
  bridge::ReplyFolder second(temporary.path());
  EXPECT_TRUE(second.open().error().startsWith(text("another receiver writes into")));
}

TEST(ReplyFolder, SaysWhyItCannotBeWritten) {
  const QTemporaryDir temporary;
  QFile file(temporary.filePath(text("file")));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  EXPECT_TRUE(bridge::ReplyFolder(file.fileName()).open().error().startsWith(text("cannot make the folder")));
  bridge::ReplyFolder replies(temporary.filePath(text("gone")));
  ASSERT_EQ(replies.open().error(), QString());
  ASSERT_TRUE(QDir(temporary.filePath(text("gone"))).removeRecursively());
  EXPECT_TRUE(replies.write(replyWithEveryKey()).error().startsWith(text("cannot write")));
}
