// SPDX-License-Identifier: LGPL-3.0-or-later
#include "apps/growth/record/Age.h"

namespace growth {

namespace {

constexpr double daysInAMonth = 30.4375;

bool isPair(const QDate& birth, const QDate& exam) {
  return birth.isValid() && exam.isValid() && birth <= exam;
}

}  // namespace

std::optional<double> ageInMonths(const QDate& birth, const QDate& exam) {
  if (!isPair(birth, exam)) return std::nullopt;
  return static_cast<double>(birth.daysTo(exam)) / daysInAMonth;
}

std::optional<AgeParts> ageParts(const QDate& birth, const QDate& exam) {
  if (!isPair(birth, exam)) return std::nullopt;
  int months = (exam.year() - birth.year()) * 12 + exam.month() - birth.month();
  // QDate shortens to the last day of the month where the day of birth does not exist.
  if (birth.addMonths(months) > exam) --months;
  const int days = static_cast<int>(birth.addMonths(months).daysTo(exam));
  return AgeParts{months / 12, months % 12, days};
}

}  // namespace growth
