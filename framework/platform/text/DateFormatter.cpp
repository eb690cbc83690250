// SPDX-License-Identifier: LGPL-3.0-or-later
#include "platform/text/DateFormatter.h"

#include <QRegularExpression>

namespace velmora::platform {

namespace {

/// The locale's short date format with every run of y made "yyyy". Quoted text in the format is left alone.
QString fourDigitYearFormat(const QLocale& locale) {
  const QString format = locale.dateFormat(QLocale::ShortFormat);
  QString result;
  bool quoted = false;
  for (qsizetype i = 0; i < format.size(); ++i) {
    const QChar c = format.at(i);
    if (c == QLatin1Char('\'')) quoted = !quoted;
    if (!quoted && c == QLatin1Char('y')) {
      while (i + 1 < format.size() && format.at(i + 1) == QLatin1Char('y')) ++i;
      result += QLatin1String("yyyy");
    } else {
      result += c;
    }
  }
  return result;
}

/// The year that two typed digits mean: from 80 years back to 20 ahead.
int fullYear(int twoDigits, const QDate& today) {
  const int earliest = today.year() - 80;
  const int year = earliest - earliest % 100 + twoDigits;
  return year < earliest ? year + 100 : year;
}

/// The text with every decimal digit of any script as an ASCII one, and without the invisible marks that keep
/// right-to-left dates in order: people type the digits that their keyboard has.
QString plainDigits(const QString& text) {
  QString plain;
  for (const char32_t c : text.toUcs4()) {
    if (c == 0x200E || c == 0x200F || c == 0x061C) continue;
    plain += QChar::isDigit(c) ? QString::number(QChar::digitValue(c)) : QString::fromUcs4(&c, 1);
  }
  return plain.trimmed();
}

/// The order of day, month and year in a format, as "dMy"; empty when the month is spelled out.
QString numericOrder(const QString& format) {
  QString order;
  bool quoted = false;
  for (const QChar c : format) {
    if (c == QLatin1Char('\'')) quoted = !quoted;
    if (quoted || !QStringLiteral("dMy").contains(c)) continue;
    if (!order.contains(c)) order += c;
  }
  return format.contains(QLatin1String("MMM")) ? QString() : order;
}

/// Three numbers, in the order of the locale whatever stands between them, or year first where that has four
/// digits.
QDate numericDate(const QString& text, QString order, const QDate& today) {
  static const QRegularExpression threeNumbers(
      QStringLiteral("^([0-9]{1,4})[^0-9\\p{L}+]{1,3}([0-9]{1,2})[^0-9\\p{L}+]{1,3}([0-9]{1,4})\\.?$"));
  const auto match = threeNumbers.match(plainDigits(text));
  if (!match.hasMatch()) return {};
  if (match.capturedLength(1) == 4) order = QStringLiteral("yMd");
  if (order.size() != 3) return {};
  int day = 0;
  int month = 0;
  int year = 0;
  for (int i = 0; i < 3; ++i) {
    const QString number = match.captured(i + 1);
    const QChar part = order.at(i);
    const bool isYear = part == QLatin1Char('y');
    if (isYear ? number.size() % 2 != 0 : number.size() > 2) return {};
    if (part == QLatin1Char('d')) day = number.toInt();
    if (part == QLatin1Char('M')) month = number.toInt();
    if (isYear) year = number.size() == 2 ? fullYear(number.toInt(), today) : number.toInt();
  }
  return QDate(year, month, day);
}

/// A date with its month spelled out, as the locale does it.
QDate spelledDate(const QLocale& locale, const QString& text, const QString& format, const QDate& today) {
  const QDate date = locale.toDate(text, format);
  if (date.isValid()) return date;
  // Qt reads two digits as 19xx, where 29 February 2000 has no counterpart: so the year is written out first.
  static const QRegularExpression lastTwo(QStringLiteral("(?<![0-9])([0-9]{2})$"));
  const auto match = lastTwo.match(text);
  if (!match.hasMatch()) return {};
  return locale.toDate(
      text.left(match.capturedStart(1)) +
          QStringLiteral("%1").arg(fullYear(match.captured(1).toInt(), today), 4, 10, QLatin1Char('0')),
      format);
}

}  // namespace

QString DateFormatter::stringFromDate(const QDateTime& date) const {
  if (!date.isValid()) return {};
  const QDateTime local = date.toLocalTime();
  QStringList parts;
  if (dateStyle_ == Style::Short) parts += stringFromDate(local.date());
  if (timeStyle_ == Style::Short) parts += locale_.toString(local.time(), QLocale::ShortFormat);
  return parts.join(QLatin1Char(' '));
}

QString DateFormatter::stringFromDate(const QDate& day) const {
  if (!day.isValid() || dateStyle_ != Style::Short) return {};
  return locale_.toString(day, fourDigitYearFormat(locale_));
}

QDateTime DateFormatter::dateFromString(const QString& text, const QDate& today) const {
  return noonOf(dayFromString(text, today));
}

QDate DateFormatter::dayFromString(const QString& text, const QDate& today) const {
  const QString trimmed = text.trimmed();
  if (trimmed.isEmpty() || dateStyle_ != Style::Short) return {};
  const QString format = fourDigitYearFormat(locale_);
  QDate date = numericDate(trimmed, numericOrder(format), today);
  if (!date.isValid()) date = spelledDate(locale_, trimmed, format, today);
  return date.isValid() && date.year() >= 1 ? date : QDate();
}

}  // namespace velmora::platform
