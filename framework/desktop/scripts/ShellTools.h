// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <chrono>
#include <optional>

#include "platform/scripts/Script.h"

namespace velmora::desktop {

/// What a check of a source, without running it, found.
struct ShellCheck {
  std::optional<platform::ScriptError> error;  ///< found by the shell or by shfmt
  bool shellRefuses = false;                   ///< whether the shell would run nothing of it
  std::optional<QString> formatted;  ///< by shfmt; nothing where that is not installed or does not answer
};

/// Looks for errors in a script of the shell, and formats it when there are none. The shell itself (`sh -n`)
/// says whether it would run it; shfmt, where it is in PATH, knows the place of an error better and finds
/// some that the shell only finds when it gets there. A shfmt that does not answer within `patience` counts
/// as not installed; where the shell does not, nothing is known of the source. Meanwhile the pointer is busy.
ShellCheck checkShellSource(const QString& source, std::chrono::milliseconds patience);

}  // namespace velmora::desktop
