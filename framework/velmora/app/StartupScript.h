// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>
#include <functional>

#include "base/Export.h"

namespace velmora::platform {
class Scripts;
class UserDefaults;
}  // namespace velmora::platform

namespace velmora {

/// The script that the user wants run at every start of the application.
class VELMORA_EXPORT StartupScript : public QObject {
 public:
  using ShowStatus = std::function<void(const QString&)>;

  /// `showStatus` shows that the script runs, and that it failed.
  StartupScript(platform::Scripts& scripts, const platform::UserDefaults& defaults, ShowStatus showStatus);

  /// Runs the script under "Launch Script", if there is one, and waits for its end. A script that fails is
  /// reported by the status and a log line alone; the start goes on.
  void doLaunchScript();

 private:
  platform::Scripts& scripts_;
  const platform::UserDefaults& defaults_;
  ShowStatus showStatus_;
};

}  // namespace velmora
