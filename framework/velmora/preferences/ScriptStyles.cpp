// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/preferences/ScriptStyles.h"

#include <QTextDocument>
#include <algorithm>
#include <cmath>

namespace velmora {

namespace {

using Style = platform::ScriptText::Style;

constexpr double LeastContrast = 4.5;
/// In this many steps a colour that is too close to the background goes to black or white.
constexpr int Steps = 20;

/// Relative luminance, and the contrast of two colours, as WCAG 2.1 defines them.
double luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}
double contrast(const QColor& one, const QColor& other) {
  const double first = luminance(one) + 0.05;
  const double second = luminance(other) + 0.05;
  return std::max(first, second) / std::min(first, second);
}

QColor hueOf(Style style) {
  switch (style) {
    case Style::Keyword:
      return QColor(0x7a, 0x2a, 0xb8);
    case Style::String:
      return QColor(0xa8, 0x4a, 0x10);
    case Style::Comment:
      return QColor(0x2e, 0x74, 0x46);
  }
  return {};
}

/// The colour, made lighter or darker, whichever the background is not, until it can be read on it.
QColor readable(const QColor& colour, const QColor& background) {
  const bool onDark = contrast(Qt::white, background) > contrast(Qt::black, background);
  const float target = onDark ? 1.0F : 0.0F;
  for (int step = 0; step < Steps; ++step) {
    const float part = static_cast<float>(step) / Steps;
    const auto mixed = [&](float own) { return own + (target - own) * part; };
    // As it will be drawn, in whole steps of 255.
    const QColor candidate =
        QColor::fromRgbF(mixed(colour.redF()), mixed(colour.greenF()), mixed(colour.blueF())).rgb();
    if (contrast(candidate, background) >= LeastContrast) return candidate;
  }
  return onDark ? Qt::white : Qt::black;
}

}  // namespace

QTextCharFormat formatOfScriptStyle(Style style, const QPalette& palette) {
  QTextCharFormat format;
  format.setForeground(readable(hueOf(style), palette.color(QPalette::Base)));
  if (style == Style::Keyword) format.setFontWeight(QFont::Bold);
  if (style == Style::Comment) format.setFontItalic(true);
  return format;
}

void setScriptText(QTextDocument& document, const platform::ScriptText& script, const QPalette& palette) {
  QTextCursor edit(&document);
  edit.beginEditBlock();
  edit.select(QTextCursor::Document);
  edit.insertText(script.text, QTextCharFormat());
  for (const platform::ScriptText::Run& run : script.runs) {
    cursorSelecting(document, run.range).setCharFormat(formatOfScriptStyle(run.style, palette));
  }
  edit.endEditBlock();
}

QString scriptInDocument(const QTextDocument& document) {
  QString text = document.toRawText();
  for (const QChar lineEnd : {QChar(QChar::ParagraphSeparator), QChar(QChar::LineSeparator)})
    text.replace(lineEnd, QLatin1Char('\n'));
  return text;
}

QTextCursor cursorSelecting(QTextDocument& document, platform::TextRange range) {
  // Behind the last character a document has one of its own, the end of the last paragraph.
  const qsizetype end = document.characterCount() - 1;
  const qsizetype first = std::clamp<qsizetype>(range.location, 0, end);
  const qsizetype last = std::clamp<qsizetype>(range.location + range.length, first, end);
  QTextCursor cursor(&document);
  cursor.setPosition(static_cast<int>(first));
  cursor.setPosition(static_cast<int>(last), QTextCursor::KeepAnchor);
  return cursor;
}

}  // namespace velmora
