// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QFile>
#include <QFileInfo>
#include <QString>
#include <stdexcept>

#include "base/Export.h"

namespace velmora::testkit {

/// While one lives the file cannot be opened, by the superuser neither: a link that leads to itself is in its
/// place.
class VELMORA_EXPORT UnreadableFile {
 public:
  explicit UnreadableFile(const QString& path) : path_(path) {
    if (!QFile::rename(path_, hidden()) || !QFile::link(path_, path_))
      throw std::runtime_error("cannot be hidden: " + path_.toStdString());
  }
  ~UnreadableFile() {
    QFile::remove(path_);
    QFile::rename(hidden(), path_);
  }
  /// Whether nobody has written over it, or taken it away.
  bool isUntouched() const { return QFileInfo(path_).isSymLink() && QFile::exists(hidden()); }
  UnreadableFile(const UnreadableFile&) = delete;
  UnreadableFile& operator=(const UnreadableFile&) = delete;

 private:
  QString hidden() const { return path_ + QStringLiteral(".hidden"); }
  QString path_;
};

}  // namespace velmora::testkit
