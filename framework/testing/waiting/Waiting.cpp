// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/waiting/Waiting.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <utility>

#include "testing/standins/Scripted.h"
#include "testing/waiting/SteadyClock.h"

namespace velmora::testkit {

namespace {
bool interrupted = false;
}

void interrupt() noexcept { interrupted = true; }

bool waitUntil(double seconds, const std::function<bool()>& holds) {
  const qint64 deadline = steadyMilliseconds() + static_cast<qint64>(seconds * 1000);
  QTimer pulse;  // ends the wait for events now and then
  pulse.start(30);
  for (;;) {
    // Once: what cleans up may wait again.
    if (std::exchange(interrupted, false)) throw Interrupted();
    if (holds()) return true;
    if (steadyMilliseconds() >= deadline) return false;
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    // Without a loop below this one nobody else deletes what is to be deleted later.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
}

void waitUntil(const std::function<bool()>& holds) {
  if (!waitUntil(Patience.count(), holds)) reportFailure(QStringLiteral("what was waited for does not come"));
}

void letEventsPass() {
  for (int i = 0; i < 20; ++i) QCoreApplication::processEvents();
}

}  // namespace velmora::testkit
