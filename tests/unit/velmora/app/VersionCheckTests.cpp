// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/app/VersionCheck.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>

#include "orv/updates/OrvVersion.h"
#include "testing/main/Shown.h"
#include "testing/standins/TestServices.h"
#include "velmora/resources/SettingsKeys.h"

namespace platform = velmora::platform;
namespace testkit = velmora::testkit;

namespace settings = velmora::settings;
using velmora::versionCheckIsDue;
using velmora::platform::distantPast;

namespace {

constexpr qint64 Day = 86400;  // seconds

const platform::WebAnswer UpToDate{
    QByteArray("<rss xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\"><channel><item>"
               "<sparkle:version>1</sparkle:version></item></channel></rss>")};
const platform::WebAnswer Failure{velmora::base::Failure{"The server could not be reached."}};

const QString Checking = "Checking for new version...";
const QString Successful = "Version check successful...";
const QString Unsuccessful = "Version check unsuccessful...";

class VersionCheck : public testing::Test {
 protected:
  VersionCheck() {
    desktop.defaults.registerDefaults({{settings::AutomaticVersionCheck, false},
                                       {settings::VersionCheckInterval, 0},
                                       {settings::LastVersionCheckDate, distantPast()}});
  }
  void set(bool automatic, qint64 days, const QDateTime& lastCheck) {
    desktop.defaults.setObject(automatic, settings::AutomaticVersionCheck);
    desktop.defaults.setInteger(days, settings::VersionCheckInterval);
    desktop.defaults.setObject(lastCheck, settings::LastVersionCheckDate);
  }
  QDateTime ago(qint64 seconds) const { return desktop.runLoop.now().addSecs(-seconds); }
  QDateTime lastCheck() const { return desktop.defaults.dateForKey(settings::LastVersionCheckDate); }
  /// Starts the application and says whether that started a check.
  bool startChecks() {
    const qsizetype before = desktop.web.requests().size();
    check->autoCheckForNewVersion();
    return desktop.web.requests().size() > before;
  }
  void answer(const platform::WebAnswer& answer) {
    desktop.web.answer(answer);
    desktop.runLoop.settle();
  }
  void expectUpToDate() {
    desktop.alerts.expect({"Growth is up to date", "OK", "", "", "Version 1.0 is the newest one."},
                          platform::AlertDefaultReturn);
  }

  testkit::TestServices desktop{{{"CFBundleName", "Growth"},
                                 {"CFBundleShortVersionString", "1.0"},
                                 {"CFBundleVersion", "1"},
                                 {"SUFeedURL", "https://growth.example/feed"}}};
  OrvVersion orvVersion{desktop.services};
  QStringList statuses;
  int updates = 0;
  std::function<void()> whenUpdated = [] {};
  std::unique_ptr<velmora::VersionCheck> check = std::make_unique<velmora::VersionCheck>(
      desktop.defaults, desktop.notificationCenter, desktop.runLoop, orvVersion,
      [this](const QString& status) { statuses.append(status); },
      [this] {
        ++updates;
        whenUpdated();
      });
};

}  // namespace

TEST(VersionCheckInterval, HasPassedWhenTheDistanceIsGreater) {
  const QDateTime now(QDate(2024, 5, 2), QTime(10, 0), Qt::UTC);
  struct Row {
    qint64 days;
    qint64 milliseconds;  // since the last check
    bool due;
  };
  const Row rows[] = {
      {7, 7 * Day * 1000, false},
      {7, 7 * Day * 1000 + 1, true},
      {7, 7 * Day * 1000 - 1, false},
      {7, -7 * Day * 1000, false},
      {7, -7 * Day * 1000 - 1, true},
      {1, Day * 1000 + 1, true},
      {31, 31 * Day * 1000, false},
      {31, 32 * Day * 1000, true},
      {0, 0, false},
      {0, 1, true},
      {0, -1, true},
      // More seconds than 32 bits hold.
      {50000, 49999 * Day * 1000, false},
      {50000, 50001 * Day * 1000, true},
      {-1, 0, true},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(versionCheckIsDue(row.days, now.addMSecs(-row.milliseconds), now), row.due)
        << row.days << " days, " << row.milliseconds << " ms";
  }
}

