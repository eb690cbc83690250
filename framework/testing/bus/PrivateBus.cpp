// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/bus/PrivateBus.h"

#include <sys/types.h>
#include <csignal>

#include <QFile>
#include <utility>

#include "testing/files/Files.h"

namespace velmora::testkit {

namespace {

// As that of a session, but without folders of services.
constexpr char WithoutServices[] =
    R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=/tmp</listen> <!-- there must be one; the command line has another -->
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
  <limit name="max_message_size">134217728</limit>
  <limit name="max_incoming_bytes">1000000000</limit>
  <limit name="max_outgoing_bytes">1000000000</limit>
</busconfig>
)";

}  // namespace

PrivateBus::PrivateBus(Start start, Activation activation, Program::Trace trace,
                       QProcessEnvironment environment)
    : socket_(folder_.filePath(QStringLiteral("bus"))),
      configuration_(QStringLiteral("--session")),
      trace_(std::move(trace)),
      environment_(environment) {
  if (activation == Activation::Nothing) {
    const QString file = folder_.filePath(QStringLiteral("bus.conf"));
    writeFile(file, WithoutServices);
    configuration_ = QStringLiteral("--config-file=") + file;
  }
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
  daemon_ =
      std::make_unique<Program>(QStringLiteral("bus"), QStringLiteral("dbus-daemon"), environment_, trace_);
  daemon_->start({configuration_, QStringLiteral("--nofork"), QStringLiteral("--nopidfile"),
                  QStringLiteral("--print-address"), QStringLiteral("--address=") + address()});
  statedAddress_ = daemon_->waitForLine(QStringLiteral("unix:")).text;
}

void PrivateBus::stop() {
  if (!daemon_ || !daemon_->running()) return;
  daemon_->terminate();
  QFile::remove(socket_);
}

void PrivateBus::freeze() { signal(SIGSTOP); }

void PrivateBus::resume() { signal(SIGCONT); }

void PrivateBus::signal(int number) {
  if (daemon_ && daemon_->running()) ::kill(static_cast<pid_t>(daemon_->processId()), number);
}

}  // namespace velmora::testkit
