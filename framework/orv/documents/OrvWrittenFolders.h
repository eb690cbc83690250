// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QStringList>

#include "base/Export.h"
#include "base/files/FileManager.h"
#include "orv/documents/OrvPrivateFolder.h"

/// The folders in which files have been saved, also those that were only chosen in a panel once: what a save
/// that was cut off has left in one of them is looked for at the next start.
class VELMORA_EXPORT OrvWrittenFolders {
 public:
  /// The list stands in the application's private folder.
  OrvWrittenFolders(velmora::base::FileManager& files, const QString& bundleIdentifier);

  /// Writes a file for the user, durably, and remembers its folder.
  velmora::base::Result<> write(const QString& path, const QByteArray& contents,
                                const velmora::base::FileManager::FinalCheck& check = {});
  /// Remembers the folder of a file that is about to be written. At most MostFolders are remembered; those
  /// that were added first go first. A folder that cannot be remembered does not stop the save.
  void add(const QString& file);
  /// The folders remembered.
  QStringList all() const;

  static constexpr int MostFolders = 50;

 private:
  QString listPath() const;

  velmora::base::FileManager& files_;
  OrvPrivateFolder folder_;
};
