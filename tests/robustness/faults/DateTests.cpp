// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Calendar days in many languages and time zones.
#include <gtest/gtest.h>

#include <QLineEdit>
#include <QLocale>
#include <QProcess>
#include <QScopeGuard>
#include <ctime>

#include "platform/text/DateFormatter.h"
#include "testing/files/EnvironmentVariable.h"
#include "tests/robustness/faults/GrowthDesk.h"

using namespace velmora;

using faults::GrowthDesk;
using faults::recordIn;
using velmora::platform::DateFormatter;

namespace {

const QDate FirstBirth(1900, 1, 1);

class DatesInALanguage : public testing::TestWithParam<const char*> {};

TEST_P(DatesInALanguage, AreParsedBackEqual) {
  const QLocale locale(QString::fromLatin1(GetParam()));
  ASSERT_EQ(locale.name(), QString::fromLatin1(GetParam()));
  const QDate today = QDate::currentDate();
  DateFormatter formatter(locale);
  formatter.setDateStyle(DateFormatter::Style::Short);
  int days = 0;
  for (QDate day = FirstBirth; day <= today; day = day.addDays(1)) {
    const QString shown = formatter.stringFromDate(day);
    ASSERT_EQ(formatter.dayFromString(shown, today), day) << qPrintable(shown);
    ++days;
  }
  EXPECT_GT(days, 45000);
  std::printf("%d days, today as %s\n", days, qPrintable(formatter.stringFromDate(today)));
}

INSTANTIATE_TEST_SUITE_P(Languages, DatesInALanguage,
                         testing::Values("en_US", "en_GB", "de_DE", "fr_FR", "es_ES", "ar_EG", "ar_SA",
                                         "fa_IR", "he_IL", "ja_JP", "th_TH", "zh_CN", "zh_TW"),
                         [](const auto& each) { return std::string(each.param); });

TEST(DatesInEveryLanguageThereIs, AreParsedBackEqual) {
  const QDate today = QDate::currentDate();
  const QList<QLocale> all =
      QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyTerritory);
  ASSERT_GT(all.size(), 300);
  const int step = faults::tortures() ? 5 : 211;
  QStringList broken;
  for (const QLocale& locale : all) {
    DateFormatter formatter(locale);
    formatter.setDateStyle(DateFormatter::Style::Short);
    for (QDate day = FirstBirth; day <= today; day = day.addDays(step)) {
      const QString shown = formatter.stringFromDate(day);
      if (formatter.dayFromString(shown, today) == day) continue;
      broken.append(locale.bcp47Name() + QStringLiteral(": ") + shown);
      break;
    }
  }
  EXPECT_EQ(broken, QStringList());
  std::printf("%d locales\n", static_cast<int>(all.size()));
}

/// The zones of whole hours, and those whose clocks have done something odd.
QStringList zones() {
  QStringList all;
  for (int west = 12; west >= 1; --west) all.append(QStringLiteral("Etc/GMT+%1").arg(west));
  all.append(QStringLiteral("UTC"));
  for (int east = 1; east <= 14; ++east) all.append(QStringLiteral("Etc/GMT-%1").arg(east));
  all << QStringLiteral("Europe/Berlin") << QStringLiteral("America/Sao_Paulo")
      << QStringLiteral("Asia/Beirut") << QStringLiteral("Pacific/Apia") << QStringLiteral("Africa/Cairo")
      << QStringLiteral("Pacific/Kwajalein") << QStringLiteral("Asia/Kathmandu")
      << QStringLiteral("Australia/Lord_Howe") << QStringLiteral("Asia/Tehran")
      << QStringLiteral("Pacific/Kiritimati") << QStringLiteral("America/St_Johns")
      << QStringLiteral("Africa/Casablanca");
  return all;
}

