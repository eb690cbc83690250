// SPDX-License-Identifier: LGPL-3.0-or-later
#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <QPainter>
#include <cmath>
#include <optional>

#include "orv/chart/JpegEncoder.h"
#include "testing/main/Shown.h"

using velmora::orv::encodeJpeg;

namespace {

/// The frame header of a JPEG file: marker SOFn and what follows it (ISO/IEC 10918-1, B.2.2).
struct FrameHeader {
  int marker = 0;
  int width = 0;
  int height = 0;
  QList<int> samplingFactors;  // one byte a component: horizontal and vertical factor, four bits each
};

std::optional<FrameHeader> frameHeaderOf(const QByteArray& jpeg) {
  const auto byteAt = [&jpeg](qsizetype i) {
    return static_cast<int>(static_cast<unsigned char>(jpeg.at(i)));
  };
  const auto wordAt = [&](qsizetype i) { return byteAt(i) * 256 + byteAt(i + 1); };
  for (qsizetype i = 2; i + 9 < jpeg.size() && byteAt(i) == 0xFF; i += 2 + wordAt(i + 2)) {
    const int marker = byteAt(i + 1);
    const bool isTable = marker == 0xC4 || marker == 0xC8 || marker == 0xCC;
    if (marker < 0xC0 || marker > 0xCF || isTable) continue;
    FrameHeader header{marker, wordAt(i + 7), wordAt(i + 5), {}};
    for (int component = 0; component < byteAt(i + 9); ++component) {
      header.samplingFactors.append(byteAt(i + 11 + 3 * component));
    }
    return header;
  }
  return std::nullopt;
}

/// Thin coloured curves over white, as a chart has them.
QImage chart() {
  QImage image(400, 300, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  for (int i = 0; i < 12; ++i) {
    painter.setPen(QPen(QColor::fromHsv(i * 30, 255, 220), 1));
    painter.drawLine(QPointF(0, 20 * i), QPointF(400, 300 - 15 * i));
  }
  return image;
}

/// Peak signal-to-noise ratio over all three colours, in decibels.
double psnr(const QImage& one, const QImage& other) {
  double squares = 0;
  for (int y = 0; y < one.height(); ++y) {
    for (int x = 0; x < one.width(); ++x) {
      const QRgb a = one.pixel(x, y);
      const QRgb b = other.pixel(x, y);
      for (const int difference : {qRed(a) - qRed(b), qGreen(a) - qGreen(b), qBlue(a) - qBlue(b)}) {
        squares += difference * difference;
      }
    }
  }
  return 10 * std::log10(255.0 * 255.0 * 3 * one.width() * one.height() / squares);
}

TEST(JpegEncoder, WritesABaselineFileWithFullColourResolution) {
  const QByteArray jpeg = encodeJpeg(chart(), 100);
  ASSERT_TRUE(jpeg.startsWith("\xFF\xD8\xFF"));
  EXPECT_TRUE(jpeg.endsWith("\xFF\xD9"));
  const auto header = frameHeaderOf(jpeg);
  ASSERT_TRUE(header);
  EXPECT_EQ(header->marker, 0xC0) << "SOF0 is baseline";
  EXPECT_EQ(header->width, 400);
  EXPECT_EQ(header->height, 300);
  EXPECT_EQ(header->samplingFactors, (QList<int>{0x11, 0x11, 0x11})) << "4:4:4";
}

TEST(JpegEncoder, KeepsThinColouredLines) {
  const QImage original = chart();
  const QImage decoded = QImage::fromData(encodeJpeg(original, 100), "JPEG");
  ASSERT_EQ(decoded.size(), original.size());
  const double decibels = psnr(original, decoded);
  RecordProperty("psnr", std::to_string(decibels));
  EXPECT_GT(decibels, 50);
}

TEST(JpegEncoder, FollowsTheQuality) {
  EXPECT_LT(encodeJpeg(chart(), 30).size(), encodeJpeg(chart(), 90).size());
  EXPECT_LT(encodeJpeg(chart(), 90).size(), encodeJpeg(chart(), 100).size());
}

TEST(JpegEncoder, GivesTheSameBytesForTheSamePicture) {
  EXPECT_TRUE(encodeJpeg(chart(), 100) == encodeJpeg(chart(), 100));
}

TEST(JpegEncoder, ShowsWhatIsTransparentOverWhite) {
  QImage image(32, 16, QImage::Format_ARGB32);
  image.fill(Qt::transparent);
  {
    QPainter painter(&image);
    painter.fillRect(16, 0, 16, 16, QColor(0, 0, 0, 128));
  }
  const QImage decoded = QImage::fromData(encodeJpeg(image, 100), "JPEG");
  EXPECT_GE(qGray(decoded.pixel(4, 8)), 254);
  EXPECT_NEAR(qGray(decoded.pixel(24, 8)), 127, 2);
}

TEST(JpegEncoder, WritesOnePixelForOneOfAHighResolutionPicture) {
  QImage image = chart();
  image.setDevicePixelRatio(2);
  EXPECT_TRUE(encodeJpeg(image, 100) == encodeJpeg(chart(), 100));
}

TEST(JpegEncoder, TakesOddSizesAndOtherPixelFormats) {
  for (const QSize& size : {QSize(1, 1), QSize(7, 3), QSize(17, 33)}) {
    QImage image(size, QImage::Format_Indexed8);
    image.setColorTable({qRgb(200, 30, 30)});
    image.fill(0);
    const QImage decoded = QImage::fromData(encodeJpeg(image, 100), "JPEG");
    ASSERT_EQ(decoded.size(), size);
    EXPECT_NEAR(qRed(decoded.pixel(0, 0)), 200, 2);
    EXPECT_NEAR(qBlue(decoded.pixel(0, 0)), 30, 2);
  }
}

TEST(JpegEncoder, GivesNothingForNoPicture) { EXPECT_TRUE(encodeJpeg(QImage(), 100).isEmpty()); }

}  // namespace
