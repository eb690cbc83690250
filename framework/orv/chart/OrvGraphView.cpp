// SPDX-License-Identifier: LGPL-3.0-or-later
#include "orv/chart/OrvGraphView.h"

#include <QMouseEvent>
#include <cmath>
#include <utility>

#include "base/log/Guard.h"
#include "orv/chart/GraphPlot.h"

using namespace velmora;

using velmora::orv::GraphMark;
using velmora::orv::GraphPlot;

OrvGraphView::OrvGraphView(QWidget* parent) : QWidget(parent), plot_(std::make_unique<GraphPlot>()) {
  // Clicking the chart ends the edit of a field, so that what was typed belongs to the examination it was
  // typed for.
  setFocusPolicy(Qt::ClickFocus);
  setAttribute(Qt::WA_OpaquePaintEvent);
}

OrvGraphView::~OrvGraphView() = default;

void OrvGraphView::setAxes(const QString& xTitle, const QString& yTitle, OrvGraphRange xRange,
                           OrvGraphRange yRange) {
  xTitle_ = xTitle;
  yTitle_ = yTitle;
  plot_->setAxes(xTitle, yTitle, xRange, yRange);
  describe();
  update();
}

void OrvGraphView::setTickSteps(double xStep, double yStep) {
  plot_->setTickSteps(xStep, yStep);
  update();
}

void OrvGraphView::setLegend(const QString& patientTitle, const QString& referenceTitle) {
  patientTitle_ = patientTitle;
  referenceTitle_ = referenceTitle;
  plot_->setLegend(patientTitle, referenceTitle);
  describe();
  update();
}

void OrvGraphView::setReferenceCurves(const QList<OrvReferenceCurve>& curves) {
  plot_->setReferenceCurves(curves);
  update();
}

void OrvGraphView::setDataPoints(const QList<QPointF>& points) {
  plot_->setDataPoints(points);
  describe();
  update();
}

void OrvGraphView::setHighlightedPoint(std::optional<qsizetype> index) {
  highlighted_ = index;
  update();
}

void OrvGraphView::setHighlightVisibility(std::function<bool()> shouldShow) {
  shouldShowHighlight_ = std::move(shouldShow);
  update();
}

QPointF OrvGraphView::coordinateForPoint(const QPointF& viewPoint) const {
  plot_->layOut(size());
  return plot_->coordinateAt(viewPoint);
}

QPointF OrvGraphView::pointForCoordinate(const QPointF& coordinate) const {
  plot_->layOut(size());
  return plot_->placeOf(coordinate);
}

std::optional<qsizetype> OrvGraphView::dataPointNear(const QPointF& viewPoint,
                                                     double maxDistancePixels) const {
  plot_->layOut(size());
  std::optional<qsizetype> nearest;
  double distance = maxDistancePixels;
  for (qsizetype index = 0; index < plot_->dataPointCount(); ++index) {
    const std::optional<GraphMark> mark = plot_->markOf(index);
    if (!mark) continue;
    const QPointF away = mark->place - viewPoint;
    const double candidate = std::hypot(away.x(), away.y());
    if (candidate < distance || (!nearest && candidate <= distance)) {
      nearest = index;
      distance = candidate;
    }
  }
  return nearest;
}

OrvGraphRange OrvGraphView::shownXRange() const {
  plot_->layOut(size());
  return plot_->shownXRange();
}

OrvGraphRange OrvGraphView::shownYRange() const {
  plot_->layOut(size());
  return plot_->shownYRange();
}

QSize OrvGraphView::sizeHint() const { return {800, 560}; }

QSize OrvGraphView::minimumSizeHint() const { return {320, 240}; }

void OrvGraphView::mouseDown(QMouseEvent* event) { event->accept(); }

void OrvGraphView::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    mouseDown(event);
  } else {
    QWidget::mousePressEvent(event);
  }
}

// The ring is painted last and kept nowhere, so that one answer of the visibility function holds for one
// painting.
void OrvGraphView::paintEvent(QPaintEvent*) {
  QCPPainter painter(this);
  base::guarded("chart", [&] {
    plot_->layOut(size());
    plot_->paint(painter);
    const bool mayShow = !shouldShowHighlight_ || shouldShowHighlight_();
    if (highlighted_ && mayShow) plot_->paintHighlight(painter, *highlighted_);
  });
}

// What a screen reader says: what is charted, against what, and the points.
void OrvGraphView::describe() {
  setAccessibleName(yTitle_ + QStringLiteral(" / ") + xTitle_);
  QStringList parts;
  for (const QString& title : {referenceTitle_, patientTitle_}) {
    if (!title.isEmpty()) parts.append(title);
  }
  for (qsizetype index = 0; index < qMin<qsizetype>(plot_->dataPointCount(), 100); ++index) {
    if (!plot_->markOf(index)) continue;
    const QPointF point = plot_->dataPoint(index);
    parts.append(QStringLiteral("%1: %2").arg(locale().toString(point.x(), 'g', 4),
                                              locale().toString(point.y(), 'g', 4)));
  }
  setAccessibleDescription(parts.join(QStringLiteral("; ")));
}
