// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/document/ShortDates.h"

#include <QLineEdit>

#include "platform/controls/TextFieldEditing.h"
#include "platform/runloop/RunLoop.h"
#include "platform/text/DateFormatter.h"
#include "platform/text/Localization.h"

using velmora::platform::localizedString;

namespace velmora {

namespace {

platform::DateFormatter formatter() {
  platform::DateFormatter formatter;
  formatter.setDateStyle(platform::DateFormatter::Style::Short);
  return formatter;
}

}  // namespace

QString ShortDates::text(const QDate& day) { return formatter().stringFromDate(day); }
QString ShortDates::text(const QDateTime& date) { return formatter().stringFromDate(date); }

QDate ShortDates::today() const { return clock_.now().date(); }

QDate ShortDates::day(const QString& text) const { return formatter().dayFromString(text, today()); }

QDateTime ShortDates::date(const QString& text) const { return formatter().dateFromString(text, today()); }

void ShortDates::format(QLineEdit& field, platform::TextFieldEditing& editing) const {
  const QString example = text(QDate(2019, 3, 14));
  editing.setFormatter(
      // A copy, because the field outlives the document by a moment.
      [dates = *this](const QString& typed) -> std::optional<QString> {
        const QDate day = dates.day(typed);
        if (!day.isValid()) return std::nullopt;
        return text(day);
      },
      platform::formatted(localizedString("VelmoraDocument", "This is not a date. A date looks like %@."),
                          {example}));
  if (field.placeholderText().isEmpty()) {
    field.setPlaceholderText(
        platform::formatted(localizedString("VelmoraDocument", "for example %@"), {example}));
  }
}

}  // namespace velmora
