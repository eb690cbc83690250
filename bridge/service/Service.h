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

/// Receives on one thread, writes to the spool on the thread that it was created on, and talks to the PACS on
/// a third, so that none of them waits for another.
class Service : public QObject {
 public:
  using Line = std::function<void(const QString& line)>;

  /// The spool must be open, and everything passed must outlive the service. `done` and `failed` are called
  /// on any thread.
  Service(Spool& spool, RequestHistory& requests, Pacs& pacs, const Config& config, Line done, Line failed);
  ~Service() override;
  Service(const Service&) = delete;
  Service& operator=(const Service&) = delete;

  /// Takes a message from the bus. Returns at once. Any thread.
  void receive(const velmora::link::Message& message);

  /// Before the program ends: writes what has been received, and logs what cannot be written.
  void drain();
  /// Starts no further exchange with the PACS. Returns whether the current one ended within `limit`.
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
