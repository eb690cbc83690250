// SPDX-License-Identifier: LGPL-3.0-or-later
#include "base/CalendarDay.h"

#include <QRegularExpression>

namespace velmora::base {

QDateTime noonOf(const QDate& day) {
  if (!day.isValid()) return {};
  const QDateTime noon(day, QTime(12, 0));
  if (noon.isValid()) return noon;
  // Clocks have jumped over noon, too: Morocco's did on 3 June 1967.
  const QDateTime later(day, QTime(13, 0));
  return later.isValid() ? later : noon;
}

QDate dayFromIso(const QString& text) {
  static const QRegularExpression form(QStringLiteral("\\A[0-9]{4}-[0-9]{2}-[0-9]{2}\\z"));
  return form.match(text).hasMatch() ? QDate::fromString(text, Qt::ISODate) : QDate();
}

}  // namespace velmora::base
