// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "bridge/service/Inbox.h"
#include "bridge/testing/Replies.h"
#include "testing/files/Files.h"
#include "testing/files/FullDisk.h"
#include "testing/files/UnreadableFile.h"
#include "testing/main/Shown.h"

using namespace bridge_testing;
using namespace velmora::testkit;
using namespace bridge;

class InboxTest : public ::testing::Test {
 protected:
  InboxTest() { EXPECT_EQ(spool_.open().error(), QString()); }

  bool arrive(const char* identifier) {
    return inbox_.reply(replyTo(study("1.1", identifier)), Growth, QDateTime::currentDateTime());
  }
  QStringList waiting() const {
    QStringList identifiers;
    for (const SpoolItem& item : spool_.waiting()) identifiers.append(item.identifier);
    return identifiers;
  }
  QStringList replies() const { return fileNames(spool_.folder() + text("/replies")); }

  QTemporaryDir temporary_;
  Spool spool_{temporary_.filePath(text("spool"))};
  RequestHistory requests_{temporary_.filePath(text("requests"))};
  QStringList taken_;
  QStringList log_;
  Inbox inbox_{spool_, requests_, [this](const QString& line) { taken_.append(line); },
               [this](const QString& line) { log_.append(line); }, 3 * (1024 + jpeg().size())};
};

TEST_F(InboxTest, SaysThatAReplyIsOnTheDisk) {
  EXPECT_TRUE(arrive("A"));
  ASSERT_EQ(taken_.size(), 1);
  const SpoolItem item = spool_.waiting().first();
  EXPECT_EQ(taken_.first(), text("taken %1 as %2").arg(item.name, item.sopInstanceUID));
  EXPECT_TRUE(log_.isEmpty());
}

TEST_F(InboxTest, KeepsRepliesInMemoryWhileTheDiskIsFull) {
  EXPECT_TRUE(arrive("A"));
  {
    const FullDisk full(300);
    EXPECT_FALSE(arrive("B"));
    EXPECT_FALSE(arrive("C"));
    EXPECT_FALSE(inbox_.tryAgain());
    EXPECT_EQ(replies().size(), 1) << "nothing half-written is left";
  }
  EXPECT_EQ(inbox_.kept(), 2);
  EXPECT_TRUE(log_.first().startsWith(text("THE SPOOL CANNOT BE WRITTEN")));
  EXPECT_FALSE(arrive("D")) << "beyond the bound";
  EXPECT_TRUE(log_.last().startsWith(text("CHART LOST")));
  EXPECT_TRUE(inbox_.tryAgain());
  EXPECT_FALSE(inbox_.keepsSome());
  EXPECT_EQ(waiting(), (QStringList{text("A"), text("B"), text("C")}));
  EXPECT_TRUE(arrive("E"));
  EXPECT_EQ(taken_.size(), 4);
}

TEST_F(InboxTest, BoundsTheMemoryForTheSmallestChartsAsWell) {
  QVariantMap smallest = replyTo(study("1.1", "A"));
  smallest[text("JPEG")] = QByteArray("\xff");
  const FullDisk full(300);
  for (int i = 0; i < 100; ++i) inbox_.reply(smallest, Growth, QDateTime::currentDateTime());
  EXPECT_LT(inbox_.kept(), 10);
  EXPECT_TRUE(log_.last().startsWith(text("CHART LOST")));
}

TEST_F(InboxTest, WritesARequestWhenTheDiskHasRoomAgain) {
  const QDateTime now = QDateTime::currentDateTimeUtc();
  {
    const FullDisk full(20);
    inbox_.request({{text("Identifier"), text("A")}, {text("OsiriXStudyID"), text("1.2")}}, Growth, now);
    EXPECT_EQ(log_.size(), 1);
    EXPECT_TRUE(inbox_.keepsSome());
    EXPECT_EQ(inbox_.kept(), 0);
  }
  EXPECT_FALSE(inbox_.tryAgain());
  EXPECT_FALSE(inbox_.keepsSome());
  RequestHistory later(temporary_.filePath(text("requests")));
  EXPECT_EQ(later.open(now).error(), QString());
  ASSERT_EQ(later.requests().size(), 1);
  EXPECT_EQ(later.requests().first().studyUID, text("1.2"));
}

TEST_F(InboxTest, LooksForTheRequestOfAReplyInAHistoryThatTheDiskGivesAgain) {
  const QDateTime now = QDateTime::currentDateTimeUtc();
  const QString path = temporary_.filePath(text("history"));
  const QVariantMap request{{text("Identifier"), text("A")}, {text("OsiriXStudyID"), text("1.2")}};
  ASSERT_TRUE(RequestHistory(path).remember(request, Growth, now).ok());
  RequestHistory history(path);
  Inbox inbox(
      spool_, history, [](const QString&) {}, [this](const QString& line) { log_.append(line); }, 1000000);
  {
    const UnreadableFile unreadable(path);
    EXPECT_FALSE(history.open(now).ok());
    EXPECT_TRUE(inbox.keepsSome());
  }
  QVariantMap reply = replyTo(study("1.1", "A"));
  reply.remove(text("OsiriXStudyID"));
  EXPECT_TRUE(inbox.reply(reply, Growth, now));
  const auto stored = spool_.read(spool_.waiting().first().name);
  ASSERT_TRUE(stored.ok() && *stored);
  EXPECT_EQ((*stored)->requestedStudyUID, text("1.2"));
  EXPECT_TRUE(log_.isEmpty());
}

TEST_F(InboxTest, LetsNobodyOvertakeWhoWaitsForTheDisk) {
  {
    const FullDisk full(300);
    EXPECT_FALSE(arrive("A"));
  }
  EXPECT_FALSE(arrive("B"));
  EXPECT_TRUE(inbox_.tryAgain());
  EXPECT_EQ(waiting(), (QStringList{text("A"), text("B")}));
}

TEST_F(InboxTest, RefusesAReplyWithoutAChartWithOneLine) {
  EXPECT_FALSE(inbox_.reply({{text("Identifier"), text("A")}}, Growth, QDateTime::currentDateTime()));
  EXPECT_EQ(log_, QStringList{text("a reply of org.velmora.growth holds no chart and is refused")});
  EXPECT_TRUE(replies().isEmpty());
}

TEST_F(InboxTest, FixesTheRequestThatAReplyAnswersWhenItArrives) {
  const auto request = [&](const char* uid) {
    inbox_.request({{text("Identifier"), text("A")}, {text("OsiriXStudyID"), text(uid)}}, Growth,
                   QDateTime::currentDateTime());
  };
  request("1.1");
  arrive("A");
  request("1.2");
  EXPECT_EQ(spool_.read(spool_.waiting().first().name).value()->requestedStudyUID, text("1.1"));
}
