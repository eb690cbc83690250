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

#include "desktop/activation/DesktopRequest.h"

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
class DesktopActivation {
 public:
  enum class Outcome {
    Serving,     ///< this is the one: go on, requests will come
    HandedOver,  ///< another one runs and has taken the request over: end
    Refused,     ///< another one runs and will have none of it, or of the rest: end, refusal() says why
    Alone        ///< no bus, no name, or no answer: go on without
  };

  /// Patience: for the bus, and again for the application that runs.
  explicit DesktopActivation(platform::RunLoop& runLoop,
                             std::chrono::milliseconds patience = std::chrono::seconds(5));
  /// Ends, as end() does.
  ~DesktopActivation();
  DesktopActivation(const DesktopActivation&) = delete;
  DesktopActivation& operator=(const DesktopActivation&) = delete;

  /// Finds out who is the one. Waits, but not longer than patience allows. `serves` is false for a program
  /// that does something small and ends: it does not become the one.
  Outcome begin(const QString& identifier, const DesktopRequest& request, bool serves = true);

  /// What is left to do of the request that begin() was given: much of it is handed over in parts, of which
  /// some may have been taken up before the other one ended.
  const DesktopRequest& rest() const { return rest_; }
  /// Why the other one will have none of it; null when it has not been refused.
  const QString& refusal() const { return refusal_; }

  /// The first request that comes, waiting for it for `limit` at most: for a program that the bus has started
  /// because somebody asks for something. Activation when none comes.
  DesktopRequest firstRequest(std::chrono::milliseconds limit);

  /// Carries a request out. False when this is not the moment, because the user is being asked whether to
  /// quit: then it is tried again a little later.
  using Handler = std::function<bool(const DesktopRequest&)>;
  /// What has come and what will come goes to `handler`, on the main thread, in order, as long as `owner`
  /// lives.
  void deliverTo(const QObject* owner, Handler handler);

  /// Gives the name away, so that the next program becomes the one, and hears nothing more. Gives what was
  /// accepted and has not been carried out.
  QList<DesktopRequest> end();

  enum class Acceptance {
    Taken,
    Full,   ///< too many wait already
    Ending  ///< it comes too late
  };
  /// Takes up a request, on any thread.
  Acceptance accept(const DesktopRequest& request);

 private:
  void scheduleNext();
  void carryOutNext();

  platform::RunLoop& runLoop_;
  const std::chrono::milliseconds patience_;
  DesktopRequest rest_;
  QString refusal_;

  std::mutex mutex_;
  std::condition_variable arrived_;
  // Under the mutex.
  std::deque<DesktopRequest> waiting_;
  Handler handler_;
  QPointer<const QObject> owner_;
  bool ended_ = false;

  QThread thread_;
  std::unique_ptr<ActivationBus> bus_;  // lives on that thread
};

}  // namespace velmora::desktop
