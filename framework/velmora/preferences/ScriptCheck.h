// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <optional>

#include "platform/scripts/Script.h"

namespace velmora {

/// What a check of a script's syntax found: a form to show it in, or an error to point at, or neither.
struct ScriptCheck {
  std::optional<platform::ScriptText> formatted;  ///< only of a script that compiles
  std::optional<platform::ScriptError> error;
};

/// Compiles a script without running it. An empty text, or one that cannot be a script at all, has neither a
/// form nor an error.
ScriptCheck checkScript(platform::Scripts& scripts, const QString& text);

}  // namespace velmora
