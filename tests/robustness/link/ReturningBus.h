// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>
#include <stdexcept>

namespace link_testing {

/// A session bus that comes and goes at one address, as the user's bus does when it is restarted.
class ReturningBus {
 public:
  ReturningBus() : path_(folder_.filePath(QStringLiteral("bus"))) {
    daemon_.setStandardErrorFile(QProcess::nullDevice());
  }
  /// A bus at an address of somebody else's.
  explicit ReturningBus(const QString& address) : ReturningBus() {
    path_ = address.mid(QStringLiteral("unix:path=").size());
  }
  ~ReturningBus() { stop(); }
  ReturningBus(const ReturningBus&) = delete;
  ReturningBus& operator=(const ReturningBus&) = delete;

  /// There from the beginning, whether the bus is or not.
  QString address() const { return QStringLiteral("unix:path=") + path_; }
  /// The address as the running bus states it, with the name of this run in it.
  const QString& statedAddress() const { return statedAddress_; }

  void start() {
    daemon_.start(QStringLiteral("dbus-daemon"),
                  {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--nopidfile"),
                   QStringLiteral("--print-address"), QStringLiteral("--address=") + address()});
    while (!daemon_.canReadLine()) {
      if (!daemon_.waitForReadyRead(30000)) throw std::runtime_error("dbus-daemon does not start");
    }
    statedAddress_ = QString::fromLocal8Bit(daemon_.readLine()).trimmed();
  }
  void stop() {
    if (daemon_.state() == QProcess::NotRunning) return;
    daemon_.kill();
    daemon_.waitForFinished(30000);
    QFile::remove(path_);
  }

 private:
  QTemporaryDir folder_;
  QString path_;
  QProcess daemon_;
  QString statedAddress_;
};

}  // namespace link_testing
