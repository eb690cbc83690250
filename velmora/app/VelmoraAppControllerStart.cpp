// SPDX-License-Identifier: LGPL-3.0-or-later
//
// What happens when the application starts and ends.
#include "orv/OrvKeptCopies.h"
#include "platform/Alert.h"
#include "platform/Bundle.h"
#include "platform/FileManager.h"
#include "platform/Localization.h"
#include "platform/RunLoop.h"
#include "platform/Services.h"
#include "platform/UserDefaults.h"
#include "velmora/about/AboutController.h"
#include "velmora/app/VelmoraAppController.h"
#include "velmora/osirix/LinkPayload.h"
#include "velmora/osirix/LinkProtocol.h"
#include "velmora/resources/SettingsKeys.h"

namespace settings = velmora::settings;
using platform::localizedString;

namespace {

/// What the first run stores as the interval between checks, in days; that it is not 0 ends the first run.
constexpr int FirstRunInterval = 31;
/// When the data-file cache is filled, in seconds after the splash.
constexpr double CacheDelay = 1.5;

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
  services().distributedCenter.addObserver(
      this, velmora::link::notificationName(services().mainBundle.bundleIdentifier()),
      velmora::link::RequestObject,
      [this](const platform::Notification& request) { notifiedOfLinkFromOsirix(request); });
}

void VelmoraAppController::applicationDidFinishLaunching() {
  removeAbandonedFiles();
  if (services().defaults.integerForKey(settings::VersionCheckInterval) == 0) askFirstRunQuestions();
  doSplashAboutBox(this);
  services().runLoop.performAfterDelay(this, CacheDelay, [this] { cacheDatabaseFiles(); });
}

void VelmoraAppController::askFirstRunQuestions() {
  const int check = services().alerts.runModal(
      {localizedString("VelmoraAppController", "Periodically check for updates?"),
       localizedString("VelmoraAppController", "Check"),
       localizedString("VelmoraAppController", "Don't Check"), QString(),
       platform::formatted(
           localizedString("VelmoraAppController",
                           "You can change this setting later by choosing Preferences from the %@ menu."),
           {orvVersion_.applicationName()})});
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
}

void VelmoraAppController::removeAbandonedFiles() {
  const platform::UserDefaults& defaults = services().defaults;
  const auto folder = [&defaults](const QString& key) {
    return platform::expandingTildeInPath(defaults.stringForKey(key));
  };
  services().fileManager.removeAbandonedFiles(folder(settings::SaveDirectory),
                                              {defaults.stringForKey(settings::DataFileExtension)});
  services().fileManager.removeAbandonedFiles(folder(settings::ExportDirectory), {QStringLiteral("jpg")});
  OrvKeptCopies(services().fileManager, services().runLoop, services().mainBundle.bundleIdentifier())
      .removeAbandonedCopies({defaults.stringForKey(settings::DataFileExtension)});
}

void VelmoraAppController::setUpDatabase() {
  const QString path =
      platform::formatted(localizedString("VelmoraAppController", "~/Documents/%@ Data"),
                          {services().mainBundle.stringForInfoDictionaryKey(QStringLiteral("CFBundleName"))});
  // A failure shows itself when the first record is saved: the save panel then comes up.
  services().fileManager.createDirectory(platform::expandingTildeInPath(path));
  services().defaults.setObject(path, settings::SaveDirectory);
  services().defaults.setObject(true, settings::AutoSave);
}

void VelmoraAppController::applicationWillTerminate() {
  services().distributedCenter.removeObserver(this);
  services().notificationCenter.removeObserver(this);
  exportQueue_.clear();
  batchOpenQueue_.clear();
  databaseFiles_.clear();
}
