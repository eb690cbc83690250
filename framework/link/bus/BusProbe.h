// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <chrono>

#include "base/Export.h"
#include "base/Result.h"

namespace velmora::link {

/// The address of this user's session bus: DBUS_SESSION_BUS_ADDRESS or, without it, the socket "bus" in the
/// user's runtime folder. Empty when there is neither.
VELMORA_EXPORT QString sessionBusAddress();

/// The address without its "guid", which names one run of the bus: finds a bus that was restarted.
VELMORA_EXPORT QString lastingAddress(const QString& address);

/// Finds out whether a bus accepts connections before the bus library connects to it: the library waits half
/// a minute or longer for a bus that does not answer, and cannot be interrupted.
class VELMORA_EXPORT BusProbe {
 public:
  BusProbe();
  ~BusProbe();
  BusProbe(const BusProbe&) = delete;
  BusProbe& operator=(const BusProbe&) = delete;

  /// Connects to `address`, says hello and disconnects. Returns the address if the bus answers within
  /// `limit`; of several the first that does: the one to connect to, because the bus library would take the
  /// first that accepts. Each gets an equal share of the time that is left. An address other than a socket on
  /// this machine is not tried and counts as one that answers.
  base::Result<QString> find(const QString& address, std::chrono::milliseconds limit);

  /// Ends the current attempt and all later ones. Any thread.
  void cancel() noexcept;
  bool isCancelled() const noexcept;

 private:
  base::Result<> askSocket(const QByteArray& path, bool abstract,
                           std::chrono::steady_clock::time_point deadline) const;

  int cancelEvent_ = -1;  // readable once cancelled
};

}  // namespace velmora::link
