// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QTemporaryDir>

#include "base/Export.h"

namespace velmora::testkit {

/// A session bus of a test's own, in a temporary folder; gone with the object. It may go and come back at one
/// address, as the user's bus does when it is restarted.
class VELMORA_EXPORT PrivateBus {
 public:
  enum class Start { Now, Later };

  /// Throws std::runtime_error when the bus does not come up.
  explicit PrivateBus(Start start = Start::Now);
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
  QProcess daemon_;
  QString statedAddress_;
};

}  // namespace velmora::testkit
