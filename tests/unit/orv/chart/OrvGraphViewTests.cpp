// SPDX-License-Identifier: LGPL-3.0-or-later
#include "orv/chart/OrvGraphView.h"

#include <gtest/gtest.h>
#include <QMouseEvent>
#include <QPainter>
#include <QTabWidget>
#include <QTest>
#include <cmath>
#include <limits>

#include "testing/window/Highlight.h"

using velmora::testkit::orangePixels;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr QSize chartSize(800, 560);

const QList<QPointF> patient{{2, 4}, {6, 8}, {9, 9}};

void fill(OrvGraphView& view) {
  view.resize(chartSize);
  view.setAxes(QStringLiteral("Age (months)"), QStringLiteral("Weight (kg)"), {0, 12}, {0, 20});
  view.setLegend(QStringLiteral("Patient"), QStringLiteral("Reference"));
  view.setReferenceCurves(
      {{QStringLiteral("50"), {{0, 3}, {12, 10}}, true}, {QStringLiteral("97"), {{0, 5}, {12, 13}}, false}});
  view.setDataPoints(patient);
}

QImage pictureOf(QWidget& widget) { return widget.grab().toImage().convertToFormat(QImage::Format_RGB32); }

QColor pixelAt(const QImage& picture, const QPointF& place) { return picture.pixelColor(place.toPoint()); }

bool isPatientColour(const QColor& colour) {
  return colour.red() < 60 && colour.blue() > 90 && colour.green() < 90;
}

double distance(const QPointF& a, const QPointF& b) { return std::hypot(a.x() - b.x(), a.y() - b.y()); }

}  // namespace

TEST(GraphView, ConvertsBetweenPointsAndCoordinates) {
  OrvGraphView view;
  fill(view);
  for (double x = 0; x <= 12; x += 0.75) {
    for (double y = 0; y <= 20; y += 1.25) {
      const QPointF place = view.pointForCoordinate({x, y});
      const QPointF back = view.coordinateForPoint(place);
      EXPECT_NEAR(back.x(), x, 1e-9);
      EXPECT_NEAR(back.y(), y, 1e-9);
      EXPECT_LT(distance(view.pointForCoordinate(back), place), 1e-6);
      EXPECT_TRUE(QRectF(view.rect()).contains(place)) << x << ' ' << y;
    }
  }
  // Upwards in the chart is upwards on the screen.
  EXPECT_LT(view.pointForCoordinate({5, 10}).y(), view.pointForCoordinate({5, 0}).y());
  EXPECT_LT(view.pointForCoordinate({0, 10}).x(), view.pointForCoordinate({5, 10}).x());
}

TEST(GraphView, ConvertsForTheSizeItHasNow) {
  OrvGraphView view;
  fill(view);
  const QPointF before = view.pointForCoordinate({12, 0});
  view.resize(500, 400);
  const QPointF after = view.pointForCoordinate({12, 0});
  EXPECT_LT(after.x(), 500);
  EXPECT_LT(after.y(), 400);
  EXPECT_GT(before.x(), 700);
  EXPECT_NEAR(view.coordinateForPoint(after).x(), 12, 1e-9);
}

TEST(GraphView, DrawsThePointsWhereTheirCoordinatesAre) {
  OrvGraphView view;
  fill(view);
  const QImage picture = pictureOf(view);
  ASSERT_EQ(picture.size(), chartSize);
  for (const QPointF& point : patient) {
    EXPECT_TRUE(isPatientColour(pixelAt(picture, view.pointForCoordinate(point)))) << point.x();
  }
  // The line between the first two, and nothing of it beside it.
  EXPECT_TRUE(isPatientColour(pixelAt(picture, view.pointForCoordinate({4, 6}))));
  EXPECT_FALSE(isPatientColour(pixelAt(picture, view.pointForCoordinate({4, 15}))));
}

TEST(GraphView, JoinsThePointsInOrderOfX) {
  OrvGraphView sorted, unsorted;
  fill(sorted);
  fill(unsorted);
  unsorted.setDataPoints({patient[2], patient[0], patient[1]});
  EXPECT_EQ(pictureOf(sorted), pictureOf(unsorted));
}

