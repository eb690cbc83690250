// SPDX-License-Identifier: LGPL-3.0-or-later
#include "link/bus/BusReceiver.h"

namespace velmora::link {

BusReceiver::BusReceiver(Arrived arrived, Ended ended)
    : arrived_(std::move(arrived)), ended_(std::move(ended)) {}

void BusReceiver::receive(const QDBusMessage& signal) { arrived_(signal); }

void BusReceiver::end() { ended_(); }

}  // namespace velmora::link
