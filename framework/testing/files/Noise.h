// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>

namespace velmora::testkit {

/// Bytes that begin like a JPEG file and go on like noise, every byte value among them.
inline QByteArray noise(qsizetype size) {
  QByteArray bytes("\xff\xd8\xff\xe0");
  bytes.reserve(size);
  quint32 state = 1;
  while (bytes.size() < size) {
    state = state * 1664525u + 1013904223u;
    bytes.append(static_cast<char>(state >> 24));
  }
  return bytes;
}

}  // namespace velmora::testkit
