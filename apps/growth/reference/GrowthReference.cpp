// SPDX-License-Identifier: LGPL-3.0-or-later
#include "apps/growth/reference/GrowthReference.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace growth {

namespace {

// Tables of one measurement meet with differences in the last digits published; a change of method (lying
// length, standing height) makes a step of about one per cent. Steps above this share of the value interrupt
// a curve.
constexpr double visibleStep = 1e-3;

bool isWithin(const GrowthTable& table, double x) {
  return x >= table.from && (table.toIncluded ? x <= table.to : x < table.to);
}

QList<QPointF> curveOfTable(const GrowthTable& table, Sex sex, double z, double from, double to) {
  QList<double> places{from};
  for (const GrowthTable::Row& row : table.rowsOf(sex)) {
    if (row.x > from && row.x < to) places.append(row.x);
  }
  if (to > from) places.append(to);

  QList<QPointF> curve;
  for (const double x : places) {
    const std::optional<Lms> lms = table.parametersAt(sex, x);
    const std::optional<double> value = lms ? valueOf(*lms, z) : std::nullopt;
    if (value) curve.append(QPointF(x, *value));
  }
  return curve;
}

}  // namespace

std::optional<Lms> GrowthTable::parametersAt(Sex sex, double x) const {
  const QList<Row>& list = rowsOf(sex);
  const auto above = std::lower_bound(list.begin(), list.end(), x,
                                      [](const Row& row, double place) { return row.x < place; });
  if (above == list.end()) return std::nullopt;
  if (above->x == x) return above->lms;
  if (above == list.begin() || std::isnan(x)) return std::nullopt;

  const Row& below = *std::prev(above);
  const double part = (x - below.x) / (above->x - below.x);
  return Lms{std::lerp(below.lms.L, above->lms.L, part), std::lerp(below.lms.M, above->lms.M, part),
             std::lerp(below.lms.S, above->lms.S, part)};
}

const GrowthTable* GrowthReference::tableAt(Sex sex, double x) const {
  const auto table = std::find_if(tables_.begin(), tables_.end(), [&](const GrowthTable& candidate) {
    return !candidate.rowsOf(sex).isEmpty() && isWithin(candidate, x);
  });
  return table == tables_.end() ? nullptr : &*table;
}

std::optional<GrowthReference::Range> GrowthReference::range(Sex sex) const {
  std::optional<Range> whole;
  for (const GrowthTable& table : tables_) {
    if (table.rowsOf(sex).isEmpty()) continue;
    if (!whole) whole = Range{table.from, table.to};
    whole->to = table.to;
  }
  return whole;
}

std::optional<Lms> GrowthReference::parametersAt(Sex sex, double x) const {
  const GrowthTable* table = tableAt(sex, x);
  return table ? table->parametersAt(sex, x) : std::nullopt;
}

std::optional<double> GrowthReference::zScore(Sex sex, double x, double value) const {
  const std::optional<Lms> lms = parametersAt(sex, x);
  return lms ? zScoreOf(*lms, value) : std::nullopt;
}

std::optional<double> GrowthReference::valueAt(Sex sex, double x, double z) const {
  const std::optional<Lms> lms = parametersAt(sex, x);
  return lms ? valueOf(*lms, z) : std::nullopt;
}

QList<QPointF> GrowthReference::centileCurve(Sex sex, double percentile, double from, double to) const {
  const double z = standardNormalQuantile(percentile / 100.0);
  QList<QPointF> whole;
  for (const GrowthTable& table : tables_) {
    const double first = std::max(from, table.from);
    const double last = std::min(to, table.to);
    if (table.rowsOf(sex).isEmpty() || !(first <= last)) continue;
    // The table that follows answers for the place where it begins.
    if (!table.toIncluded && first == table.to) continue;

    QList<QPointF> piece = curveOfTable(table, sex, z, first, last);
    if (piece.isEmpty()) continue;
    if (!whole.isEmpty()) {
      const double step = std::abs(piece.first().y() - whole.last().y());
      if (step > visibleStep * piece.first().y()) {
        const double gap = std::numeric_limits<double>::quiet_NaN();
        whole.append(QPointF(piece.first().x(), gap));
      } else {
        whole.removeLast();
      }
    }
    whole += piece;
  }
  return whole;
}

}  // namespace growth
