// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QColor>
#include <QImage>

namespace velmora::testkit {

/// How many pixels of a picture have the colour of the highlighted point; nothing else of a chart is orange.
inline int orangePixels(const QImage& picture) {
  int count = 0;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      const QColor colour = picture.pixelColor(x, y);
      if (colour.red() > 200 && colour.blue() < 80 && colour.green() < 160) ++count;
    }
  }
  return count;
}

}  // namespace velmora::testkit
