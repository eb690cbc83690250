// SPDX-License-Identifier: LGPL-3.0-or-later
#include <QCoreApplication>
#include <QTranslator>

#include "platform/text/Localization.h"
#include "testing/main/Shown.h"

using velmora::platform::formatted;
using velmora::platform::localizedString;

namespace {

TEST(Formatted, FillsPlaceholdersInOrder) {
  struct Case {
    const char* format;
    QStringList arguments;
    const char* text;
  };
  const Case cases[] = {
      {"~/Documents/%@ Data", {"Growth"}, "~/Documents/Growth Data"},
      {"%@ and %@", {"one", "two"}, "one and two"},
      {"%ld of %ld", {"3", "12"}, "3 of 12"},
      {"%@: %ld", {"days", "7"}, "days: 7"},
      {"%@", {""}, ""},
      {"none", {}, "none"},
      {"none", {"unused"}, "none"},
      {"", {}, ""},
      // Too few arguments leave the placeholder as it stands.
      {"%@ and %@", {"one"}, "one and %@"},
      // What only looks like a placeholder is text.
      {"100 % of %d and %1 and 5%", {"x"}, "100 % of %d and %1 and 5%"},
      {"%%@", {"x"}, "%x"},
  };
  for (const Case& each : cases) EXPECT_EQ(formatted(each.format, each.arguments), each.text) << each.format;
}

TEST(Formatted, NeverSearchesAnArgumentForPlaceholders) {
  EXPECT_EQ(formatted("%@/%@", {"%@", "B"}), "%@/B");
  EXPECT_EQ(formatted("%@ %ld", {"%ld%1%2", "4"}), "%ld%1%2 4");
  EXPECT_EQ(formatted("%@%@", {"%", "@"}), "%@");
}

/// Knows one word of one table.
class OneWord : public QTranslator {
 public:
  QString translate(const char* context, const char* source, const char*, int) const override {
    const bool known = qstrcmp(context, "OrvVersion") == 0 && qstrcmp(source, "Cancel") == 0;
    return known ? QStringLiteral("Abbrechen") : QString();
  }
  bool isEmpty() const override { return false; }
};

TEST(LocalizedString, AnswersTheKeyWhereThereIsNoTranslation) {
  EXPECT_EQ(localizedString("OrvVersion", "Cancel"), "Cancel");
  OneWord german;
  QCoreApplication::installTranslator(&german);
  EXPECT_EQ(localizedString("OrvVersion", "Cancel"), "Abbrechen");
  EXPECT_EQ(localizedString("OrvVersion", "OK"), "OK");
  EXPECT_EQ(localizedString("Preferences", "Cancel"), "Cancel") << "tables are kept apart";
  QCoreApplication::removeTranslator(&german);
}

}  // namespace