TEST(VersionCheckInterval, HasAlwaysPassedWhenThereWasNoCheckYet) {
  const QDateTime now(QDate(2024, 5, 2), QTime(10, 0));
  for (const qint64 days : {0, 1, 7, 31, 365, 36500})
    EXPECT_TRUE(versionCheckIsDue(days, distantPast(), now));
}

TEST(VersionCheckInterval, MayBeAnyNumber) {
  const QDateTime now(QDate(2024, 5, 2), QTime(10, 0));
  for (const qint64 days : {std::numeric_limits<qint64>::max(), std::numeric_limits<qint64>::min()})
    versionCheckIsDue(days, distantPast(), now);
  EXPECT_FALSE(versionCheckIsDue(std::numeric_limits<qint64>::max() / Day, distantPast(), now));
}

TEST_F(VersionCheck, StartsNoneAndShowsNoStatusWhileAutomaticChecksAreOff) {
  for (const QDateTime& last : {distantPast(), ago(0), ago(400 * Day), ago(-400 * Day)}) {
    for (const qint64 days : {0, 1, 7, 31}) {
      set(false, days, last);
      EXPECT_FALSE(startChecks());
    }
  }
  EXPECT_TRUE(statuses.isEmpty());
}

TEST_F(VersionCheck, AsksNothingOfTheWebBeforeTheUserAgreed) {
  EXPECT_FALSE(startChecks()) << "with nothing stored";
  desktop.defaults.setInteger(31, settings::VersionCheckInterval);
  EXPECT_FALSE(startChecks()) << "with the first questions answered by no";
  desktop.defaults.setObject(true, settings::AutomaticVersionCheck);
  EXPECT_TRUE(startChecks());
}

TEST_F(VersionCheck, StartsNone6DaysAnd23HoursAfterTheLastOf7) {
  set(true, 7, ago(6 * Day + 23 * 3600));
  EXPECT_FALSE(startChecks());
  EXPECT_TRUE(statuses.isEmpty());
}

TEST_F(VersionCheck, StartsOneSecondPast7Days) {
  set(true, 7, ago(7 * Day));
  EXPECT_FALSE(startChecks());
  set(true, 7, ago(7 * Day + 1));
  EXPECT_TRUE(startChecks());
}

TEST_F(VersionCheck, StartsWhenTheLastOneIsAYearInTheFuture) {
  set(true, 31, ago(-366 * Day));
  EXPECT_TRUE(startChecks());
}

TEST_F(VersionCheck, StartsAtEveryStartWithAnIntervalOf0) {
  set(true, 0, ago(0));
  EXPECT_FALSE(startChecks()) << "no time has passed";
  desktop.runLoop.advance(0.001);
  EXPECT_TRUE(startChecks());
}

TEST_F(VersionCheck, StartsAtOnceAfterTheFirstQuestions) {
  desktop.defaults.setObject(true, settings::AutomaticVersionCheck);
  desktop.defaults.setInteger(31, settings::VersionCheckInterval);
  EXPECT_TRUE(startChecks());
}

TEST_F(VersionCheck, HonoursAnyNumberOfDays) {
  set(true, 3, ago(3 * Day - 1));
  EXPECT_FALSE(startChecks());
  set(true, 3, ago(3 * Day + 1));
  EXPECT_TRUE(startChecks());
  answer(UpToDate);
  set(true, 0, ago(6 * Day));
  desktop.defaults.setObject("7", settings::VersionCheckInterval);
  EXPECT_FALSE(startChecks()) << "also when it is stored as text";
}

TEST_F(VersionCheck, SaysThatItRunsWhenItIsAutomatic) {
  check->doCheckForNewVersion(true);
  EXPECT_EQ(statuses, QStringList{Checking});
  answer(UpToDate);
  EXPECT_EQ(statuses, (QStringList{Checking, Successful}));
  EXPECT_TRUE(desktop.alerts.shown().isEmpty()) << "nobody has asked";
}

TEST_F(VersionCheck, ShowsNoStatusWhileItRunsForTheUserAndTellsTheResult) {
  check->doCheckForNewVersion(false);
  EXPECT_TRUE(statuses.isEmpty());
  expectUpToDate();
  answer(UpToDate);
  EXPECT_TRUE(desktop.alerts.allCame());
  EXPECT_EQ(statuses, QStringList{Successful});
}

