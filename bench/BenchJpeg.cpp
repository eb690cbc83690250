// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Encoding a chart as JPEG, against Qt's own writer at the same quality: time, size, and what is left of the
// colours.
#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <cmath>
#include <cstdio>

#include "bench/Measure.h"
#include "orv/chart/JpegEncoder.h"

using namespace velmora;

namespace {

/// Thin coloured curves on white: what a chart is made of, and what halved colour resolution harms most.
QImage chart() {
  QImage image(900, 500, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  const QColor colours[] = {QColor(0x20, 0x60, 0x6c), QColor(0x10, 0x30, 0x80), QColor(0xe0, 0x60, 0x00),
                            Qt::red};
  for (int curve = 0; curve < 9; ++curve) {
    painter.setPen(QPen(colours[curve % 4], 1.2));
    QPolygonF line;
    for (int x = 40; x < 880; x += 4) line << QPointF(x, 460 - (20 + curve * 4) * std::log(1.0 + x / 10.0));
    painter.drawPolyline(line);
  }
  return image;
}

/// Peak signal-to-noise ratio over the three colours, in dB.
double signalToNoise(const QImage& original, const QByteArray& jpeg) {
  const QImage decoded = QImage::fromData(jpeg, "JPEG").convertToFormat(QImage::Format_RGB32);
  double squares = 0;
  for (int y = 0; y < original.height(); ++y) {
    for (int x = 0; x < original.width(); ++x) {
      const QRgb a = original.pixel(x, y);
      const QRgb b = decoded.pixel(x, y);
      for (const int difference : {qRed(a) - qRed(b), qGreen(a) - qGreen(b), qBlue(a) - qBlue(b)}) {
        squares += difference * difference;
      }
    }
  }
  const double mean = squares / (3.0 * original.width() * original.height());
  return mean > 0 ? 10 * std::log10(255 * 255 / mean) : INFINITY;
}

}  // namespace

int main() {
  const QImage image = chart();
  constexpr int Quality = 100;
  constexpr int Rounds = 31;
  QByteArray ours;
  QByteArray qts;
  const double ourTime = bench::medianMilliseconds(Rounds, [&] { ours = orv::encodeJpeg(image, Quality); });
  const double qtTime = bench::medianMilliseconds(Rounds, [&] {
    qts.clear();
    QBuffer buffer(&qts);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPEG", Quality);
  });
  if (ours.isEmpty() || qts.isEmpty()) {
    std::fprintf(stderr, "bench-jpeg: an encoder gave nothing\n");
    return 1;
  }
  std::printf("chart of %d x %d, quality %d, median of %d\n", image.width(), image.height(), Quality, Rounds);
  std::printf("  time   %6.2f ms, Qt's writer %6.2f ms, ratio %.2f\n", ourTime, qtTime, ourTime / qtTime);
  std::printf("  size   %6lld B,  Qt's writer %6lld B,  ratio %.2f\n", static_cast<long long>(ours.size()),
              static_cast<long long>(qts.size()),
              static_cast<double>(ours.size()) / static_cast<double>(qts.size()));
  std::printf("  signal %6.1f dB, Qt's writer %6.1f dB\n", signalToNoise(image, ours),
              signalToNoise(image, qts));
  return 0;
}
