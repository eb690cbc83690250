// SPDX-License-Identifier: LGPL-3.0-or-later
#include "link/bus/BusReceiver.h"

#include "base/log/Guard.h"

namespace velmora::link {

BusReceiver::BusReceiver(Arrived arrived, Ended ended)
    : arrived_(std::move(arrived)), ended_(std::move(ended)) {}

void BusReceiver::receive(const QDBusMessage& signal) {
  base::guarded("a signal on the session bus", [&] { arrived_(signal); });
}

void BusReceiver::end() { base::guarded("the end of the session bus", ended_); }

}  // namespace velmora::link
