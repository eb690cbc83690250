// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QWidget>
#include <functional>
#include <memory>
#include <optional>

#include "base/Export.h"
#include "orv/chart/OrvGraphData.h"

namespace velmora::orv {
class GraphPlot;
}

/// The chart view of a document: the patient's data points, joined by a line, over the curves of a reference,
/// with a ring around the point of the examination shown. It is drawn in the colours of print, black on
/// white, whatever the desktop's theme, and alike every time: the same content in the same size gives the
/// same picture, on the screen, grabbed without ever having been shown, or printed.
///
/// It can draw whatever numbers it is given: points that are not finite are left out, and points outside the
/// axes are marked by a triangle at the nearest place of the frame.
class VELMORA_EXPORT OrvGraphView : public QWidget {
 public:
  explicit OrvGraphView(QWidget* parent = nullptr);
  ~OrvGraphView() override;

  /// The axes: titles with their units, "Age (months)", and the ranges that the reference needs. The y axis
  /// grows beyond its range to contain the patient's points, but never to more than five times its length: a
  /// value typed in the wrong unit must not flatten the chart. A range that is no usable range (not finite,
  /// empty, beyond 1e12) is replaced by 0 to 1, one given upside down is turned round.
  void setAxes(const QString& xTitle, const QString& yTitle, OrvGraphRange xRange, OrvGraphRange yRange);
  /// The distance of labelled ticks on the axes, where it fits: 12 for months. 0, as at first, leaves the
  /// choice to the chart.
  void setTickSteps(double xStep, double yStep);
  /// What the chart calls the patient's points and the curves: "Patient", "CDC 2000, boys". An empty title is
  /// not shown.
  void setLegend(const QString& patientTitle, const QString& referenceTitle);

  void setReferenceCurves(const QList<OrvReferenceCurve>& curves);
  /// The patient's points in any order; the line joins them in order of x.
  void setDataPoints(const QList<QPointF>& points);
  /// The data point to ring, by its index in the list given; nothing, or an index outside it, for none.
  void setHighlightedPoint(std::optional<qsizetype> index);
  /// Sets what is asked at every painting whether the ring may be drawn. Without it, it may.
  void setHighlightVisibility(std::function<bool()> shouldShow);

  /// The place in chart data units under a point of the view's own coordinates, and the reverse.
  QPointF coordinateForPoint(const QPointF& viewPoint) const;
  QPointF pointForCoordinate(const QPointF& coordinate) const;
  /// The data point whose mark is nearest to a point of the view's own coordinates, if it is within
  /// `maxDistancePixels`.
  std::optional<qsizetype> dataPointNear(const QPointF& viewPoint, double maxDistancePixels) const;
  /// What the axes show now, after growing.
  OrvGraphRange shownXRange() const;
  OrvGraphRange shownYRange() const;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  /// The left mouse button went down over the view. The base accepts the event and does nothing else; an
  /// override calls it first.
  virtual void mouseDown(QMouseEvent* event);

  void mousePressEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void describe();

  std::unique_ptr<velmora::orv::GraphPlot> plot_;
  std::optional<qsizetype> highlighted_;
  std::function<bool()> shouldShowHighlight_;
  QString xTitle_, yTitle_, patientTitle_, referenceTitle_;
};
