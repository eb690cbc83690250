// SPDX-License-Identifier: LGPL-3.0-or-later
#include <QTimeZone>

#include "platform/text/DateFormatter.h"
#include "testing/main/Shown.h"

using velmora::platform::DateFormatter;
using velmora::platform::noonOf;

namespace {

const QDate Today(2026, 6, 1);

/// A formatter of short dates that reads them on a given day.
struct ShortDates : DateFormatter {
  ShortDates(const QString& locale, const QDate& day) : DateFormatter(QLocale(locale)), today(day) {
    setDateStyle(Style::Short);
  }
  QDateTime dateFromString(const QString& text) const { return DateFormatter::dateFromString(text, today); }
  QDate today;
};

ShortDates shortDates(const QString& locale, const QDate& today = Today) { return {locale, today}; }

const char* const Locales[] = {"en_US", "en_GB", "de_DE", "fr_FR", "es_ES", "C"};

TEST(DateFormatter, ShowsTheLocalesShortDateWithAFourDigitYear) {
  struct Case {
    const char* locale;
    const char* text;
  };
  const Case cases[] = {
      {"en_US", "3/7/2009"},   {"en_GB", "07/03/2009"}, {"de_DE", "07.03.2009"},
      {"fr_FR", "07/03/2009"}, {"es_ES", "7/3/2009"},   {"C", "7 Mar 2009"},
  };
  for (const Case& each : cases) {
    EXPECT_EQ(shortDates(each.locale).stringFromDate(QDate(2009, 3, 7)), each.text) << each.locale;
  }
}

TEST(DateFormatter, ParsesEveryDateThatItShows) {
  for (const char* locale : Locales) {
    const ShortDates formatter = shortDates(locale);
    // A step that meets every day of the month, every month and both ends of centuries.
    for (QDate day(1900, 1, 1); day <= QDate(2045, 12, 31); day = day.addDays(17)) {
      const QString text = formatter.stringFromDate(day);
      ASSERT_TRUE(text.contains(QString::number(day.year()))) << locale << ' ' << qPrintable(text);
      ASSERT_EQ(formatter.dateFromString(text), noonOf(day)) << locale << ' ' << qPrintable(text);
    }
    for (const QDate& day :
         {QDate(2000, 2, 29), QDate(1904, 2, 29), QDate(1999, 12, 31), QDate(2000, 1, 1), Today}) {
      EXPECT_EQ(formatter.dateFromString(formatter.stringFromDate(day)), noonOf(day)) << locale;
    }
  }
}

TEST(DateFormatter, ReadsTwoDigitsAsTheYearFrom80BackTo20Ahead) {
  struct Case {
    const char* locale;
    const char* text;
    QDate day;
  };
  const Case cases[] = {
      {"en_US", "3/7/09", QDate(2009, 3, 7)},     {"en_US", "3/7/46", QDate(1946, 3, 7)},
      {"en_US", "12/31/45", QDate(2045, 12, 31)}, {"en_US", "3/7/99", QDate(1999, 3, 7)},
      {"en_US", "3/7/00", QDate(2000, 3, 7)},     {"en_GB", "07/03/09", QDate(2009, 3, 7)},
      {"de_DE", "07.03.09", QDate(2009, 3, 7)},   {"de_DE", "07.03.46", QDate(1946, 3, 7)},
      {"fr_FR", "07/03/09", QDate(2009, 3, 7)},   {"es_ES", "7/3/09", QDate(2009, 3, 7)},
      {"C", "7 Mar 09", QDate(2009, 3, 7)},
  };
  for (const Case& each : cases) {
    EXPECT_EQ(shortDates(each.locale).dateFromString(each.text), noonOf(each.day))
        << each.locale << ' ' << each.text;
  }
}

TEST(DateFormatter, MovesTheWindowOfTwoDigitYearsWithToday) {
  const ShortDates atTheTurn = shortDates("en_US", QDate(1999, 12, 31));
  EXPECT_EQ(atTheTurn.dateFromString("1/1/19"), noonOf(QDate(1919, 1, 1)));
  EXPECT_EQ(atTheTurn.dateFromString("1/1/18"), noonOf(QDate(2018, 1, 1)));
  const ShortDates later = shortDates("en_US", QDate(2080, 1, 1));
  EXPECT_EQ(later.dateFromString("1/1/00"), noonOf(QDate(2000, 1, 1)));
  EXPECT_EQ(later.dateFromString("1/1/99"), noonOf(QDate(2099, 1, 1)));
}

TEST(DateFormatter, KnowsThe29thOfFebruaryOfTwoDigitYears) {
  struct Case {
    const char* locale;
    const char* in2000;
    const char* in2008;
    const char* in2001;
  };
  const Case cases[] = {
      {"en_US", "2/29/00", "2/29/08", "2/29/01"},    {"en_GB", "29/02/00", "29/02/08", "29/02/01"},
      {"de_DE", "29.02.00", "29.02.08", "29.02.01"}, {"fr_FR", "29/02/00", "29/02/08", "29/02/01"},
      {"es_ES", "29/2/00", "29/2/08", "29/2/01"},    {"C", "29 Feb 00", "29 Feb 08", "29 Feb 01"},
  };
  for (const Case& each : cases) {
    const ShortDates formatter = shortDates(each.locale);
    EXPECT_EQ(formatter.dateFromString(each.in2000), noonOf(QDate(2000, 2, 29))) << each.locale;
    EXPECT_EQ(formatter.dateFromString(each.in2008), noonOf(QDate(2008, 2, 29))) << each.locale;
    EXPECT_FALSE(formatter.dateFromString(each.in2001).isValid()) << each.locale;
  }
}

TEST(DateFormatter, AcceptsADayAndMonthTypedWithOrWithoutALeadingZero) {
  struct Case {
    const char* locale;
    const char* text;
  };
  const Case cases[] = {
      {"en_US", "03/07/2009"}, {"en_US", "3/7/2009"}, {"en_GB", "7/3/2009"},
      {"de_DE", "7.3.2009"},   {"fr_FR", "7/3/2009"}, {"es_ES", "07/03/2009"},
      {"de_DE", "7.3.09"},     {"en_GB", "7/3/09"},   {"C", "07 Mar 2009"},
  };
  for (const Case& each : cases) {
    EXPECT_EQ(shortDates(each.locale).dateFromString(each.text), noonOf(QDate(2009, 3, 7)))
        << each.locale << ' ' << each.text;
  }
}

TEST(DateFormatter, KeepsTheLocalesOrderWhateverStandsBetweenTheNumbers) {
  for (const char* text :
       {"07-03-2009", "07.03.2009", "07 03 2009", "7. 3. 2009", "07/03/09", "  07/03/2009\t"}) {
    EXPECT_EQ(shortDates("en_GB").dateFromString(text), noonOf(QDate(2009, 3, 7))) << text;
  }
  EXPECT_EQ(shortDates("en_US").dateFromString("3.7.2009"), noonOf(QDate(2009, 3, 7)));
}

TEST(DateFormatter, ReadsFourDigitsInFrontAsTheYear) {
  for (const char* locale : Locales) {
    EXPECT_EQ(shortDates(locale).dateFromString("2009-03-07"), noonOf(QDate(2009, 3, 7))) << locale;
  }
}

TEST(DateFormatter, ReadsTheDigitsOfOtherScripts) {
  const ShortDates arabic = shortDates("ar_EG");
  for (const QDate& day : {QDate(2009, 3, 7), QDate(1931, 12, 30)}) {
    const QString shown = arabic.stringFromDate(day);
    EXPECT_EQ(arabic.dateFromString(shown), noonOf(day)) << qPrintable(shown);
    EXPECT_EQ(arabic.dateFromString(day.toString("d/M/yyyy")), noonOf(day));
  }
}

TEST(DateFormatter, RefusesWhatIsNoDate) {
  for (const char* text : {"",
                           "   ",
                           "yesterday",
                           "30/02/2009",
                           "29/02/1900",
                           "00/01/2009",
                           "01/13/2009",
                           "07/03",
                           "07/03/2009/1",
                           "07/03/209",
                           "07/03/20099",
                           "-07/03/2009",
                           "07/03/2009 at noon",
                           "2009",
                           "07/03/-9",
                           "07/03/0000",
                           "070/3/2009",
                           "07x03x2009",
                           "7 Mar 2009 or later",
                           "20090307"}) {
    EXPECT_FALSE(shortDates("en_GB").dateFromString(text).isValid()) << text;
  }
  EXPECT_FALSE(shortDates("C").dateFromString("7 Mrz 2009").isValid());
  EXPECT_FALSE(shortDates("C").dateFromString("30 Feb 2009").isValid());
}

TEST(DateFormatter, ParsesNothingWithoutADateStyle) {
  EXPECT_FALSE(DateFormatter(QLocale("en_GB")).dateFromString("07/03/2009", Today).isValid());
}

TEST(DateFormatter, ShowsThePointInTimeAsTheCalendarHereHasIt) {
  // Tests run in Central European Time: half past eleven at night there is the next day's half past twelve
  // here.
  const QDateTime lateInUtc(QDate(2009, 1, 31), QTime(23, 30), QTimeZone::utc());
  ASSERT_EQ(lateInUtc.toLocalTime().date(), QDate(2009, 2, 1));
  DateFormatter formatter{QLocale("en_GB")};
  formatter.setDateStyle(DateFormatter::Style::Short);
  formatter.setTimeStyle(DateFormatter::Style::Short);
  EXPECT_EQ(formatter.stringFromDate(lateInUtc), "01/02/2009 00:30");
  formatter.setDateStyle(DateFormatter::Style::None);
  EXPECT_EQ(formatter.stringFromDate(lateInUtc), "00:30");
  formatter.setTimeStyle(DateFormatter::Style::None);
  EXPECT_EQ(formatter.stringFromDate(lateInUtc), "");
}

TEST(DateFormatter, ShowsNoDateAsNothing) {
  EXPECT_EQ(shortDates("en_GB").stringFromDate(QDateTime()), "");
  EXPECT_EQ(shortDates("en_GB").stringFromDate(QDate()), "");
  EXPECT_FALSE(noonOf(QDate()).isValid());
}

}  // namespace
