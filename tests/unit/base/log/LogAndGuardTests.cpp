// SPDX-License-Identifier: LGPL-3.0-or-later
#include <stdexcept>

#include "base/log/AssertionFailure.h"
#include "base/log/Escape.h"
#include "base/log/Guard.h"
#include "base/log/Log.h"
#include "testing/main/Shown.h"
#include "testing/standins/LogRecorder.h"

using namespace velmora;

using velmora::base::AssertionFailure;
using velmora::base::guarded;
using velmora::base::logLine;
using velmora::testkit::LogRecorder;

namespace {

TEST(LogLine, ShowsLineBreaksAndControlCharactersEscaped) {
  struct Case {
    QString text;
    QString line;
  };
  const Case cases[] = {
      {"plain", "plain"},
      {"two\nlines", "two\\nlines"},
      {"carriage\rreturn", "carriage\\x0dreturn"},
      {"a\ttab", "a\\x09tab"},
      {QStringLiteral("escape\x1b[31m"), "escape\\x1b[31m"},
      {QString(QChar(0x2028)) + "separated" + QChar(0x2029), "\\x2028separated\\x2029"},
      {QString(QChar(0x85)) + "next line", "\\x85next line"},
      {QString(QChar(0x202e)) + "backwards", "\\x202ebackwards"},
      {QStringLiteral("Müller, 李, 😀"), QStringLiteral("Müller, 李, 😀")},
      {"per cent %1 %s %@", "per cent %1 %s %@"},
      {"", ""},
  };
  for (const Case& each : cases) {
    const LogRecorder log;
    logLine(each.text);
    EXPECT_EQ(log.lines(), QStringList{each.line});
  }
}

TEST(Escape, LeavesNothingThatDisturbsALine) {
  EXPECT_EQ(base::escaped(QStringLiteral("a\n\x1b[2J\u202e\u2028\u200bb")),
            QStringLiteral("a\\u000a\\u001b[2J\\u202e\\u2028\\u200bb"));
  EXPECT_EQ(base::escaped(QStringLiteral("Müller, 李, 😀 \\")), QStringLiteral("Müller, 李, 😀 \\"));
}

TEST(LogLine, CutsAnEndlessTextShort) {
  const LogRecorder log;
  logLine(QString(1000000, 'x'));
  ASSERT_EQ(log.lines().size(), 1);
  EXPECT_LT(log.lines().first().size(), 5000);
  EXPECT_TRUE(log.lines().first().endsWith(QStringLiteral("…")));
}

TEST(Guard, LetsNoExceptionOutAndSaysWhatItCaught) {
  const LogRecorder log;
  EXPECT_TRUE(guarded("menu", [] {}));
  EXPECT_FALSE(guarded("menu", [] { throw std::runtime_error("no such item"); }));
  EXPECT_FALSE(guarded("sheet", [] { throw 1; }));
  EXPECT_FALSE(guarded("field", [] { throw AssertionFailure("Value==nil", "VelmoraDocument"); }));
  EXPECT_EQ(log.lines(), (QStringList{"menu: no such item", "sheet: unknown failure",
                                      "field: VelmoraDocument: Value==nil"}));
}

TEST(AssertionFailure, NamesWhatWasFoundAndWhoInsisted) {
  EXPECT_NO_THROW(base::requireValue(true, "VelmoraDocument"));
  try {
    base::requireValue(false, "VelmoraDocument");
    FAIL() << "nothing was thrown";
  } catch (const AssertionFailure& failure) {
    EXPECT_EQ(failure.message(), "Value==nil");
    EXPECT_EQ(failure.sourceFile(), "VelmoraDocument");
    EXPECT_STREQ(failure.what(), "VelmoraDocument: Value==nil");
  }
}

}  // namespace