TEST(GraphView, DrawsTheCurvesAndInterruptsThemWhereAPointIsNotFinite) {
  OrvGraphView without, with;
  for (OrvGraphView* view : {&without, &with}) {
    fill(*view);
    view->setDataPoints({});
    view->setReferenceCurves({});
  }
  with.setReferenceCurves({{QString(), {{0, 7}, {5, 7}, {5, notANumber}, {7, 7}, {12, 7}}, true}});
  const QImage empty = pictureOf(without);
  const QImage picture = pictureOf(with);
  for (const double x : {1.3, 4.7, 7.3, 11.2}) {
    const QPointF place = with.pointForCoordinate({x, 7});
    EXPECT_NE(pixelAt(picture, place), pixelAt(empty, place)) << x;
  }
  for (const double x : {5.3, 6.0, 6.7}) {
    const QPointF place = with.pointForCoordinate({x, 7});
    EXPECT_EQ(pixelAt(picture, place), pixelAt(empty, place)) << x;
  }
}

TEST(GraphView, WritesTheLabelsOfTheCurvesRightOfTheFrame) {
  OrvGraphView view;
  fill(view);
  const QImage picture = pictureOf(view);
  const QPointF end = view.pointForCoordinate({12, 10});
  int dark = 0;
  for (int x = static_cast<int>(end.x()) + 8; x < picture.width(); ++x) {
    for (int y = static_cast<int>(end.y()) - 6; y < end.y() + 6; ++y)
      dark += picture.pixelColor(x, y).lightness() < 100;
  }
  EXPECT_GT(dark, 10);
  EXPECT_GT(picture.width() - end.x(), 20);
}

TEST(GraphView, RingsTheHighlightedPoint) {
  OrvGraphView view;
  fill(view);
  EXPECT_EQ(orangePixels(pictureOf(view)), 0);
  for (const int index : {0, 1, 2}) {
    view.setHighlightedPoint(index);
    const QImage picture = pictureOf(view);
    EXPECT_GT(orangePixels(picture), 60);
    const QPointF ring = view.pointForCoordinate(patient[index]) + QPointF(0, 9);
    EXPECT_GT(pixelAt(picture, ring).red(), 200) << index;
    EXPECT_LT(pixelAt(picture, ring).blue(), 80) << index;
  }
  view.setHighlightedPoint(std::nullopt);
  EXPECT_EQ(orangePixels(pictureOf(view)), 0);
}

TEST(GraphView, RingsNothingForAnIndexWithoutAPoint) {
  OrvGraphView view;
  fill(view);
  view.setDataPoints({{2, 4}, {notANumber, 8}});
  for (const qsizetype index :
       {qsizetype(-1), qsizetype(1), qsizetype(2), std::numeric_limits<qsizetype>::max()}) {
    view.setHighlightedPoint(index);
    EXPECT_EQ(orangePixels(pictureOf(view)), 0) << index;
  }
}

TEST(GraphView, AsksAtEveryPaintingWhetherTheHighlightMayShow) {
  OrvGraphView plain, view;
  fill(plain);
  fill(view);
  bool mayShow = true;
  int asked = 0;
  view.setHighlightVisibility([&] {
    ++asked;
    return mayShow;
  });
  view.setHighlightedPoint(1);
  const QImage ringed = pictureOf(view);
  EXPECT_EQ(asked, 1);
  EXPECT_GT(orangePixels(ringed), 60);

  // What an export does: the flag, the picture, the flag again. No setter of the view is called between.
  mayShow = false;
  EXPECT_EQ(pictureOf(view), pictureOf(plain));
  EXPECT_EQ(asked, 2);
  mayShow = true;
  EXPECT_EQ(pictureOf(view), ringed);
  EXPECT_EQ(asked, 3);
}

