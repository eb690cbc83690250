// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/preferences/ScriptCheck.h"

#include <gtest/gtest.h>

#include <QPlainTextEdit>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextEdit>
#include <QTextLayout>
#include <algorithm>
#include <cmath>

#include "testing/main/Shown.h"
#include "testing/standins/ScriptedScripts.h"
#include "velmora/preferences/ScriptStyles.h"

using velmora::checkScript;
using velmora::cursorSelecting;
using velmora::ScriptCheck;
using velmora::scriptInDocument;
using velmora::setScriptText;
using velmora::platform::ScriptError;
using velmora::platform::ScriptText;
using velmora::platform::TextRange;
using velmora::testkit::ScriptedScripts;
using Style = ScriptText::Style;

namespace {

/// The contrast of two colours by WCAG 2.1, worked out here by itself.
double contrastOf(const QColor& one, const QColor& other) {
  const auto lightness = [](const QColor& colour) {
    const auto part = [](int value) {
      const double v = value / 255.0;
      return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    };
    return 0.05 + 0.2126 * part(colour.red()) + 0.7152 * part(colour.green()) + 0.0722 * part(colour.blue());
  };
  return std::max(lightness(one), lightness(other)) / std::min(lightness(one), lightness(other));
}

QPalette paletteOn(const QColor& base) {
  QPalette palette;
  palette.setColor(QPalette::Base, base);
  return palette;
}

const ScriptText script{"if a; then\n\techo 'ü' # 患者\nfi\n",
                        {{{0, 2}, Style::Keyword},
                         {{6, 4}, Style::Keyword},
                         {{17, 3}, Style::String},
                         {{21, 4}, Style::Comment},
                         {{26, 2}, Style::Keyword}}};

}  // namespace

TEST(ScriptCheck, DoesNothingWithAnEmptyText) {
  ScriptedScripts scripts;
  const ScriptCheck check = checkScript(scripts, "");
  EXPECT_FALSE(check.formatted);
  EXPECT_FALSE(check.error);
  EXPECT_TRUE(scripts.compiled.isEmpty());
}

TEST(ScriptCheck, SkipsATextThatIsRefusedSilently) {
  ScriptedScripts scripts;
  scripts.behaviours["junk"] = {.refused = true, .compileError = {}, .runError = {}, .formatted = script};
  const ScriptCheck check = checkScript(scripts, "junk");
  EXPECT_FALSE(check.formatted);
  EXPECT_FALSE(check.error);
}

TEST(ScriptCheck, GivesTheFormattedFormOfAValidScriptWithoutRunningIt) {
  ScriptedScripts scripts;
  scripts.behaviours["if  a"] = {.refused = false, .compileError = {}, .runError = {}, .formatted = script};
  const ScriptCheck check = checkScript(scripts, "if  a");
  ASSERT_TRUE(check.formatted);
  EXPECT_EQ(check.formatted->text, script.text);
  EXPECT_FALSE(check.error);
  EXPECT_TRUE(scripts.executed.isEmpty());
}

TEST(ScriptCheck, GivesNoFormWhereThereIsNone) {
  ScriptedScripts scripts;
  EXPECT_FALSE(checkScript(scripts, "a").formatted);
  EXPECT_EQ(scripts.compiled, QStringList{"a"});
}

TEST(ScriptCheck, OfAnErrorAtCharacters10To14SelectsTheseAndLeavesTheText) {
  const QString source = "größe=1 \t\tfails here";
  ScriptedScripts scripts;
  const ScriptError error{"1:13: fails does not work", "fails does not work", {10, 5}};
  scripts.behaviours[source] = {.refused = false, .compileError = error, .runError = {}, .formatted = script};
  const ScriptCheck check = checkScript(scripts, source);
  EXPECT_FALSE(check.formatted);
  ASSERT_TRUE(check.error);
  EXPECT_EQ(*check.error, error);

  QTextEdit view;
  view.setPlainText(source);
  view.setTextCursor(cursorSelecting(*view.document(), check.error->range));
  EXPECT_EQ(view.textCursor().selectionStart(), 10);
  EXPECT_EQ(view.textCursor().selectionEnd(), 15);
  EXPECT_EQ(view.textCursor().selectedText(), "fails");
}

