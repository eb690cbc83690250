// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/app/DatabaseFileCache.h"

#include "base/files/FileManager.h"
#include "platform/runloop/RunLoop.h"
#include "platform/settings/UserDefaults.h"
#include "platform/text/Localization.h"
#include "velmora/resources/SettingsKeys.h"

namespace velmora {

namespace {
constexpr double StatusTime = 1.0;   // seconds
constexpr double RetryDelay = 10.0;  // seconds
}  // namespace

DatabaseFileCache::DatabaseFileCache(const platform::UserDefaults& defaults, const base::FileManager& files,
                                     platform::RunLoop& runLoop, ShowStatus showStatus)
    : defaults_(defaults), files_(files), runLoop_(runLoop), showStatus_(std::move(showStatus)) {}

void DatabaseFileCache::cacheDatabaseFiles() {
  if (!defaults_.boolForKey(settings::AutoSave)) return;
  showStatus_(platform::localizedString("VelmoraAppController", "Caching database..."));
  const QString folder = base::expandingTildeInPath(defaults_.stringForKey(settings::SaveDirectory));
  files_.enumeratorAtPath(folder, [&](const QString& relativePath) {
    const QString dataFileExtension = defaults_.stringForKey(settings::DataFileExtension);
    if (!dataFileExtension.isEmpty() && base::pathExtension(relativePath) == dataFileExtension) {
      names_.append(base::deletingPathExtension(relativePath));
    }
    return true;
  });
  runLoop_.performAfterDelay(this, StatusTime, [this] { showStatus_(QStringLiteral("")); });
  if (names_.isEmpty()) {
    runLoop_.performAfterDelay(this, RetryDelay, [this] { cacheDatabaseFiles(); });
  }
}

void DatabaseFileCache::add(const QString& fileName) {
  const QString name = base::deletingPathExtension(fileName.section(QLatin1Char('/'), -1));
  if (!names_.contains(name)) names_.append(name);
}

}  // namespace velmora
