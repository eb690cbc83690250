// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <csignal>
#include <sys/types.h>

#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QTemporaryDir>
#include <stdexcept>

namespace testing_support {

/// A session bus of a test's own: up when the constructor returns, gone with the object. Its socket lies in a
/// temporary folder.
class PrivateBus {
 public:
  PrivateBus() {
    // The bus leaves a few remarks of its own on standard error; they belong to no test.
    daemon_.setStandardErrorFile(QProcess::nullDevice());
    daemon_.start(
        QStringLiteral("dbus-daemon"),
        {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--nopidfile"),
         QStringLiteral("--print-address"), QStringLiteral("--address=unix:dir=") + folder_.path()});
    while (!daemon_.canReadLine()) {
      if (!daemon_.waitForReadyRead(30000)) throw std::runtime_error("dbus-daemon does not start");
    }
    address_ = QString::fromLocal8Bit(daemon_.readLine()).trimmed();
  }
  ~PrivateBus() {
    resume();
    stop();
  }
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;

  /// What DBUS_SESSION_BUS_ADDRESS holds for those who are to use this bus.
  const QString& address() const { return address_; }

  /// This process's environment with this bus in it, for a child process.
  QProcessEnvironment environment() const {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), address_);
    return environment;
  }

  /// Ends the bus, as when the user's session ends under a running program.
  void stop() {
    if (daemon_.state() == QProcess::NotRunning) return;
    daemon_.terminate();
    if (!daemon_.waitForFinished(30000)) {
      daemon_.kill();
      daemon_.waitForFinished(30000);
    }
  }

  /// Keeps the bus from doing anything until resume(), as on a machine under load.
  void freeze() { signal(SIGSTOP); }
  void resume() { signal(SIGCONT); }

 private:
  void signal(int number) {
    if (daemon_.state() != QProcess::NotRunning) ::kill(static_cast<pid_t>(daemon_.processId()), number);
  }

  QTemporaryDir folder_;
  QProcess daemon_;
  QString address_;
};

}  // namespace testing_support
