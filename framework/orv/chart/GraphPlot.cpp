// SPDX-License-Identifier: LGPL-3.0-or-later
#include "orv/chart/GraphPlot.h"

#include <QCoreApplication>
#include <QFontMetricsF>
#include <algorithm>
#include <cmath>
#include <limits>

#include "orv/chart/GraphLabels.h"
#include "orv/chart/GraphRanges.h"
#include "orv/chart/GraphStyle.h"

namespace velmora::orv {

namespace {

constexpr double LegendLineLength = 26;
constexpr double LegendGap = 8;
constexpr double LegendItemGap = 28;

bool isFinite(const QPointF& point) { return std::isfinite(point.x()) && std::isfinite(point.y()); }

QList<QPointF> inOrderOfX(QList<QPointF> points) {
  std::stable_sort(points.begin(), points.end(),
                   [](const QPointF& a, const QPointF& b) { return a.x() < b.x(); });
  return points;
}

QFont labelFont(bool emphasised) { return emphasised ? graphStyle::medianFont() : graphStyle::font(); }

// The end of what is seen of the line from a to b inside `frame`, if any of it is seen.
std::optional<QPointF> visibleEnd(const QPointF& a, const QPointF& b, const QRectF& frame) {
  double first = 0;
  double last = 1;
  const auto cut = [&](double from, double to, double low, double high) {
    if (from == to) return from >= low && from <= high;
    double enter = (low - from) / (to - from);
    double leave = (high - from) / (to - from);
    if (enter > leave) std::swap(enter, leave);
    first = std::max(first, enter);
    last = std::min(last, leave);
    return true;
  };
  const bool isSeen =
      cut(a.x(), b.x(), frame.left(), frame.right()) && cut(a.y(), b.y(), frame.top(), frame.bottom());
  if (!isSeen || first > last) return std::nullopt;
  return a + last * (b - a);
}

// A mark, or the white rim that sets it off from the lines behind it.
void paintMark(QCPPainter& painter, const GraphMark& mark, bool isRim) {
  painter.setPen(isRim ? QPen(Qt::white, 2) : QPen(Qt::NoPen));
  painter.setBrush(graphStyle::patientColor);
  if (mark.outwards.isNull()) {
    painter.drawEllipse(mark.place, graphStyle::markRadius, graphStyle::markRadius);
  } else {
    const QPointF ahead = mark.outwards / std::hypot(mark.outwards.x(), mark.outwards.y());
    const QPointF aside(-ahead.y(), ahead.x());
    const QPointF corners[3] = {mark.place + 3.0 * ahead, mark.place - 8.0 * ahead + 6.0 * aside,
                                mark.place - 8.0 * ahead - 6.0 * aside};
    painter.drawPolygon(corners, 3);
  }
  painter.setBrush(Qt::NoBrush);
}

}  // namespace

struct GraphPlot::CurveEnd {
  QString label;
  bool emphasised;
  QPointF place;
};

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

void GraphPlot::paint(QCPPainter& painter) {
  painter.save();
  toPainter(&painter, viewport().width(), viewport().height());
  painter.restore();
  painter.setRenderHint(QPainter::Antialiasing, true);
  paintCurveLabels(painter);
  paintMarks(painter);
  paintLegend(painter);
}

// Room on the right for the widest label.
int GraphPlot::labelMargin() const {
  double width = 10;
  for (const OrvReferenceCurve& curve : curves_) {
    width = std::max(width, QFontMetricsF(labelFont(curve.emphasised)).horizontalAdvance(curve.label));
  }
  // A label that is no label must not push the chart out of the view.
  return static_cast<int>(std::ceil(std::min(width, 120.0))) + graphStyle::labelGap + 14;
}

std::optional<QPointF> GraphPlot::endOf(const OrvReferenceCurve& curve) const {
  const QRectF frame(placeOf({xAxis->range().lower, yAxis->range().upper}),
                     placeOf({xAxis->range().upper, yAxis->range().lower}));
  const QList<QPointF>& points = curve.points;
  for (qsizetype i = points.size() - 1; i > 0; --i) {
    const QPointF& a = points[i - 1];
    const QPointF& b = points[i];
    if (!isFinite(a) || !isFinite(b)) continue;
    if (const auto end = visibleEnd(placeOf(nearby(a)), placeOf(nearby(b)), frame)) return end;
  }
  return std::nullopt;
}

QList<GraphPlot::CurveEnd> GraphPlot::curveEnds() const {
  QList<CurveEnd> ends;
  for (const OrvReferenceCurve& curve : curves_) {
    const std::optional<QPointF> place = curve.label.isEmpty() ? std::nullopt : endOf(curve);
    if (place) ends.append({curve.label, curve.emphasised, *place});
  }
  std::stable_sort(ends.begin(), ends.end(),
                   [](const CurveEnd& a, const CurveEnd& b) { return a.place.y() < b.place.y(); });
  return ends;
}

// The labels stand in one column to the right of the ends of the curves. Where the curves end closer than
// letters are high, the labels move apart, and a thin line leads from each end to its label.
void GraphPlot::paintCurveLabels(QCPPainter& painter) const {
  const QList<CurveEnd> ends = curveEnds();
  if (ends.isEmpty()) return;
  QList<double> wanted;
  double column = 0;
  for (const CurveEnd& end : ends) {
    wanted.append(end.place.y());
    column = std::max(column, end.place.x());
  }
  const QRect frame = axisRect()->rect();
  const QList<double> places = spreadLabels(wanted, graphStyle::labelSpacing, frame.top(), frame.bottom());

  for (qsizetype i = 0; i < ends.size(); ++i) {
    const QFont font = labelFont(ends[i].emphasised);
    const double left = column + graphStyle::labelGap;
    painter.setPen(graphStyle::leaderPen());
    painter.drawLine(QLineF(ends[i].place, QPointF(left - 2, places[i])));
    painter.setFont(font);
    painter.setPen(ends[i].emphasised ? QColor(Qt::black) : QColor(60, 60, 60));
    const QRectF box(left, places[i] - 10, viewport().width() - left, 20);
    painter.drawText(box, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, ends[i].label);
  }
}

// Marks are drawn whole, over the frame, too: many a chart begins with a point at birth. A point outside the
// axes is a triangle that shows where it went. All rims come before all marks, so that no rim hides the mark
// of a neighbour.
void GraphPlot::paintMarks(QCPPainter& painter) const {
  for (const bool isRim : {true, false}) {
    for (qsizetype index = 0; index < points_.size(); ++index) {
      if (const std::optional<GraphMark> mark = markOf(index)) paintMark(painter, *mark, isRim);
    }
  }
}

// One line above the chart: a mark on a line for the patient, a line for the reference.
void GraphPlot::paintLegend(QCPPainter& painter) const {
  const QRect frame = axisRect()->rect();
  const double middle = frame.top() - graphStyle::legendHeight / 2.0;
  const QFont font = graphStyle::font();
  double left = frame.left();
  painter.setFont(font);

  const auto entry = [&](const QString& title, const QPen& pen, bool hasMark) {
    const double room = viewport().width() - left - LegendLineLength - LegendGap;
    if (title.isEmpty() || room < 20) return;
    painter.setPen(pen);
    painter.drawLine(QLineF(left, middle, left + LegendLineLength, middle));
    const GraphMark mark{QPointF(left + LegendLineLength / 2, middle), QPointF()};
    if (hasMark) {
      for (const bool isRim : {true, false}) paintMark(painter, mark, isRim);
    }
    const QFontMetricsF metrics(font);
    const QString text = metrics.elidedText(title, Qt::ElideRight, room);
    left += LegendLineLength + LegendGap;
    painter.setPen(Qt::black);
    painter.drawText(QRectF(left, middle - 10, room, 20),
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text);
    left += metrics.horizontalAdvance(text) + LegendItemGap;
  };
  entry(patientTitle_, graphStyle::patientPen(), true);
  entry(referenceTitle_, graphStyle::medianPen(), false);
}

void GraphPlot::paintHighlight(QCPPainter& painter, qsizetype index) const {
  const std::optional<GraphMark> mark = markOf(index);
  if (!mark) return;
  painter.setRenderHint(QPainter::Antialiasing, true);
  painter.setBrush(Qt::NoBrush);
  // White on both sides keeps the ring clear of the lines that it crosses.
  QPen halo = graphStyle::ringPen();
  halo.setColor(Qt::white);
  halo.setWidthF(halo.widthF() + 3);
  for (const QPen& pen : {halo, graphStyle::ringPen()}) {
    painter.setPen(pen);
    painter.drawEllipse(mark->place, graphStyle::ringRadius, graphStyle::ringRadius);
  }
}

}  // namespace velmora::orv
