// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>

#include "base/Result.h"

namespace bridge {

/// The properties of a JPEG image (ITU-T T.81).
struct JpegImage {
  enum class Colour {
    Grey,
    YCbCr,  ///< luminance and two chrominances, which may be subsampled
    Rgb,
  };
  int columns = 0;  ///< 1 to 65500
  int rows = 0;     ///< 1 to 65500
  Colour colour = Colour::Grey;
  int samplesPerPixel() const noexcept { return colour == Colour::Grey ? 1 : 3; }
};

/// Decodes a JPEG image. Fails, in words for the user, unless it is one complete baseline image with 8 bits
/// per sample: for other processes, four colours, missing tables, a missing end, data after the end, and
/// pixels that are missing or so damaged that a decoder notices.
velmora::base::Result<JpegImage> jpegImage(const QByteArray& jpeg);

}  // namespace bridge
