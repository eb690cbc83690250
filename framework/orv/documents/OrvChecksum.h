// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>

#include "base/Export.h"

/// The checksum of a data file: the member "checksum" of its outermost object holds the SHA-256 of the whole
/// file, in 64 hexadecimal digits, counted as if these digits were zeros. So one flipped bit anywhere is
/// noticed, and the file stays text that a person can read.
namespace velmora::orv {

/// What a file carries in place of the checksum while the checksum is computed: 64 zeros.
VELMORA_EXPORT QByteArray emptyChecksum();
/// The file with its checksum filled in. It must carry the empty one.
VELMORA_EXPORT QByteArray withChecksum(QByteArray file);
/// Whether the file carries the checksum of itself.
VELMORA_EXPORT bool checksumHolds(QByteArray file);

}  // namespace velmora::orv
