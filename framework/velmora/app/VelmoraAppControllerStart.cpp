// SPDX-License-Identifier: LGPL-3.0-or-later
//
// What happens when the application starts and ends.
#include <tuple>

#include "orv/documents/OrvKeptCopies.h"
#include "orv/documents/OrvWrittenFolders.h"
#include "platform/controls/Alert.h"
#include "platform/bundles/Bundle.h"
#include "base/files/FileManager.h"
#include "platform/text/Localization.h"
#include "platform/runloop/RunLoop.h"
#include "platform/Services.h"
#include "platform/settings/UserDefaults.h"
#include "velmora/about/AboutController.h"
#include "velmora/app/VelmoraAppController.h"
#include "link/protocol/LinkPayload.h"
#include "link/protocol/LinkProtocol.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;

namespace settings = velmora::settings;
using velmora::platform::localizedString;

namespace {

/// What the first run stores as the interval between checks, in days; that it is not 0 ends the first run.
constexpr int FirstRunInterval = 31;
// When the steps of the start-up run, in seconds after the splash.
constexpr double ScriptDelay = 0.5;
constexpr double CacheDelay = 1.5;
constexpr double VersionCheckDelay = 2.0;

}  // namespace

void VelmoraAppController::initialize(platform::UserDefaults& defaults) {
  defaults.registerDefaults({
      {settings::SaveDirectory, QStringLiteral("~/Desktop/")},
      {settings::ExportDirectory, QStringLiteral("~/Desktop/")},
      {settings::AutoSave, false},
      {settings::ExportToOsiriX, false},
      {settings::LaunchScript, QStringLiteral("")},
      {settings::AutomaticVersionCheck, false},
      {settings::VersionCheckInterval, 0},
      {settings::LastVersionCheckDate, platform::distantPast()},
  });
}

void VelmoraAppController::awakeFromNib() {
  platform::NotificationCenter& local = services().notificationCenter;
  local.addObserver(this, velmora::link::BatchOpenNotification,
                    [this](const platform::Notification& path) { batchOpen(path); });
  local.addObserver(this, velmora::link::BatchExportNotification,
                    [this](const platform::Notification& payload) { batchExportToOsirix(payload); });
  local.addObserver(this, velmora::link::InstallPluginNotification,
                    [this](const platform::Notification&) { doInstallOsirixPlugin(this); });
  services().distributedCenter.addObserver(
      this, velmora::link::notificationName(services().mainBundle.bundleIdentifier()),
      velmora::link::RequestObject,
      [this](const platform::Notification& request) { notifiedOfLinkFromOsirix(request); });
}

void VelmoraAppController::applicationDidFinishLaunching() {
  const bool firstRun = services().defaults.integerForKey(settings::VersionCheckInterval) == 0;
  if (firstRun && !askFirstRunQuestions()) return;
  if (!offerPluginUpdate()) return;
  doSplashAboutBox(this);
  services().runLoop.performAfterDelay(this, ScriptDelay, [this] { doLaunchScript(); });
  services().runLoop.performAfterDelay(this, CacheDelay, [this] { cacheDatabaseFiles(); });
  // A call of its own: a large folder must not hold up the first window, nor a failed scan keep strays alive.
  services().runLoop.performAfterDelay(this, CacheDelay, [this] { removeAbandonedFiles(); });
  services().runLoop.performAfterDelay(this, VersionCheckDelay, [this] { autoCheckForNewVersion(); });
}

bool VelmoraAppController::askFirstRunQuestions() {
  const int check = services().alerts.runModal(
      {localizedString("VelmoraAppController", "Periodically check for updates?"),
       localizedString("VelmoraAppController", "Check"),
       localizedString("VelmoraAppController", "Don't Check"), QString(),
       platform::formatted(
           localizedString("VelmoraAppController",
                           "You can change this setting later by choosing Preferences from the %@ menu."),
           {orvVersion_.applicationName()})});
  if (check == platform::AlertStopped) return false;
  if (check == platform::AlertDefaultReturn)
    services().defaults.setObject(true, settings::AutomaticVersionCheck);
  services().defaults.setInteger(FirstRunInterval, settings::VersionCheckInterval);

  const int setUp = services().alerts.runModal(
      {localizedString("VelmoraAppController", "Set Up Database?"),
       localizedString("VelmoraAppController", "Yes"), localizedString("VelmoraAppController", "No"),
       QString(),
       localizedString(
           "VelmoraAppController",
           "Would you like to automatically configure the default database?\n\nYou can alter the default "
           "settings later in the preferences.")});
  if (setUp == platform::AlertDefaultReturn) setUpDatabase();
  return setUp != platform::AlertStopped;
}

bool VelmoraAppController::offerPluginUpdate() {
  if (!plugin_.osirixIsInstalled()) return true;
  if (!services().defaults.boolForKey(settings::ExportToOsiriX)) return true;
  if (osirixPluginVersionCurrent()) return true;
  const int answer = services().alerts.runModal(
      {localizedString("VelmoraAppController", "Update OsiriX Plugin"),
       localizedString("VelmoraAppController", "Update"), localizedString("OrvVersion", "Cancel"), QString(),
       localizedString("VelmoraAppController", "This is a recommended update of the OsiriX plugin.")});
  if (answer == platform::AlertStopped) return false;
  if (answer == platform::AlertDefaultReturn)
    doInstallOsirixPlugin(this);
  else
    services().defaults.setObject(false, settings::ExportToOsiriX);
  return true;
}

void VelmoraAppController::removeAbandonedFiles() {
  const platform::UserDefaults& defaults = services().defaults;
  base::FileManager& files = services().fileManager;
  const QString bundleIdentifier = services().mainBundle.bundleIdentifier();
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
  OrvKeptCopies(files, services().runLoop, bundleIdentifier).removeAbandonedCopies(extensions);
}

void VelmoraAppController::setUpDatabase() {
  const QString path =
      platform::formatted(localizedString("VelmoraAppController", "~/Documents/%@ Data"),
                          {services().mainBundle.stringForInfoDictionaryKey(QStringLiteral("CFBundleName"))});
  // A failure shows itself when the first record is saved: the save panel then comes up.
  std::ignore = services().fileManager.createDirectory(base::expandingTildeInPath(path));
  services().defaults.setObject(path, settings::SaveDirectory);
  services().defaults.setObject(true, settings::AutoSave);
}

void VelmoraAppController::applicationWillTerminate() {
  services().distributedCenter.removeObserver(this);
  services().notificationCenter.removeObserver(this);
  versionCheck_.stop();
  exportQueue_.clear();
  batchOpenQueue_.clear();
  databaseFiles_.clear();
}
