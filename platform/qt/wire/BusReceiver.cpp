// SPDX-License-Identifier: LGPL-3.0-or-later
#include "platform/qt/wire/BusReceiver.h"

namespace platform::wire {

BusReceiver::BusReceiver(Arrived arrived) : arrived_(std::move(arrived)) {}

void BusReceiver::receive(const QDBusMessage& signal) { arrived_(signal); }

}  // namespace platform::wire