TEST(GraphView, IsAskedWhenTheTabsAroundItAreGrabbed) {
  QTabWidget tabs;
  auto* view = new OrvGraphView;
  tabs.addTab(view, QStringLiteral("Weight"));
  tabs.addTab(new OrvGraphView, QStringLiteral("Height"));
  fill(*view);
  bool mayShow = true;
  view->setHighlightVisibility([&] { return mayShow; });
  view->setHighlightedPoint(1);
  tabs.resize(820, 620);
  tabs.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&tabs));
  const QImage ringed = pictureOf(tabs);
  EXPECT_GT(orangePixels(ringed), 60);
  mayShow = false;
  EXPECT_EQ(orangePixels(pictureOf(tabs)), 0);
  mayShow = true;
  EXPECT_EQ(pictureOf(tabs), ringed);
}

TEST(GraphView, GivesTheSamePictureEveryTime) {
  OrvGraphView view, twin;
  fill(view);
  fill(twin);
  view.setHighlightedPoint(2);
  twin.setHighlightedPoint(2);
  const QImage first = pictureOf(view);
  EXPECT_EQ(pictureOf(view), first);
  EXPECT_EQ(pictureOf(twin), first);
  // On the way through another size and other content nothing sticks.
  twin.resize(300, 900);
  twin.setDataPoints({});
  twin.setReferenceCurves({});
  pictureOf(twin);
  fill(twin);
  EXPECT_EQ(pictureOf(twin), first);
}

TEST(GraphView, GivesTheSamePictureShownOrNeverShown) {
  OrvGraphView shown, never;
  fill(shown);
  fill(never);
  shown.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&shown));
  EXPECT_EQ(shown.size(), chartSize);
  EXPECT_EQ(pictureOf(never), pictureOf(shown));
  EXPECT_TRUE(isPatientColour(pixelAt(pictureOf(never), never.pointForCoordinate(patient[1]))));
}

TEST(GraphView, RendersIntoAnyPainterAtAnyScale) {
  OrvGraphView view;
  fill(view);
  QImage page(1700, 1300, QImage::Format_RGB32);
  page.fill(Qt::darkGray);
  QPainter painter(&page);
  painter.translate(40, 60);
  painter.scale(2, 2);
  view.render(&painter);
  painter.end();
  const QPointF place = view.pointForCoordinate(patient[1]) * 2 + QPointF(40, 60);
  EXPECT_TRUE(isPatientColour(pixelAt(page, place)));
  EXPECT_EQ(page.pixelColor(45, 65), QColor(Qt::white));
  EXPECT_EQ(page.pixelColor(5, 5), QColor(Qt::darkGray));
  EXPECT_EQ(page.pixelColor(1695, 1295), QColor(Qt::darkGray));
}

TEST(GraphView, IsBlackOnWhiteWhateverTheTheme) {
  OrvGraphView light, dark;
  QPalette night;
  night.setColor(QPalette::Window, Qt::black);
  night.setColor(QPalette::Base, Qt::black);
  night.setColor(QPalette::WindowText, Qt::white);
  dark.setPalette(night);
  fill(light);
  fill(dark);
  EXPECT_EQ(pictureOf(dark), pictureOf(light));
  EXPECT_EQ(pictureOf(dark).pixelColor(1, 1), QColor(Qt::white));
}

TEST(GraphView, FindsTheDataPointNearAClick) {
  OrvGraphView view;
  fill(view);
  for (const int index : {0, 1, 2}) {
    const QPointF place = view.pointForCoordinate(patient[index]);
    EXPECT_EQ(view.dataPointNear(place, 0.5), index);
    EXPECT_EQ(view.dataPointNear(place + QPointF(6, -6), 10), index);
    EXPECT_FALSE(view.dataPointNear(place + QPointF(8, -8), 10)) << index;
  }
  EXPECT_EQ(view.dataPointNear({0, 0}, 1e9), 0);
  EXPECT_FALSE(view.dataPointNear({0, 0}, -1));
  EXPECT_FALSE(view.dataPointNear({notANumber, 0}, 10));
}