TEST_F(VersionCheck, KeepsTheTimeWhenASuccessEndedAndTellsThePreferences) {
  set(true, 7, distantPast());
  QDateTime seen;
  whenUpdated = [&] { seen = lastCheck(); };
  EXPECT_TRUE(startChecks());
  desktop.runLoop.advance(12);
  EXPECT_EQ(lastCheck(), distantPast());
  answer(UpToDate);
  EXPECT_EQ(lastCheck(), desktop.runLoop.now());
  EXPECT_EQ(updates, 1);
  EXPECT_EQ(seen, desktop.runLoop.now()) << "the preferences read what is stored";
  EXPECT_FALSE(startChecks()) << "and the interval counts from here";
}

TEST_F(VersionCheck, ThatFailsShowsItsStatusAndNothingElse) {
  const QDateTime before = ago(8 * Day);
  set(true, 7, before);
  EXPECT_TRUE(startChecks());
  answer(Failure);
  EXPECT_EQ(statuses, (QStringList{Checking, Unsuccessful}));
  EXPECT_EQ(lastCheck(), before);
  EXPECT_EQ(updates, 0);
  EXPECT_TRUE(desktop.alerts.shown().isEmpty());
  EXPECT_TRUE(startChecks()) << "the next start tries again";
}

TEST_F(VersionCheck, RunsOnceAtAStartAndNotAgain) {
  set(true, 1, distantPast());
  EXPECT_TRUE(startChecks());
  answer(Failure);
  desktop.runLoop.advance(100.0 * Day);
  EXPECT_EQ(desktop.web.requests().size(), 1);
}

TEST_F(VersionCheck, UsedTwiceShowsASuccessTwiceAndKeepsItTwice) {
  check->doCheckForNewVersion(false);
  check->doCheckForNewVersion(false);
  int stored = 0;
  whenUpdated = [&] {
    if (lastCheck() == desktop.runLoop.now()) ++stored;
    desktop.defaults.setObject(distantPast(), settings::LastVersionCheckDate);
  };
  desktop.notificationCenter.postNotificationName("VersionCheckSuccessful");
  EXPECT_EQ(statuses, (QStringList{Successful, Successful}));
  EXPECT_EQ(stored, 2);
}

TEST_F(VersionCheck, HandlesEachResultAsOftenAsItWasUsed) {
  for (int uses = 1; uses <= 3; ++uses) {
    check->doCheckForNewVersion(true);
    statuses.clear();
    answer(Failure);
    EXPECT_EQ(statuses.count(Unsuccessful), uses);
  }
}

TEST_F(VersionCheck, HearsOfChecksThatOthersStartOnceItHasBeenUsed) {
  // As the update button of the preferences does.
  const auto update = [this] {
    expectUpToDate();
    orvVersion.checkVersion(true);
    answer(UpToDate);
  };
  update();
  EXPECT_TRUE(statuses.isEmpty());
  EXPECT_EQ(lastCheck(), distantPast());
  check->doCheckForNewVersion(true);
  answer(Failure);
  statuses.clear();
  update();
  EXPECT_EQ(statuses, QStringList{Successful});
}

TEST_F(VersionCheck, WithoutAnAddressIsUnsuccessful) {
  desktop.mainBundle = platform::Bundle({{"CFBundleName", "Growth"}}, {});
  check->doCheckForNewVersion(true);
  EXPECT_EQ(statuses, QStringList{Checking});
  desktop.runLoop.settle();
  EXPECT_EQ(statuses, (QStringList{Checking, Unsuccessful}));
  EXPECT_TRUE(desktop.web.requests().isEmpty());
}

TEST_F(VersionCheck, HearsNothingMoreAtTheEndOfTheApplication) {
  check->doCheckForNewVersion(true);
  check->doCheckForNewVersion(true);
  statuses.clear();
  check->stop();
  answer(UpToDate);
  EXPECT_TRUE(statuses.isEmpty());
  EXPECT_EQ(lastCheck(), distantPast());

  check->doCheckForNewVersion(true);
  check.reset();
  statuses.clear();
  answer(UpToDate);
  EXPECT_TRUE(statuses.isEmpty());
}
