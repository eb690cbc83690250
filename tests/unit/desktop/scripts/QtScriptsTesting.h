// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <ostream>

#include "platform/scripts/Script.h"

namespace velmora::platform {

inline void PrintTo(const platform::TextRange& range, std::ostream* out) {
  *out << range.location << " to " << range.location + range.length;
}

}  // namespace velmora::platform

namespace testing_support {

/// The characters of a source that an error is pinned on.
inline QString pinned(const QString& source, const velmora::platform::ScriptError& error) {
  return source.mid(error.range.location, error.range.length);
}

}  // namespace testing_support
