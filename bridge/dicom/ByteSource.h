// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QIODevice>

namespace bridge {

/// Bytes that are read once, from beginning to end.
class ByteSource {
 public:
  virtual ~ByteSource() = default;
  /// Reads exactly `size` bytes. Returns false when fewer are left.
  virtual bool read(char* bytes, qint64 size) = 0;
  virtual bool skip(qint64 size) = 0;
};

/// The bytes of an open file or buffer.
class DeviceSource : public ByteSource {
 public:
  explicit DeviceSource(QIODevice& device) : device_(device) {}
  bool read(char* bytes, qint64 size) override { return device_.read(bytes, size) == size; }
  bool skip(qint64 size) override {
    return size <= device_.size() - device_.pos() && device_.seek(device_.pos() + size);
  }

 private:
  QIODevice& device_;
};

}  // namespace bridge
