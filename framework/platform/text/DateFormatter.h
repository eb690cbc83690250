// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDate>
#include <QDateTime>
#include <QLocale>
#include <QString>

#include "base/CalendarDay.h"
#include "base/Export.h"

namespace velmora::platform {

/// Dates and times as the user reads and types them, in the locale's own style.
///
/// The short date style always has the year in four digits, for showing and for parsing alike: these are
/// birth dates, and a two-digit year would be read a century off. When two digits are typed they mean the
/// year from 80 years back to 20 years ahead of the `today` given with the text.
class VELMORA_EXPORT DateFormatter {
 public:
  enum class Style { None, Short };

  explicit DateFormatter(const QLocale& locale = QLocale()) : locale_(locale) {}

  void setDateStyle(Style style) { dateStyle_ = style; }
  void setTimeStyle(Style style) { timeStyle_ = style; }

  /// The text for a point in time, as the calendar and the clock of this machine's time zone show it; empty
  /// for an invalid date.
  QString stringFromDate(const QDateTime& date) const;
  /// The text for a calendar day, which no time zone can touch. Date style only.
  QString stringFromDate(const QDate& day) const;
  /// The calendar day that the text stands for; invalid when it is no date in this style. Date style only.
  QDate dayFromString(const QString& text, const QDate& today) const;
  /// The point in time that the text stands for: noon of that day, local time, so that no change of time zone
  /// within reason turns it into its neighbour. Invalid when the text is no date in this style, and for the
  /// few days that a time zone left out when it moved across the date line; date() is that day all the same.
  /// Date style only.
  QDateTime dateFromString(const QString& text, const QDate& today) const;

 private:
  QLocale locale_;
  Style dateStyle_ = Style::None;
  Style timeStyle_ = Style::None;
};

using base::noonOf;

}  // namespace velmora::platform
