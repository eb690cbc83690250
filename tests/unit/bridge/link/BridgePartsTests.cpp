// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <limits>

#include "bridge/link/LinkDates.h"
#include "bridge/link/LinkReply.h"
#include "bridge/link/LinkRequest.h"
#include "bridge/cli/ReplyFolder.h"
#include "tests/integration/link/LinkTesting.h"

using namespace link_testing;

namespace {

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

QByteArray contentsOf(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QVariantMap reply() {
  return {{text("Identifier"), text("12-345-6")},
          {text("Name"), text("Jörg")},
          {text("DateOfBirth"), QDateTime(QDate(2019, 3, 14), QTime(12, 0)).toUTC()},
          {text("DateOfStudy"), QDateTime(QDate(2024, 5, 2), QTime(12, 0)).toUTC()},
          {text("OsiriXStudyID"), text("1.2.3")},
          {text("StudyDescription"), text("Growth Chart")},
          {text("JPEG"), noise(100)}};
}

}  // namespace

TEST(LinkDates, KeepTheCalendarDayInEveryTimeZone) {
  struct Zone {
    const char* name;
    int hoursInJanuary2024;
  };
  const Zone zones[] = {
      {"UTC", 0},          {"Europe/Berlin", 1},     {"America/Los_Angeles", -8}, {"America/Sao_Paulo", -3},
      {"Africa/Cairo", 2}, {"Australia/Sydney", 11}, {"Pacific/Kiritimati", 14},  {"Pacific/Pago_Pago", -11}};
  // Among them days on which clocks change, at midnight too, and days of local mean time.
  const char* const days[] = {"1890-01-01", "1945-05-24", "1999-12-31", "2018-11-04",
                              "2019-03-14", "2019-03-31", "2024-02-29", "2024-04-26",
                              "2024-10-27", "2035-01-01", "2099-12-31", "9999-12-31"};
  for (const Zone& zone : zones) {
    const TimeZone guard(zone.name);
    ASSERT_EQ(QDateTime(QDate(2024, 1, 15), QTime(12, 0)).offsetFromUtc(), zone.hoursInJanuary2024 * 3600)
        << zone.name;
    for (const char* day : days) {
      const auto noon = bridge::noonOfDay(text(day));
      ASSERT_TRUE(noon) << zone.name << " " << day;
      EXPECT_EQ(noon->time(), QTime(12, 0));
      const QDateTime arrived = QDateTime::fromMSecsSinceEpoch(noon->toMSecsSinceEpoch(), Qt::UTC);
      EXPECT_EQ(bridge::localDay(arrived), text(day)) << zone.name;
    }
  }
}

TEST(LinkDates, KeepTheCalendarDayBetweenNeighbouringTimeZones) {
  struct Row {
    const char* sender;
    const char* receiver;
  };
  const Row rows[] = {{"UTC", "Australia/Sydney"},
                      {"UTC", "Pacific/Pago_Pago"},
                      {"Europe/Berlin", "America/Los_Angeles"},
                      {"America/Los_Angeles", "Europe/Berlin"}};
  for (const Row& row : rows) {
    qint64 travelling = 0;
    {
      const TimeZone zone(row.sender);
      travelling = bridge::noonOfDay(text("2019-03-14"))->toMSecsSinceEpoch();
    }
    const TimeZone zone(row.receiver);
    EXPECT_EQ(bridge::localDay(QDateTime::fromMSecsSinceEpoch(travelling, Qt::UTC)), text("2019-03-14"))
        << row.sender << " to " << row.receiver;
  }
}

TEST(LinkDates, RefuseADayThatTheTimeZoneSkipped) {
  const TimeZone zone("Pacific/Apia");
  EXPECT_TRUE(bridge::noonOfDay(text("2011-12-29")));
  EXPECT_FALSE(bridge::noonOfDay(text("2011-12-30")));
  EXPECT_TRUE(bridge::noonOfDay(text("2011-12-31")));
}

TEST(LinkDates, RefuseWhatIsNoDay) {
  for (const char* day :
       {"", "2019", "2019-3-14", "2019-03-14 ", "2019-03-14T00:00", "14.03.2019", "2019-02-29", "2019-13-01",
        "2019-00-10", "0000-01-01", "２０１９-03-14", "20190314", "-019-03-14"}) {
    EXPECT_FALSE(bridge::noonOfDay(text(day))) << day;
  }
}

TEST(LinkRequest, TakesEveryKeyOfTheWireFromJson) {
  const bridge::RequestResult study = bridge::studyFromJson(
      R"({"Identifier":"12/345/6","Name":null,"DateOfStudy":"2024-05-02","OsiriXStudyID":{"a":[1,0.5,true,"x"]}})");
  ASSERT_TRUE(study.ok());
  const bridge::RequestResult request = bridge::linkRequest(study.values);
  ASSERT_TRUE(request.ok()) << qPrintable(request.error);
  const QVariantMap studyId{{text("a"), QVariantList{qint64(1), 0.5, true, text("x")}}};
  EXPECT_EQ(request.values, (QVariantMap{{text("Identifier"), text("12/345/6")},
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
    const bridge::RequestResult study = bridge::studyFromJson(row.json);
    const bridge::RequestResult request = study.ok() ? bridge::linkRequest(study.values) : study;
    EXPECT_TRUE(request.error.contains(text(row.error))) << row.json << ": " << qPrintable(request.error);
  }
}

TEST(LinkRequest, KnowsABundleIdentifier) {
  for (const char* good : {"org.velmora.growth", "a", "A-1_b.c"})
    EXPECT_TRUE(bridge::isBundleIdentifier(text(good)));
  for (const char* bad : {"", "it's", "a b", "a\n", "ö", "a/b"})
    EXPECT_FALSE(bridge::isBundleIdentifier(text(bad)));
}

TEST(LinkReply, BecomesJsonWithoutTheChart) {
  const TimeZone zone("Europe/Berlin");
  const QJsonObject json = bridge::jsonOf(reply());
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
  EXPECT_EQ(bridge::summaryOf(reply(), text("0001"), arrival),
            text("0001\t2024-05-02T09:30:01.005\t12-345-6\tGrowth Chart\t100 bytes\t1.2.3"));
  QVariantMap hostile = reply();
  hostile.insert(text("Identifier"), text("1\n0002\t\\\x1b[2J\u2028"));
  hostile.insert(text("OsiriXStudyID"), QVariantList{qint64(1), text("a\nb")});
  EXPECT_EQ(bridge::summaryOf(hostile, text("0001"), arrival),
            text("0001\t2024-05-02T09:30:01.005\t1\\u000a0002\\u0009\\\\\\u001b[2J\\u2028\tGrowth Chart\t"
                 "100 bytes\t[1,\"a\\\\nb\"]"));
}

TEST(LinkReply, IsComplainedAboutWhereItIsWrong) {
  EXPECT_EQ(bridge::complaintsAbout(reply()), QString());
  EXPECT_EQ(bridge::complaintsAbout({}), text("no Identifier, no StudyDescription, no JPEG"));
  QVariantMap wrong = reply();
  wrong.insert(text("Identifier"), qint64(5));
  wrong.insert(text("DateOfBirth"), text("2019-03-14"));
  wrong.insert(text("JPEG"), text("no bytes"));
  EXPECT_EQ(bridge::complaintsAbout(wrong),
            text("Identifier is not a string, JPEG is not bytes, DateOfBirth is not a date"));
  wrong = reply();
  wrong.insert(text("JPEG"), QByteArray("GIF89a"));
  EXPECT_EQ(bridge::complaintsAbout(wrong), text("JPEG is not a JPEG file image"));
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
  ASSERT_EQ(replies.open(), QString());
  EXPECT_EQ(replies.nextNumber(), text("0008"));
  EXPECT_EQ(replies.write(reply()), QString());
  EXPECT_EQ(replies.write({{text("Identifier"), text("1")}}), QString());
  EXPECT_EQ(contentsOf(folder.filePath(text("0008.jpg"))), noise(100));
  EXPECT_EQ(QJsonDocument::fromJson(contentsOf(folder.filePath(text("0008.json")))).object(),
            bridge::jsonOf(reply()));
  EXPECT_FALSE(folder.exists(text("0009.jpg")));
  EXPECT_TRUE(folder.exists(text("0009.json")));
  EXPECT_EQ(contentsOf(folder.filePath(text("0007.jpg"))), QByteArray());
}

TEST(ReplyFolder, IsWrittenByOneReceiverAtATime) {
  const QTemporaryDir temporary;
  bridge::ReplyFolder first(temporary.path());
  ASSERT_EQ(first.open(), QString());
  bridge::ReplyFolder second(temporary.path());
  EXPECT_TRUE(second.open().startsWith(text("another receiver writes into")));
}

TEST(ReplyFolder, SaysWhyItCannotBeWritten) {
  const QTemporaryDir temporary;
  QFile file(temporary.filePath(text("file")));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  EXPECT_TRUE(bridge::ReplyFolder(file.fileName()).open().startsWith(text("cannot make the folder")));
  bridge::ReplyFolder replies(temporary.filePath(text("gone")));
  ASSERT_EQ(replies.open(), QString());
  ASSERT_TRUE(QDir(temporary.filePath(text("gone"))).removeRecursively());
  EXPECT_TRUE(replies.write(reply()).startsWith(text("cannot write")));
}
