// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/runloop/QtRunLoop.h"

#include <QCoreApplication>
#include <algorithm>
#include <cmath>

namespace velmora::desktop {

QtRunLoop::QtRunLoop() {
  clock_.start();
  timer_.setSingleShot(true);
  timer_.setTimerType(Qt::PreciseTimer);
  QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { runDueCalls(); });
}

double QtRunLoop::uptime() const { return static_cast<double>(clock_.nsecsElapsed()) * 1e-9; }

void QtRunLoop::scheduleChanged() {
  // Also called from the thread that receives notifications; timers belong to their own thread.
  QMetaObject::invokeMethod(
      &timer_, [this] { rearm(); }, Qt::QueuedConnection);
}

void QtRunLoop::processWindowEvents() { QCoreApplication::processEvents(); }

void QtRunLoop::rearm() {
  const std::optional<double> due = nextDue();
  if (!due) {
    timer_.stop();
    return;
  }
  // Rounded up: a timer that fires early would find nothing due.
  const double milliseconds = std::ceil(std::max(0.0, *due - uptime()) * 1000.0);
  timer_.start(static_cast<int>(std::min(milliseconds, 1e9)));
}

}  // namespace velmora::desktop
