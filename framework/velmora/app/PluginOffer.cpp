// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/app/PluginOffer.h"

#include "platform/controls/Alert.h"
#include "platform/settings/UserDefaults.h"
#include "platform/text/Localization.h"
#include "velmora/osirix/Osirix.h"
#include "velmora/osirix/PluginInstaller.h"
#include "velmora/resources/SettingsKeys.h"

using velmora::platform::localizedString;

namespace velmora {

bool PluginOffer::make() {
  if (!osirix::isInstalled(workspace_)) return true;
  if (!defaults_.boolForKey(settings::ExportToOsiriX)) return true;
  if (plugin_.osirixPluginVersionCurrent()) return true;
  const int answer = alerts_.runModal(
      {localizedString("VelmoraAppController", "Update OsiriX Plugin"),
       localizedString("VelmoraAppController", "Update"), localizedString("OrvVersion", "Cancel"), QString(),
       localizedString("VelmoraAppController", "This is a recommended update of the OsiriX plugin.")});
  if (answer == platform::AlertStopped) return false;
  if (answer == platform::AlertDefaultReturn)
    plugin_.doInstallOsirixPlugin();
  else
    defaults_.setObject(false, settings::ExportToOsiriX);
  return true;
}

}  // namespace velmora
