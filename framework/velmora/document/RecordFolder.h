// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <optional>

namespace velmora::base {
class FileManager;
}
namespace velmora::platform {
class UserDefaults;
}

namespace velmora {

/// The save folder, and the names of the data files in it. The settings are read at each use.
class RecordFolder {
 public:
  RecordFolder(const platform::UserDefaults& defaults, const base::FileManager& files)
      : defaults_(defaults), files_(files) {}

  /// The extension of data files, without the dot.
  const QString& extension() const noexcept { return extension_; }
  void setExtension(const QString& extension) { extension_ = extension; }

  /// The folder's path, whether or not it is there.
  QString path() const;
  /// Where the data file of `identifier` stands or would stand.
  QString dataFilePath(const QString& identifier) const;
  /// Whether data files are saved, and looked up, without asking where.
  bool isAutomatic() const;
  /// Whether a record of that file name is saved without a panel.
  bool savesAutomatically(const QString& name) const { return isAutomatic() && !name.isEmpty(); }
  /// Where such a record is saved. Returns nothing when it needs the panel or there is no save folder.
  std::optional<QString> automaticPath(const QString& name) const;

 private:
  const platform::UserDefaults& defaults_;
  const base::FileManager& files_;
  QString extension_;
};

}  // namespace velmora
