// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <zlib.h>

#include <array>

#include "bridge/dicom/ByteSource.h"

namespace bridge {

/// Inflates a raw deflate stream (RFC 1951) from a device. Gives at most `MostInflated` bytes, so that a
/// small file cannot keep us busy: the attributes of a study are at the beginning.
class Inflater : public ByteSource {
 public:
  explicit Inflater(QIODevice& device);
  ~Inflater() override;
  Inflater(const Inflater&) = delete;
  Inflater& operator=(const Inflater&) = delete;

  bool read(char* bytes, qint64 size) override;
  bool skip(qint64 size) override;

  static constexpr qint64 MostInflated = 64LL * 1024 * 1024;

 private:
  QIODevice& device_;
  z_stream stream_{};
  bool ready_ = false;
  qint64 left_ = MostInflated;
  std::array<char, 16 * 1024> input_{};
};

}  // namespace bridge
