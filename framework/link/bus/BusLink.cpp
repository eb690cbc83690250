// SPDX-License-Identifier: LGPL-3.0-or-later
#include "link/bus/BusLink.h"

#include <QDBusConnection>
#include <QLibrary>
#include <QMetaObject>
#include <QScopeGuard>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <future>
#include <limits>
#include <utility>

#include "base/log/Guard.h"
#include "link/bus/BusReceiver.h"

namespace velmora::link {
namespace {

// A bus that has not taken the last messages by then hangs; the application must still be able to end.
constexpr std::chrono::milliseconds CloseTimeout{5000};

/// How long a bus may take to accept the connection.
constexpr std::chrono::milliseconds ConnectTimeout{5000};

constexpr std::chrono::milliseconds FirstDelay{1000};
constexpr std::chrono::milliseconds LongestDelay{30000};

QString nextConnectionName() {
  static std::atomic<int> last{0};
  return QStringLiteral("velmora-distributed-%1").arg(++last);
}

/// Lets the connection keep reading however much waits to be delivered. By default the bus library stops
/// reading at 63 MiB and continues when a message has been released; but if that happens on this thread,
/// QtDBus cannot turn its socket notifier on again, which lives on another, and the connection stays deaf
/// (seen with two requests of 40 MiB, Qt 6.4.2). Little waits all the same, since this thread does nothing
/// but receive.
void disableReceiveLimit(const QDBusConnection& bus) {
  using SetMaxReceivedSize = void (*)(void* connection, long size);
  const auto setMaxReceivedSize = reinterpret_cast<SetMaxReceivedSize>(
      QLibrary::resolve(QStringLiteral("dbus-1"), 3, "dbus_connection_set_max_received_size"));
  if (setMaxReceivedSize) setMaxReceivedSize(bus.internalPointer(), std::numeric_limits<long>::max());
}

QString title(const QString& name, const QString& object) {
  return QStringLiteral("Notification \"%1\" for \"%2\"").arg(name.left(200), object.left(200));
}

/// What the bus compares with; a null string would match anything.
QStringList exactly(const QString& name, const QString& object) {
  return {name.isNull() ? QStringLiteral("") : name, object.isNull() ? QStringLiteral("") : object};
}

}  // namespace

BusLink::BusLink(const QString& address, Received received, Log log)
    : received_(std::move(received)),
      // A line that cannot be written must not keep the link from coming back.
      log_([log = std::move(log)](const QString& line) {
        base::guarded("the session bus", [&] { log(line); });
      }),
      address_(address) {
  worker_.moveToThread(&thread_);
  thread_.setObjectName(QStringLiteral("velmora-link"));
  thread_.start();
  enqueue([this] { open(); });
}

BusLink::~BusLink() {
  // With nothing to send there is no need to wait for a connection that is still being tried.
  if (unsent_ == 0) probe_.cancel();
  enqueue([this] {
    close();
    thread_.quit();  // from here, so that no earlier task is skipped
  });
  thread_.wait();
}

void BusLink::subscribe(const QString& name, const QString& object) {
  enqueue([this, name, object] {
    if (canBeMatched(name) && canBeMatched(object)) subscriptions_.append({name, object});
    if (usable()) addMatch(name, object);
  });
}

void BusLink::addMatch(const QString& name, const QString& object) {
  if (!canBeMatched(name) || !canBeMatched(object)) {
    log_(title(name, object) + QStringLiteral(" cannot be asked for: an apostrophe or a NUL"));
  } else if (!bus_->connect(QString(), Path, Interface, Member, exactly(name, object), Signature,
                            receiver_.get(), SLOT(receive(QDBusMessage)))) {
    log_(title(name, object) + QStringLiteral(" cannot be asked for: ") + bus_->lastError().message());
  }
}

void BusLink::unsubscribe(const QString& name, const QString& object) {
  enqueue([this, name, object] {
    if (!subscriptions_.removeOne({name, object}) || !usable()) return;
    bus_->disconnect(QString(), Path, Interface, Member, exactly(name, object), Signature, receiver_.get(),
                     SLOT(receive(QDBusMessage)));
  });
}

void BusLink::post(const Message& message) {
  ++unsent_;
  enqueue([this, message] {
    const auto sent = qScopeGuard([this] { --unsent_; });
    send(message);
  });
}

bool BusLink::flush(std::chrono::milliseconds limit) {
  if (QThread::currentThread() == &thread_) return roundTrip(limit);
  const auto deadline = std::chrono::steady_clock::now() + limit;
  auto answer = std::make_shared<std::promise<bool>>();
  std::future<bool> future = answer->get_future();
  enqueue([this, answer, limit] { answer->set_value(usable() && roundTrip(limit)); });
  return future.wait_until(deadline) == std::future_status::ready && future.get();
}

void BusLink::enqueue(std::function<void()> task) {
  QMetaObject::invokeMethod(
      &worker_, [task = std::move(task)] { base::guarded("the session bus", task); }, Qt::QueuedConnection);
}

bool BusLink::roundTrip(std::chrono::milliseconds limit) {
  if (!bus_ || !bus_->isConnected()) return false;
  const QDBusMessage question = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
      QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetId"));
  // The bus reads a connection's messages in order, so the answer tells that it has read all earlier ones.
  const QDBusMessage answer = bus_->call(question, QDBus::Block, static_cast<int>(limit.count()));
  return answer.type() == QDBusMessage::ReplyMessage;
}

std::chrono::milliseconds BusLink::retryAfter(std::chrono::milliseconds previous) {
  return previous.count() == 0 ? FirstDelay : std::min(2 * previous, LongestDelay);
}

void BusLink::open() {
  if (bus_ || probe_.isCancelled()) return;
  const base::Result<> connected = connectToBus();
  if (probe_.isCancelled()) return;
  if (!connected) {
    if (!std::exchange(off_, true)) {
      log_(QStringLiteral("No session bus, the link is off: ") + connected.error());
    }
    return tryLater();
  }
  connectedSince_.start();
  for (const Subscription& each : std::as_const(subscriptions_)) addMatch(each.name, each.object);
  if (std::exchange(off_, false)) log_(QStringLiteral("The session bus is back, the link is on"));
}

base::Result<> BusLink::connectToBus() {
  const base::Result<QString> address =
      probe_.find(lastingAddress(address_.isEmpty() ? sessionBusAddress() : address_), ConnectTimeout);
  if (!address) return address.failure();
  // A new name for each attempt: the bus library may still be closing the previous connection.
  connectionName_ = nextConnectionName();
  const QDBusConnection bus = QDBusConnection::connectToBus(*address, connectionName_);
  if (!bus.isConnected()) {
    const QString error = bus.lastError().message();
    QDBusConnection::disconnectFromBus(connectionName_);
    return base::Failure{error.isEmpty() ? QStringLiteral("it hung up") : error};
  }
  bus_ = std::make_unique<QDBusConnection>(bus);
  disableReceiveLimit(bus);
  // Queued: the receiver must not be destroyed within a delivery to it.
  receiver_ = std::make_unique<BusReceiver>([this](const QDBusMessage& signal) { arrived(signal); },
                                            [this] { enqueue([this] { usable(); }); });
  bus_->connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), receiver_.get(),
                SLOT(end()));
  return {};
}

