// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/cli/SendRequest.h"

#include <chrono>

#include "bridge/cli/BusCall.h"
#include "bridge/cli/Commands.h"
#include "link/bus/BusLink.h"
#include "link/protocol/LinkProtocol.h"

using namespace velmora;

namespace bridge {

base::Result<> sendRequest(const QString& application, const QVariantMap& details) {
  const link::Message message{link::notificationName(application), link::RequestObject, details};
  const base::Result<link::Outgoing> check = link::toBus(message);
  if (!check || !check->dropped.isEmpty()) {
    return base::Failure{QStringLiteral("cannot be sent: ") +
                         (check ? check->dropped.join(QStringLiteral(", ")) : check.error())};
  }
  link::BusLink bus(
      QString(), [](const link::Message&) {}, [](const QString& line) { printError(line); });
  bus.post(message);
  if (!bus.flush(std::chrono::seconds(20))) return base::Failure{QStringLiteral("not sent")};
  printLine(QStringLiteral("sent ") + details.value(link::Identifier).toString() + QStringLiteral(" to ") +
            application);
  return {};
}

bool mayBeRunning(const QString& application) {
  QDBusMessage question = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
      QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameHasOwner"));
  question.setArguments({application});
  const auto reply = callOnSessionBus(question);
  return !reply || reply->arguments().value(0).toBool();
}

}  // namespace bridge
