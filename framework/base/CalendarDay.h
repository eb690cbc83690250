// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QString>

#include "base/Export.h"

/// Calendar days, and the points in time as which they travel.
namespace velmora::base {

/// Noon, local time, of a calendar day: read back as local time, within half a day's change of time zone, it
/// is still that day. One o'clock where the clocks jumped over noon; invalid for a day that the local time
/// zone left out.
VELMORA_EXPORT QDateTime noonOf(const QDate& day);

/// The local calendar day of a point in time; invalid when that is.
inline QDate localDayOf(const QDateTime& pointInTime) { return pointInTime.toLocalTime().date(); }

/// The day written "YYYY-MM-DD"; invalid when the text is none of that form.
VELMORA_EXPORT QDate dayFromIso(const QString& text);

/// The point in time of a day and a time of day in UTC; invalid when one of them is. Never by way of local
/// time, which does not have the hour that is left out in spring.
inline QDateTime momentInUtc(const QDate& day, const QTime& time) {
  return day.isValid() && time.isValid() ? QDateTime(day, time, Qt::UTC) : QDateTime();
}

}  // namespace velmora::base