TEST(GraphView, FindsTheNearerOfTwoPointsAndTheFirstOfTwoAlike) {
  OrvGraphView view;
  fill(view);
  view.setDataPoints({{5, 5}, {5.1, 5}, {5, 5}, {notANumber, 5}});
  const QPointF first = view.pointForCoordinate({5, 5});
  const QPointF second = view.pointForCoordinate({5.1, 5});
  EXPECT_EQ(view.dataPointNear(first, 20), 0);
  EXPECT_EQ(view.dataPointNear(first + 0.4 * (second - first), 20), 0);
  EXPECT_EQ(view.dataPointNear(first + 0.6 * (second - first), 20), 1);
}

TEST(GraphView, GrowsItsYAxisForThePatient) {
  OrvGraphView view;
  fill(view);
  EXPECT_EQ(view.shownYRange().upper, 20);
  view.setDataPoints({{2, 4}, {6, 27}});
  EXPECT_GT(view.shownYRange().upper, 27);
  EXPECT_LT(view.shownYRange().upper, 31);
  EXPECT_EQ(view.shownYRange().lower, 0);
  EXPECT_EQ(view.shownXRange().upper, 12);
  EXPECT_TRUE(isPatientColour(pixelAt(pictureOf(view), view.pointForCoordinate({6, 27}))));
  view.setDataPoints(patient);
  EXPECT_EQ(view.shownYRange().upper, 20);
}

TEST(GraphView, MarksPointsOutsideTheAxesAtTheFrame) {
  OrvGraphView view;
  fill(view);
  view.setDataPoints({{6, 1e300}, {40, 10}, {-1e300, 5}});
  EXPECT_EQ(view.shownYRange().upper, 20);
  const QImage picture = pictureOf(view);
  const QPointF top = view.pointForCoordinate({6, 20});
  const QPointF right = view.pointForCoordinate({12, 10});
  const QPointF left = view.pointForCoordinate({0, 5});
  EXPECT_TRUE(isPatientColour(pixelAt(picture, top + QPointF(0, 4))));
  EXPECT_TRUE(isPatientColour(pixelAt(picture, right - QPointF(4, 0))));
  EXPECT_TRUE(isPatientColour(pixelAt(picture, left + QPointF(4, 0))));
  EXPECT_EQ(view.dataPointNear(top, 3), 0);
  EXPECT_EQ(view.dataPointNear(right, 3), 1);
  EXPECT_EQ(view.dataPointNear(left, 3), 2);
}

TEST(GraphView, LeavesOutPointsThatAreNotFinite) {
  OrvGraphView clean, view;
  fill(clean);
  fill(view);
  view.setDataPoints(
      {{notANumber, 3}, patient[0], {3, notANumber}, patient[1], {4, infinity}, {-infinity, 2}, patient[2]});
  EXPECT_EQ(pictureOf(view), pictureOf(clean));
  EXPECT_EQ(view.dataPointNear(view.pointForCoordinate(patient[2]), 2), 6);
}

TEST(GraphView, DrawsWithoutPointsCurvesOrAxes) {
  OrvGraphView view;
  view.resize(chartSize);
  view.setHighlightedPoint(0);
  const QImage picture = pictureOf(view);
  EXPECT_EQ(picture.pixelColor(1, 1), QColor(Qt::white));
  EXPECT_EQ(orangePixels(picture), 0);
  EXPECT_FALSE(view.dataPointNear({400, 300}, 1e9));
}

TEST(GraphView, DrawsAThousandPoints) {
  OrvGraphView view;
  fill(view);
  QList<QPointF> points;
  for (int i = 0; i < 1000; ++i) points.append({12.0 * i / 999, 10 + 5 * std::sin(i / 50.0)});
  view.setDataPoints(points);
  const QImage picture = pictureOf(view);
  for (const QPointF& point : points) {
    // Whatever stands around it, the middle of every mark is seen.
    EXPECT_TRUE(isPatientColour(pixelAt(picture, view.pointForCoordinate(point)))) << point.x();
  }
}

