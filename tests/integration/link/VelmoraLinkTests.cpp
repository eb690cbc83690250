// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The viewer's end as the process that it is.
#include <gtest/gtest.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>

#include "desktop/notifications/QtDistributedNotificationCenter.h"
#include "testing/bus/LinkOnTheBus.h"
#include "testing/bus/Mailbox.h"
#include "testing/bus/PrivateBus.h"
#include "testing/files/EnvironmentVariable.h"
#include "testing/files/Files.h"
#include "testing/files/Noise.h"
#include "testing/main/Shown.h"
#include "testing/process/Program.h"

using namespace velmora::testkit;
using namespace velmora::testkit::bus;
using velmora::desktop::QtDistributedNotificationCenter;

namespace {

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

QByteArray contentsOf(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A command line, its words separated by spaces.
QStringList words(const char* line) { return text(line).split(QLatin1Char(' '), Qt::SkipEmptyParts); }

}  // namespace

class VelmoraLink : public ::testing::Test {
 protected:
  QStringList receive(const char* more) const {
    return QStringList{text("receive"), text("--application"), Growth, text("--out"), out()} + words(more);
  }
  QString out() const { return temporary_.filePath(text("out")); }
  QString file(const char* name) const { return out() + QLatin1Char('/') + text(name); }
  QJsonObject json(const char* name) const {
    return QJsonDocument::fromJson(contentsOf(file(name))).object();
  }

  QString written(const char* name, const QByteArray& contents) const {
    const QString path = temporary_.filePath(text(name));
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(contents);
    return path;
  }

