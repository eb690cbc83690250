// SPDX-License-Identifier: LGPL-3.0-or-later
#include "base/CalendarDay.h"

#include <QRegularExpression>

namespace velmora::base {

QDateTime noonOf(const QDate& day) {
  if (!day.isValid()) return {};
  QDateTime noon(day, QTime(12, 0));
  // Clocks have jumped over noon, too: Morocco's did on 3 June 1967.
  if (!noon.isValid()) noon = QDateTime(day, QTime(13, 0));
  // Where a zone moved across the date line a whole day is missing, and Qt answers with a neighbour.
  if (!noon.isValid() || QDateTime::fromMSecsSinceEpoch(noon.toMSecsSinceEpoch()).date() != day) return {};
  return noon;
}

QDate dayFromIso(const QString& text) {
  static const QRegularExpression form(QStringLiteral("\\A[0-9]{4}-[0-9]{2}-[0-9]{2}\\z"));
  return form.match(text).hasMatch() ? QDate::fromString(text, Qt::ISODate) : QDate();
}

}  // namespace velmora::base
