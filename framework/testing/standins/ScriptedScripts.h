// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QMap>
#include <QStringList>
#include <functional>

#include "base/Export.h"
#include "platform/scripts/Script.h"

namespace velmora::testkit {

/// A script runner whose scripts do what the test says. A source that the test says nothing about compiles,
/// has no better form, and ends well.
class VELMORA_EXPORT ScriptedScripts : public platform::Scripts {
 public:
  struct Behaviour {
    bool refused = false;                               ///< no script is made from it
    std::optional<platform::ScriptError> compileError;  ///< found by compiling, and before anything runs
    std::optional<platform::ScriptError> runError;      ///< found only when it runs
    std::optional<platform::ScriptText> formatted;      ///< what it is once it has been compiled
  };

  QMap<QString, Behaviour> behaviours;  ///< by source
  QStringList compiled;                 ///< the sources that were compiled by themselves, in order
  QStringList executed;                 ///< the sources that were run, in order
  /// Called while a script "runs".
  std::function<void(const QString& source)> whileRunning;

  std::unique_ptr<platform::Script> initWithSource(const QString& source) override;
};

}  // namespace velmora::testkit