  const velmora::testkit::EnvironmentVariable zone_{
      "TZ", "Europe/Berlin"};  // the programs that are started get it too
  QTemporaryDir temporary_;
  velmora::testkit::PrivateBus bus_;
  QtDistributedNotificationCenter application_{bus_.address()};
};

TEST_F(VelmoraLink, ReceivesAReplyWithEveryKeyAndTheSameBytes) {
  Program program(QStringLiteral(VELMORA_LINK), bus_.environment());
  program.start(receive("--count 1"));
  ASSERT_TRUE(program.readLine().startsWith(text("listening for org.velmora.growth")));

  const QByteArray jpeg = noise(3'000'000);
  application_.postNotificationName(GrowthLink, Reply,
                                    {{text("Identifier"), text("12-345-6")},
                                     {text("Name"), text("Jörg")},
                                     {text("DateOfBirth"), QDateTime(QDate(2019, 3, 14), QTime(12, 0))},
                                     {text("DateOfStudy"), QDateTime(QDate(2024, 5, 2), QTime(12, 0))},
                                     {text("OsiriXStudyID"), text("1.2.3")},
                                     {text("StudyDescription"), text("Growth Chart")},
                                     {text("JPEG"), jpeg}});
  ASSERT_EQ(program.finish(), 0) << qPrintable(program.errors());

  EXPECT_EQ(contentsOf(file("0001.jpg")), jpeg);
  const QJsonObject expected{
      {text("Identifier"), text("12-345-6")},
      {text("Name"), text("Jörg")},
      {text("DateOfBirth"),
       QJsonObject{{text("date"), text("2019-03-14")}, {text("instant"), text("2019-03-14T11:00:00.000Z")}}},
      {text("DateOfStudy"),
       QJsonObject{{text("date"), text("2024-05-02")}, {text("instant"), text("2024-05-02T10:00:00.000Z")}}},
      {text("OsiriXStudyID"), text("1.2.3")},
      {text("StudyDescription"), text("Growth Chart")}};
  EXPECT_EQ(json("0001.json"), expected);
  const QRegularExpression line(
      text("\\A0001\t\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}\t12-345-6\t"
           "Growth Chart\t3000000 bytes\t1\\.2\\.3\n\\z"));
  EXPECT_TRUE(line.match(program.output()).hasMatch()) << qPrintable(program.output());
  EXPECT_EQ(program.errors(), QString());
}

TEST_F(VelmoraLink, PrintsEachReplyAsItArrivesAndKeepsTheirOrder) {
  Program program(QStringLiteral(VELMORA_LINK), bus_.environment());
  program.start(receive("--count 3"));
  ASSERT_TRUE(program.readLine().startsWith(text("listening")));
  for (int i = 1; i <= 3; ++i) {
    const QString identifier = text("patient %1").arg(i);
    application_.postNotificationName(GrowthLink, Reply,
                                      {{text("Identifier"), identifier}, {text("JPEG"), noise(100 * i)}});
    EXPECT_TRUE(program.readLine().contains(identifier));
    EXPECT_EQ(contentsOf(file(qPrintable(text("000%1.jpg").arg(i)))), noise(100 * i));
  }
  EXPECT_EQ(program.finish(), 0);
}

TEST_F(VelmoraLink, WritesAReplyWithoutAChartOrWithWrongTypesAsFarAsItGoes) {
  Program program(QStringLiteral(VELMORA_LINK), bus_.environment());
  program.start(receive("--count 3"));
  ASSERT_TRUE(program.readLine().startsWith(text("listening")));
  application_.postNotificationName(GrowthLink, Reply, {});
  application_.postNotificationName(GrowthLink, Reply,
                                    {{text("Identifier"), 7}, {text("JPEG"), text("no bytes")}});
  application_.postNotificationName(GrowthLink, Reply,
                                    {{text("Identifier"), text("1")},
                                     {text("StudyDescription"), text("d")},
                                     {text("JPEG"), QByteArray("GIF89a")}});
  ASSERT_EQ(program.finish(), 0);
  const QStringList lines = program.output().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
  ASSERT_EQ(lines.size(), 3);
  EXPECT_TRUE(lines.at(0).endsWith(text("\tno Identifier, no StudyDescription, no JPEG")));
  EXPECT_TRUE(
      lines.at(1).endsWith(text("\tIdentifier is not a string, no StudyDescription, JPEG is not bytes")));
  EXPECT_TRUE(lines.at(2).endsWith(text("\tJPEG is not a JPEG file image")));
  EXPECT_EQ(json("0001.json"), QJsonObject());
  EXPECT_EQ(json("0002.json"), (QJsonObject{{text("Identifier"), 7}, {text("JPEG"), text("no bytes")}}));
  EXPECT_FALSE(QFile::exists(file("0001.jpg")));
  EXPECT_FALSE(QFile::exists(file("0002.jpg")));
  EXPECT_EQ(contentsOf(file("0003.jpg")), QByteArray("GIF89a"));
}

TEST_F(VelmoraLink, CountsOnFromAnEarlierRun) {
  for (int run = 1; run <= 2; ++run) {
    Program program(QStringLiteral(VELMORA_LINK), bus_.environment());
    program.start(receive("--count 1"));
    ASSERT_TRUE(program.readLine().startsWith(text("listening")));
    application_.postNotificationName(GrowthLink, Reply, {{text("JPEG"), noise(run)}});
    EXPECT_EQ(program.finish(), 0);
  }
  EXPECT_EQ(velmora::testkit::fileNames(out()),
            (QStringList{text("0001.jpg"), text("0001.json"), text("0002.jpg"), text("0002.json")}));
}

TEST_F(VelmoraLink, HearsNeitherRequestsNorOtherApplicationsReplies) {
  Program program(QStringLiteral(VELMORA_LINK), bus_.environment());
  program.start(receive("--count 1"));
  ASSERT_TRUE(program.readLine().startsWith(text("listening")));
  application_.postNotificationName(GrowthLink, Request, {{text("Identifier"), text("a request")}});
  application_.postNotificationName(text("org.velmora.hips.osirixLink"), Reply,
                                    {{text("Identifier"), text("hips")}});
  application_.postNotificationName(GrowthLink, Reply, {{text("Identifier"), text("mine")}});
  EXPECT_EQ(program.finish(), 0);
  EXPECT_EQ(json("0001.json").value(text("Identifier")), QJsonValue(text("mine")));
}

TEST_F(VelmoraLink, EndsWithStatusThreeWhenTimeRunsOut) {
  Program program(QStringLiteral(VELMORA_LINK), bus_.environment());
  EXPECT_EQ(program.run(receive("--count 1 --timeout 0.05")), 3);
  EXPECT_EQ(velmora::testkit::fileNames(out()), QStringList());
}

TEST_F(VelmoraLink, EndsWhenItCannotWrite) {
  Program program(QStringLiteral(VELMORA_LINK), bus_.environment());
  program.start(receive(""));
  ASSERT_TRUE(program.readLine().startsWith(text("listening")));
  ASSERT_TRUE(QDir(out()).removeRecursively());
  application_.postNotificationName(GrowthLink, Reply, {{text("JPEG"), noise(10)}});
  EXPECT_EQ(program.finish(), 1);
  EXPECT_TRUE(program.errors().startsWith(text("velmora-link: cannot write")))
      << qPrintable(program.errors());
}

TEST_F(VelmoraLink, SendsAStudyFromAFileWithOptionsBeforeIt) {
  QObject observer;
  Mailbox mailbox;
  application_.addObserver(&observer, GrowthLink, Request, mailbox.handler());
  ASSERT_TRUE(application_.flush());
  const QString study =
      written("study.json",
              R"({"Identifier":"1","Name":"From the file","DateOfBirth":"2019-03-14","OsiriXStudyID":[7]})");
  Program program(QStringLiteral(VELMORA_LINK), bus_.environment());
  ASSERT_EQ(program.run({text("request"), text("--application"), Growth, text("--json"), study,
                         text("--name"), text("From the options")}),
            0)
      << qPrintable(program.errors());
  EXPECT_EQ(mailbox.takeDetails(),
            (QVariantMap{{text("Identifier"), text("1")},
                         {text("Name"), text("From the options")},
                         {text("DateOfBirth"), QDateTime(QDate(2019, 3, 14), QTime(12, 0)).toUTC()},
                         {text("OsiriXStudyID"), QVariantList{qint64(7)}}}));
}

TEST_F(VelmoraLink, SendsTheCalendarDayOfItsOwnTimeZone) {
  QObject observer;
  Mailbox mailbox;
  application_.addObserver(&observer, GrowthLink, Request, mailbox.handler());
  ASSERT_TRUE(application_.flush());
  QProcessEnvironment elsewhere = bus_.environment();
  elsewhere.insert(text("TZ"), text("America/Los_Angeles"));
  ASSERT_EQ(
      Program(QStringLiteral(VELMORA_LINK), elsewhere)
          .run(words("request --application org.velmora.growth --identifier 1 --birth-date 2019-03-14")),
      0);
  // Noon there, by then under daylight saving time.
  const QDateTime date = mailbox.takeDetails().value(text("DateOfBirth")).toDateTime();
  EXPECT_EQ(date, QDateTime(QDate(2019, 3, 14), QTime(19, 0), Qt::UTC));
  EXPECT_EQ(date.toLocalTime().date(), QDate(2019, 3, 14));
}

TEST_F(VelmoraLink, RefusesToSendWhatWouldNotArriveWhole) {
  const QByteArray deep = QByteArray(100, '[') + QByteArray(100, ']');
  const QString study = written("study.json", R"({"Identifier":"1","OsiriXStudyID":)" + deep + "}");
  Program program(QStringLiteral(VELMORA_LINK), bus_.environment());
  EXPECT_EQ(program.run({text("request"), text("--application"), Growth, text("--json"), study}), 1);
  EXPECT_TRUE(program.errors().contains(text("nested too deeply"))) << qPrintable(program.errors());
}

TEST_F(VelmoraLink, SaysWhatIsWrongWithItsArguments) {
  const QString bad = written("bad.json", "{\"Identifier\"");
  struct Row {
    QStringList arguments;
    const char* error;
  };
  const Row rows[] = {
      {{}, "no command"},
      {words("fetch"), "unknown command: fetch"},
      {words("request"), "--application is missing"},
      {words("request --application it's --identifier 1"), "is not a bundle identifier"},
      {words("request --application a"), "identifier is missing"},
      {words("request --application a --identifier"), "identifier"},
      {words("request --application a --identifier 1 --sex f"), "sex"},
      {words("request --application a --identifier 1 more"), "unexpected argument: more"},
      {words("request --application a --identifier 1 --birth-date 14.3.2019"), "DateOfBirth"},
      {words("request --application a --identifier 1 --study-date 2023-02-29"), "DateOfStudy"},
      {{text("request"), text("--application"), text("a"), text("--json"), bad}, "is not JSON"},
      {{text("request"), text("--application"), text("a"), text("--json"), bad + text(".none")},
       "cannot read"},
      {{text("request"), text("--application"), text("a"), text("--json"), temporary_.path()}, "cannot read"},
      {words("receive --out x"), "--application is missing"},
      {words("receive --application a"), "--out is missing"},
      {words("receive --application a --out x --count 0"), "--count"},
      {words("receive --application a --out x --count many"), "--count"},
      {words("receive --application a --out x --timeout 0"), "--timeout"},
      {words("receive --application a --out x --timeout nan"), "--timeout"},
      {words("receive --application a --out x --timeout soon"), "--timeout"},
  };
  for (const Row& row : rows) {
    Program program(QStringLiteral(VELMORA_LINK), bus_.environment());
    EXPECT_EQ(program.run(row.arguments), 2) << qPrintable(row.arguments.join(QLatin1Char(' ')));
    EXPECT_TRUE(program.errors().startsWith(text("velmora-link: "))) << qPrintable(program.errors());
    EXPECT_TRUE(program.errors().contains(text(row.error))) << qPrintable(program.errors());
    EXPECT_EQ(program.output(), QString());
  }
}

TEST_F(VelmoraLink, HelpsWithEveryCommand) {
  for (const char* line : {"--help", "-h", "request --help", "receive -h"}) {
    Program program(QStringLiteral(VELMORA_LINK), bus_.environment());
    EXPECT_EQ(program.run(words(line)), 0);
    EXPECT_TRUE(program.output().startsWith(text("Usage:"))) << line;
    EXPECT_EQ(program.errors(), QString());
  }
}

TEST_F(VelmoraLink, FailsWithoutASessionBus) {
  QProcessEnvironment environment = bus_.environment();
  environment.insert(text("DBUS_SESSION_BUS_ADDRESS"),
                     text("unix:path=") + temporary_.filePath(text("none")));
  Program request(QStringLiteral(VELMORA_LINK), environment);
  EXPECT_EQ(request.run(words("request --application a --identifier 1")), 1);
  EXPECT_TRUE(request.errors().contains(text("No session bus"))) << qPrintable(request.errors());
  EXPECT_EQ(request.output(), QString());
  Program receiver(QStringLiteral(VELMORA_LINK), environment);
  EXPECT_EQ(receiver.run(receive("")), 1);
  EXPECT_TRUE(receiver.errors().contains(text("No session bus"))) << qPrintable(receiver.errors());
  EXPECT_EQ(receiver.output(), QString());
}
