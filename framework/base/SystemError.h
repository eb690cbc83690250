// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <cerrno>
#include <cstring>

namespace velmora::base {

/// What the system says of an error number, in the user's language.
inline QString systemError(int number = errno) { return QString::fromLocal8Bit(std::strerror(number)); }

}  // namespace velmora::base