void BusLink::tryLater() {
  delay_ = retryAfter(delay_);
  QTimer::singleShot(delay_, &worker_, [this] { base::guarded("the session bus", [this] { open(); }); });
}

void BusLink::close() {
  probe_.cancel();  // no further attempts to connect
  if (!bus_) return;
  roundTrip(CloseTimeout);
  disconnect();
}

void BusLink::disconnect() {
  // QtDBus closes a connection on a thread of its own, and looks at the receivers that are still registered.
  // So the receiver goes first: its destructor waits until QtDBus has forgotten it.
  receiver_.reset();
  bus_.reset();
  QDBusConnection::disconnectFromBus(connectionName_);
}

void BusLink::connectionLost() {
  off_ = true;
  log_(QStringLiteral("The session bus has gone, the link is off"));
  disconnect();
  // A bus that accepts only to hang up is not tried every second.
  if (connectedSince_.hasExpired(LongestDelay.count())) delay_ = std::chrono::milliseconds(0);
  tryLater();
}

/// Must not be called within a delivery: it may destroy the receiver.
bool BusLink::usable() {
  if (!bus_) return false;
  if (bus_->isConnected()) return true;
  connectionLost();
  return false;
}

void BusLink::send(const Message& message) {
  if (!usable()) return;
  const base::Result<Outgoing> outgoing = toBus(message);
  if (!outgoing) {
    log_(title(message.name, message.object) + QStringLiteral(" is not sent: ") + outgoing.error());
    return;
  }
  if (!outgoing->dropped.isEmpty()) {
    log_(title(message.name, message.object) + QStringLiteral(" is sent without: ") +
         outgoing->dropped.join(QStringLiteral(", ")));
  }
  bus_->send(outgoing->message);
}

void BusLink::arrived(const QDBusMessage& signal) {
  const base::Result<Incoming> incoming = fromBus(signal);
  if (!incoming) {
    log_(QStringLiteral("A notification from %1 is refused: %2").arg(signal.service(), incoming.error()));
    return;
  }
  const Message& message = incoming->message;
  if (!incoming->dropped.isEmpty()) {
    log_(title(message.name, message.object) + QStringLiteral(" is read without: ") +
         incoming->dropped.join(QStringLiteral(", ")));
  }
  received_(message);
}

}  // namespace velmora::link
