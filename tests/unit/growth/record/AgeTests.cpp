// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>
#include <ostream>
#include <tuple>

#include "apps/growth/record/Age.h"

using growth::AgeParts;

namespace growth {

void PrintTo(const AgeParts& age, std::ostream* out) {
  *out << age.years << " years " << age.months << " months " << age.days << " days";
}

}  // namespace growth

namespace {

QDate date(const char* text) { return QDate::fromString(QString::fromLatin1(text), Qt::ISODate); }

}  // namespace

TEST(Age, CountsCompletedYearsMonthsAndDays) {
  const struct {
    const char* birth;
    const char* exam;
    AgeParts age;
  } table[] = {
      {"2020-05-17", "2020-05-17", {0, 0, 0}},    // the day of the birth
      {"2020-05-17", "2020-05-18", {0, 0, 1}},    //
      {"2020-05-17", "2020-06-16", {0, 0, 30}},   // the day before a month is complete
      {"2020-05-17", "2020-06-17", {0, 1, 0}},    //
      {"2020-05-17", "2021-05-16", {0, 11, 29}},  // the day before a birthday
      {"2020-05-17", "2021-05-17", {1, 0, 0}},    //
      {"2019-12-31", "2020-01-01", {0, 0, 1}},    // over the turn of a year
      {"2020-01-31", "2020-02-28", {0, 0, 28}},   // a month without the day of the birth
      {"2020-01-31", "2020-02-29", {0, 1, 0}},    // ends with its last day
      {"2020-01-31", "2020-03-01", {0, 1, 1}},    //
      {"2020-01-31", "2020-03-30", {0, 1, 30}},   //
      {"2020-01-31", "2020-03-31", {0, 2, 0}},    //
      {"2021-01-31", "2021-02-28", {0, 1, 0}},    //
      {"2020-08-31", "2020-09-30", {0, 1, 0}},    //
      {"2020-02-29", "2021-02-27", {0, 11, 29}},  // a leap day's child in another year
      {"2020-02-29", "2021-02-28", {1, 0, 0}},    //
      {"2020-02-29", "2021-03-01", {1, 0, 1}},    //
      {"2020-02-29", "2024-02-28", {3, 11, 30}},  // and in the next leap year
      {"2020-02-29", "2024-02-29", {4, 0, 0}},    //
      {"1999-03-01", "2019-03-01", {20, 0, 0}},   //
  };
  for (const auto& row : table) {
    const auto age = growth::ageParts(date(row.birth), date(row.exam));
    ASSERT_TRUE(age) << row.birth << ' ' << row.exam;
    EXPECT_EQ(*age, row.age) << row.birth << ' ' << row.exam;
  }
}

TEST(Age, IsNeverLessADayLater) {
  const QDate birth = date("2020-02-29");
  AgeParts previous{0, 0, -1};
  for (QDate exam = birth; exam < date("2025-01-01"); exam = exam.addDays(1)) {
    const AgeParts age = *growth::ageParts(birth, exam);
    EXPECT_GT(std::tie(age.years, age.months, age.days),
              std::tie(previous.years, previous.months, previous.days));
    EXPECT_LT(age.months, 12);
    EXPECT_LE(age.days, 30);
    previous = age;
  }
}

TEST(Age, CountsMonthsInDaysLived) {
  EXPECT_EQ(growth::ageInMonths(date("2020-05-17"), date("2020-05-17")), 0.0);
  EXPECT_EQ(growth::ageInMonths(date("2016-02-29"), date("2020-02-29")), 48.0);  // 1461 days
  EXPECT_EQ(growth::ageInMonths(date("2020-05-17"), date("2020-05-18")), 1 / 30.4375);
  EXPECT_EQ(growth::ageInMonths(date("2021-03-01"), date("2023-03-01")), 730 / 30.4375);
  EXPECT_EQ(growth::ageInMonths(date("2019-03-01"), date("2021-03-01")), 731 / 30.4375);
}

TEST(Age, IsNothingBeforeTheBirthOrWithoutADate) {
  const QDate day = date("2020-05-17");
  EXPECT_FALSE(growth::ageInMonths(day, day.addDays(-1)));
  EXPECT_FALSE(growth::ageParts(day, day.addDays(-1)));
  EXPECT_FALSE(growth::ageInMonths(QDate(), day));
  EXPECT_FALSE(growth::ageInMonths(day, QDate()));
  EXPECT_FALSE(growth::ageParts(QDate(), day));
  EXPECT_FALSE(growth::ageParts(day, QDate()));
}
