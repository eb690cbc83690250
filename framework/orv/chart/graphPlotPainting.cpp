// SPDX-License-Identifier: LGPL-3.0-or-later
//
// What the chart adds to axes and lines: labels at the ends of the curves, marks of the points, legend,
// highlight.
#include <QFontMetricsF>
#include <algorithm>
#include <cmath>

#include "orv/chart/graphLabels.h"
#include "orv/chart/graphPlot.h"
#include "orv/chart/graphStyle.h"

struct GraphPlot::CurveEnd {
  QString label;
  bool emphasised;
  QPointF place;
};

namespace {

constexpr double legendLineLength = 26;
constexpr double legendGap = 8;
constexpr double legendItemGap = 28;

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
    if (!std::isfinite(a.x()) || !std::isfinite(a.y()) || !std::isfinite(b.x()) || !std::isfinite(b.y()))
      continue;
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
    const double room = viewport().width() - left - legendLineLength - legendGap;
    if (title.isEmpty() || room < 20) return;
    painter.setPen(pen);
    painter.drawLine(QLineF(left, middle, left + legendLineLength, middle));
    const GraphMark mark{QPointF(left + legendLineLength / 2, middle), QPointF()};
    if (hasMark) {
      for (const bool isRim : {true, false}) paintMark(painter, mark, isRim);
    }
    const QFontMetricsF metrics(font);
    const QString text = metrics.elidedText(title, Qt::ElideRight, room);
    left += legendLineLength + legendGap;
    painter.setPen(Qt::black);
    painter.drawText(QRectF(left, middle - 10, room, 20),
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text);
    left += metrics.horizontalAdvance(text) + legendItemGap;
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
