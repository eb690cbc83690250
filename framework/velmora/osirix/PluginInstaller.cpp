// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/osirix/PluginInstaller.h"

#include <QDateTime>
#include <QFileInfo>
#include <QRegularExpression>

#include "base/files/FileManager.h"
#include "base/log/Log.h"
#include "platform/bundles/Bundle.h"
#include "platform/bundles/PropertyList.h"
#include "platform/controls/Alert.h"
#include "platform/runloop/RunLoop.h"
#include "platform/text/Localization.h"

namespace velmora {

namespace {

/// The version of the plugin at `path`; nothing when it has none that can be read.
std::optional<QString> versionOfPlugin(const QString& path) {
  const QVariant version =
      platform::bundleWithPath(path).objectForInfoDictionaryKey(QStringLiteral("CFBundleVersion"));
  return version.typeId() == QMetaType::QString ? std::optional(version.toString()) : std::nullopt;
}

void logFailure(const char* format, const base::Result<>& result) {
  if (!result.ok()) base::logLine(platform::formatted(QString::fromLatin1(format), {result.error()}));
}

}  // namespace

QString PluginInstaller::carriedFolder() const {
  return platform::formatted(QStringLiteral("%@/OsiriX Plugins"), {bundle_.resourcePath()});
}

QString PluginInstaller::installedFolder() {
  return base::expandingTildeInPath(QStringLiteral("~/Library/Application Support/OsiriX/Plugins"));
}

std::optional<QString> PluginInstaller::nameOfInstallableOsirixPlugin() const {
  std::optional<QString> first;
  files_.enumeratorAtPath(carriedFolder(), [&first](const QString& entry) {
    first = entry;
    return false;
  });
  return first;
}

bool PluginInstaller::osirixPluginVersionCurrent() const {
  const std::optional<QString> name = nameOfInstallableOsirixPlugin();
  if (!name) return true;
  const QString installed = installedFolder() + QLatin1Char('/') + *name;
  if (!files_.isDirectory(installed)) return false;
  const std::optional<QString> version = versionOfPlugin(installed);
  return version && version == versionOfPlugin(carriedFolder() + QLatin1Char('/') + *name);
}

void PluginInstaller::doInstallOsirixPlugin() {
  const std::optional<QString> name = nameOfInstallableOsirixPlugin();
  makeInstalledFolder();
  removeLeftovers();
  if (name) removeInstalled(*name);
  const base::Result<> copied = copyToInstalled(name);
  logFailure("Copy plugin failed: %@", copied);

  platform::Alert outcome;
  outcome.defaultButton = platform::localizedString("OrvVersion", "OK");
  if (copied.ok()) {
    outcome.messageText = platform::localizedString("VelmoraAppController", "Installation Succeeded");
    outcome.informativeText = platform::localizedString(
        "VelmoraAppController", "The plugin will be available the next time OsiriX is launched.");
  } else {
    outcome.messageText = platform::localizedString("VelmoraAppController", "Installation Failed");
  }
  alerts_.runModal(outcome);
}

void PluginInstaller::makeInstalledFolder() {
  if (files_.isDirectory(installedFolder())) return;
  logFailure("Create directory failed: %@", files_.createDirectory(installedFolder()));
}

void PluginInstaller::removeLeftovers() {
  // The names under which the file manager takes folders away and copies them, whole plugins each. Young ones
  // may be another installation's, which is at work just now.
  static const QRegularExpression temporary(QStringLiteral("\\A\\.(?:removed|unfinished)-[A-Za-z]{6}\\z"));
  const QDateTime youngest = clock_.now().addSecs(-60 * base::FileManager::AbandonedAfterMinutes);
  for (const QString& name : files_.contentsOfDirectoryAtPath(installedFolder())) {
    const QString path = installedFolder() + QLatin1Char('/') + name;
    if (!temporary.match(name).hasMatch() || QFileInfo(path).isSymLink()) continue;
    if (!files_.isDirectory(path)) continue;
    if (files_.modificationDate(path) > youngest) continue;
    logFailure("Remove left over folder failed: %@", files_.removeItem(path));
  }
}

void PluginInstaller::removeInstalled(const QString& name) {
  // By its name in the folder: a link that leads nowhere is in the way too.
  if (!files_.contentsOfDirectoryAtPath(installedFolder()).contains(name)) return;
  logFailure("Remove old plugin failed: %@", files_.removeItem(installedFolder() + QLatin1Char('/') + name));
}

base::Result<> PluginInstaller::copyToInstalled(const std::optional<QString>& name) {
  if (!name) {
    return base::Failure{QStringLiteral("There is no plugin in '%1'.").arg(carriedFolder())};
  }
  return files_.copyItem(carriedFolder() + QLatin1Char('/') + *name,
                         installedFolder() + QLatin1Char('/') + *name);
}

}  // namespace velmora
