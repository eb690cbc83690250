// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>

#include "base/Export.h"

namespace velmora::base {

/// Whether the character can end a line, command a terminal, or rewrite or hide what stands around it:
/// control and format characters (direction overrides among them), line and paragraph separators.
VELMORA_EXPORT bool isUnsafeInLine(QChar c);

/// The text for one line of a terminal, with each such character as "\u001b".
VELMORA_EXPORT QString escaped(const QString& text);

}  // namespace velmora::base
