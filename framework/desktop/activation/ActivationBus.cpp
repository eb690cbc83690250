// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/activation/ActivationBus.h"

#include <QElapsedTimer>
#include <QTimer>
#include <atomic>

#include "base/log/Guard.h"
#include "base/log/Log.h"
#include "desktop/activation/ActivationMessages.h"
#include "link/bus/BusLink.h"
#include "link/bus/BusReceiver.h"

namespace velmora::desktop {

namespace {

using Outcome = ActivationOutcome;
using std::chrono::milliseconds;

const QString BusName = QStringLiteral("org.freedesktop.DBus");
const QString BusPath = QStringLiteral("/org/freedesktop/DBus");
const QString NameHasNoOwnerError = QStringLiteral("org.freedesktop.DBus.Error.NameHasNoOwner");
const QString EndingError = QStringLiteral("org.velmora.Error.Ending");
const QString FullError = QStringLiteral("org.velmora.Error.Full");

// Of RequestName (freedesktop.org, D-Bus 0.41).
constexpr uint DoNotQueue = 4;
constexpr uint PrimaryOwner = 1;
constexpr uint InQueue = 2;
constexpr uint Exists = 3;
constexpr uint AlreadyOwner = 4;

/// Between two attempts to reach an application that is just ending.
constexpr unsigned long RetryMilliseconds = 20;

QString nextConnectionName() {
  static std::atomic<int> last{0};
  return QStringLiteral("velmora-desktop-%1").arg(++last);
}

QDBusMessage busCall(const QString& member, const QVariantList& arguments) {
  QDBusMessage call = QDBusMessage::createMethodCall(BusName, BusPath, BusName, member);
  call.setArguments(arguments);
  return call;
}

}  // namespace

QString ActivationObject::introspect(const QString&) const {
  return QStringLiteral(
      "<interface name=\"org.freedesktop.Application\">"
      "<method name=\"Activate\"><arg type=\"a{sv}\" name=\"platform_data\" direction=\"in\"/></method>"
      "<method name=\"Open\"><arg type=\"as\" name=\"uris\" direction=\"in\"/>"
      "<arg type=\"a{sv}\" name=\"platform_data\" direction=\"in\"/></method>"
      "<method name=\"ActivateAction\"><arg type=\"s\" name=\"action_name\" direction=\"in\"/>"
      "<arg type=\"av\" name=\"parameter\" direction=\"in\"/>"
      "<arg type=\"a{sv}\" name=\"platform_data\" direction=\"in\"/></method></interface>");
}

bool ActivationObject::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
  // A call without an interface means whichever has the operation; this object has only one interface of its
  // own.
  if (message.interface() != activationmessages::Interface && !message.interface().isEmpty()) return false;
  base::guarded("desktop activation", [&] { answer(message, connection); });
  return true;
}

void ActivationObject::answer(const QDBusMessage& call, const QDBusConnection& connection) {
  const auto reply = [&](const QDBusMessage& message) {
    if (call.isReplyRequired()) connection.send(message);
  };
  const activationmessages::Incoming incoming = activationmessages::fromBus(call);
  if (!incoming.refusal.isNull()) {
    base::logLine(QStringLiteral("The desktop's request from %1: %2").arg(call.service(), incoming.refusal));
  }
  if (!incoming.request) return reply(call.createErrorReply(QDBusError::InvalidArgs, incoming.refusal));
  if (incoming.deadline && activationmessages::deadlineNow() > *incoming.deadline) {
    // Whoever asked has gone on without us.
    base::logLine(QStringLiteral("The desktop's request from %1 comes too late").arg(call.service()));
    return reply(call.createErrorReply(QDBusError::TimedOut, QStringLiteral("too late")));
  }
  switch (accept_(*incoming.request)) {
    case ActivationAcceptance::Taken:
      return reply(call.createReply());
    case ActivationAcceptance::Full:
      return reply(call.createErrorReply(FullError, QStringLiteral("too many requests wait already")));
    case ActivationAcceptance::Ending:
      return reply(call.createErrorReply(EndingError, QStringLiteral("the application is ending")));
  }
}

ActivationBus::ActivationBus(ActivationObject::Accept accept, milliseconds patience)
    : patience_(patience), accept_(std::move(accept)) {}

ActivationBus::~ActivationBus() = default;

Outcome ActivationBus::begin(const QString& identifier, const ActivationRequest& request, bool serves) {
  identifier_ = identifier;
  rest_ = request;
  refusal_.clear();
  if (!activationmessages::objectPath(identifier) || !connectToBus()) {
    // The log line about a missing bus is the link's, which looks for the same one.
    if (serves) lookAgain();
    return Outcome::Alone;
  }
  QElapsedTimer since;
  since.start();
  // The one that runs may just be ending: then the name is free, or another's, a moment later.
  while (!since.hasExpired(patience_.count())) {
    const Name name = serves ? takeName() : whoHasName();
    if (name == Name::Ours) {
      if (serves) return Outcome::Serving;
      disconnectFromBus();
      return Outcome::Alone;
    }
    if (name == Name::Unknown) break;
    const HandOver handed = handOver();
    if (handed == HandOver::NoAnswer) break;
    if (handed == HandOver::NobodyThere) continue;
    disconnectFromBus();
    return handed == HandOver::Taken ? Outcome::HandedOver : Outcome::Refused;
  }
  base::logLine(QStringLiteral("%1 runs already but does not answer; this is another one").arg(identifier));
  disconnectFromBus();
  return Outcome::Alone;
}

