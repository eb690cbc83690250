// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include "bridge/spool/RequestHistory.h"
#include "bridge/testing/Replies.h"
#include "testing/files/Files.h"
#include "testing/files/UnreadableFile.h"
#include "testing/main/Shown.h"

using namespace bridge_testing;
using namespace velmora::testkit;
using namespace bridge;

class RequestHistoryTest : public ::testing::Test {
 protected:
  void hear(const char* identifier, const char* uid, QDate day, int minute,
            const QString& application = Growth) {
    QVariantMap request{{text("Identifier"), text(identifier)}, {text("OsiriXStudyID"), text(uid)}};
    if (day.isValid()) request.insert(text("DateOfStudy"), noon(day));
    EXPECT_EQ(history_.remember(request, application, start_.addSecs(60 * minute)).error(), QString());
  }
  SpooledReply matched(const char* identifier, QDate day, const QString& application = Growth,
                       int minute = 100) {
    SpooledReply reply;
    reply.identifier = text(identifier);
    reply.studyDay = day;
    reply.application = application;
    reply.arrival = start_.addSecs(60 * minute);
    history_.matchToRequest(reply);
    return reply;
  }

  const QDate day_{2024, 5, 2};
  const QDateTime start_{day_, QTime(8, 0), Qt::UTC};
  QTemporaryDir temporary_;
  RequestHistory history_{temporary_.filePath(text("requests"))};
};

TEST_F(RequestHistoryTest, MatchesTheLatestRequestForThePatient) {
  hear("P-1", "1.1", day_, 0);
  hear("P-1", "1.2", day_, 1);
  hear("P-2", "1.3", day_, 2);
  EXPECT_EQ(matched("P-1", day_).requestedStudyUID, text("1.2"));
  EXPECT_EQ(matched("P-3", day_).requestedStudyUID, QString());
}

TEST_F(RequestHistoryTest, TakesASlashForAHyphen) {
  hear("12/345/6", "1.1", day_, 0);
  EXPECT_EQ(matched("12-345-6", day_).requestedStudyUID, text("1.1"));
}

TEST_F(RequestHistoryTest, TakesCapitalsForSmallLettersButNotSmallLettersForCapitals) {
  hear("p/1a", "1.1", day_, 0);
  hear("P-2B", "1.2", day_, 1);
  EXPECT_EQ(matched("P-1A", day_).requestedStudyUID, text("1.1"));
  EXPECT_EQ(matched("p-2b", day_).requestedStudyUID, QString());
}

TEST_F(RequestHistoryTest, KeepsApplicationsApart) {
  hear("P-1", "1.1", day_, 0, Growth);
  hear("P-1", "1.2", day_, 1, Vision);
  EXPECT_EQ(matched("P-1", day_, Growth).requestedStudyUID, text("1.1"));
  EXPECT_EQ(matched("P-1", day_, Vision).requestedStudyUID, text("1.2"));
}

TEST_F(RequestHistoryTest, LetsTheLatestRequestOfTheLastDayDecideWhateverTheDays) {
  hear("P-1", "1.1", day_, 0);
  hear("P-1", "1.2", day_.addDays(1), 1);
  EXPECT_EQ(matched("P-1", day_).requestedStudyUID, text("1.2"));
  EXPECT_EQ(matched("P-1", day_.addDays(-7)).requestedStudyUID, text("1.2"));
  EXPECT_EQ(matched("P-1", QDate()).requestedStudyUID, text("1.2"));
  hear("P-1", "1.3", QDate(), 2);
  EXPECT_EQ(matched("P-1", day_).requestedStudyUID, text("1.3"));
}

TEST_F(RequestHistoryTest, CountsAnOlderRequestOnlyForItsOwnDay) {
  const int later = 25 * 60;
  hear("P-1", "1.1", day_, 0);
  hear("P-1", "1.2", day_, 1);
  hear("P-1", "1.3", day_.addDays(1), 2);
  hear("P-1", "1.4", QDate(), 3);
  EXPECT_EQ(matched("P-1", day_, Growth, later).requestedStudyUID, text("1.2"));
  EXPECT_EQ(matched("P-1", day_.addDays(1), Growth, later).requestedStudyUID, text("1.3"));
  EXPECT_EQ(matched("P-1", day_.addDays(2), Growth, later).requestedStudyUID, QString());
  EXPECT_EQ(matched("P-1", QDate(), Growth, later).requestedStudyUID, QString());
}

