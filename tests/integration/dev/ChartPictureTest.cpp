// SPDX-License-Identifier: LGPL-3.0-or-later
#include "demo/ChartPicture.h"

#include <gtest/gtest.h>
#include <QBuffer>
#include <QImage>
#include <QPainter>

using demo::ChartPicture;

namespace {

constexpr QPoint FirstMark(100, 150);
constexpr QPoint SecondMark(160, 120);

enum Content { Curves = 1, Marks = 2, Ring = 4 };

ChartPicture drawn(int content, const char* format = "PNG") {
  QImage image(400, 300, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::black);
  painter.drawRect(20, 20, 360, 260);
  painter.drawText(QRect(0, 0, 400, 20), Qt::AlignCenter, "Weight (kg)");
  painter.setPen(QColor(214, 219, 222));
  for (int y = 40; y < 280; y += 30) painter.drawLine(20, y, 380, y);
  if (content & Curves)
    for (int i = 0; i < 9; ++i) {
      painter.setPen(QPen(i == 4 ? QColor(38, 96, 104) : QColor(112, 146, 150), 1.5));
      painter.drawLine(20, 60 + 22 * i, 380, 30 + 22 * i);
    }
  if (content & Marks) {
    painter.setPen(QPen(QColor(11, 49, 120), 1.8));
    painter.drawLine(FirstMark, SecondMark);
    painter.setBrush(QColor(11, 49, 120));
    for (const QPoint mark : {FirstMark, SecondMark}) painter.drawEllipse(mark, 4, 4);
  }
  if (content & Ring) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(230, 97, 0), 3));
    painter.drawEllipse(SecondMark, 9, 9);
  }
  painter.end();
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, format, 100);
  return ChartPicture::fromBytes(bytes);
}

TEST(ChartPicture, FindsTheRingAroundTheExaminationThatIsShown) {
  const std::optional<QPoint> ring = drawn(Curves | Marks | Ring).ring();
  ASSERT_TRUE(ring);
  EXPECT_LE((*ring - SecondMark).manhattanLength(), 2);
  EXPECT_FALSE(drawn(Curves | Marks).ring());
}

TEST(ChartPicture, SeesMarksOnlyWhereTheyAre) {
  for (const char* format : {"PNG", "JPG"}) {
    const ChartPicture chart = drawn(Curves | Marks | Ring, format);
    EXPECT_TRUE(chart.hasExaminationAt(FirstMark)) << format;
    EXPECT_TRUE(chart.hasExaminationAt(SecondMark)) << format;
    EXPECT_FALSE(chart.hasExaminationAt((FirstMark + SecondMark) / 2))
        << format << ": only the line between them";
    EXPECT_FALSE(chart.hasExaminationAt(QPoint(250, 200))) << format;
    EXPECT_FALSE(drawn(Curves, format).hasExaminationAt(FirstMark)) << format;
  }
  EXPECT_FALSE(drawn(Marks).hasExaminationAt(QPoint(-5, 900)));
}

TEST(ChartPicture, CountsReferenceCurvesButNotGridFrameLettersOrThePatient) {
  EXPECT_EQ(drawn(Curves | Marks).referenceCurvesAt(0.7), 9);
  EXPECT_EQ(drawn(Marks | Ring).referenceCurvesAt(0.7), 0);
  EXPECT_EQ(drawn(Marks | Ring).referenceCurvesAt(0.32), 0);
}

TEST(ChartPicture, NothingIsSeenInWhatIsNoPicture) {
  const ChartPicture none = ChartPicture::fromBytes("no picture");
  EXPECT_FALSE(none.ring());
  EXPECT_EQ(none.referenceCurvesAt(0.5), 0);
}

}  // namespace
