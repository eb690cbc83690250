// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/standins/VirtualRunLoop.h"

#include <cmath>

namespace velmora::testkit {

namespace {
/// Delays are decimal fractions; adding them up must not make a call that is due miss its moment.
constexpr double Tolerance = 1e-9;
/// More turns than this without time passing is a loop that never ends.
constexpr int MostTurns = 100000;
}  // namespace

VirtualRunLoop::VirtualRunLoop() : start_(QDate(2024, 5, 2), QTime(10, 0)) {}

QDateTime VirtualRunLoop::now() const {
  return start_.addMSecs(static_cast<qint64>(std::llround((uptime_ - 1000) * 1000)));
}

void VirtualRunLoop::advance(double seconds) {
  const double end = uptime_ + seconds;
  for (int turn = 0; turn < MostTurns; ++turn) {
    const std::optional<double> due = nextDue();
    if (!due || *due > end + Tolerance) break;
    uptime_ = std::max(uptime_, *due);
    runDueCalls();
  }
  uptime_ = std::max(uptime_, end);
}

}  // namespace velmora::testkit
