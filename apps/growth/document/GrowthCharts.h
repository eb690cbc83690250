// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QList>
#include <QPointF>
#include <QString>
#include <optional>

#include "apps/growth/record/GrowthRecord.h"

class OrvGraphView;

namespace growth {

/// The data points of one measure's chart, and which examinations they belong to.
struct ChartPoints {
  QList<QPointF> points;          ///< age in months, value
  QList<qsizetype> examinations;  ///< of each point, the index of its examination

  /// The place among the points of an examination; nothing when it has none.
  std::optional<qsizetype> pointOf(qsizetype examination) const;
};

/// The points of the examinations that have a date and a measurement above zero.
ChartPoints chartPoints(const GrowthRecord& record, Measure measure);

/// Fills one chart: reference curves for the child's sex, points, and the ring on the examination shown.
void showChart(OrvGraphView& view, const GrowthRecord& record, Measure measure,
               const GrowthReference* reference, qsizetype currentExamination);

/// What stands beside a measurement: z-score and centile, or why there are none.
QString resultText(const GrowthRecord& record, const Examination& examination, Measure measure,
                   const GrowthReference* reference);

}  // namespace growth
