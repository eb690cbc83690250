// SPDX-License-Identifier: LGPL-3.0-or-later
#include "orv/chart/graphPlot.h"

#include <QCoreApplication>
#include <algorithm>
#include <cmath>
#include <limits>

#include "orv/chart/graphRanges.h"
#include "orv/chart/graphStyle.h"

namespace {

bool isFinite(const QPointF& point) { return std::isfinite(point.x()) && std::isfinite(point.y()); }

QList<QPointF> inOrderOfX(QList<QPointF> points) {
  std::stable_sort(points.begin(), points.end(),
                   [](const QPointF& a, const QPointF& b) { return a.x() < b.x(); });
  return points;
}

}  // namespace

GraphPlot::GraphPlot() : QCustomPlot(nullptr) {
  setBackground(QBrush(Qt::white));
  setAntialiasedElements(QCP::aeAll);
  setNotAntialiasedElements(QCP::aeAxes | QCP::aeGrid | QCP::aeSubGrid);
  setPlottingHints(QCP::phNone);
  legend->setVisible(false);
  axisRect()->setupFullAxesBox(true);
  for (QCPAxis* axis : {xAxis, yAxis, xAxis2, yAxis2}) setUpAxis(axis);
  for (QCPAxis* axis : {xAxis2, yAxis2}) axis->setTicks(false);
  // The plot is never a window: the chart view draws with it. The redraw that its base has just queued would
  // fill two pictures that nobody looks at, 8 MB for every open record (measured in a batch export of 200).
  QCoreApplication::removePostedEvents(this, QEvent::MetaCall);
}

void GraphPlot::setUpAxis(QCPAxis* axis) {
  axis->setBasePen(graphStyle::framePen());
  axis->setTickPen(graphStyle::framePen());
  axis->setSubTickPen(graphStyle::framePen());
  axis->setTickLabelFont(graphStyle::font());
  axis->setTickLabelColor(Qt::black);
  axis->setLabelFont(graphStyle::titleFont());
  axis->setLabelColor(Qt::black);
  axis->setTickLengthIn(0);
  axis->setTickLengthOut(5);
  axis->setSubTickLengthIn(0);
  axis->setSubTickLengthOut(3);
  axis->grid()->setPen(graphStyle::gridPen());
  axis->grid()->setSubGridPen(graphStyle::subGridPen());
  axis->grid()->setZeroLinePen(Qt::NoPen);
  axis->grid()->setSubGridVisible(true);
}

void GraphPlot::setAxes(const QString& xTitle, const QString& yTitle, OrvGraphRange xRange,
                        OrvGraphRange yRange) {
  xAxis->setLabel(xTitle);
  yAxis->setLabel(yTitle);
  xRange_ = usableGraphRange(xRange);
  yRange_ = usableGraphRange(yRange);
  needsRebuild_ = true;
}

void GraphPlot::setTickSteps(double xStep, double yStep) {
  xStep_ = xStep;
  yStep_ = yStep;
  needsRebuild_ = true;
}

void GraphPlot::setLegend(const QString& patientTitle, const QString& referenceTitle) {
  patientTitle_ = patientTitle;
  referenceTitle_ = referenceTitle;
}

void GraphPlot::setReferenceCurves(const QList<OrvReferenceCurve>& curves) {
  curves_ = curves;
  needsRebuild_ = true;
}

void GraphPlot::setDataPoints(const QList<QPointF>& points) {
  points_ = points;
  needsRebuild_ = true;
}

void GraphPlot::layOut(const QSize& size) {
  const QRect whole(QPoint(0, 0), size);
  if (!needsRebuild_ && viewport() == whole) return;
  setViewport(whole);
  rebuild();
  needsRebuild_ = false;
  updateLayout();
}

