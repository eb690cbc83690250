// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/web/QtWeb.h"

#include <algorithm>
#include <utility>

#include "base/log/Guard.h"
#include "base/log/Log.h"
#include "desktop/web/QtWebTransfers.h"
#include "platform/runloop/RunLoop.h"
#include "platform/text/Localization.h"

namespace velmora::desktop {

namespace {
constexpr double LongestTimeout = 24 * 60 * 60;  // seconds; a timer counts in an int of milliseconds
constexpr unsigned long LongestFarewell = 2000;  // milliseconds
}  // namespace

QtWeb::QtWeb(platform::RunLoop& runLoop) : runLoop_(runLoop) {}

QtWeb::~QtWeb() {
  *open_ = false;
  while (!waiting_.empty()) giveUp(waiting_.begin()->first);
  if (!thread_) return;
  QMetaObject::invokeMethod(transfers_.get(), [transfers = transfers_.get()] {
    transfers->stopAll();
    QThread::currentThread()->quit();
  });
  if (thread_->wait(LongestFarewell)) return;
  // It still waits for the desktop to name a proxy and cannot be called back from there. When that returns it
  // ends by itself, and takes along what it works with.
  base::logLine(QStringLiteral("The web was still busy at the end"));
  QThread* thread = thread_.release();
  QObject* leftBehind[] = {transfers_.release(), mainThread_.release(), thread};
  for (QObject* object : leftBehind)
    QObject::connect(thread, &QThread::finished, object, &QObject::deleteLater);
}

void QtWeb::load(const QUrl& url, double timeout, qint64 limit, const QObject* owner, DidLoad didLoad) {
  if (!platform::isWebAddress(url)) {
    runLoop_.performOnMainThread(owner, [didLoad = std::move(didLoad)] {
      didLoad(
          base::Failure{platform::localizedString("OrvVersion", "That is not the address of a web page.")});
    });
    return;
  }
  start();
  const quint64 id = ++lastId_;
  Waiting waiting;
  waiting.owner = owner;
  waiting.didLoad = std::move(didLoad);
  waiting.ownerGone = QObject::connect(owner, &QObject::destroyed, mainThread_.get(),
                                       [this, id] { base::guarded("web", [&] { giveUp(id); }); });
  waiting.deadline = std::make_unique<QTimer>();
  waiting.deadline->setSingleShot(true);
  QObject::connect(waiting.deadline.get(), &QTimer::timeout, mainThread_.get(), [this, id] {
    base::guarded("web", [&] {
      finish(id,
             base::Failure{platform::localizedString("OrvVersion", "The server took too long to answer.")});
    });
  });
  waiting.deadline->start(static_cast<int>(std::clamp(timeout, 0.0, LongestTimeout) * 1000));
  waiting_.emplace(id, std::move(waiting));
  QMetaObject::invokeMethod(transfers_.get(), [transfers = transfers_.get(), id, url, limit] {
    base::guarded("web", [&] { transfers->start(id, url, limit); });
  });
}

void QtWeb::start() {
  if (thread_) return;
  transfers_ = std::make_unique<QtWebTransfers>(
      [this, open = open_, receiver = mainThread_.get()](quint64 id, const platform::WebAnswer& answer) {
        QMetaObject::invokeMethod(receiver, [this, open, id, answer] {
          if (*open) base::guarded("web", [&] { finish(id, answer); });
        });
      });
  thread_ = std::make_unique<QThread>();
  thread_->setObjectName(QStringLiteral("web"));
  transfers_->moveToThread(thread_.get());
  thread_->start();
}

void QtWeb::finish(quint64 id, const platform::WebAnswer& answer) {
  const auto found = waiting_.find(id);
  if (found == waiting_.end()) return;
  const QPointer<const QObject> owner = found->second.owner;
  DidLoad didLoad = std::move(found->second.didLoad);
  giveUp(id);
  if (owner) runLoop_.performOnMainThread(owner, [didLoad = std::move(didLoad), answer] { didLoad(answer); });
}

void QtWeb::giveUp(quint64 id) {
  const auto found = waiting_.find(id);
  if (found == waiting_.end()) return;
  QObject::disconnect(found->second.ownerGone);
  // Its own signal may be what brought us here.
  found->second.deadline->stop();
  found->second.deadline.release()->deleteLater();
  waiting_.erase(found);
  QMetaObject::invokeMethod(transfers_.get(), [transfers = transfers_.get(), id] { transfers->stop(id); });
}

}  // namespace velmora::desktop
