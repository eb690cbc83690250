// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QObject>
#include <QStringList>
#include <functional>

#include "base/Export.h"

namespace velmora::base {
class FileManager;
}
namespace velmora::platform {
class RunLoop;
class UserDefaults;
}  // namespace velmora::platform

namespace velmora {

/// The names of the data files in the save folder, so that a document can ask cheaply whether its patient has
/// one.
///
/// Filled by a scan of the folder, which is repeated every ten seconds while nothing is found, and grown by
/// saves. The scan gives paths relative to the folder (a file in a sub-folder begins with the sub-folder's
/// name), a save the bare name; both without extension. Entries are compared exactly.
class VELMORA_EXPORT DatabaseFileCache : public QObject {
 public:
  using ShowStatus = std::function<void(const QString&)>;

  /// `showStatus` shows the progress of a scan.
  DatabaseFileCache(const platform::UserDefaults& defaults, const base::FileManager& files,
                    platform::RunLoop& runLoop, ShowStatus showStatus);

  /// Scans the save folder, while "Auto Save" is on. What it finds is added to the list as it stands.
  void cacheDatabaseFiles();
  bool contains(const QString& name) const { return names_.contains(name); }
  /// Adds the last component of a path, without its extension, unless it is there already.
  void add(const QString& fileName);
  void clear() { names_.clear(); }
  const QStringList& names() const { return names_; }

 private:
  const platform::UserDefaults& defaults_;
  const base::FileManager& files_;
  platform::RunLoop& runLoop_;
  ShowStatus showStatus_;
  QStringList names_;
};

}  // namespace velmora
