// SPDX-License-Identifier: LGPL-3.0-or-later
#include "demo/guide/SmallPicture.h"

#include <QHash>
#include <QList>
#include <algorithm>

namespace demo {

namespace {

constexpr qsizetype MostColours = 256;

int distance(QRgb a, QRgb b) {
  const int red = qRed(a) - qRed(b);
  const int green = qGreen(a) - qGreen(b);
  const int blue = qBlue(a) - qBlue(b);
  return red * red + green * green + blue * blue;
}

// The colours by how many pixels have them, the most frequent first; equal ones by their value, so that one
// picture always gives one palette.
QList<QRgb> coloursByFrequency(const QImage& picture) {
  QHash<QRgb, int> pixels;
  for (int y = 0; y < picture.height(); ++y)
    for (int x = 0; x < picture.width(); ++x) ++pixels[picture.pixel(x, y)];
  QList<QRgb> colours = pixels.keys();
  std::sort(colours.begin(), colours.end(),
            [&](QRgb a, QRgb b) { return pixels[a] != pixels[b] ? pixels[a] > pixels[b] : a < b; });
  return colours;
}

}  // namespace

QImage withFewColours(const QImage& picture) {
  const QImage full = picture.convertToFormat(QImage::Format_RGB32);
  const QList<QRgb> colours = coloursByFrequency(full);
  const QList<QRgb> palette = colours.mid(0, MostColours);
  QHash<QRgb, int> place;
  for (const QRgb colour : colours) {
    const auto nearest = std::min_element(palette.cbegin(), palette.cend(), [&](QRgb a, QRgb b) {
      return distance(a, colour) < distance(b, colour);
    });
    place[colour] = static_cast<int>(nearest - palette.cbegin());
  }
  QImage small(full.size(), QImage::Format_Indexed8);
  small.setColorTable(palette);
  for (int y = 0; y < full.height(); ++y)
    for (int x = 0; x < full.width(); ++x) small.setPixel(x, y, static_cast<uint>(place[full.pixel(x, y)]));
  return small;
}

}  // namespace demo
