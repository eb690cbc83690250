// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <chrono>
#include <functional>
#include <stdexcept>

#include "base/Export.h"

namespace velmora::testkit {

/// Longer than anything takes, even on a loaded machine: reached only when something is broken. Short enough
/// for two waits in a test that ctest gives 120 seconds.
inline constexpr std::chrono::duration<double> Patience{40};  // seconds

/// Something came out otherwise than expected: what was expected, and what was seen.
struct VELMORA_EXPORT Differs : std::runtime_error {
  Differs(const QString& expected, const QString& seen)
      : std::runtime_error(("expected " + expected + "; seen: " + seen).toStdString()) {}
};

/// Throws Differs unless it holds.
inline void expect(bool holds, const QString& expected, const QString& seen) {
  if (!holds) throw Differs(expected, seen);
}

/// Whoever started this program wants it to stop.
struct VELMORA_EXPORT Interrupted : std::runtime_error {
  Interrupted() : std::runtime_error("interrupted") {}
};

/// Runs the event loop until `holds`, for at most so many seconds; what it said last. It is asked again after
/// every event, at least every 30 ms. Throws Interrupted after interrupt().
VELMORA_EXPORT bool waitUntil(double seconds, const std::function<bool()>& holds);
/// Waits until `holds`; fails the test when it never does.
VELMORA_EXPORT void waitUntil(const std::function<bool()>& holds);
/// Makes the wait that is going on, or the next one, throw Interrupted: for a signal handler on the main
/// thread.
VELMORA_EXPORT void interrupt() noexcept;

/// Lets what is due now happen, several times over.
VELMORA_EXPORT void letEventsPass();

}  // namespace velmora::testkit
