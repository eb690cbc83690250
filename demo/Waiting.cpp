// SPDX-License-Identifier: LGPL-3.0-or-later
#include "demo/Waiting.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <chrono>
#include <csignal>

namespace demo {

namespace {

volatile std::sig_atomic_t interrupted = 0;

}  // namespace

void interruptibleBySignals() {
  struct sigaction action {};
  action.sa_handler = [](int) { interrupted = 1; };
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaction(signal, &action, nullptr);
}

bool waitUntil(double seconds, const std::function<bool()>& condition) {
  const qint64 deadline = steadyMilliseconds() + static_cast<qint64>(seconds * 1000);
  QTimer pulse;  // ends the wait for events now and then
  pulse.start(30);
  for (;;) {
    if (interrupted) {
      interrupted = 0;  // what cleans up may wait again
      throw Interrupted();
    }
    if (condition()) return true;
    if (steadyMilliseconds() >= deadline) return false;
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
}

qint64 steadyMilliseconds() {
  using namespace std::chrono;
  return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

}  // namespace demo
