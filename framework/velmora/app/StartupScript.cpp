// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/app/StartupScript.h"

#include <QPointer>
#include <memory>
#include <utility>

#include "base/log/Log.h"
#include "platform/scripts/Script.h"
#include "platform/settings/UserDefaults.h"
#include "platform/text/Localization.h"
#include "velmora/resources/SettingsKeys.h"

namespace velmora {

StartupScript::StartupScript(platform::Scripts& scripts, const platform::UserDefaults& defaults,
                             ShowStatus showStatus)
    : scripts_(scripts), defaults_(defaults), showStatus_(std::move(showStatus)) {}

void StartupScript::doLaunchScript() {
  const QString source = defaults_.stringForKey(settings::LaunchScript);
  if (source.isEmpty()) return;
  const std::unique_ptr<platform::Script> script = scripts_.initWithSource(source);
  if (!script) return;
  showStatus_(platform::localizedString("VelmoraAppController", "Running startup script..."));

  // The application may end while the script runs.
  const QPointer<StartupScript> living(this);
  const platform::ScriptResult ended = script->executeAndReturnError();
  if (ended.ok()) return;
  if (living) showStatus_(platform::localizedString("VelmoraAppController", "Startup script error"));
  base::logLine(platform::formatted(QStringLiteral("Startup script error: %@"), {ended.error()}));
}

}  // namespace velmora
