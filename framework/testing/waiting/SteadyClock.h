// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QtGlobal>
#include <chrono>

namespace velmora::testkit {

/// Milliseconds of the machine's steady clock, the same for every process.
inline qint64 steadyMilliseconds() {
  using namespace std::chrono;
  return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

}  // namespace velmora::testkit