TEST(ScriptCheck, SelectsNoFurtherThanTheTextReaches) {
  QTextDocument document("a\nb");
  EXPECT_EQ(cursorSelecting(document, {2, 1}).selectedText(), "b");
  EXPECT_EQ(cursorSelecting(document, {2, 99}).selectedText(), "b");
  EXPECT_EQ(cursorSelecting(document, {99, 1}).position(), 3);
  EXPECT_EQ(cursorSelecting(document, {-5, 2}).anchor(), 0);
}

TEST(ScriptLook, StaysPlainTextInEitherKindOfView) {
  QTextEdit rich;
  setScriptText(*rich.document(), script, rich.palette());
  EXPECT_EQ(rich.toPlainText(), script.text);
  QPlainTextEdit plain;
  setScriptText(*plain.document(), script, plain.palette());
  EXPECT_EQ(plain.toPlainText(), script.text);
  EXPECT_EQ(scriptInDocument(*plain.document()), script.text);
}

TEST(ScriptLook, KeepsNoBreakSpaces) {
  QTextDocument document;
  setScriptText(document, {"echo 'a\u00a0b'\n", {}}, QPalette());
  EXPECT_EQ(scriptInDocument(document), "echo 'a\u00a0b'\n");
}

TEST(ScriptLook, TellsKeywordsStringsAndCommentsApart) {
  QTextDocument document;
  const QPalette palette = paletteOn(Qt::white);
  setScriptText(document, script, palette);
  for (const ScriptText::Run& run : script.runs) {
    const QTextCharFormat format = cursorSelecting(document, run.range).charFormat();
    EXPECT_EQ(format.foreground(), velmora::formatOfScriptStyle(run.style, palette).foreground());
    EXPECT_EQ(format.fontWeight() == QFont::Bold, run.style == Style::Keyword);
    EXPECT_EQ(format.fontItalic(), run.style == Style::Comment);
  }
  // And only those.
  EXPECT_EQ(cursorSelecting(document, {4, 1}).charFormat().foreground().style(), Qt::NoBrush);
  EXPECT_EQ(cursorSelecting(document, {12, 4}).charFormat().foreground().style(), Qt::NoBrush);
  EXPECT_EQ(cursorSelecting(document, {20, 1}).charFormat().foreground().style(), Qt::NoBrush);
}

TEST(ScriptLook, LeavesNothingOfTheLookBefore) {
  QTextDocument document;
  setScriptText(document, {"fi", {{{0, 2}, Style::Keyword}}}, QPalette());
  setScriptText(document, {"echo", {}}, QPalette());
  EXPECT_EQ(cursorSelecting(document, {0, 4}).charFormat().foreground().style(), Qt::NoBrush);
  EXPECT_NE(cursorSelecting(document, {0, 4}).charFormat().fontWeight(), static_cast<int>(QFont::Bold));
}

TEST(ScriptLook, IsOneStepThatCanBeUndone) {
  QTextDocument document;
  document.setPlainText("if a");
  QTextCursor typing(&document);
  typing.movePosition(QTextCursor::End);
  typing.insertText("; then");
  setScriptText(document, script, QPalette());
  document.undo();
  EXPECT_EQ(document.toPlainText(), "if a; then");
  EXPECT_EQ(cursorSelecting(document, {0, 2}).charFormat().foreground().style(), Qt::NoBrush);
  document.redo();
  EXPECT_EQ(document.toPlainText(), script.text);
  document.undo();
  document.undo();
  EXPECT_EQ(document.toPlainText(), "if a");
}

TEST(ScriptLook, StandsOutFromEveryBackground) {
  for (int grey = 0; grey < 256; ++grey) {
    const QColor base(grey, grey, grey);
    for (const Style style : {Style::Keyword, Style::String, Style::Comment}) {
      const QColor colour = velmora::formatOfScriptStyle(style, paletteOn(base)).foreground().color();
      EXPECT_GE(contrastOf(colour, base), 4.5) << grey << " " << qPrintable(colour.name());
    }
  }
}

TEST(ScriptLook, HasThreeColoursOnLightAndOnDarkBackgrounds) {
  for (const QColor& base : {QColor(Qt::white), QColor(0x1e, 0x1e, 0x1e), QColor(Qt::black)}) {
    QList<QRgb> colours;
    for (const Style style : {Style::Keyword, Style::String, Style::Comment}) {
      const QRgb colour = velmora::formatOfScriptStyle(style, paletteOn(base)).foreground().color().rgb();
      EXPECT_FALSE(colours.contains(colour));
      colours.append(colour);
    }
  }
}