TEST_F(RequestHistoryTest, TakesTheLatestThatWasHeardWhenTheClockIsSetBack) {
  hear("P-1", "1.1", day_, 0);
  hear("P-1", "1.2", day_.addDays(1), 60);
  EXPECT_EQ(matched("P-1", day_, Growth, 1).requestedStudyUID, text("1.2"));
  // By years: nothing tells how long ago it was.
  hear("P-1", "1.3", day_.addDays(1), 60 * 24 * 365);
  EXPECT_EQ(matched("P-1", day_.addDays(3), Growth, 1).requestedStudyUID, QString());
}

TEST_F(RequestHistoryTest, GoesNoFurtherBackThanARequestThatNamedNoStudy) {
  hear("P-1", "1.1", day_, 0);
  hear("P-1", "", day_, 1);
  EXPECT_EQ(matched("P-1", day_).requestedStudyUID, QString());
}

TEST_F(RequestHistoryTest, AnswersADaylessReplyOnlyWithinADay) {
  hear("P-1", "1.1", day_, 0);
  EXPECT_EQ(matched("P-1", QDate(), Growth, 23 * 60).requestedStudyUID, text("1.1"));
  EXPECT_EQ(matched("P-1", QDate(), Growth, 25 * 60).requestedStudyUID, QString());
}

TEST_F(RequestHistoryTest, RemembersAcrossARestart) {
  hear("P-1", "1.1", day_, 0);
  hear("P-2", "1.2", QDate(), 1);
  RequestHistory later(temporary_.filePath(text("requests")));
  EXPECT_EQ(later.open(start_).error(), QString());
  EXPECT_EQ(later.requests(), history_.requests());
}

TEST_F(RequestHistoryTest, ForgetsWhatIsTooOldWhenItIsOpened) {
  hear("P-1", "1.1", day_, 0);
  hear("P-2", "1.2", day_, 60 * 24 * 2);
  RequestHistory later(temporary_.filePath(text("requests")));
  EXPECT_EQ(later.open(start_.addDays(91)).error(), QString());
  ASSERT_EQ(later.requests().size(), 1);
  EXPECT_EQ(later.requests().first().identifier, text("P-2"));
  EXPECT_FALSE(readFile(temporary_.filePath(text("requests"))).contains("P-1")) << "on the disk as well";
}

TEST_F(RequestHistoryTest, IsBoundedInNumberAndAge) {
  hear("P-1", "1.1", day_, 0);
  hear("P-2", "1.2", day_, 91 * 24 * 60);
  EXPECT_EQ(history_.requests().size(), 1);
  for (int i = 0; i < 30; ++i) hear("P-3", "1.3", day_, 91 * 24 * 60);
  EXPECT_EQ(history_.requests().size(), 31);
}

TEST_F(RequestHistoryTest, PassesOverRequestsThatNameNoPatient) {
  for (const QVariant& identifier :
       {QVariant(), QVariant(7), QVariant(text(" ")), QVariant(QString(300, QLatin1Char('1')))}) {
    EXPECT_EQ(history_.remember({{text("Identifier"), identifier}}, Growth, start_).error(), QString());
  }
  EXPECT_TRUE(history_.requests().isEmpty());
}

TEST_F(RequestHistoryTest, IsReadLaterWhenTheDiskDoesNotGiveItsFile) {
  hear("P-1", "1.1", day_, 0);
  const QString path = temporary_.filePath(text("requests"));
  RequestHistory later(path);
  const QVariantMap request{{text("Identifier"), text("P-2")}, {text("OsiriXStudyID"), text("1.2")}};
  {
    const UnreadableFile unreadable(path);
    EXPECT_FALSE(later.open(start_).ok());
    EXPECT_FALSE(later.isSaved());
    EXPECT_FALSE(later.remember(request, Growth, start_).ok());
    EXPECT_TRUE(unreadable.isUntouched());
  }
  EXPECT_TRUE(later.save().ok());
  EXPECT_TRUE(later.isSaved());
  RequestHistory again(path);
  EXPECT_TRUE(again.open(start_).ok());
  ASSERT_EQ(again.requests().size(), 2);
  EXPECT_EQ(again.requests().first().studyUID, text("1.1"));
  EXPECT_EQ(again.requests().last().studyUID, text("1.2"));
}

TEST_F(RequestHistoryTest, StartsAnewWhenItsFileIsDamaged) {
  hear("P-1", "1.1", day_, 0);
  const QString path = temporary_.filePath(text("requests"));
  writeFile(path, readFile(path).chopped(3));
  RequestHistory later(path);
  EXPECT_TRUE(later.open(start_).error().endsWith(text("earlier requests are forgotten")));
  EXPECT_TRUE(later.requests().isEmpty());
  EXPECT_TRUE(QFile::exists(path + text(".damaged")));
}
