// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDBusMessage>
#include <optional>

namespace bridge {

/// Calls a method over the session bus on a connection of its own. Returns the reply; nothing when there is
/// no bus, or no reply within a few seconds, or an error in its place.
std::optional<QDBusMessage> callOnSessionBus(const QDBusMessage& call);

}  // namespace bridge
