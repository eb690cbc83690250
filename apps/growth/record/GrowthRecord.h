// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDate>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <array>
#include <optional>

#include "apps/growth/reference/GrowthReferences.h"
#include "base/files/FileManager.h"

namespace growth {

/// One date of a record, or what was typed where a date belongs: nothing that was typed is lost.
struct RecordDate {
  QDate day;       ///< invalid when there is none
  QString unread;  ///< the text that is no date
  bool operator==(const RecordDate&) const = default;
};

/// One measurement, or what was typed where a number belongs.
struct Measurement {
  std::optional<double> value;  ///< in kg or cm, as typed; any finite number
  QString unread;
  bool operator==(const Measurement&) const = default;
};

/// What was measured on one day.
struct Examination {
  RecordDate date;
  std::array<Measurement, measures.size()> measured;

  Measurement& of(Measure measure) { return measured[static_cast<std::size_t>(measure)]; }
  const Measurement& of(Measure measure) const { return measured[static_cast<std::size_t>(measure)]; }
  bool operator==(const Examination&) const = default;
};

/// The whole content of a growth data file.
struct GrowthRecord {
  QString identifier;
  RecordDate birthDate;
  std::optional<Sex> sex;
  QList<Examination> examinations{Examination{}};  ///< never empty

  /// The age at an examination, in months; nothing while a date is missing.
  std::optional<double> ageAt(const Examination& examination) const;
  /// Sorts the examinations by date, those without one last, and gives the new place of `current`.
  qsizetype sortExaminations(qsizetype current);

  QJsonObject toJson() const;
  /// Dates are "YYYY-MM-DD", weights kilograms, heights and head circumferences centimetres.
  static velmora::base::Result<GrowthRecord> fromJson(const QJsonObject& json);

  bool operator==(const GrowthRecord&) const = default;
};

/// A number as the user types it, with the decimal sign of the locale or a point; the text itself when it is
/// none.
Measurement measurementFromText(const QString& text);
QString textOf(const Measurement& measurement);

}  // namespace growth
