// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/batch/RecentFiles.h"

#include <gtest/gtest.h>

#include <QTimeZone>
#include <limits>

#include "testing/window/UserActions.h"

using velmora::ageLimit;
using velmora::integerValue;
using velmora::isRecentEnough;

namespace {

constexpr qint64 Largest = std::numeric_limits<qint64>::max();
constexpr qint64 Smallest = std::numeric_limits<qint64>::min();
const QDateTime Now(QDate(2024, 5, 2), QTime(10, 0));

}  // namespace

TEST(IntegerValue, IsTheWholeNumberAtTheBeginning) {
  const std::pair<const char*, qint64> cases[] = {
      {"7", 7},
      {"007", 7},
      {"  7 ", 7},
      {"+7", 7},
      {"-7", -7},
      {"0", 0},
      {"-0", 0},
      {"", 0},
      {"-", 0},
      {"seven", 0},
      {"7 days", 7},
      {"7.9", 7},
      {"7,000", 7},
      {"--7", 0},
      {"\xd9\xa7", 0},  // the Arabic digit seven
      {"99999999999", 99999999999},
      {"9223372036854775807", Largest},
      {"9223372036854775808", Largest},
      {"99999999999999999999999999", Largest},
      {"-9223372036854775807", Smallest + 1},
      {"-9223372036854775808", Smallest},
      {"-9223372036854775809", Smallest},
      {"-99999999999999999999999999", Smallest},
  };
  for (const auto& [text, number] : cases) EXPECT_EQ(integerValue(QString::fromUtf8(text)), number) << text;
}

TEST(AgeLimit, IsSoManyDaysOf24HoursBack) {
  EXPECT_EQ(ageLimit(7), -604800.0);
  EXPECT_EQ(ageLimit(0), 0.0);
  EXPECT_EQ(ageLimit(-2), 172800.0);
  // More seconds than 32 bits hold.
  EXPECT_EQ(ageLimit(30000), -2592000000.0);
  EXPECT_EQ(ageLimit(99999999999), -8639999999913600.0);
}

TEST(AgeLimit, DoesNotOverflow) {
  EXPECT_LT(ageLimit(Largest), -9.2e18);
  EXPECT_GT(ageLimit(Smallest), 9.2e18);
  EXPECT_EQ(ageLimit(Largest), ageLimit(Largest / 86400));
}

struct Age {
  const char* what;
  qint64 milliseconds;  // after now
  qint64 days;
  bool recent;
};

class RecentEnough : public testing::TestWithParam<Age> {};

TEST_P(RecentEnough, MeansLessThanSoManyDaysAgo) {
  const Age& age = GetParam();
  EXPECT_EQ(isRecentEnough(Now.addMSecs(age.milliseconds), Now, age.days), age.recent) << age.what;
}

INSTANTIATE_TEST_SUITE_P(
    Table, RecentEnough,
    testing::Values(Age{"just now", 0, 7, true}, Age{"a day ago", -86400000, 7, true},
                    Age{"a moment less than seven days", -604799999, 7, true},
                    Age{"exactly seven days", -604800000, 7, false},
                    Age{"a moment more than seven days", -604800001, 7, false},
                    Age{"in the future", 3600000, 7, true},
                    Age{"far in the future", 3600000LL * 24 * 9999, 7, true},
                    Age{"zero days: just now", 0, 0, false}, Age{"zero days: a moment ago", -1, 0, false},
                    Age{"zero days: a moment ahead", 1, 0, true},
                    Age{"less than two days ahead", 172799999, -2, false},
                    Age{"exactly two days ahead", 172800000, -2, false},
                    Age{"more than two days ahead", 172800001, -2, true},
                    Age{"every day there is", -86400000LL * 365 * 2000, Largest, true},
                    Age{"ahead of every day there is", 86400000LL * 365 * 5000, Smallest, false}));

TEST(RecentEnough, IsNeverADateThatCannotBeTold) {
  EXPECT_FALSE(isRecentEnough(QDateTime(), Now, 7));
  EXPECT_FALSE(isRecentEnough(QDateTime(), Now, -7));
}

TEST(RecentEnough, CountsHoursAndNotCalendarDays) {
  // The clocks went forward in between: seven days by the calendar are an hour less.
  const QDateTime now(QDate(2024, 4, 3), QTime(10, 0), QTimeZone("Europe/Berlin"));
  const QDateTime then(QDate(2024, 3, 27), QTime(10, 0), QTimeZone("Europe/Berlin"));
  EXPECT_TRUE(isRecentEnough(then, now, 7));
  EXPECT_TRUE(isRecentEnough(then.addSecs(-3599), now, 7));
  EXPECT_FALSE(isRecentEnough(then.addSecs(-3600), now, 7));
}

TEST(RecentEnough, ComparesMomentsInDifferentZones) {
  const QDateTime then(QDate(2024, 4, 25), QTime(8, 0), QTimeZone::utc());  // seven days before Now in Berlin
  EXPECT_FALSE(isRecentEnough(then, Now.toTimeZone(QTimeZone("Asia/Tokyo")), 7));
  EXPECT_TRUE(isRecentEnough(then.addMSecs(1), Now.toTimeZone(QTimeZone("Asia/Tokyo")), 7));
}
