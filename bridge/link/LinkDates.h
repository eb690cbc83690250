// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QString>
#include <optional>

/// Calendar days and the points in time as which they travel.
namespace bridge {

/// Noon, local time, of the day written "YYYY-MM-DD": read back as local time, within half a day's change of
/// time zone, it is still that day. Nothing when the text is no such day, or this time zone has skipped it.
std::optional<QDateTime> noonOfDay(const QString& isoDay);

/// The local calendar day of a point in time, "YYYY-MM-DD".
QString localDay(const QDateTime& pointInTime);

}  // namespace bridge