base::Result<> ActivationBus::connectToBus() {
  const base::Result<QString> address =
      probe_.find(link::lastingAddress(link::sessionBusAddress()), patience_);
  if (!address) return address.failure();
  connectionName_ = nextConnectionName();
  const QDBusConnection bus = QDBusConnection::connectToBus(*address, connectionName_);
  if (!bus.isConnected()) {
    QDBusConnection::disconnectFromBus(connectionName_);
    return base::Failure{QStringLiteral("it hung up")};
  }
  bus_ = std::make_unique<QDBusConnection>(bus);
  receiver_ = std::make_unique<link::BusReceiver>(
      [](const QDBusMessage&) {},
      // Being told is a delivery, within which the receiver must not go.
      [this] {
        QMetaObject::invokeMethod(
            this, [this] { base::guarded("desktop activation", [this] { connectionEnded(); }); },
            Qt::QueuedConnection);
      });
  bus_->connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), receiver_.get(),
                SLOT(end()));
  // Before the name: whoever finds the name finds the object.
  object_ = std::make_unique<ActivationObject>(accept_);
  bus_->registerVirtualObject(activationmessages::objectPath(identifier_).value(), object_.get());
  return {};
}

void ActivationBus::disconnectFromBus() {
  if (!bus_) return;
  bus_->unregisterObject(activationmessages::objectPath(identifier_).value());
  // QtDBus takes a connection apart on a thread of its own and looks at the objects that are still on it.
  receiver_.reset();
  object_.reset();
  bus_.reset();
  QDBusConnection::disconnectFromBus(connectionName_);
}

void ActivationBus::connectionEnded() {
  if (!bus_ || bus_->isConnected()) return;
  disconnectFromBus();
  delay_ = milliseconds(0);
  lookAgain();
}

void ActivationBus::lookAgain() {
  if (probe_.isCancelled() || !activationmessages::objectPath(identifier_)) return;
  delay_ = link::BusLink::retryAfter(delay_);
  QTimer::singleShot(delay_, this, [this] {
    base::guarded("desktop activation", [this] {
      if (bus_ || probe_.isCancelled()) return;
      if (!connectToBus()) return lookAgain();
      if (takeName() == Name::Ours) return;
      base::logLine(QStringLiteral("Another %1 has the name on the session bus now").arg(identifier_));
      disconnectFromBus();
    });
  });
}

QDBusMessage ActivationBus::ask(const QDBusMessage& question, milliseconds limit) const {
  return bus_->call(question, QDBus::Block, static_cast<int>(limit.count()));
}

ActivationBus::Name ActivationBus::takeName() {
  const QDBusMessage answer =
      ask(busCall(QStringLiteral("RequestName"), {identifier_, QVariant::fromValue(DoNotQueue)}), patience_);
  switch (answer.arguments().value(0).toUInt()) {
    case PrimaryOwner:
    case AlreadyOwner:
      return Name::Ours;
    case Exists:
    case InQueue:
      return Name::Anothers;
    default:
      return Name::Unknown;
  }
}

ActivationBus::Name ActivationBus::whoHasName() {
  const QDBusMessage answer = ask(busCall(QStringLiteral("NameHasOwner"), {identifier_}), patience_);
  if (answer.type() != QDBusMessage::ReplyMessage) return Name::Unknown;
  return answer.arguments().value(0).toBool() ? Name::Anothers : Name::Ours;
}

ActivationBus::HandOver ActivationBus::handOver() {
  for (;;) {
    ActivationRequest part = rest_;
    part.files = rest_.files.mid(0, activationmessages::MostFiles);
    const HandOver handed = handOverPart(part);
    if (handed != HandOver::Taken) return handed;
    rest_.files.remove(0, part.files.size());
    rest_.activationToken.clear();  // it is good for once
    if (rest_.files.isEmpty()) return handed;
  }
}

ActivationBus::HandOver ActivationBus::handOverPart(const ActivationRequest& request) {
  // The request expires well before the wait for its answer does, so that none is both taken up there and
  // given up here.
  const qint64 deadline = activationmessages::deadlineNow() + patience_.count() / 2;
  const QDBusMessage answer = ask(activationmessages::toBus(identifier_, request, deadline), patience_);
  if (answer.type() == QDBusMessage::ReplyMessage) return HandOver::Taken;
  const QString error = answer.errorName();
  if (error == FullError || error == QDBusError::errorString(QDBusError::InvalidArgs)) {
    refusal_ = QStringLiteral("%1 runs already and refuses: %2").arg(identifier_, answer.errorMessage());
    if (!rest_.files.isEmpty()) refusal_ += QStringLiteral(" (files not taken: %1)").arg(rest_.files.size());
    base::logLine(refusal_);
    return HandOver::Refused;
  }
  // It is just going, or has gone in the middle of the answer. What it has not taken up it will not do.
  const bool gone = error == EndingError || error == QDBusError::errorString(QDBusError::ServiceUnknown) ||
                    error == NameHasNoOwnerError ||
                    error == QDBusError::errorString(QDBusError::UnknownObject) ||
                    (error == QDBusError::errorString(QDBusError::NoReply) && whoHasName() == Name::Ours);
  if (!gone) return HandOver::NoAnswer;
  QThread::msleep(RetryMilliseconds);
  return HandOver::NobodyThere;
}

void ActivationBus::end() {
  if (bus_ && bus_->isConnected()) ask(busCall(QStringLiteral("ReleaseName"), {identifier_}), patience_);
  disconnectFromBus();
}

}  // namespace velmora::desktop
