// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/app/FirstRunQuestions.h"

#include <tuple>

#include "base/files/FileManager.h"
#include "platform/bundles/Bundle.h"
#include "platform/controls/Alert.h"
#include "platform/settings/UserDefaults.h"
#include "platform/text/Localization.h"
#include "velmora/resources/SettingsKeys.h"

using velmora::platform::localizedString;

namespace velmora {

namespace {

/// What the first run stores as the interval between checks, in days; that it is not 0 ends the first run.
constexpr int FirstRunInterval = 31;

}  // namespace

bool FirstRunQuestions::areDue() const {
  return defaults_.integerForKey(settings::VersionCheckInterval) == 0;
}

bool FirstRunQuestions::ask() { return askAboutUpdates() && askAboutSaveFolder(); }

bool FirstRunQuestions::askAboutUpdates() {
  const int answer = alerts_.runModal(
      {localizedString("VelmoraAppController", "Periodically check for updates?"),
       localizedString("VelmoraAppController", "Check"),
       localizedString("VelmoraAppController", "Don't Check"), QString(),
       platform::formatted(
           localizedString("VelmoraAppController",
                           "You can change this setting later by choosing Preferences from the %@ menu."),
           {applicationName()})});
  if (answer == platform::AlertStopped) return false;
  if (answer == platform::AlertDefaultReturn) defaults_.setObject(true, settings::AutomaticVersionCheck);
  defaults_.setInteger(FirstRunInterval, settings::VersionCheckInterval);
  return true;
}

bool FirstRunQuestions::askAboutSaveFolder() {
  const int answer = alerts_.runModal(
      {localizedString("VelmoraAppController", "Set Up Database?"),
       localizedString("VelmoraAppController", "Yes"), localizedString("VelmoraAppController", "No"),
       QString(),
       localizedString(
           "VelmoraAppController",
           "Would you like to automatically configure the default database?\n\nYou can alter the default "
           "settings later in the preferences.")});
  if (answer == platform::AlertDefaultReturn) setUpSaveFolder();
  return answer != platform::AlertStopped;
}

void FirstRunQuestions::setUpSaveFolder() {
  const QString path = platform::formatted(localizedString("VelmoraAppController", "~/Documents/%@ Data"),
                                           {applicationName()});
  // A failure shows itself when the first record is saved: the save panel then comes up.
  std::ignore = files_.createDirectory(base::expandingTildeInPath(path));
  defaults_.setObject(path, settings::SaveDirectory);
  defaults_.setObject(true, settings::AutoSave);
}

QString FirstRunQuestions::applicationName() const {
  return bundle_.stringForInfoDictionaryKey(QStringLiteral("CFBundleName"));
}

}  // namespace velmora
