// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include "desktop/scripts/ShellErrors.h"
#include "testing/main/Shown.h"
#include "tests/unit/desktop/scripts/QtScriptsTesting.h"

using testing_support::pinned;
using velmora::desktop::errorOfFormatter;
using velmora::desktop::errorOfRun;
using velmora::desktop::errorOfSyntaxCheck;
using velmora::desktop::rangeOfPlace;
using velmora::platform::ScriptError;
using velmora::platform::TextRange;

TEST(PlaceInScript, CoversTheTokenThatBeginsThereOrTheRestOfTheLine) {
  struct Case {
    const char16_t* source;
    qsizetype line;
    qsizetype column;
    TextRange range;
  };
  const Case cases[] = {
      {u"echo abc def", 1, 6, {5, 3}},
      {u"echo a;; b", 1, 7, {6, 2}},
      {u"echo a;;b", 1, 7, {6, 2}},
      {u"a && b", 1, 3, {2, 2}},
      {u"foo(bar", 1, 1, {0, 3}},
      {u"f(())", 1, 2, {1, 1}},
      {u"echo $((1+))", 1, 10, {9, 1}},
      {u"echo $(date", 1, 6, {5, 2}},
      {u"echo $((1", 1, 6, {5, 3}},
      {u"echo ${a b", 1, 6, {5, 3}},
      {u"echo 'a b' c", 1, 6, {5, 5}},
      {u"echo 'a b\nc' d", 1, 6, {5, 4}},
      {u"echo \"open and  ", 1, 6, {5, 9}},
      // Bytes of the line are not characters of the text.
      {u"a\n\tgröße )", 2, 10, {9, 1}},
      {u"a\n\tgröße )", 2, 2, {3, 5}},
      {u"# 患者\n患者 )", 2, 8, {8, 1}},
      {u"😀😀 )", 1, 10, {5, 1}},
      {u"😀 x", 1, 3, {0, 2}},  // within a character: that character's token
      // Where no token begins.
      {u"echo  abc def ", 1, 5, {6, 7}},
      {u"  echo abc", 1, 11, {2, 8}},
      {u"  echo abc", 1, 99, {2, 8}},
      {u"a\n  echo abc  \nb", 2, 0, {4, 8}},
      {u"a\r\nb c\r\n", 2, 3, {5, 1}},
      // Lines without text, and lines that are not there.
      {u"a\nb\n\n  \n", 4, 1, {2, 1}},
      {u"a\nb\n", 3, 0, {2, 1}},
      {u"a\nb", 77, 0, {2, 1}},
      {u"\n\n", 2, 1, {2, 0}},
      {u"", 1, 1, {0, 0}},
  };
  for (const Case& c : cases) {
    const QString source = QString::fromUtf16(c.source);
    EXPECT_EQ(rangeOfPlace(source, c.line, c.column), c.range)
        << qPrintable(source) << " at " << c.line << ":" << c.column;
  }
}

TEST(FormatterReport, TellsWhatIsWrongAndWhere) {
  const QString source = "a\n\techo ü )\n";
  const std::optional<ScriptError> error =
      errorOfFormatter(source, "<standard input>:2:10: a command can only contain words; encountered )\n");
  ASSERT_TRUE(error);
  EXPECT_EQ(error->message, "2:10: a command can only contain words; encountered )");
  EXPECT_EQ(error->briefMessage, "a command can only contain words; encountered )");
  EXPECT_EQ(error->range, (TextRange{10, 1}));
}

TEST(FormatterReport, WithoutAColumnMeansTheLineAndWithoutALineNothing) {
  const QString source = "a\nb c\n";
  EXPECT_EQ(errorOfFormatter(source, "<standard input>:2:?: wrong")->range, (TextRange{2, 3}));
  EXPECT_EQ(errorOfFormatter(source, "<standard input>:?:?: wrong")->range, (TextRange{6, 0}));
  EXPECT_EQ(errorOfFormatter(source, "<standard input>:2:99999999999999999999: wrong")->range,
            (TextRange{2, 3}));
}

TEST(FormatterReport, IsNotTakenFromAnythingElse) {
  EXPECT_FALSE(errorOfFormatter("a", ""));
  EXPECT_FALSE(errorOfFormatter("a", "unknown flag: -ln"));
  EXPECT_FALSE(errorOfFormatter("a", "panic\n<standard input>:1:1: wrong"));
}

TEST(SyntaxCheckReport, TellsTheLineAndFindsTheTokenInIt) {
  struct Case {
    const char* source;
    const char* report;
    const char* brief;
    const char* pinned;
  };
  const Case cases[] = {
      {"a\nb; fi\n", "/bin/sh: 2: Syntax error: \"fi\" unexpected\n", "Syntax error: \"fi\" unexpected",
       "fi"},
      {"a\nfoo(bar", "sh: 2: Syntax error: word unexpected (expecting \")\")",
       "Syntax error: word unexpected (expecting \")\")", "foo(bar"},
      {"( a ) )", "sh: 1: Syntax error: \")\" unexpected", "Syntax error: \")\" unexpected", "( a ) )"},
      {"if a\nthen b\n", "sh: 3: Syntax error: end of file unexpected (expecting \"fi\")",
       "Syntax error: end of file unexpected (expecting \"fi\")", "then b"},
      {"a\n\tb )", "sh: line 2: syntax error near unexpected token `)'\nsh: line 2: `b )'",
       "syntax error near unexpected token `)'", "b )"},
      {"a b", "out of memory\n", "out of memory", ""},
  };
  for (const Case& c : cases) {
    const ScriptError error = errorOfSyntaxCheck(c.source, c.report);
    EXPECT_EQ(error.message, QString(c.report).trimmed());
    EXPECT_EQ(error.briefMessage, c.brief);
    EXPECT_EQ(pinned(c.source, error), c.pinned) << c.report;
  }
}

TEST(RunReport, IsTheWholeStandardErrorAndItsFirstLine) {
  const ScriptError error = errorOfRun("a\nb\n", "cannot mount\nno such disk\n", "/name", "ended");
  EXPECT_EQ(error.message, "cannot mount\nno such disk");
  EXPECT_EQ(error.briefMessage, "cannot mount");
  EXPECT_EQ(error.range, (TextRange{4, 0}));
}

TEST(RunReport, IsThePlainEndingOfAScriptThatSaidNothing) {
  const ScriptError error = errorOfRun("a\nb\n", " \n", "/name", "ended");
  EXPECT_EQ(error, (ScriptError{"ended", "ended", {4, 0}}));
}

TEST(RunReport, PointsAtTheLineThatTheShellNames) {
  const QString source = "a\n  größe b\n";
  const ScriptError error =
      errorOfRun(source, "talk\n/proc/self/fd/9: 2: größe: not found\n", "/proc/self/fd/9", "ended");
  EXPECT_EQ(error.message, "talk\nsh: 2: größe: not found");
  EXPECT_EQ(error.briefMessage, "talk");
  EXPECT_EQ(pinned(source, error), "größe b");
  EXPECT_EQ(pinned(source, errorOfRun(source, "/n: line 1: a: command not found", "/n", "")), "a");
  EXPECT_EQ(errorOfRun(source, "tool: 2: wrong", "/n", "").range, (TextRange{source.size(), 0}));
  EXPECT_EQ(errorOfRun(source, "see /n: 2: wrong", "/n", "").range, (TextRange{source.size(), 0}));
}
