// SPDX-License-Identifier: LGPL-3.0-or-later
#include "base/CalendarDay.h"

#include <gtest/gtest.h>

#include <QString>

#include "testing/files/EnvironmentVariable.h"

using velmora::base::dayFromIso;
using velmora::base::localDayOf;
using velmora::base::noonOf;

namespace {

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

TEST(CalendarDays, StayTheSameInEveryTimeZone) {
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
    const velmora::testkit::EnvironmentVariable guard("TZ", zone.name);
    ASSERT_EQ(QDateTime(QDate(2024, 1, 15), QTime(12, 0)).offsetFromUtc(), zone.hoursInJanuary2024 * 3600)
        << zone.name;
    for (const char* day : days) {
      const QDateTime noon = noonOf(dayFromIso(text(day)));
      ASSERT_TRUE(noon.isValid()) << zone.name << " " << day;
      EXPECT_EQ(noon.time(), QTime(12, 0));
      const QDateTime arrived = QDateTime::fromMSecsSinceEpoch(noon.toMSecsSinceEpoch(), Qt::UTC);
      EXPECT_EQ(localDayOf(arrived), dayFromIso(text(day))) << zone.name;
    }
  }
}

TEST(CalendarDays, StayTheSameBetweenNeighbouringTimeZones) {
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
      const velmora::testkit::EnvironmentVariable zone("TZ", row.sender);
      travelling = noonOf(QDate(2019, 3, 14)).toMSecsSinceEpoch();
    }
    const velmora::testkit::EnvironmentVariable zone("TZ", row.receiver);
    EXPECT_EQ(localDayOf(QDateTime::fromMSecsSinceEpoch(travelling, Qt::UTC)), QDate(2019, 3, 14))
        << row.sender << " to " << row.receiver;
  }
}

TEST(CalendarDays, HaveNoNoonWhereTheTimeZoneSkippedThem) {
  const velmora::testkit::EnvironmentVariable zone("TZ", "Pacific/Apia");
  EXPECT_TRUE(noonOf(QDate(2011, 12, 29)).isValid());
  EXPECT_FALSE(noonOf(QDate(2011, 12, 30)).isValid());
  EXPECT_TRUE(noonOf(QDate(2011, 12, 31)).isValid());
}

TEST(CalendarDays, AreNotReadFromWhatIsNoDay) {
  for (const char* day :
       {"", "2019", "2019-3-14", "2019-03-14 ", "2019-03-14T00:00", "14.03.2019", "2019-02-29", "2019-13-01",
        "2019-00-10", "0000-01-01", "２０１９-03-14", "20190314", "-019-03-14"}) {
    EXPECT_FALSE(dayFromIso(text(day)).isValid()) << day;
  }
}

TEST(CalendarDays, HaveOneOClockWhereTheClocksJumpedOverNoon) {
  const velmora::testkit::EnvironmentVariable zone("TZ", "Africa/Casablanca");
  EXPECT_EQ(noonOf(QDate(1967, 6, 3)).time(), QTime(13, 0));
}

}  // namespace
