// SPDX-License-Identifier: LGPL-3.0-or-later
#include "platform/runloop/RunLoop.h"

#include <algorithm>

#include "base/log/Guard.h"

namespace velmora::platform {

void RunLoop::performAfterDelay(const QObject* owner, double seconds, Call call) {
  insert(owner, uptime() + std::max(0.0, seconds), std::move(call));
}

void RunLoop::performOnMainThread(const QObject* owner, Call call) {
  insert(owner, uptime(), std::move(call));
}

void RunLoop::insert(const QObject* owner, double due, Call call) {
  {
    const std::lock_guard lock(mutex_);
    pending_.emplace(Turn{due, ++lastSequence_}, Pending{QPointer<const QObject>(owner), std::move(call)});
  }
  scheduleChanged();
}

std::optional<RunLoop::Pending> RunLoop::takeDue(double time) {
  const std::lock_guard lock(mutex_);
  if (pending_.empty() || pending_.begin()->first.due > time) return std::nullopt;
  return std::move(pending_.extract(pending_.begin()).mapped());
}

void RunLoop::runDueCalls() {
  // A call that runs its own event loop (a drag, a menu) must not be overtaken by the calls behind it.
  if (running_ || modalSessions_ > 0) return;
  running_ = true;
  // What a call adds with no delay belongs to the next turn, so events get their turn in between.
  std::uint64_t lastOfThisTurn;
  {
    const std::lock_guard lock(mutex_);
    lastOfThisTurn = lastSequence_;
  }
  const double time = uptime();
  while (modalSessions_ == 0) {
    {
      const std::lock_guard lock(mutex_);
      if (pending_.empty() || pending_.begin()->first.sequence > lastOfThisTurn) break;
    }
    const std::optional<Pending> next = takeDue(time);
    if (!next) break;
    if (next->owner) base::guarded("timed call", next->call);
  }
  running_ = false;
  scheduleChanged();
}

std::optional<double> RunLoop::nextDue() const {
  if (modalSessions_ > 0) return std::nullopt;
  const std::lock_guard lock(mutex_);
  if (pending_.empty()) return std::nullopt;
  return pending_.begin()->first.due;
}

RunLoop::ModalSession::ModalSession(RunLoop& runLoop) : runLoop_(runLoop) { ++runLoop_.modalSessions_; }

RunLoop::ModalSession::~ModalSession() {
  --runLoop_.modalSessions_;
  if (runLoop_.modalSessions_ == 0) runLoop_.scheduleChanged();
}

}  // namespace velmora::platform
