// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QImage>

namespace demo {

/// The picture with at most 256 colours, which makes a PNG file a third as large. The colours that most
/// pixels have stay as they are; each other one becomes the nearest of these, without dithering. For pictures
/// of windows, whose many rare colours are the edges of letters.
QImage withFewColours(const QImage& picture);

}  // namespace demo
