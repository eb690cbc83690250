// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/document/ChartRenderer.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPaintEvent>
#include <QTabWidget>

#include "platform/printing/GraphicsContext.h"

using namespace velmora;

namespace {

/// A chart that notes, each time it is drawn, whether it may show its mark.
class Chart : public QWidget {
 public:
  Chart(const ChartRenderer& renderer, QWidget* parent) : QWidget(parent), renderer_(renderer) {}
  int withMark = 0;
  int without = 0;

 protected:
  void paintEvent(QPaintEvent*) override { ++(renderer_.mayShowHighlight() ? withMark : without); }

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
  renderer.allowHighlight();
  const QImage picture = QImage::fromData(renderer.jpegOf(&charts), "JPEG");
  EXPECT_EQ(picture.size(), charts.size());
  EXPECT_EQ(chart->without, 2) << "once on the screen, once for the picture";
  EXPECT_EQ(chart->withMark, 1) << "when the picture is done";
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
