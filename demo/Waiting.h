// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <QtGlobal>
#include <functional>
#include <stdexcept>

namespace demo {

/// Something came out otherwise than expected: what was expected, and what was seen.
struct Differs : std::runtime_error {
  Differs(const QString& expected, const QString& seen)
      : std::runtime_error(("expected " + expected + "; seen: " + seen).toStdString()) {}
};

/// The user wants the demonstration to stop.
struct Interrupted : std::runtime_error {
  Interrupted() : std::runtime_error("interrupted") {}
};

/// From now on an interrupt, hang-up or termination signal makes the next wait throw Interrupted.
void interruptibleBySignals();

/// Runs the event loop until `condition` holds, for at most so many seconds; what the condition said last.
/// It is asked again after every event, at least every 30 ms.
bool waitUntil(double seconds, const std::function<bool()>& condition);

/// Milliseconds of the machine's steady clock, the same for every process.
qint64 steadyMilliseconds();

}  // namespace demo