TEST(DatesInEveryTimeZone, AreTheDaysThatWereSent) {
  int days = 0;
  QStringList leftOut;
  for (const QString& zone : zones()) {
    SCOPED_TRACE(qPrintable(zone));
    QProcess walker;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TZ"), zone);
    walker.setProcessEnvironment(environment);
    // Every day where the clocks are changed; every month where they are not.
    const bool steady = zone.startsWith(QStringLiteral("Etc/")) || zone == QStringLiteral("UTC");
    const bool everyDay = faults::tortures() || !steady;
    walker.start(QStringLiteral(DAY_WALKER),
                 {faults::tortures() ? QStringLiteral("1900-01-01") : QStringLiteral("1993-01-01"),
                  faults::tortures() ? QStringLiteral("2037-12-31") : QStringLiteral("2030-12-31"),
                  everyDay ? QStringLiteral("1") : QStringLiteral("31")});
    ASSERT_TRUE(walker.waitForFinished(100000)) << qPrintable(walker.errorString());
    const QByteArray said = walker.readAllStandardOutput();
    ASSERT_EQ(walker.exitCode(), 0) << said.constData() << walker.readAllStandardError().constData();
    QByteArrayList words = said.trimmed().split(' ');
    days += words.takeFirst().toInt();
    for (const QByteArray& day : words) leftOut.append(zone + QLatin1Char(' ') + QString::fromLatin1(day));
  }
  const QStringList neverWere{QStringLiteral("Pacific/Apia 2011-12-30"),
                              QStringLiteral("Pacific/Kwajalein 1993-08-21"),
                              QStringLiteral("Pacific/Kiritimati 1994-12-31")};
  EXPECT_EQ(leftOut, neverWere);
  std::printf("%d zones, %d days, of which %d never were\n", static_cast<int>(zones().size()), days,
              static_cast<int>(leftOut.size()));
}

/// On 3 June 1967 the clocks of Morocco went from noon to one o'clock.
TEST(DatesOfARecord, OnADayWithoutNoonTravelAsThatDay) {
  const testkit::EnvironmentVariable morocco("TZ", "Africa/Casablanca");
  const QDate day(1967, 6, 3);
  const QDateTime travelling = platform::noonOf(day);
  ASSERT_TRUE(travelling.isValid());
  EXPECT_EQ(QDateTime::fromMSecsSinceEpoch(travelling.toMSecsSinceEpoch()).date(), day);
}

TEST(DatesOfARecord, OnADayThatTheTimeZoneLeftOutStayWhenItIsOpenedAndSaved) {
  GrowthDesk desk;
  GrowthDocument& document = desk.newRecord(QStringLiteral("A1"));
  desk.field(document, "birthDateField").setText(QStringLiteral("30/12/2011"));
  document.saveDocument();
  desk.closeAll();

  const testkit::EnvironmentVariable samoa("TZ", "Pacific/Apia");
  GrowthDocument& opened = desk.opened(desk.pathOfRecord(QStringLiteral("A1")));
  EXPECT_EQ(desk.field(opened, "birthDateField").text(), QStringLiteral("30/12/2011"));
  desk.enterWeight(opened, QStringLiteral("11"));
  opened.saveDocument();
  EXPECT_EQ(recordIn(desk, desk.pathOfRecord(QStringLiteral("A1"))).birthDate.day, QDate(2011, 12, 30));
}

TEST(DatesOfARecord, ThatAreNoDatesStayAsTheyWereTyped) {
  GrowthDesk desk;
  for (const char* typed : {"2020-01-01 or so", "2020-01-01T12:00", "about 2020", "31/02/2020", "2020-13-01",
                            "0000-00-00", "1/1"}) {
    GrowthDocument& document = desk.newRecord(QStringLiteral("A1"));
    desk.field(document, "birthDateField").setText(QString::fromLatin1(typed));
    document.saveDocument();
    desk.desktop.runLoop.settle();
    GrowthDocument& opened = desk.opened(desk.pathOfRecord(QStringLiteral("A1")));
    EXPECT_EQ(desk.field(opened, "birthDateField").text(), QString::fromLatin1(typed));
    opened.saveDocument();
    EXPECT_EQ(recordIn(desk, desk.pathOfRecord(QStringLiteral("A1"))).birthDate.unread,
              QString::fromLatin1(typed));
    desk.closeAll();
    QFile::remove(desk.pathOfRecord(QStringLiteral("A1")));
  }
}

TEST(NumbersInEveryLanguageThereIs, AreParsedBackEqual) {
  const QLocale before;
  const auto back = qScopeGuard([&before] { QLocale::setDefault(before); });
  QStringList broken;
  for (const QLocale& locale :
       QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyTerritory)) {
    QLocale::setDefault(locale);
    for (const double value : {0.0, 0.1, 3.25, 12.5, 100.0, 1234.5, 98765.4321, -2.5, 1e300, 1e-7, 1.0 / 3}) {
      const QString shown = growth::textOf({value, {}});
      const growth::Measurement read = growth::measurementFromText(shown);
      if (read.value == value) continue;
      broken.append(locale.bcp47Name() + QStringLiteral(": ") + shown);
    }
  }
  EXPECT_EQ(broken, QStringList());
}

}  // namespace
