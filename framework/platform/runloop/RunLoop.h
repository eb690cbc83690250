// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QObject>
#include <QPointer>
#include <compare>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>

#include "base/Export.h"

namespace velmora::platform {

/// The main thread's timed calls and hand-offs, and the clock that goes with them.
///
/// Calls that fall due together run in the order in which they were made. A call with delay zero runs after
/// the current event, never within it. A call whose owner is gone is dropped. While an application-modal
/// alert or panel is open nothing runs: what falls due waits until it closes, and then runs in order.
class VELMORA_EXPORT RunLoop {
 public:
  using Call = std::function<void()>;

  RunLoop() = default;
  virtual ~RunLoop() = default;
  RunLoop(const RunLoop&) = delete;
  RunLoop& operator=(const RunLoop&) = delete;

  /// Runs `call` once on the main thread, `seconds` from now, if `owner` still lives then. Main thread only.
  void performAfterDelay(const QObject* owner, double seconds, Call call);

  /// Runs `call` on the main thread's next turn, without waiting for it, if `owner` still lives then.
  /// May be called from any thread, as long as `owner` lives during this call.
  void performOnMainThread(const QObject* owner, Call call);

  /// The wall clock, local time.
  virtual QDateTime now() const = 0;
  /// Seconds since some fixed moment; never goes backwards. Deadlines are kept in it.
  virtual double uptime() const = 0;

  /// While one of these lives, deferred calls wait. Alerts and panels hold one for as long as they are open.
  class ModalSession {
   public:
    explicit ModalSession(RunLoop& runLoop);
    ~ModalSession();
    ModalSession(const ModalSession&) = delete;
    ModalSession& operator=(const ModalSession&) = delete;

    /// In the middle of long work: lets the windows be drawn and handle mouse and keyboard, once, and
    /// returns. Deferred calls go on waiting.
    void processEvents() { runLoop_.processWindowEvents(); }

   private:
    RunLoop& runLoop_;
  };
  bool inModalSession() const { return modalSessions_ > 0; }

 protected:
  /// Called, possibly from another thread, whenever nextDue() may have come closer.
  virtual void scheduleChanged() = 0;
  /// Deals with what waits for the windows. The base has no windows.
  virtual void processWindowEvents() {}
  /// Runs, through the guard, every call that is due at `uptime()`.
  void runDueCalls();
  /// When the next call falls due, in uptime seconds. Returns nothing while none waits or a modal session is
  /// open.
  std::optional<double> nextDue() const;

 private:
  struct Turn {
    double due;
    std::uint64_t sequence;
    auto operator<=>(const Turn&) const = default;
  };
  struct Pending {
    QPointer<const QObject> owner;
    Call call;
  };
  void insert(const QObject* owner, double due, Call call);
  std::optional<Pending> takeDue(double time);

  mutable std::mutex mutex_;
  std::map<Turn, Pending> pending_;  // in the order in which they are to run
  std::uint64_t lastSequence_ = 0;
  int modalSessions_ = 0;
  bool running_ = false;
};

}  // namespace velmora::platform
