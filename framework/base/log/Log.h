// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>

#include "base/Export.h"

namespace velmora::base {

/// Writes one diagnostic line to the system log (standard error, or the journal where Qt is set up for it).
/// There are no levels. Line breaks and whatever else is unsafe in a line (Escape.h) are shown escaped, so
/// that one call is always one line, whatever a file or a message from outside put into it.
VELMORA_EXPORT void logLine(const QString& text);

}  // namespace velmora::base
