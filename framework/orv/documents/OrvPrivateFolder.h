// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include "base/Export.h"
#include "base/Result.h"

namespace velmora::base {
class FileManager;
}  // namespace velmora::base

/// The application's own folder among the user's data, for the user alone. Its files hold patients' records,
/// or tell of them.
class VELMORA_EXPORT OrvPrivateFolder {
 public:
  /// The folder is named by the application's bundle identifier.
  OrvPrivateFolder(velmora::base::FileManager& files, const QString& bundleIdentifier);

  const QString& path() const { return path_; }
  /// Whether that file, whatever path leads to it, stands below the folder.
  bool contains(const QString& file) const;
  /// Makes `folder`, which is this one or one below it. A failure is logged.
  velmora::base::Result<> make(const QString& folder);
  /// Writes a file below the folder that is readable by the user alone. A failure is logged.
  velmora::base::Result<> write(const QString& file, const QByteArray& contents);

 private:
  velmora::base::FileManager& files_;
  QString path_;
};
