// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QTabWidget>
#include <QTest>

#include "testing/application/RecordApplication.h"
#include "testing/window/Highlight.h"
#include "velmora/document/VelmoraGraphView.h"

using namespace velmora::testkit;

namespace {

/// What the first frame header of a JPEG file says.
struct JpegFrame {
  bool baseline = false;
  int width = 0;
  int height = 0;
  QList<int> sampling;  ///< of each component, horizontal and vertical factor in one byte
};

JpegFrame frameOf(const QByteArray& jpeg) {
  JpegFrame frame;
  const auto byte = [&jpeg](qsizetype at) {
    return static_cast<int>(static_cast<unsigned char>(jpeg.at(at)));
  };
  const auto word = [&byte](qsizetype at) { return byte(at) * 256 + byte(at + 1); };
  qsizetype at = 2;
  while (at + 9 < jpeg.size() && byte(at) == 0xff) {
    const int marker = byte(at + 1);
    if (marker == 0xc0 || marker == 0xc1 || marker == 0xc2) {
      frame.baseline = marker == 0xc0;
      frame.height = word(at + 5);
      frame.width = word(at + 7);
      for (int i = 0; i < byte(at + 9); ++i) frame.sampling.append(byte(at + 11 + 3 * i));
      break;
    }
    at += 2 + word(at + 2);
  }
  return frame;
}

/// A document with a chart on which the second of three points is highlighted.
class ChartPicture : public testing::Test {
 protected:
  ChartPicture() {
    document = &application.newRecord();
    tabView = dynamic_cast<QTabWidget*>(user::widget(*document, "tabView"));
    chart = dynamic_cast<VelmoraGraphView*>(user::widget(*document, "graphView"));
    chart->setAxes("Age (months)", "Weight (kg)", {0, 12}, {0, 20});
    chart->setDataPoints({{2, 4}, {6, 8}, {9, 9}});
    chart->setHighlightedPoint(1);
  }
  QImage onScreen() { return tabView->grab().toImage(); }
  RecordApplication application;
  RecordingDocument* document;
  QTabWidget* tabView;
  VelmoraGraphView* chart;
};

}  // namespace

TEST_F(ChartPicture, IsABaselineJpegInTheSizeOfTheTabViewWithFullColour) {
  const JpegFrame frame = frameOf(document->getJPEGData());
  EXPECT_TRUE(frame.baseline);
  EXPECT_EQ(QSize(frame.width, frame.height), tabView->size());
  EXPECT_EQ(frame.sampling, (QList<int>{0x11, 0x11, 0x11})) << "no component has less resolution";
}

TEST_F(ChartPicture, FollowsTheSizeOfTheTabView) {
  document->window()->resize(1100, 900);
  ASSERT_TRUE(QTest::qWaitFor([&] { return tabView->width() > 1000; }));
  const JpegFrame frame = frameOf(document->getJPEGData());
  EXPECT_EQ(QSize(frame.width, frame.height), tabView->size());
}

TEST_F(ChartPicture, ShowsTheWholeTabViewTabsIncluded) {
  const QImage picture =
      QImage::fromData(document->getJPEGData(), "JPEG").convertToFormat(QImage::Format_RGB32);
  chart->setHighlightedPoint(std::nullopt);
  const QImage expected = onScreen().convertToFormat(QImage::Format_RGB32);
  ASSERT_EQ(picture.size(), expected.size());
  ASSERT_GT(chart->mapTo(tabView, QPoint(0, 0)).y(), 10) << "the tab strip is above the chart";
  int worst = 0;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      const QColor a = picture.pixelColor(x, y);
      const QColor b = expected.pixelColor(x, y);
      worst = std::max({worst, std::abs(a.red() - b.red()), std::abs(a.green() - b.green()),
                        std::abs(a.blue() - b.blue())});
    }
  }
  EXPECT_LE(worst, 8) << "of 255, at the highest quality";
}

TEST_F(ChartPicture, NeverShowsTheHighlight) {
  ASSERT_GT(orangePixels(onScreen()), 20) << "it is on the screen";
  const QByteArray jpeg = document->getJPEGData();
  EXPECT_EQ(orangePixels(QImage::fromData(jpeg, "JPEG")), 0);
  chart->setHighlightedPoint(std::nullopt);
  EXPECT_EQ(document->getJPEGData(), jpeg) << "the same picture as of a chart without a highlight";
}

TEST_F(ChartPicture, LeavesTheHighlightOnTheScreenAfterwards) {
  const int before = orangePixels(onScreen());
  document->getJPEGData();
  EXPECT_TRUE(document->shouldShowGraphHilite());
  EXPECT_EQ(orangePixels(onScreen()), before);
}

TEST_F(ChartPicture, TakesTheHighlightOffTheScreenFirstAndPutsItBackAtOnce) {
  QList<bool> shown;
  chart->setHighlightVisibility([&] {
    shown.append(document->shouldShowGraphHilite());
    return shown.last();
  });
  QApplication::processEvents();
  shown.clear();
  document->getJPEGData();
  EXPECT_EQ(shown, (QList<bool>{false, false, true})) << "on the screen, in the picture, on the screen";
}

TEST_F(ChartPicture, IsTheSameToTheByteForTheSameDocument) {
  const QByteArray first = document->getJPEGData();
  EXPECT_EQ(document->getJPEGData(), first);
  chart->setDataPoints({{2, 4}, {6, 8}, {9, 10}});
  EXPECT_NE(document->getJPEGData(), first);
}

TEST_F(ChartPicture, IsNoneWithoutDataPoints) {
  document->setCurrentDataPointsVisible(false);
  EXPECT_TRUE(document->getJPEGData().isEmpty());
  EXPECT_TRUE(document->shouldShowGraphHilite());
  document->setCurrentDataPointsVisible(true);
  EXPECT_FALSE(document->getJPEGData().isEmpty());
}

TEST_F(ChartPicture, ShowsTheSelectedTab) {
  const QByteArray first = document->getJPEGData();
  tabView->addTab(new QWidget, "Another");
  tabView->setCurrentIndex(1);
  EXPECT_NE(document->getJPEGData(), first);
}
