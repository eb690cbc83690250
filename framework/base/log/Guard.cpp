// SPDX-License-Identifier: LGPL-3.0-or-later
#include "base/log/Guard.h"

#include <exception>

#include "base/log/Log.h"

namespace velmora::base {

bool guarded(const char* where, const std::function<void()>& call) noexcept {
  try {
    call();
    return true;
  } catch (const std::exception& failure) {
    logLine(QStringLiteral("%1: %2").arg(QString::fromLatin1(where), QString::fromUtf8(failure.what())));
  } catch (...) {
    logLine(QStringLiteral("%1: unknown failure").arg(QString::fromLatin1(where)));
  }
  return false;
}

}  // namespace velmora::base
