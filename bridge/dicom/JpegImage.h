// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>

#include "base/Result.h"

namespace bridge {

/// What a JPEG file image says of itself (ITU-T T.81).
struct JpegImage {
  enum class Colour {
    Grey,
    YCbCr,  ///< luminance and two chrominances, sampled as finely or more coarsely
    Rgb,
  };
  int columns = 0;  ///< 1 to 65500
  int rows = 0;     ///< 1 to 65500
  Colour colour = Colour::Grey;
  int samplesPerPixel() const noexcept { return colour == Colour::Grey ? 1 : 3; }
};

/// Decodes one JPEG file image and refuses, in words for the user, whatever is not a whole image in the
/// baseline process with 8 bits a sample: other processes, four colours, missing tables, an end that is
/// missing or not the end, pixels that are missing or so damaged that a decoder notices.
velmora::base::Result<JpegImage> jpegImage(const QByteArray& jpeg);

}  // namespace bridge
