// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QStringList>
#include <QTimer>
#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include "bridge/config/Config.h"
#include "bridge/service/Inbox.h"
#include "bridge/service/Sender.h"
#include "link/wire/WireFormat.h"

namespace bridge {

/// Hears on one thread, writes to the spool on the thread that it was made on, and talks to the PACS on a
/// third, so that none of them waits for another.
class Service : public QObject {
 public:
  using Line = std::function<void(const QString& line)>;

  /// The spool is open; all of it outlives the service. Both receivers of lines are called on any thread.
  Service(Spool& spool, RequestMemory& requests, Pacs& pacs, const Config& config, Line done, Line failed);
  ~Service() override;
  Service(const Service&) = delete;
  Service& operator=(const Service&) = delete;

  /// Takes what came over the bus. Any thread; quick.
  void receive(const velmora::link::Message& message);

  /// Before the end: writes down what has been heard, and says what cannot be.
  void drain();
  /// Lets no new exchange with the PACS begin. Whether the one that runs ended within `limit`.
  bool end(std::chrono::milliseconds limit);

 private:
  void take(const velmora::link::Message& message, const QDateTime& arrival);
  void work();
  void wake();

  Line failed_;
  QHash<QString, QString> applications_;  // by notification name
  Inbox inbox_;
  Sender sender_;
  QTimer again_;
  QFileSystemWatcher retryRequests_;
  std::atomic<qint64> underway_{0};  // bytes between the bus and the spool

  std::mutex mutex_;  // of what follows
  std::condition_variable changed_;
  bool hasWork_ = true;
  bool ending_ = false;
  bool ended_ = false;
  std::thread worker_;
};

}  // namespace bridge
