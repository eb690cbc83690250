// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/osirix/PluginInstaller.h"

#include <QDateTime>
#include <QFileInfo>
#include <QRegularExpression>

#include "base/files/FileManager.h"
#include "base/log/Log.h"
#include "platform/Services.h"
#include "platform/bundles/Bundle.h"
#include "platform/bundles/PropertyList.h"
#include "platform/controls/Alert.h"
#include "platform/runloop/RunLoop.h"
#include "platform/text/Localization.h"
#include "velmora/osirix/Osirix.h"

namespace velmora {

namespace {

/// The version of the plugin at `path`; a null string when it has none that can be read.
QString versionOfPlugin(const QString& path) {
  const QVariant version =
      platform::bundleWithPath(path).objectForInfoDictionaryKey(QStringLiteral("CFBundleVersion"));
  return version.typeId() == QMetaType::QString ? version.toString() : QString();
}

void logFailure(const char* format, const base::Result<>& result) {
  if (!result.ok()) base::logLine(platform::formatted(QString::fromLatin1(format), {result.error()}));
}

}  // namespace

QString PluginInstaller::carriedFolder() const {
  return platform::formatted(QStringLiteral("%@/OsiriX Plugins"), {services_.mainBundle.resourcePath()});
}

QString PluginInstaller::installedFolder() {
  return base::expandingTildeInPath(QStringLiteral("~/Library/Application Support/OsiriX/Plugins"));
}

bool PluginInstaller::osirixIsInstalled() const { return osirix::isInstalled(services_.workspace); }

QString PluginInstaller::nameOfInstallableOsirixPlugin() const {
  QString first;
  services_.fileManager.enumeratorAtPath(carriedFolder(), [&first](const QString& entry) {
    first = entry;
    return false;
  });
  return first;
}

bool PluginInstaller::osirixPluginVersionCurrent() const {
  const QString name = nameOfInstallableOsirixPlugin();
  if (name.isNull()) return true;
  const QString installed = installedFolder() + QLatin1Char('/') + name;
  if (!services_.fileManager.isDirectory(installed)) return false;
  const QString version = versionOfPlugin(installed);
  return !version.isNull() && version == versionOfPlugin(carriedFolder() + QLatin1Char('/') + name);
}

void PluginInstaller::doInstallOsirixPlugin() {
  const QString name = nameOfInstallableOsirixPlugin();
  makeInstalledFolder();
  removeLeftovers();
  removeInstalled(name);
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
  services_.alerts.runModal(outcome);
}

void PluginInstaller::makeInstalledFolder() {
  if (services_.fileManager.isDirectory(installedFolder())) return;
  logFailure("Create directory failed: %@", services_.fileManager.createDirectory(installedFolder()));
}

void PluginInstaller::removeLeftovers() {
  // The names under which the file manager takes folders away and copies them, whole plugins each. Young ones
  // may be another installation's, which is at work just now.
  static const QRegularExpression temporary(QStringLiteral("\\A\\.(?:removed|unfinished)-[A-Za-z]{6}\\z"));
  const QDateTime youngest = services_.runLoop.now().addSecs(-60 * base::FileManager::AbandonedAfterMinutes);
  for (const QString& name : services_.fileManager.contentsOfDirectoryAtPath(installedFolder())) {
    const QString path = installedFolder() + QLatin1Char('/') + name;
    if (!temporary.match(name).hasMatch() || QFileInfo(path).isSymLink()) continue;
    if (!services_.fileManager.isDirectory(path)) continue;
    if (services_.fileManager.modificationDate(path) > youngest) continue;
    logFailure("Remove left over folder failed: %@", services_.fileManager.removeItem(path));
  }
}

void PluginInstaller::removeInstalled(const QString& name) {
  // By its name in the folder: a link that leads nowhere is in the way too, and no name at all is in no
  // folder.
  if (!services_.fileManager.contentsOfDirectoryAtPath(installedFolder()).contains(name)) return;
  logFailure("Remove old plugin failed: %@",
             services_.fileManager.removeItem(installedFolder() + QLatin1Char('/') + name));
}

base::Result<> PluginInstaller::copyToInstalled(const QString& name) {
  if (name.isNull()) {
    return base::Failure{QStringLiteral("There is no plugin in '%1'.").arg(carriedFolder())};
  }
  return services_.fileManager.copyItem(carriedFolder() + QLatin1Char('/') + name,
                                        installedFolder() + QLatin1Char('/') + name);
}

}  // namespace velmora
