// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QString>
#include <chrono>
#include <functional>
#include <memory>

#include "desktop/activation/DesktopActivation.h"
#include "desktop/activation/DesktopRequest.h"
#include "link/bus/BusGreeting.h"

namespace velmora::link {
class BusReceiver;
}

namespace velmora::desktop {

/// The application's object on the session bus. Hands on what is a proper request and answers it at once; the
/// rest is refused with a log line.
class ActivationObject : public QDBusVirtualObject {
 public:
  /// Takes a request up, or not.
  using Accept = std::function<DesktopActivation::Acceptance(const DesktopRequest&)>;

  explicit ActivationObject(Accept accept) : accept_(std::move(accept)) {}

  QString introspect(const QString& path) const override;
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

 private:
  void answer(const QDBusMessage& call, const QDBusConnection& connection);

  Accept accept_;
};

/// A connection to the session bus under the application's name. Everything happens on the thread that the
/// object is moved to, apart from giveUp().
///
/// A bus that goes is looked for again; when it is back, and nobody else has taken the name meanwhile, the
/// application can be reached again.
class ActivationBus : public QObject {
 public:
  ActivationBus(ActivationObject::Accept accept, std::chrono::milliseconds patience);
  ~ActivationBus() override;

  /// What DesktopActivation::begin() does.
  DesktopActivation::Outcome begin(const QString& identifier, const DesktopRequest& request, bool serves);
  const DesktopRequest& rest() const { return rest_; }
  const QString& refusal() const { return refusal_; }
  /// Gives the name and the connection away.
  void end();
  /// Ends the wait for a bus that does not answer. From any thread.
  void giveUp() { greeting_.giveUp(); }

 private:
  enum class Name { Ours, Anothers, Unknown };

  QString connectToBus();
  void disconnectFromBus();
  void connectionEnded();
  void lookAgain();
  Name takeName();
  Name whoHasName();
  QDBusMessage ask(const QDBusMessage& question, std::chrono::milliseconds limit) const;
  /// Hands over rest_, in parts of as many files as one request may name, and takes off what was taken up.
  DesktopActivation::Outcome handOver(bool& again);
  DesktopActivation::Outcome handOverPart(const DesktopRequest& part, bool& again);

  const std::chrono::milliseconds patience_;
  ActivationObject::Accept accept_;
  QString identifier_;
  DesktopRequest rest_;
  QString refusal_;
  link::BusGreeting greeting_;
  QString connectionName_;
  std::chrono::milliseconds delay_{0};
  // Made and destroyed on the thread; none without a bus.
  std::unique_ptr<QDBusConnection> bus_;
  std::unique_ptr<link::BusReceiver> receiver_;
  std::unique_ptr<ActivationObject> object_;
};

}  // namespace velmora::desktop
