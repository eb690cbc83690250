// SPDX-License-Identifier: LGPL-3.0-or-later
#include "platform/qt/wire/BusLink.h"

#include <QDBusConnection>
#include <QMetaObject>
#include <atomic>
#include <future>

#include "platform/qt/wire/BusReceiver.h"

namespace platform::wire {
namespace {

// A bus that has not taken the last messages by then has stopped; an application must still be able to end.
constexpr std::chrono::milliseconds LongestGoodbye{5000};

QString nextConnectionName() {
  static std::atomic<int> last{0};
  return QStringLiteral("velmora-distributed-%1").arg(++last);
}

QString title(const QString& name, const QString& object) {
  return QStringLiteral("Notification \"%1\" for \"%2\"").arg(name.left(200), object.left(200));
}

}  // namespace

BusLink::BusLink(const QString& address, Received received, Log log)
    : received_(std::move(received)), log_(std::move(log)), connectionName_(nextConnectionName()) {
  worker_.moveToThread(&thread_);
  thread_.setObjectName(QStringLiteral("velmora-link"));
  thread_.start();
  enqueue([this, address] { open(address); });
}

BusLink::~BusLink() {
  enqueue([this] {
    close();
    thread_.quit();  // from here, so that nothing asked before is skipped
  });
  thread_.wait();
}

void BusLink::subscribe(const QString& name, const QString& object) {
  enqueue([this, name, object] {
    if (!usable()) return;
    if (!canBeMatched(name) || !canBeMatched(object)) {
      log_(title(name, object) + QStringLiteral(" cannot be asked for: an apostrophe or a NUL"));
      return;
    }
    // A null string would match anything.
    const QStringList exactly{name.isNull() ? QStringLiteral("") : name,
                              object.isNull() ? QStringLiteral("") : object};
    if (!bus_->connect(QString(), Path, Interface, Member, exactly, Signature, receiver_.get(),
                       SLOT(receive(QDBusMessage)))) {
      log_(title(name, object) + QStringLiteral(" cannot be asked for: ") + bus_->lastError().message());
    }
  });
}

void BusLink::unsubscribe(const QString& name, const QString& object) {
  enqueue([this, name, object] {
    if (!usable() || !canBeMatched(name) || !canBeMatched(object)) return;
    const QStringList exactly{name.isNull() ? QStringLiteral("") : name,
                              object.isNull() ? QStringLiteral("") : object};
    bus_->disconnect(QString(), Path, Interface, Member, exactly, Signature, receiver_.get(),
                     SLOT(receive(QDBusMessage)));
  });
}

void BusLink::post(const Message& message) {
  enqueue([this, message] { send(message); });
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
  QMetaObject::invokeMethod(&worker_, std::move(task), Qt::QueuedConnection);
}

bool BusLink::roundTrip(std::chrono::milliseconds limit) {
  if (!bus_ || !bus_->isConnected()) return false;
  const QDBusMessage question = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
      QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetId"));
  // The bus reads a connection's messages in order, so its answer says that it has read all before the
  // question.
  const QDBusMessage answer = bus_->call(question, QDBus::Block, static_cast<int>(limit.count()));
  return answer.type() == QDBusMessage::ReplyMessage;
}

void BusLink::open(const QString& address) {
  const QDBusConnection bus =
      address.isEmpty() ? QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName_)
                        : QDBusConnection::connectToBus(address, connectionName_);
  if (bus.isConnected()) {
    bus_ = std::make_unique<QDBusConnection>(bus);
    receiver_ = std::make_unique<BusReceiver>([this](const QDBusMessage& signal) { arrived(signal); });
    return;
  }
  QDBusConnection::disconnectFromBus(connectionName_);
  log_(QStringLiteral("No session bus, the link is off: ") + bus.lastError().message());
}

void BusLink::close() {
  if (!bus_) return;
  roundTrip(LongestGoodbye);
  letGo();
}

void BusLink::letGo() {
  // QtDBus takes a connection apart on a thread of its own, and looks at the receivers that are still on it.
  // They go first: the end of a receiver waits until QtDBus has forgotten it.
  receiver_.reset();
  bus_.reset();
  QDBusConnection::disconnectFromBus(connectionName_);
}

/// Not within a delivery: a receiver that is being called must not go.
bool BusLink::usable() {
  if (!bus_) return false;
  if (bus_->isConnected()) return true;
  log_(QStringLiteral("The session bus has gone, the link is off"));
  letGo();
  return false;
}

void BusLink::send(const Message& message) {
  if (!usable()) return;
  const Outgoing outgoing = toBus(message);
  if (!outgoing.refusal.isNull()) {
    log_(title(message.name, message.object) + QStringLiteral(" is not sent: ") + outgoing.refusal);
    return;
  }
  if (!outgoing.dropped.isEmpty()) {
    log_(title(message.name, message.object) + QStringLiteral(" is sent without: ") +
         outgoing.dropped.join(QStringLiteral(", ")));
  }
  bus_->send(outgoing.message);
}

void BusLink::arrived(const QDBusMessage& signal) {
  const Incoming incoming = fromBus(signal);
  if (!incoming.refusal.isNull()) {
    log_(QStringLiteral("A notification from %1 is refused: %2").arg(signal.service(), incoming.refusal));
    return;
  }
  const Message& message = incoming.message;
  if (!incoming.dropped.isEmpty()) {
    log_(title(message.name, message.object) + QStringLiteral(" is read without: ") +
         incoming.dropped.join(QStringLiteral(", ")));
  }
  received_(message);
}

}  // namespace platform::wire
