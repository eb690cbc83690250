// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QTemporaryDir>
#include <memory>

#include "base/Export.h"
#include "testing/process/Program.h"

namespace velmora::testkit {

/// A session bus of a test's own, in a temporary folder; gone with the object. It may go and come back at one
/// address, as the user's bus does when it is restarted.
class VELMORA_EXPORT PrivateBus {
 public:
  enum class Start { Now, Later };
  /// What the bus starts when somebody asks for it: what the machine has installed for that, or nothing.
  enum class Activation { Installed, Nothing };

  /// Throws Differs when the bus does not come up. What the daemon says goes to the trace; `environment` is
  /// the daemon's.
  explicit PrivateBus(Start start = Start::Now, Activation activation = Activation::Installed,
                      Program::Trace trace = {},
                      QProcessEnvironment environment = QProcessEnvironment::systemEnvironment());
  /// A bus that will be at an address of somebody else's; not yet started.
  explicit PrivateBus(const QString& address);
  ~PrivateBus();
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;

  /// Where the bus is, whether it runs or not: what DBUS_SESSION_BUS_ADDRESS holds for those who are to use
  /// it.
  QString address() const { return QStringLiteral("unix:path=") + socket_; }
  /// The address as the running bus states it, with the name of this run in it.
  const QString& statedAddress() const { return statedAddress_; }
  /// The socket at that address.
  const QString& socketPath() const { return socket_; }
  /// This process's environment with this bus in it, for a child process.
  QProcessEnvironment environment() const;

  void start();
  /// Ends the bus, as when the user's session ends under a running program.
  void stop();
  /// Keeps the bus from doing anything until resume(), as on a machine under load.
  void freeze();
  void resume();

 private:
  void signal(int number);

  QTemporaryDir folder_;
  QString socket_;
  QString configuration_;
  Program::Trace trace_;
  QProcessEnvironment environment_;
  std::unique_ptr<Program> daemon_;
  QString statedAddress_;
};

}  // namespace velmora::testkit
