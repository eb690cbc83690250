// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/link/LinkDates.h"

#include <QRegularExpression>

namespace bridge {

std::optional<QDateTime> noonOfDay(const QString& isoDay) {
  static const QRegularExpression form(QStringLiteral("\\A[0-9]{4}-[0-9]{2}-[0-9]{2}\\z"));
  if (!form.match(isoDay).hasMatch()) return std::nullopt;
  const QDate day = QDate::fromString(isoDay, Qt::ISODate);
  if (!day.isValid()) return std::nullopt;
  const QDateTime noon(day, QTime(12, 0));
  // Where a zone moved across the date line a whole day is missing, and Qt answers with a neighbour.
  if (!noon.isValid() || QDateTime::fromMSecsSinceEpoch(noon.toMSecsSinceEpoch()).date() != day) {
    return std::nullopt;
  }
  return noon;
}

QString localDay(const QDateTime& pointInTime) {
  return pointInTime.toLocalTime().date().toString(Qt::ISODate);
}

}  // namespace bridge