void GraphPlot::rebuild() {
  QList<double> values;
  for (const QPointF& point : points_) {
    if (isFinite(point)) values.append(point.y());
  }
  const OrvGraphRange y = grownGraphRange(yRange_, values);
  xAxis->setRange(xRange_.lower, xRange_.upper);
  yAxis->setRange(y.lower, y.upper);
  setUpTicks(xAxis, xStep_, xRange_.upper - xRange_.lower);
  setUpTicks(yAxis, yStep_, y.upper - y.lower);
  axisRect()->setAutoMargins(QCP::msLeft | QCP::msBottom);
  axisRect()->setMargins(QMargins(0, graphStyle::legendHeight, labelMargin(), 0));
  clearGraphs();
  rebuildCurves();
  rebuildPatientLine();
}

void GraphPlot::setUpTicks(QCPAxis* axis, double step, double length) {
  const bool isUsable = step > 1e-6 * length && step <= length;
  if (!isUsable) {
    axis->setTicker(QSharedPointer<QCPAxisTicker>(new QCPAxisTicker));
  } else {
    QSharedPointer<QCPAxisTickerFixed> ticker(new QCPAxisTickerFixed);
    ticker->setTickStep(step);
    ticker->setScaleStrategy(QCPAxisTickerFixed::ssMultiples);
    axis->setTicker(ticker);
  }
  // As many labelled ticks as there is room for their labels.
  const bool isHorizontal = axis->orientation() == Qt::Horizontal;
  const int room = isHorizontal ? viewport().width() / graphStyle::tickRoomAcross
                                : viewport().height() / graphStyle::tickRoomUp;
  axis->ticker()->setTickCount(std::max(2, room));
}

// A point moved to where it can be drawn. Lines to places far outside look the same from ten lengths on, and
// numbers beyond what the painter can take never reach it.
QPointF GraphPlot::nearby(const QPointF& point) const {
  const auto within = [](double value, const QCPRange& range) {
    const double far = 10.0 * range.size();
    return std::clamp(value, range.lower - far, range.upper + far);
  };
  return {within(point.x(), xAxis->range()), within(point.y(), yAxis->range())};
}

void GraphPlot::rebuildCurves() {
  for (const OrvReferenceCurve& curve : curves_) {
    QVector<QCPGraphData> places;
    double lastX = xAxis->range().lower;
    for (const QPointF& point : curve.points) {
      if (isFinite(point)) {
        const QPointF place = nearby(point);
        lastX = std::max(lastX, place.x());
        places.append(QCPGraphData(lastX, place.y()));
      } else {
        places.append(QCPGraphData(lastX, std::numeric_limits<double>::quiet_NaN()));
      }
    }
    QCPGraph* graph = addGraph();
    graph->setPen(curve.emphasised ? graphStyle::medianPen() : graphStyle::curvePen());
    graph->setAdaptiveSampling(false);
    graph->data()->set(places, true);
  }
}

void GraphPlot::rebuildPatientLine() {
  QVector<QCPGraphData> places;
  for (const QPointF& point : inOrderOfX(points_)) {
    const QPointF place = nearby(point);
    if (isFinite(point)) places.append(QCPGraphData(place.x(), place.y()));
  }
  QCPGraph* graph = addGraph();
  graph->setPen(graphStyle::patientPen());
  graph->setAdaptiveSampling(false);
  graph->data()->set(places, true);
}

QPointF GraphPlot::coordinateAt(const QPointF& place) const {
  return {xAxis->pixelToCoord(place.x()), yAxis->pixelToCoord(place.y())};
}

QPointF GraphPlot::placeOf(const QPointF& coordinate) const {
  return {xAxis->coordToPixel(coordinate.x()), yAxis->coordToPixel(coordinate.y())};
}

std::optional<GraphMark> GraphPlot::markOf(qsizetype index) const {
  if (index < 0 || index >= points_.size() || !isFinite(points_.at(index))) return std::nullopt;
  const QPointF& point = points_.at(index);
  const QCPRange& x = xAxis->range();
  const QCPRange& y = yAxis->range();
  GraphMark mark;
  mark.place = placeOf({std::clamp(point.x(), x.lower, x.upper), std::clamp(point.y(), y.lower, y.upper)});
  mark.outwards.setX(point.x() < x.lower ? -1 : point.x() > x.upper ? 1 : 0);
  mark.outwards.setY(point.y() > y.upper ? -1 : point.y() < y.lower ? 1 : 0);
  return mark;
}
