// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/document/ChartRenderer.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QList>
#include <QPaintEvent>
#include <QTabWidget>
#include <QTest>

#include "platform/printing/GraphicsContext.h"

using namespace velmora;

namespace {

/// A chart that notes, each time it is drawn, whether it may show its mark.
class Chart : public QWidget {
 public:
  Chart(const ChartRenderer& renderer, QWidget* parent) : QWidget(parent), renderer_(renderer) {}
  QList<bool> marked;

 protected:
  void paintEvent(QPaintEvent*) override { marked.append(renderer_.mayShowHighlight()); }

 private:
  const ChartRenderer& renderer_;
};

TEST(ChartPictures, AreDrawnWithoutTheMarkWhichTheWindowShowsAgainAfterwards) {
  platform::GraphicsContext graphics;
  ChartRenderer renderer(graphics);
  QTabWidget charts;
  auto* chart = new Chart(renderer, &charts);
  charts.addTab(chart, "Weight");
  charts.resize(200, 150);
  charts.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&charts));
  QCoreApplication::processEvents();
  chart->marked.clear();
  renderer.allowHighlight();
  const QImage picture = QImage::fromData(renderer.jpegOf(&charts), "JPEG");
  EXPECT_EQ(picture.size(), charts.size());
  const qsizetype firstMarked = chart->marked.indexOf(true);
  EXPECT_GT(firstMarked, 0) << "first without the mark";
  EXPECT_EQ(chart->marked.lastIndexOf(false), firstMarked - 1) << "with it when the picture is done";
}

TEST(ChartPictures, AreNoneWithoutCharts) {
  platform::GraphicsContext graphics;
  EXPECT_TRUE(ChartRenderer(graphics).jpegOf(nullptr).isEmpty());
}

TEST(ChartMarks, AreAllowedOnTheScreenAlone) {
  platform::GraphicsContext graphics;
  ChartRenderer renderer(graphics);
  EXPECT_FALSE(renderer.mayShowHighlight()) << "before the window is loaded";
  renderer.allowHighlight();
  EXPECT_TRUE(renderer.mayShowHighlight());
  const platform::GraphicsContext::OffScreen printing(graphics);
  EXPECT_FALSE(renderer.mayShowHighlight());
}

}  // namespace
