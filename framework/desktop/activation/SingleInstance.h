// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QThread>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>

#include "desktop/activation/ActivationRequest.h"

namespace velmora::platform {
class RunLoop;
}

namespace velmora::desktop {

class ActivationBus;

/// One running program for each application of a user: the first takes the application's identifier as its
/// name on the session bus and hears what is asked of the application; a later one hands over what it was
/// started for, and ends.
///
/// The bus is listened to on a thread of its own, which is never busy: a request is answered at once, and
/// carried out on the main thread through the run loop, where it waits for as long as an alert is open. A
/// request that was answered is carried out exactly once, here or, when the application ends before, by a new
/// one (end()); one that was not answered in time is not carried out.
///
/// Without a bus the program works by itself.
class SingleInstance {
 public:
  using Outcome = ActivationOutcome;

  /// `patience` limits the wait for the bus, and again that for the application that runs.
  explicit SingleInstance(platform::RunLoop& runLoop,
                          std::chrono::milliseconds patience = std::chrono::seconds(5));
  /// Ends, as end() does.
  ~SingleInstance();
  SingleInstance(const SingleInstance&) = delete;
  SingleInstance& operator=(const SingleInstance&) = delete;

  /// Finds out which program is the one that runs. Waits no longer than patience allows. `serves` is false
  /// for a program that does something small and ends: it never becomes the one.
  Outcome begin(const QString& identifier, const ActivationRequest& request, bool serves = true);

  /// What is left to do of the request that begin() was given: much of it is handed over in parts, of which
  /// some may have been taken up before the other one ended.
  const ActivationRequest& rest() const { return rest_; }
  /// Why the other program refuses the request; null when it does not.
  const QString& refusal() const { return refusal_; }

  /// Waits, for `limit` at most, for the first request: for a program that the bus has started to carry one
  /// out. Returns a request to activate when none comes.
  ActivationRequest firstRequest(std::chrono::milliseconds limit);

  /// Carries a request out. Returns false when it cannot now, because the user is being asked whether to
  /// quit: then it is tried again a little later.
  using Handler = std::function<bool(const ActivationRequest&)>;
  /// Delivers all requests, past and future, to `handler`, on the main thread, in order, as long as `owner`
  /// lives.
  void deliverTo(const QObject* owner, Handler handler);

  /// Releases the name, so that the next program can take it, and stops listening. Returns what was accepted
  /// and has not been carried out.
  QList<ActivationRequest> end();

  /// Accepts a request. From any thread.
  ActivationAcceptance accept(const ActivationRequest& request);

 private:
  void scheduleNext();
  void carryOutNext();

  platform::RunLoop& runLoop_;
  const std::chrono::milliseconds patience_;
  ActivationRequest rest_;
  QString refusal_;

  std::mutex mutex_;
  std::condition_variable arrived_;
  // Under the mutex.
  std::deque<ActivationRequest> waiting_;
  Handler handler_;
  QPointer<const QObject> owner_;
  bool ended_ = false;

  QThread thread_;
  std::unique_ptr<ActivationBus> bus_;  // lives on that thread
};

}  // namespace velmora::desktop
