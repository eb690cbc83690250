// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

// QCustomPlot's header is written with Qt's keyword macros, which this project is built without.
#define signals Q_SIGNALS
#define foreach Q_FOREACH
#include <qcustomplot.h>
#undef foreach
#undef signals

#include <optional>

#include "orv/chart/OrvGraphData.h"

namespace velmora::orv {

/// Where a data point is marked in the view.
struct GraphMark {
  QPointF place;
  QPointF outwards;  ///< where the point lies when it is outside the axes: -1, 0 or 1 in x and y; else null
};

/// Draws a chart: axes, grid and lines by QCustomPlot, and over them what QCustomPlot does not have (legend,
/// labels at the ends of the curves, marks, the ring on one point). It is no window: it lays the chart out
/// for a size and paints it with any painter.
class GraphPlot : private QCustomPlot {
 public:
  GraphPlot();

  void setAxes(const QString& xTitle, const QString& yTitle, OrvGraphRange xRange, OrvGraphRange yRange);
  void setTickSteps(double xStep, double yStep);
  void setLegend(const QString& patientTitle, const QString& referenceTitle);
  void setReferenceCurves(const QList<OrvReferenceCurve>& curves);
  void setDataPoints(const QList<QPointF>& points);

  qsizetype dataPointCount() const { return points_.size(); }
  QPointF dataPoint(qsizetype index) const { return points_.at(index); }

  /// Brings ranges, lines and layout up to date for a view of this size; everything below speaks of that
  /// layout.
  void layOut(const QSize& size);
  OrvGraphRange shownXRange() const { return {xAxis->range().lower, xAxis->range().upper}; }
  OrvGraphRange shownYRange() const { return {yAxis->range().lower, yAxis->range().upper}; }
  QPointF coordinateAt(const QPointF& place) const;
  QPointF placeOf(const QPointF& coordinate) const;
  /// Returns nothing for a point that is not finite, and for an index outside the list.
  std::optional<GraphMark> markOf(qsizetype index) const;

  void paint(QCPPainter& painter);
  void paintHighlight(QCPPainter& painter, qsizetype index) const;

 private:
  struct CurveEnd;

  void setUpAxis(QCPAxis* axis);
  void setUpTicks(QCPAxis* axis, double step, double length);
  void rebuild();
  void rebuildCurves();
  void rebuildPatientLine();
  QPointF nearby(const QPointF& point) const;
  QList<CurveEnd> curveEnds() const;
  std::optional<QPointF> endOf(const OrvReferenceCurve& curve) const;
  int labelMargin() const;
  void paintCurveLabels(QCPPainter& painter) const;
  void paintMarks(QCPPainter& painter) const;
  void paintLegend(QCPPainter& painter) const;

  QList<OrvReferenceCurve> curves_;
  QList<QPointF> points_;
  QString patientTitle_, referenceTitle_;
  OrvGraphRange xRange_{0, 1};
  OrvGraphRange yRange_{0, 1};
  double xStep_ = 0;
  double yStep_ = 0;
  bool needsRebuild_ = true;
};

}  // namespace velmora::orv
