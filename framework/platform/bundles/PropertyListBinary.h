// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QVariant>

namespace velmora::platform {

/// What nests deeper, or holds more values, is no property list that anybody wrote.
inline constexpr int DeepestPropertyList = 64;
inline constexpr int MostPropertyListValues = 100000;

/// The value that a binary property list ("bplist00") holds; invalid when it is none or is damaged anywhere.
///
/// The file is objects, a table of their places, and 32 bytes about that table at the end, all numbers
/// big-endian; an object begins with a byte that holds its type and its size. As Apple's CFBinaryPList.c
/// (Core Foundation) describes it, whose type names stand beside the codes.
QVariant valueOfBinaryPropertyList(const QByteArray& data);

}  // namespace velmora::platform
