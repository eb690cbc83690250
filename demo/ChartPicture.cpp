// SPDX-License-Identifier: LGPL-3.0-or-later
#include "demo/ChartPicture.h"

#include <QColor>

namespace demo {

namespace {

constexpr int FewestPixelsOfARing = 60;
constexpr int FewestPixelsOfAMark = 26;
constexpr int RadiusOfAMark = 4;

bool isOrange(QRgb c) { return qRed(c) > 200 && qGreen(c) > 80 && qGreen(c) < 175 && qBlue(c) < 100; }

bool isDarkBlue(QRgb c) {
  return qBlue(c) > 70 && qBlue(c) > qRed(c) + 40 && qBlue(c) > qGreen(c) + 25 && qRed(c) < 110;
}

// Grey with a touch of green and blue, which letters, frame and grid do not have.
bool isReference(QRgb c) {
  return qGreen(c) > qRed(c) + 15 && qBlue(c) > qRed(c) + 15 && qAbs(qGreen(c) - qBlue(c)) < 25 &&
         qGray(c) < 200;
}

}  // namespace

ChartPicture ChartPicture::fromFile(const QString& path) { return ChartPicture(QImage(path)); }

ChartPicture ChartPicture::fromBytes(const QByteArray& bytes) {
  return ChartPicture(QImage::fromData(bytes));
}

std::optional<QPoint> ChartPicture::ring() const {
  QRect around;
  int pixels = 0;
  for (int y = 0; y < image_.height(); ++y)
    for (int x = 0; x < image_.width(); ++x)
      if (isOrange(image_.pixel(x, y))) {
        around = around.united(QRect(x, y, 1, 1));
        ++pixels;
      }
  // One ring is small and about as wide as it is high; anything else that is orange is not it.
  if (pixels < FewestPixelsOfARing || around.width() > 40 || qAbs(around.width() - around.height()) > 4)
    return std::nullopt;
  return around.center();
}

bool ChartPicture::hasExaminationAt(const QPoint& place) const {
  int pixels = 0;
  for (int y = place.y() - RadiusOfAMark; y <= place.y() + RadiusOfAMark; ++y)
    for (int x = place.x() - RadiusOfAMark; x <= place.x() + RadiusOfAMark; ++x)
      if (image_.rect().contains(x, y) && isDarkBlue(image_.pixel(x, y))) ++pixels;
  return pixels >= FewestPixelsOfAMark;
}

int ChartPicture::referenceCurvesAt(double partOfWidth) const {
  const int x = static_cast<int>(image_.width() * partOfWidth);
  int curves = 0;
  bool on = false;
  for (int y = 0; y < image_.height(); ++y) {
    const bool here = isReference(image_.pixel(x, y));
    if (here && !on) ++curves;
    on = here;
  }
  return curves;
}

}  // namespace demo
