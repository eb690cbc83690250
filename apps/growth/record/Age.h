// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDate>
#include <optional>

namespace growth {

/// The age at an examination in months, the way the reference tables count it: the days lived, divided
/// by 30.4375, the mean length of a month over four years. Nothing when a date is missing or the examination
/// lies before the birth.
///
/// A second birthday without a 29 February on the way is day 730, 23.98 months: still the infant tables.
std::optional<double> ageInMonths(const QDate& birth, const QDate& exam);

/// An age as people say it: completed years, completed months since the last birthday (0 to 11) and days
/// since (0 to 30).
struct AgeParts {
  int years;
  int months;
  int days;

  bool operator==(const AgeParts&) const = default;
};

/// The age at an examination in completed years, months and days. A month is complete on the day of the month
/// of the birth, or on the last day of a month that has no such day: a child of 29 February completes a year
/// on 28 February. Nothing when a date is missing or the examination lies before the birth.
std::optional<AgeParts> ageParts(const QDate& birth, const QDate& exam);

}  // namespace growth
