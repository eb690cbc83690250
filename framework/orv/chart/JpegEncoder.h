// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QImage>

#include "base/Export.h"

namespace velmora::orv {

/// The picture as a baseline JPEG file with full colour resolution (4:4:4), over white where it is
/// transparent. `quality` 1 to 100. Returns no bytes for an empty picture. The same picture gives the same
/// bytes.
///
/// Not Qt's own writer: that one halves the colour resolution even at the highest quality, which smears thin
/// coloured curves, and turns what is transparent black.
VELMORA_EXPORT QByteArray encodeJpeg(const QImage& image, int quality);

}  // namespace velmora::orv
