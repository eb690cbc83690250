// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/bus/PrivateBus.h"

#include <sys/types.h>
#include <csignal>

#include <QFile>
#include <stdexcept>

namespace velmora::testkit {

namespace {
constexpr int Patience = 30000;  // milliseconds; reached only when something is broken
}

PrivateBus::PrivateBus(Start start) : socket_(folder_.filePath(QStringLiteral("bus"))) {
  // The bus leaves a few remarks of its own on standard error; they belong to no test.
  daemon_.setStandardErrorFile(QProcess::nullDevice());
  if (start == Start::Now) this->start();
}

PrivateBus::PrivateBus(const QString& address) : PrivateBus(Start::Later) {
  socket_ = address.mid(QStringLiteral("unix:path=").size());
}

PrivateBus::~PrivateBus() {
  resume();
  stop();
}

QProcessEnvironment PrivateBus::environment() const {
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), address());
  return environment;
}

void PrivateBus::start() {
  daemon_.start(QStringLiteral("dbus-daemon"),
                {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--nopidfile"),
                 QStringLiteral("--print-address"), QStringLiteral("--address=") + address()});
  while (!daemon_.canReadLine()) {
    if (!daemon_.waitForReadyRead(Patience)) throw std::runtime_error("dbus-daemon does not start");
  }
  statedAddress_ = QString::fromLocal8Bit(daemon_.readLine()).trimmed();
}

void PrivateBus::stop() {
  if (daemon_.state() == QProcess::NotRunning) return;
  daemon_.terminate();
  if (!daemon_.waitForFinished(Patience)) {
    daemon_.kill();
    daemon_.waitForFinished(Patience);
  }
  QFile::remove(socket_);
}

void PrivateBus::freeze() { signal(SIGSTOP); }

void PrivateBus::resume() { signal(SIGCONT); }

void PrivateBus::signal(int number) {
  if (daemon_.state() != QProcess::NotRunning) ::kill(static_cast<pid_t>(daemon_.processId()), number);
}

}  // namespace velmora::testkit
