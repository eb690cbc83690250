// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace bridge {

/// What a JPEG file image says of itself (ITU-T T.81).
struct JpegImage {
  enum class Colour {
    Grey,
    YCbCr,  ///< luminance and two chrominances, these in as many places or in fewer
    Rgb,
  };
  int columns = 0;  ///< 1 to 65535
  int rows = 0;     ///< 1 to 65535
  Colour colour = Colour::Grey;
  QString error;  ///< why it cannot become a DICOM object; null when it can
  bool ok() const { return error.isNull(); }
  int samplesPerPixel() const { return colour == Colour::Grey ? 1 : 3; }
};

/// Looks through one JPEG file image from its first marker to its last and refuses what is not a whole image
/// in the baseline process with 8 bits a sample: other processes, four colours, missing tables, an end that
/// is missing or not the end, fewer bytes than an image of its size can have. The pixels themselves are not
/// decoded.
JpegImage jpegImage(const QByteArray& jpeg);

}  // namespace bridge
