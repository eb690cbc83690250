// SPDX-License-Identifier: LGPL-3.0-or-later
#include <QTimeZone>

#include "testing/main/Shown.h"
#include "testing/standins/Scripted.h"

using velmora::platform::distantPast;
using velmora::testkit::MemoryUserDefaults;

namespace {

const QDateTime SomeDate(QDate(2024, 5, 2), QTime(8, 30, 15, 250), QTimeZone::utc());

TEST(UserDefaults, KeepsEachType) {
  MemoryUserDefaults defaults;
  defaults.setObject(true, "on");
  defaults.setObject(QStringLiteral("~/Desktop/"), "folder");
  defaults.setObject(SomeDate, "checked");
  defaults.setInteger(31, "days");
  EXPECT_TRUE(defaults.boolForKey("on"));
  EXPECT_EQ(defaults.stringForKey("folder"), "~/Desktop/");
  EXPECT_EQ(defaults.dateForKey("checked"), SomeDate);
  EXPECT_EQ(defaults.integerForKey("days"), 31);
  EXPECT_EQ(defaults.stringForKey("days"), "31");
}

TEST(UserDefaults, ReadsAMissingKeyAsNothing) {
  const MemoryUserDefaults defaults;
  EXPECT_FALSE(defaults.objectForKey("absent").isValid());
  EXPECT_TRUE(defaults.stringForKey("absent").isNull());
  EXPECT_FALSE(defaults.boolForKey("absent"));
  EXPECT_EQ(defaults.integerForKey("absent"), 0);
  EXPECT_FALSE(defaults.dateForKey("absent").isValid());
}

TEST(UserDefaults, LetsAStoredValueOverrideTheRegisteredOne) {
  MemoryUserDefaults defaults;
  defaults.registerDefaults({{"Auto Save", true}, {"Export Directory", "~/Desktop/"}});
  EXPECT_TRUE(defaults.boolForKey("Auto Save"));
  defaults.setObject(false, "Auto Save");
  EXPECT_FALSE(defaults.boolForKey("Auto Save"));
  defaults.registerDefaults({{"Auto Save", true}});
  EXPECT_FALSE(defaults.boolForKey("Auto Save")) << "registering again took the user's value away";
  EXPECT_EQ(defaults.stringForKey("Export Directory"), "~/Desktop/");
}

TEST(UserDefaults, LetsAnEmptyStoredStringOverrideTheRegisteredOne) {
  MemoryUserDefaults defaults;
  defaults.registerDefaults({{"Launch Script", "beep"}});
  defaults.setObject(QStringLiteral(""), "Launch Script");
  EXPECT_EQ(defaults.stringForKey("Launch Script"), "");
}

TEST(UserDefaults, ReplacesWhatWasRegisteredBeforeAndKeepsTheRest) {
  MemoryUserDefaults defaults;
  defaults.registerDefaults({{"a", 1}, {"b", 2}});
  defaults.registerDefaults({{"b", 3}});
  EXPECT_EQ(defaults.integerForKey("a"), 1);
  EXPECT_EQ(defaults.integerForKey("b"), 3);
}

TEST(UserDefaults, StoresNothingOfWhatIsRegistered) {
  MemoryUserDefaults defaults;
  defaults.registerDefaults({{"Batch Export Days", "7"}});
  EXPECT_EQ(defaults.integerForKey("Batch Export Days"), 7);
  EXPECT_TRUE(defaults.stored().isEmpty());
}

TEST(UserDefaults, ConvertsDecimalTextToAnInteger) {
  struct Case {
    QVariant stored;
    qint64 integer;
  };
  const Case cases[] = {
      {"7", 7},
      {" 31 ", 31},
      {"-2", -2},
      {"0", 0},
      {"", 0},
      {"seven", 0},
      {"7 days", 0},
      {"0x10", 0},
      {"1.5", 0},
      {QVariant(12), 12},
      {true, 1},
      {SomeDate, 0},
      {QVariant(QStringList{"7"}), 0},
  };
  for (const Case& each : cases) {
    MemoryUserDefaults defaults;
    defaults.setObject(each.stored, "days");
    EXPECT_EQ(defaults.integerForKey("days"), each.integer) << qPrintable(each.stored.toString());
  }
}

TEST(UserDefaults, ReadsWhatIsNoBooleanAsFalse) {
  struct Case {
    QVariant stored;
    bool boolean;
  };
  const Case cases[] = {
      {true, true},
      {false, false},
      {1, true},
      {0, false},
      {"YES", true},
      {"true", true},
      {"1", true},
      {"NO", false},
      {"false", false},
      {"maybe", false},
      {"", false},
      {"7", false},
      {SomeDate, false},
      {QVariant(QByteArray("true")), false},
      {QVariant(QStringList{"true"}), false},
  };
  for (const Case& each : cases) {
    MemoryUserDefaults defaults;
    defaults.setObject(each.stored, "flag");
    EXPECT_EQ(defaults.boolForKey("flag"), each.boolean) << qPrintable(each.stored.toString());
  }
}

TEST(UserDefaults, ReadsWhatIsNoStringAsNone) {
  MemoryUserDefaults defaults;
  for (const QVariant& value : {QVariant(true), QVariant(SomeDate), QVariant(QStringList{"a"})}) {
    defaults.setObject(value, "text");
    EXPECT_TRUE(defaults.stringForKey("text").isNull());
  }
}

TEST(UserDefaults, ReadsWhatIsNoDateAsNone) {
  MemoryUserDefaults defaults;
  for (const QVariant& value : {QVariant("yesterday"), QVariant(7), QVariant(true), QVariant("")}) {
    defaults.setObject(value, "date");
    EXPECT_FALSE(defaults.dateForKey("date").isValid()) << qPrintable(value.toString());
  }
}

TEST(UserDefaults, TellsTheDistantPastByEquality) {
  MemoryUserDefaults defaults;
  defaults.registerDefaults({{"Last Version Check Date", distantPast()}});
  EXPECT_EQ(defaults.dateForKey("Last Version Check Date"), distantPast());
  EXPECT_EQ(distantPast(), QDateTime(QDate(1, 1, 1), QTime(0, 0), QTimeZone::utc()));
  defaults.setObject(SomeDate, "Last Version Check Date");
  EXPECT_NE(defaults.dateForKey("Last Version Check Date"), distantPast());
}

}  // namespace
