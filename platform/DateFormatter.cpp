// SPDX-License-Identifier: LGPL-3.0-or-later
#include "platform/DateFormatter.h"

#include <QRegularExpression>
#include <optional>

namespace platform {

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
QDate withFullYear(const QDate& date, const QDate& today) {
  const int earliest = today.year() - 80;
  int year = earliest - earliest % 100 + date.year() % 100;
  if (year < earliest) year += 100;
  return QDate(year, date.month(), date.day());
}

}  // namespace

DateFormatter::DateFormatter(const QLocale& locale, const QDate& today) : locale_(locale), today_(today) {}

QString DateFormatter::stringFromDate(const QDateTime& date) const {
  if (!date.isValid()) return {};
  const QDateTime local = date.toLocalTime();
  QStringList parts;
  if (dateStyle_ == Style::Short) parts += locale_.toString(local.date(), fourDigitYearFormat(locale_));
  if (timeStyle_ == Style::Short) parts += locale_.toString(local.time(), QLocale::ShortFormat);
  return parts.join(QLatin1Char(' '));
}

QString DateFormatter::stringFromDate(const QDate& date) const { return stringFromDate(noonOf(date)); }

QDateTime DateFormatter::dateFromString(const QString& text) const {
  const QString trimmed = text.trimmed();
  if (trimmed.isEmpty() || dateStyle_ != Style::Short) return {};
  const QString format = fourDigitYearFormat(locale_);
  QDate date = locale_.toDate(trimmed, format);
  if (!date.isValid()) {
    // Two digits for the year. Qt reads them as 19xx, which also decides whether there is a 29 February, so they are
    // written out before the text is read as a date.
    QString twoDigit = format;
    twoDigit.replace(QLatin1String("yyyy"), QLatin1String("yy"));
    static const QRegularExpression lastTwo(QStringLiteral("(?<!\\d)(\\d{2})(?!\\d)"));
    const QDate in19xx = locale_.toDate(trimmed, twoDigit);
    if (in19xx.isValid()) {
      date = withFullYear(in19xx, today_);
    } else {
      // 29/2/00 has no counterpart in 1900: try each two-digit group of the text as the year, in four digits.
      auto match = lastTwo.globalMatch(trimmed);
      while (match.hasNext() && !date.isValid()) {
        const auto group = match.next();
        const int year = withFullYear(QDate(1900 + group.captured(1).toInt(), 1, 1), today_).year();
        QString expanded = trimmed;
        expanded.replace(group.capturedStart(1), 2, QString::number(year));
        date = locale_.toDate(expanded, format);
      }
    }
  }
  if (!date.isValid() || date.year() < 1) return {};
  return noonOf(date);
}

QDateTime noonOf(const QDate& day) { return day.isValid() ? QDateTime(day, QTime(12, 0)) : QDateTime(); }

}  // namespace platform