TEST(GraphView, SurvivesAbsurdNumbersEverywhere) {
  const double absurd[] = {notANumber, infinity, -infinity, 1e300, -1e300, 1e-300, 5e-324, 0, -7};
  OrvGraphView view;
  view.resize(chartSize);
  int pictures = 0;
  for (const double a : absurd) {
    for (const double b : absurd) {
      view.setAxes(QStringLiteral("x"), QStringLiteral("y"), {a, b}, {b, a});
      view.setTickSteps(a, b);
      view.setReferenceCurves({{QStringLiteral("50"), {{a, b}, {b, a}, {0.5, a}, {b, 0.5}, {a, a}}, true}});
      view.setDataPoints({{a, b}, {b, a}, {0.5, a}, {b, 0.5}, {0.5, 0.5}});
      view.setHighlightedPoint(2);
      EXPECT_EQ(pictureOf(view).size(), chartSize);
      const OrvGraphRange x = view.shownXRange();
      EXPECT_TRUE(std::isfinite(x.lower) && std::isfinite(x.upper) && x.lower < x.upper) << a << ' ' << b;
      const QPointF middle = view.coordinateForPoint({400, 280});
      EXPECT_LT(distance(view.pointForCoordinate(middle), {400, 280}), 1e-3) << a << ' ' << b;
      ++pictures;
    }
  }
  EXPECT_EQ(pictures, 81);
}

TEST(GraphView, SurvivesAnySize) {
  OrvGraphView view;
  fill(view);
  view.setHighlightedPoint(1);
  for (const QSize& size : {QSize(0, 0), QSize(1, 1), QSize(20, 20), QSize(4000, 10), QSize(10, 3000)}) {
    view.resize(size);
    view.grab();
    const QPointF coordinate = view.coordinateForPoint({3, 3});
    EXPECT_TRUE(std::isfinite(coordinate.x()) && std::isfinite(coordinate.y())) << size.width();
  }
}

TEST(GraphView, KeepsRoomForTheChartBesideALongLabel) {
  OrvGraphView view;
  fill(view);
  view.setReferenceCurves({{QString(5000, QLatin1Char('W')), {{0, 3}, {12, 10}}, false}});
  view.setLegend(QString(5000, QLatin1Char('W')), QStringLiteral("Reference"));
  EXPECT_GT(view.pointForCoordinate({12, 0}).x() - view.pointForCoordinate({0, 0}).x(), 400);
  EXPECT_EQ(pictureOf(view).size(), chartSize);
}

namespace {

class ClickedView : public OrvGraphView {
 public:
  QList<QPointF> clicks;

 protected:
  void mouseDown(QMouseEvent* event) override {
    OrvGraphView::mouseDown(event);
    EXPECT_TRUE(event->isAccepted());
    clicks.append(coordinateForPoint(event->position()));
  }
};

}  // namespace

TEST(GraphView, HandsALeftClickToMouseDown) {
  ClickedView view;
  fill(view);
  const QPoint place = view.pointForCoordinate({6, 8}).toPoint();
  QTest::mouseClick(&view, Qt::LeftButton, {}, place);
  ASSERT_EQ(view.clicks.size(), 1);
  EXPECT_NEAR(view.clicks[0].x(), 6, 0.02);
  EXPECT_NEAR(view.clicks[0].y(), 8, 0.05);
  QTest::mouseClick(&view, Qt::RightButton, {}, place);
  EXPECT_EQ(view.clicks.size(), 1);
}

TEST(GraphView, TellsScreenReadersWhatItCharts) {
  OrvGraphView view;
  view.setLocale(QLocale::c());
  fill(view);
  EXPECT_EQ(view.accessibleName(), QStringLiteral("Weight (kg) / Age (months)"));
  EXPECT_EQ(view.accessibleDescription(), QStringLiteral("Reference; Patient; 2: 4; 6: 8; 9: 9"));
  view.setDataPoints({{1.25, 4.5}, {2, notANumber}});
  EXPECT_EQ(view.accessibleDescription(), QStringLiteral("Reference; Patient; 1.25: 4.5"));
}
