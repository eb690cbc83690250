// SPDX-License-Identifier: LGPL-3.0-or-later
#include "orv/chart/JpegEncoder.h"

#include <turbojpeg.h>

#include <QPainter>
#include <memory>

namespace velmora::orv {

QByteArray encodeJpeg(const QImage& image, int quality) {
  if (image.isNull()) return {};
  QImage opaque(image.size(), QImage::Format_RGBX8888);
  opaque.fill(Qt::white);
  {
    QImage source = image;
    source.setDevicePixelRatio(1);  // one pixel of the picture is one pixel of the file
    QPainter painter(&opaque);
    painter.drawImage(0, 0, source);
  }

  const std::unique_ptr<void, int (*)(tjhandle)> compressor(tjInitCompress(), tjDestroy);
  if (!compressor) return {};
  unsigned char* bytes = nullptr;
  unsigned long size = 0;
  const int failed = tjCompress2(compressor.get(), opaque.constBits(), opaque.width(),
                                 static_cast<int>(opaque.bytesPerLine()), opaque.height(), TJPF_RGBX, &bytes,
                                 &size, TJSAMP_444, quality, TJFLAG_ACCURATEDCT);
  const std::unique_ptr<unsigned char, void (*)(unsigned char*)> owned(bytes, tjFree);
  if (failed != 0) return {};
  return QByteArray(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size));
}

}  // namespace velmora::orv
