// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <chrono>

#include "base/Result.h"

namespace velmora::link {

/// Where the session bus of this user is: DBUS_SESSION_BUS_ADDRESS or, without it, the socket "bus" in the
/// user's runtime folder. Empty when neither is there.
QString sessionBusAddress();

/// The address without what names one run of the bus (its "guid"): a bus that was started anew is found
/// again.
QString lastingAddress(const QString& address);

/// Finds out whether a bus lets programs in, before the bus library is sent there: that one waits for a
/// greeting, for half a minute and more, and cannot be called back.
class BusProbe {
 public:
  BusProbe();
  ~BusProbe();
  BusProbe(const BusProbe&) = delete;
  BusProbe& operator=(const BusProbe&) = delete;

  /// Goes to `address`, says hello and leaves. Succeeds when it was greeted within `limit`. An address that
  /// is no socket on this machine is believed.
  base::Result<> ask(const QString& address, std::chrono::milliseconds limit);

  /// Ends the question that is being asked, and all later ones. From any thread.
  void giveUp();
  bool gaveUp() const;

 private:
  base::Result<> askSocket(const QByteArray& path, bool abstract,
                           std::chrono::steady_clock::time_point deadline) const;

  int given_ = -1;  // readable once given up
};

}  // namespace velmora::link
