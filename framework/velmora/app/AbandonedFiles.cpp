// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/app/AbandonedFiles.h"

#include "base/files/FileManager.h"
#include "orv/documents/OrvKeptCopies.h"
#include "orv/documents/OrvWrittenFolders.h"
#include "platform/bundles/Bundle.h"
#include "platform/settings/UserDefaults.h"
#include "velmora/resources/SettingsKeys.h"

namespace velmora {

void removeAbandonedFiles(base::FileManager& files, const platform::UserDefaults& defaults,
                          const platform::RunLoop& clock, const platform::Bundle& bundle) {
  const QString bundleIdentifier = bundle.bundleIdentifier();
  const QStringList extensions{defaults.stringForKey(settings::DataFileExtension), QStringLiteral("jpg")};
  const auto folder = [&defaults](const QString& key) {
    return base::expandingTildeInPath(defaults.stringForKey(key));
  };
  // The save folder as deep as it is searched for data files, which is while they are saved automatically.
  using Depth = base::FileManager::Depth;
  const Depth depth = defaults.boolForKey(settings::AutoSave) ? Depth::Everything : Depth::Folder;
  files.removeAbandonedFiles(folder(settings::SaveDirectory), extensions, depth);
  files.removeAbandonedFiles(folder(settings::ExportDirectory), extensions);
  for (const QString& written : OrvWrittenFolders(files, bundleIdentifier).all()) {
    files.removeAbandonedFiles(written, extensions);
  }
  OrvKeptCopies(files, clock, bundleIdentifier).removeAbandonedCopies(extensions);
}

}  // namespace velmora
