// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/cli/SendRequest.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <chrono>

#include "bridge/cli/Commands.h"
#include "link/bus/BusLink.h"
#include "link/bus/BusProbe.h"
#include "link/protocol/LinkProtocol.h"

using namespace velmora;

namespace bridge {

namespace protocol = velmora::link;

base::Result<> sendRequest(const QString& application, const QVariantMap& details) {
  const link::Message message{protocol::notificationName(application), protocol::RequestObject, details};
  const base::Result<link::Outgoing> check = link::toBus(message);
  if (!check || !check->dropped.isEmpty()) {
    return base::Failure{QStringLiteral("cannot be sent: ") +
                         (check ? check->dropped.join(QStringLiteral(", ")) : check.error())};
  }
  link::BusLink bus(
      QString(), [](const link::Message&) {}, [](const QString& line) { printError(line); });
  bus.post(message);
  if (!bus.flush(std::chrono::seconds(20))) return base::Failure{QStringLiteral("not sent")};
  printLine(QStringLiteral("sent ") + details.value(protocol::Identifier).toString() +
            QStringLiteral(" to ") + application);
  return {};
}

bool mayBeRunning(const QString& application) {
  constexpr int Limit = 5000;  // milliseconds
  // The bus library waits half a minute for a bus that hangs.
  link::BusProbe probe;
  const QString address = link::sessionBusAddress();
  if (address.isEmpty() || !probe.ask(address, std::chrono::milliseconds(Limit))) return true;
  const QString name = QStringLiteral("velmora-link-question");
  bool running = true;
  {
    const QDBusConnection bus = QDBusConnection::connectToBus(address, name);
    QDBusMessage question = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameHasOwner"));
    question.setArguments({application});
    if (bus.isConnected()) {
      const QDBusMessage answer = bus.call(question, QDBus::Block, Limit);
      running = answer.type() != QDBusMessage::ReplyMessage || answer.arguments().value(0).toBool();
    }
  }
  QDBusConnection::disconnectFromBus(name);
  return running;
}

}  // namespace bridge
