// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/cli/BusCall.h"

#include <QDBusConnection>
#include <chrono>

#include "link/bus/BusProbe.h"

using namespace velmora;

namespace bridge {

std::optional<QDBusMessage> callOnSessionBus(const QDBusMessage& call) {
  constexpr std::chrono::milliseconds Limit{5000};
  // The bus library waits half a minute for a bus that hangs.
  link::BusProbe probe;
  const auto address = probe.find(link::sessionBusAddress(), Limit);
  if (!address) return std::nullopt;
  const QString name = QStringLiteral("velmora-link-call");
  QDBusMessage reply;
  {
    const QDBusConnection bus = QDBusConnection::connectToBus(*address, name);
    if (bus.isConnected()) reply = bus.call(call, QDBus::Block, static_cast<int>(Limit.count()));
  }
  QDBusConnection::disconnectFromBus(name);
  return reply.type() == QDBusMessage::ReplyMessage ? std::optional(reply) : std::nullopt;
}

}  // namespace bridge
