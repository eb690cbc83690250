// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

namespace velmora::platform {
class Alerts;
class UserDefaults;
class Workspace;
}  // namespace velmora::platform

namespace velmora {

class PluginInstaller;

/// Offers, at the start, to bring the plugin inside OsiriX up to date.
class PluginOffer {
 public:
  PluginOffer(PluginInstaller& plugin, const platform::Workspace& workspace, platform::Alerts& alerts,
              platform::UserDefaults& defaults)
      : plugin_(plugin), workspace_(workspace), alerts_(alerts), defaults_(defaults) {}

  /// Asks where charts go to OsiriX and the plugin there is out of date, and installs it on a yes. Whoever
  /// declines has the charts go to the export folder from then on. Returns false when the program ends while
  /// the question is open: then it must start no further.
  bool make();

 private:
  PluginInstaller& plugin_;
  const platform::Workspace& workspace_;
  platform::Alerts& alerts_;
  platform::UserDefaults& defaults_;
};

}  // namespace velmora
