// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <functional>

#include "base/Export.h"

namespace velmora::base {

/// Runs `call` and lets no exception out: an exception that crosses Qt's event loop ends the process, and
/// with it every open record. Whatever is caught is written to the log in one line that begins with `where`.
/// Every place where Qt calls into our code goes through here: timed calls, hand-offs, actions, window and
/// text field events, bus signals. Returns false when something was caught.
VELMORA_EXPORT bool guarded(const char* where, const std::function<void()>& call) noexcept;

}  // namespace velmora::base
