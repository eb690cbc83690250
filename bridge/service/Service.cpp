// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/service/Service.h"

#include <QCoreApplication>
#include <QScopeGuard>
#include <exception>

#include "base/log/Guard.h"
#include "link/protocol/LinkProtocol.h"

using namespace velmora;

namespace bridge {
namespace {

constexpr std::chrono::seconds DiskRetry{5};

/// About how much memory a message takes.
qint64 sizeOf(const link::Message& message) {
  qint64 size = 1024;
  for (const QVariant& value : message.userInfo) {
    switch (value.typeId()) {
      case QMetaType::QByteArray:
        size += value.toByteArray().size();
        break;
      case QMetaType::QString:
        size += 2 * value.toString().size();
        break;
      case QMetaType::QVariantList:
      case QMetaType::QVariantMap:
        size += 1024 * 1024;  // replies have none; not counted exactly
        break;
      default:
        break;
    }
  }
  return size;
}

}  // namespace

Service::Service(Spool& spool, RequestHistory& requests, Pacs& pacs, const Config& config, Line done,
                 Line failed)
    : failed_(failed),
      inbox_(spool, requests, done, failed),
      sender_(
          spool, pacs, {done, failed}, [] { return QDateTime::currentDateTime(); },
          config.chartsWithoutPatient) {
  for (const QString& application : config.applications) {
    applications_.insert(link::notificationName(application), application);
  }
  again_.setInterval(DiskRetry);
  connect(&again_, &QTimer::timeout, this, [this] {
    base::guarded("another try of the disk", [this] {
      if (inbox_.tryAgain()) wake();
      if (!inbox_.keepsSome()) again_.stop();
    });
  });
  if (inbox_.keepsSome()) again_.start();  // the history could not be read at the start
  retryRequests_.addPath(spool.retryRequestsFolder());
  connect(&retryRequests_, &QFileSystemWatcher::directoryChanged, this,
          [this] { base::guarded("a request to retry", [this] { wake(); }); });
  worker_ = std::thread([this] { work(); });
}

Service::~Service() {
  end(std::chrono::hours(24));
  worker_.join();
}

void Service::receive(const link::Message& message) {
  const QDateTime arrival = QDateTime::currentDateTime();
  const qint64 size = sizeOf(message);
  if (underway_ + size > Inbox::MostKept) {
    failed_(QStringLiteral("CHART LOST: more arrives than the disk can take"));
    return;
  }
  underway_ += size;
  QMetaObject::invokeMethod(
      this,
      [this, message, arrival, size] {
        base::guarded("a chart that came", [&] {
          const auto taken = qScopeGuard([&] { underway_ -= size; });
          try {
            take(message, arrival);
          } catch (const std::exception& exception) {
            failed_(QStringLiteral("CHART LOST: ") + QString::fromLocal8Bit(exception.what()));
          }
        });
      },
      Qt::QueuedConnection);
}

void Service::take(const link::Message& message, const QDateTime& arrival) {
  const auto application = applications_.constFind(message.name);
  if (application == applications_.constEnd()) return;
  if (message.object == link::RequestObject) inbox_.request(message.userInfo, *application, arrival);
  if (message.object == link::ReplyObject && inbox_.reply(message.userInfo, *application, arrival)) {
    wake();
  }
  if (inbox_.keepsSome() && !again_.isActive()) again_.start();
}

void Service::drain() {
  QCoreApplication::processEvents();
  inbox_.tryAgain();
  if (inbox_.kept() > 0) {
    failed_(QStringLiteral("CHARTS LOST: %1 that the disk could not take end with this program")
                .arg(inbox_.kept()));
  }
}

void Service::wake() {
  const std::lock_guard guard(mutex_);
  hasWork_ = true;
  changed_.notify_all();
}

void Service::work() {
  const auto start = std::chrono::steady_clock::now();
  std::unique_lock guard(mutex_);
  while (!ending_) {
    hasWork_ = false;
    guard.unlock();
    std::optional<Sender::Milliseconds> wait = Sender::LongestDelay;
    try {
      wait = sender_.step(
          std::chrono::duration_cast<Sender::Milliseconds>(std::chrono::steady_clock::now() - start));
    } catch (const std::exception& exception) {
      failed_(QStringLiteral("the spool could not be worked on: ") +
              QString::fromLocal8Bit(exception.what()));
    }
    guard.lock();
    const auto hasWork = [this] { return hasWork_ || ending_; };
    if (wait) {
      changed_.wait_for(guard, *wait, hasWork);
    } else {
      changed_.wait(guard, hasWork);
    }
  }
  ended_ = true;
  changed_.notify_all();
}

bool Service::end(std::chrono::milliseconds limit) {
  std::unique_lock guard(mutex_);
  ending_ = true;
  changed_.notify_all();
  return changed_.wait_for(guard, limit, [this] { return ended_; });
}

}  // namespace bridge
