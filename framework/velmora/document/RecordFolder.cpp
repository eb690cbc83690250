// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/document/RecordFolder.h"

#include "base/files/FileManager.h"
#include "platform/settings/UserDefaults.h"
#include "velmora/resources/SettingsKeys.h"

namespace velmora {

QString RecordFolder::path() const {
  return base::expandingTildeInPath(defaults_.stringForKey(settings::SaveDirectory));
}

QString RecordFolder::dataFilePath(const QString& identifier) const {
  return path() + QLatin1Char('/') + base::appendingPathExtension(identifier, extension_);
}

bool RecordFolder::isAutomatic() const { return defaults_.boolForKey(settings::AutoSave); }

std::optional<QString> RecordFolder::automaticPath(const QString& name) const {
  if (!savesAutomatically(name) || !files_.fileExistsAtPath(path())) return std::nullopt;
  return path() + QLatin1Char('/') + name + QLatin1Char('.') + extension_;
}

}  // namespace velmora
