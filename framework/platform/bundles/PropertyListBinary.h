// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QVariant>
#include <optional>

namespace velmora::platform {

/// What nests deeper, or holds more values, is no property list that anybody wrote.
inline constexpr int DeepestPropertyList = 64;
inline constexpr int MostPropertyListValues = 100000;

/// The value that a binary property list ("bplist00") holds; nothing when the data is not one, or is damaged.
///
/// Such a file begins with the letters "bplist" and two digits of its version. Then come the objects, then a
/// table that gives the place of each object, counted from the start of the file, and last 32 bytes that say
/// how many bytes a place and an object's index take, how many objects there are, which of them is the value
/// of the whole list, and where the table begins. All numbers are big-endian.
///
/// The upper half of an object's first byte is its type, the lower half its size; 15 there means that the
/// size follows as an integer object. Integers and reals give their size as a power of two, strings and data
/// in characters and bytes. An array is a row of indices, a dictionary a row of those of its keys and then
/// one of those of its values.
std::optional<QVariant> valueOfBinaryPropertyList(const QByteArray& data);

}  // namespace velmora::platform
