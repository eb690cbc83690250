// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/activation/SingleInstance.h"

#include <QCoreApplication>
#include <future>

#include "base/log/Guard.h"
#include "desktop/activation/ActivationBus.h"
#include "desktop/activation/ActivationHandler.h"
#include "platform/runloop/RunLoop.h"

namespace velmora::desktop {

namespace {
/// The most requests that wait. Nobody asks for so much while an alert is open.
constexpr std::size_t MostWaiting = 100;
/// When a request is tried again that came at the wrong moment, in seconds.
constexpr double RetryDelay = 0.2;
}  // namespace

SingleInstance::SingleInstance(platform::RunLoop& runLoop, std::chrono::milliseconds patience)
    : runLoop_(runLoop), patience_(patience) {
  thread_.setObjectName(QStringLiteral("velmora-desktop"));
}

SingleInstance::~SingleInstance() { end(); }

SingleInstance::Outcome SingleInstance::begin(const QString& identifier, const ActivationRequest& request,
                                              bool serves) {
  bus_ = std::make_unique<ActivationBus>([this](const ActivationRequest& arrived) { return accept(arrived); },
                                         patience_);
  bus_->moveToThread(&thread_);
  thread_.start();
  std::promise<Outcome> answer;
  std::future<Outcome> outcome = answer.get_future();
  QMetaObject::invokeMethod(
      bus_.get(),
      [&] {
        Outcome found = Outcome::Alone;
        base::guarded("desktop activation", [&] { found = bus_->begin(identifier, request, serves); });
        rest_ = bus_->rest();
        refusal_ = bus_->refusal();
        answer.set_value(found);
      },
      Qt::QueuedConnection);
  return outcome.get();
}

ActivationAcceptance SingleInstance::accept(const ActivationRequest& request) {
  const std::lock_guard lock(mutex_);
  if (ended_) return ActivationAcceptance::Ending;
  if (waiting_.size() >= MostWaiting) return ActivationAcceptance::Full;
  waiting_.push_back(request);
  arrived_.notify_one();
  if (handler_) scheduleNext();
  // The questions of the start come before there is a handler.
  QMetaObject::invokeMethod(
      qApp, [] { base::guarded("desktop activation", raiseWhatIsAsked); }, Qt::QueuedConnection);
  return ActivationAcceptance::Taken;
}

ActivationRequest SingleInstance::firstRequest(std::chrono::milliseconds limit) {
  std::unique_lock lock(mutex_);
  arrived_.wait_for(lock, limit, [this] { return !waiting_.empty(); });
  if (waiting_.empty()) return {};
  ActivationRequest first = waiting_.front();
  waiting_.pop_front();
  return first;
}

void SingleInstance::deliverTo(const QObject* owner, Handler handler) {
  const std::lock_guard lock(mutex_);
  owner_ = owner;
  handler_ = std::move(handler);
  for (std::size_t i = 0; i < waiting_.size(); ++i) scheduleNext();
}

/// Under the mutex, within which end() has not come yet, and so the owner lives.
void SingleInstance::scheduleNext() {
  runLoop_.performOnMainThread(owner_, [this] { carryOutNext(); });
}

void SingleInstance::carryOutNext() {
  ActivationRequest request;
  Handler handler;
  {
    const std::lock_guard lock(mutex_);
    if (waiting_.empty() || !handler_) return;
    request = waiting_.front();
    waiting_.pop_front();
    handler = handler_;
  }
  if (handler(request)) return;
  const std::lock_guard lock(mutex_);
  waiting_.push_front(request);
  runLoop_.performAfterDelay(owner_, RetryDelay, [this] { carryOutNext(); });
}

QList<ActivationRequest> SingleInstance::end() {
  QList<ActivationRequest> left;
  {
    const std::lock_guard lock(mutex_);
    ended_ = true;
    handler_ = {};
    for (const ActivationRequest& request : waiting_) left.append(request);
    waiting_.clear();
  }
  if (!bus_) return left;
  bus_->giveUp();
  QMetaObject::invokeMethod(
      bus_.get(),
      [this] {
        bus_->end();
        bus_->moveToThread(nullptr);
        thread_.quit();
      },
      Qt::QueuedConnection);
  thread_.wait();
  bus_.reset();
  return left;
}

}  // namespace velmora::desktop
