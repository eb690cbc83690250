// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/scripts/ShellErrors.h"

#include <QRegularExpression>

namespace velmora::desktop {

namespace {

bool isBlank(QChar c) { return c == QLatin1Char(' ') || c == QLatin1Char('\t') || c == QLatin1Char('\r'); }
bool isOperator(QChar c) { return QStringView(u";&|<>").contains(c); }
bool isParenthesis(QChar c) { return c == QLatin1Char('(') || c == QLatin1Char(')'); }
bool isQuote(QChar c) { return QStringView(u"'\"`").contains(c); }

/// A stretch of the source from `begin` up to `end`, without the blanks at both ends.
platform::TextRange trimmed(const QString& source, qsizetype begin, qsizetype end) {
  while (end > begin && isBlank(source[end - 1])) --end;
  while (begin < end && isBlank(source[begin])) ++begin;
  return {begin, end - begin};
}

/// The line with that number, without its end; the last one with text when that one has none.
platform::TextRange lineOf(const QString& source, qsizetype number) {
  platform::TextRange found{source.size(), 0};
  qsizetype begin = 0;
  for (qsizetype line = 1; line <= number && begin <= source.size(); ++line) {
    qsizetype end = source.indexOf(QLatin1Char('\n'), begin);
    if (end < 0) end = source.size();
    if (trimmed(source, begin, end).length > 0) found = {begin, end - begin};
    begin = end + 1;
  }
  return found;
}

/// The number of bytes that a character takes in UTF-8; of a pair, the first half has them all.
qsizetype bytesOf(QChar c) {
  if (c.unicode() < 0x80) return 1;
  if (c.unicode() < 0x800) return 2;
  if (c.isHighSurrogate()) return 4;
  return c.isLowSurrogate() ? 0 : 3;
}

/// Where in the source the byte with that number, from 1, of a line stands.
qsizetype positionOfByte(const QString& source, platform::TextRange line, qsizetype number) {
  const qsizetype end = line.location + line.length;
  qsizetype position = line.location;
  for (qsizetype before = 0; position < end; ++position) {
    before += bytesOf(source[position]);
    if (before >= number) break;
  }
  return position;
}

/// Where the token that begins there ends, at the end of the line at the latest.
qsizetype endOfToken(const QString& source, qsizetype begin, qsizetype lineEnd) {
  const QChar first = source[begin];
  if (isQuote(first)) {
    const qsizetype closing = source.indexOf(first, begin + 1);
    if (closing >= 0 && closing < lineEnd) return closing + 1;
    const platform::TextRange rest = trimmed(source, begin, lineEnd);
    return rest.location + rest.length;
  }
  qsizetype end = begin + 1;
  if (isParenthesis(first)) return end;
  if (isOperator(first)) {
    while (end < lineEnd && isOperator(source[end])) ++end;
    return end;
  }
  // The parentheses that open a substitution belong to it.
  if (first == QLatin1Char('$') && end < lineEnd && source[end] == QLatin1Char('(')) {
    while (end < lineEnd && source[end] == QLatin1Char('(')) ++end;
    return end;
  }
  while (end < lineEnd && !isBlank(source[end]) && !isOperator(source[end]) && !isParenthesis(source[end]))
    ++end;
  return end;
}

QString firstLineOf(const QString& text) { return text.section(QLatin1Char('\n'), 0, 0).trimmed(); }

/// A number of a report; 0 for one that the tool does not know.
qsizetype numberOf(const QString& digits) { return digits.toLongLong(); }

}  // namespace

platform::TextRange rangeOfPlace(const QString& source, qsizetype line, qsizetype column) {
  const platform::TextRange whole = lineOf(source, line);
  const qsizetype end = whole.location + whole.length;
  if (column > 0) {
    const qsizetype begin = positionOfByte(source, whole, column);
    if (begin < end && !isBlank(source[begin])) return {begin, endOfToken(source, begin, end) - begin};
    const platform::TextRange rest = trimmed(source, begin, end);
    if (rest.length > 0) return rest;
  }
  return trimmed(source, whole.location, end);
}

std::optional<platform::ScriptError> errorOfFormatter(const QString& source, const QString& report) {
  static const QRegularExpression form(QStringLiteral("^<standard input>:(\\d+|\\?):(\\d+|\\?): ([^\\n]*)"));
  const QRegularExpressionMatch match = form.match(report);
  if (!match.hasMatch()) return std::nullopt;
  const qsizetype line = numberOf(match.captured(1));
  platform::ScriptError error{report.trimmed(), match.captured(3).trimmed(), {source.size(), 0}};
  error.message.remove(QStringLiteral("<standard input>:"));
  if (line > 0) error.range = rangeOfPlace(source, line, numberOf(match.captured(2)));
  return error;
}

platform::ScriptError errorOfSyntaxCheck(const QString& source, const QString& report) {
  static const QRegularExpression form(QStringLiteral("^[^\\n]*?: (?:line )?(\\d+): ([^\\n]*)"));
  static const QRegularExpression token(QStringLiteral("\"([^\\n]+)\" unexpected"));
  platform::ScriptError error{report.trimmed(), firstLineOf(report), {source.size(), 0}};
  const QRegularExpressionMatch match = form.match(report);
  if (!match.hasMatch()) return error;
  error.briefMessage = match.captured(2).trimmed();
  error.range = rangeOfPlace(source, numberOf(match.captured(1)), 0);
  const QRegularExpressionMatch named = token.match(error.briefMessage);
  if (!named.hasMatch()) return error;
  const QStringView line = QStringView(source).mid(error.range.location, error.range.length);
  const qsizetype found = line.indexOf(named.captured(1));
  if (found >= 0 && line.count(named.captured(1)) == 1)
    error.range = {error.range.location + found, named.captured(1).size()};
  return error;
}

platform::ScriptError errorOfRun(const QString& source, const QString& standardError, const QString& name,
                                 const QString& ending) {
  const QRegularExpression prefix(
      QStringLiteral("^%1: (?=(?:line )?(\\d+): )").arg(QRegularExpression::escape(name)),
      QRegularExpression::MultilineOption);
  platform::ScriptError error{standardError.trimmed(), {}, {source.size(), 0}};
  const QRegularExpressionMatch match = prefix.match(error.message);
  if (match.hasMatch()) error.range = rangeOfPlace(source, numberOf(match.captured(1)), 0);
  error.message.replace(prefix, QStringLiteral("sh: "));
  if (error.message.isEmpty()) error.message = ending;
  error.briefMessage = firstLineOf(error.message);
  return error;
}

}  // namespace velmora::desktop
