// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <optional>

#include "base/Export.h"
#include "base/Result.h"

namespace velmora::base {
class FileManager;
}
namespace velmora::platform {
class Alerts;
class Bundle;
class RunLoop;
}  // namespace velmora::platform

namespace velmora {

/// Brings the plugin that the application carries into the viewer of this user.
///
/// The plugin is the first entry of "OsiriX Plugins" among the application's resources; it goes under the
/// same name to ~/Library/Application Support/OsiriX/Plugins.
class VELMORA_EXPORT PluginInstaller {
 public:
  PluginInstaller(base::FileManager& files, platform::Alerts& alerts, const platform::RunLoop& clock,
                  const platform::Bundle& bundle)
      : files_(files), alerts_(alerts), clock_(clock), bundle_(bundle) {}

  /// The file name of the carried plugin. Returns nothing when the application carries none. The first entry
  /// in the file system's own order counts, whatever it is.
  std::optional<QString> nameOfInstallableOsirixPlugin() const;
  /// Whether the installed plugin has the version of the carried one, to the letter: any difference, a newer
  /// version too, makes it out of date, and so does a version that cannot be read. Returns true when there is
  /// no plugin to install.
  bool osirixPluginVersionCurrent() const;
  /// Puts the carried plugin into the viewer's plugin folder, in place of what has its name there, and tells
  /// the user how that went. What fails on the way is logged; the copy alone decides. Clears away first what
  /// interrupted installations have left there.
  void doInstallOsirixPlugin();

 private:
  QString carriedFolder() const;
  static QString installedFolder();
  void makeInstalledFolder();
  void removeLeftovers();
  void removeInstalled(const QString& name);
  base::Result<> copyToInstalled(const std::optional<QString>& name);

  base::FileManager& files_;
  platform::Alerts& alerts_;
  const platform::RunLoop& clock_;
  const platform::Bundle& bundle_;
};

}  // namespace velmora
