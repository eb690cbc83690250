// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QProcess>
#include <QStringList>
#include <QVariantMap>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>

#include "platform/notifications/NotificationCenter.h"
#include "link/wire/WireForm.h"
#include "tests/support/PrivateBus.h"
#include "testing/main/Shown.h"

/// What the tests of the link share.
namespace link_testing {

/// Far longer than anything here takes: reached only when something is broken.
inline constexpr std::chrono::seconds Limit{30};

inline const QString Growth = QStringLiteral("org.velmora.growth");
inline const QString GrowthLink = QStringLiteral("org.velmora.growth.osirixLink");
inline const QString Request = QStringLiteral("OsirixLink");
inline const QString Reply = QStringLiteral("OsirixLinkReturn");

/// Collects notifications on any thread, for a test to take one after the other.
class Mailbox {
 public:
  velmora::platform::DistributedNotificationCenter::Handler handler() {
    return [this](const velmora::platform::Notification& notification) { put(notification); };
  }

  void put(const velmora::platform::Notification& notification) {
    const std::lock_guard lock(mutex_);
    notifications_.push_back(notification);
    arrived_.notify_all();
  }

  /// The next one, waiting for it; nothing when none comes.
  std::optional<velmora::platform::Notification> take() {
    std::unique_lock lock(mutex_);
    if (!arrived_.wait_for(lock, Limit, [this] { return !notifications_.empty(); })) return std::nullopt;
    velmora::platform::Notification first = notifications_.front();
    notifications_.pop_front();
    return first;
  }

  /// The details of the next one; empty when none comes.
  QVariantMap takeDetails() {
    const auto notification = take();
    return notification ? notification->userInfo : QVariantMap();
  }

  bool empty() const {
    const std::lock_guard lock(mutex_);
    return notifications_.empty();
  }

 private:
  mutable std::mutex mutex_;
  std::condition_variable arrived_;
  std::deque<velmora::platform::Notification> notifications_;
};

/// While one of these lives, the log lines of the system go into it, from every thread.
class LogCapture {
 public:
  LogCapture() {
    current_ = this;
    previous_ = qInstallMessageHandler(&LogCapture::handle);
  }
  ~LogCapture() {
    qInstallMessageHandler(previous_);
    current_ = nullptr;
  }
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  QStringList lines() const {
    const std::lock_guard lock(mutex_);
    return lines_;
  }

 private:
  static void handle(QtMsgType, const QMessageLogContext&, const QString& text) {
    const std::lock_guard lock(mutex_);
    current_->lines_.append(text);
  }

  inline static std::mutex mutex_;
  inline static LogCapture* current_ = nullptr;
  QStringList lines_;
  QtMessageHandler previous_ = nullptr;
};

/// A stranger on the bus, who sends whatever signals it likes.
class Stranger {
 public:
  explicit Stranger(const testing_support::PrivateBus& bus)
      : bus_(std::make_unique<QDBusConnection>(
            QDBusConnection::connectToBus(bus.address(), connectionName()))) {}
  ~Stranger() {
    bus_.reset();
    QDBusConnection::disconnectFromBus(connectionName());
  }
  Stranger(const Stranger&) = delete;
  Stranger& operator=(const Stranger&) = delete;

  /// Sends a notification's signal with these arguments, checked by nobody.
  void send(const QVariantList& arguments) {
    QDBusMessage signal =
        QDBusMessage::createSignal(velmora::link::Path, velmora::link::Interface, velmora::link::Member);
    signal.setArguments(arguments);
    bus_->send(signal);
  }

 private:
  static QString connectionName() { return QStringLiteral("stranger"); }
  std::unique_ptr<QDBusConnection> bus_;
};

/// The viewer's end as a process of its own.
class LinkProgram {
 public:
  explicit LinkProgram(const QProcessEnvironment& environment) {
    process_.setProcessEnvironment(environment);
  }
  ~LinkProgram() {
    if (process_.state() == QProcess::NotRunning) return;
    process_.kill();
    process_.waitForFinished();
  }

  /// Runs it to its end; the exit code, or -1 when it crashed or did not end.
  int run(const QStringList& arguments) {
    start(arguments);
    return finish();
  }

  void start(const QStringList& arguments) { process_.start(QStringLiteral(VELMORA_LINK), arguments); }

  int finish() {
    const bool ended = process_.state() == QProcess::NotRunning || process_.waitForFinished(milliseconds());
    output_ += process_.readAllStandardOutput();
    errors_ += process_.readAllStandardError();
    return ended && process_.exitStatus() == QProcess::NormalExit ? process_.exitCode() : -1;
  }

  /// The next line of its output, without its end, waiting for it.
  QString readLine() {
    while (!process_.canReadLine()) {
      if (!process_.waitForReadyRead(milliseconds())) return QString();
    }
    return QString::fromUtf8(process_.readLine()).chopped(1);
  }

  /// What it wrote and readLine() has not taken, after its end.
  QString output() const { return QString::fromUtf8(output_); }
  QString errors() const { return QString::fromUtf8(errors_); }

 private:
  static int milliseconds() { return static_cast<int>(std::chrono::milliseconds(Limit).count()); }
  QProcess process_;
  QByteArray output_;
  QByteArray errors_;
};

/// Bytes that begin like a JPEG file and go on like noise, every byte value among them.
inline QByteArray noise(qsizetype size) {
  QByteArray bytes("\xff\xd8\xff\xe0");
  bytes.reserve(size);
  quint32 state = 1;
  while (bytes.size() < size) {
    state = state * 1664525u + 1013904223u;
    bytes.append(static_cast<char>(state >> 24));
  }
  return bytes;
}

}  // namespace link_testing
