// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QList>
#include <QPointer>
#include <chrono>
#include <memory>

#include "platform/scripts/Script.h"

namespace velmora::platform {
class RunLoop;
}

namespace velmora::desktop {

class ShellRun;

/// How long is waited for what.
struct ScriptTimes {
  std::chrono::milliseconds untilLogged{10000};  ///< a script that runs for longer is noted in the log
  std::chrono::milliseconds untilKilled{1000};   ///< one that was stopped and has not ended by then is killed
  std::chrono::milliseconds forTools{3000};      ///< a tool that has not answered by then is done without
};

/// Scripts of the user's shell: /bin/sh runs them, unless `sh -n` finds an error in them; shfmt, where it is
/// installed, formats them, knows better where an error is, and warns of some that the shell would only find
/// when it gets there, or never. A first line "#!..." is a comment like any other.
///
/// While a script runs, windows are painted, deferred calls wait, and the user can do nothing but stop it
/// with Escape, or quit, which stops it, too.
class QtScripts : public platform::Scripts {
 public:
  explicit QtScripts(platform::RunLoop& runLoop, ScriptTimes times = {}) : runLoop_(runLoop), times_(times) {}
  /// Refuses a text that holds NUL characters, or halves of characters, or more than 4 Mi characters.
  std::unique_ptr<platform::Script> initWithSource(const QString& source) override;
  /// Asked again, kills it.
  void stopRunning() override;

 private:
  platform::RunLoop& runLoop_;
  ScriptTimes times_;
  /// The runs that are on, and some that are over: shared with the scripts, which may outlive this object.
  std::shared_ptr<QList<QPointer<ShellRun>>> runs_ = std::make_shared<QList<QPointer<ShellRun>>>();
};

}  // namespace velmora::desktop
