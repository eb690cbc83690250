// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/app/DatabaseFileCache.h"

#include "base/files/FileManager.h"
#include "platform/Services.h"
#include "platform/runloop/RunLoop.h"
#include "platform/settings/UserDefaults.h"
#include "platform/text/Localization.h"
#include "velmora/resources/SettingsKeys.h"

namespace velmora {

namespace {
constexpr double StatusTime = 1.0;   // seconds
constexpr double RetryDelay = 10.0;  // seconds
}  // namespace

DatabaseFileCache::DatabaseFileCache(platform::Services& services, ShowStatus showStatus)
    : services_(services), showStatus_(std::move(showStatus)) {}

void DatabaseFileCache::cacheDatabaseFiles() {
  const platform::UserDefaults& defaults = services_.defaults;
  if (!defaults.boolForKey(settings::AutoSave)) return;
  showStatus_(platform::localizedString("VelmoraAppController", "Caching database..."));
  const QString folder = base::expandingTildeInPath(defaults.stringForKey(settings::SaveDirectory));
  services_.fileManager.enumeratorAtPath(folder, [&](const QString& relativePath) {
    const QString dataFileExtension = defaults.stringForKey(settings::DataFileExtension);
    if (!dataFileExtension.isEmpty() && base::pathExtension(relativePath) == dataFileExtension) {
      names_.append(base::deletingPathExtension(relativePath));
    }
    return true;
  });
  services_.runLoop.performAfterDelay(this, StatusTime, [this] { showStatus_(QStringLiteral("")); });
  if (names_.isEmpty()) {
    services_.runLoop.performAfterDelay(this, RetryDelay, [this] { cacheDatabaseFiles(); });
  }
}

void DatabaseFileCache::add(const QString& fileName) {
  const QString name = base::deletingPathExtension(fileName.section(QLatin1Char('/'), -1));
  if (!names_.contains(name)) names_.append(name);
}

}  // namespace velmora
