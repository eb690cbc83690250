// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/dicom/Inflater.h"

#include <algorithm>

namespace bridge {

Inflater::Inflater(QIODevice& device) : device_(device) {
  ready_ = inflateInit2(&stream_, -MAX_WBITS) == Z_OK;  // negative: without the header of zlib
}

Inflater::~Inflater() {
  if (ready_) inflateEnd(&stream_);
}

bool Inflater::read(char* bytes, qint64 size) {
  if (!ready_ || size > left_) return false;
  left_ -= size;
  stream_.next_out = reinterpret_cast<Bytef*>(bytes);
  stream_.avail_out = static_cast<uInt>(size);
  while (stream_.avail_out > 0) {
    if (stream_.avail_in == 0) {
      const qint64 got = device_.read(input_.data(), static_cast<qint64>(input_.size()));
      if (got <= 0) return false;
      stream_.next_in = reinterpret_cast<Bytef*>(input_.data());
      stream_.avail_in = static_cast<uInt>(got);
    }
    const int result = inflate(&stream_, Z_NO_FLUSH);
    if (result != Z_OK && (result != Z_STREAM_END || stream_.avail_out > 0)) return false;
  }
  return true;
}

bool Inflater::skip(qint64 size) {
  std::array<char, 16 * 1024> thrownAway;
  while (size > 0) {
    const qint64 part = std::min(size, static_cast<qint64>(thrownAway.size()));
    if (!read(thrownAway.data(), part)) return false;
    size -= part;
  }
  return true;
}

}  // namespace bridge
