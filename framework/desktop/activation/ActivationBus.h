// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QString>
#include <chrono>
#include <functional>
#include <memory>

#include "base/Result.h"
#include "desktop/activation/ActivationRequest.h"
#include "link/bus/BusProbe.h"

namespace velmora::link {
class BusReceiver;
}

namespace velmora::desktop {

/// The application's object on the session bus. Passes proper requests on and answers them at once; refuses
/// everything else with a log line.
class ActivationObject : public QDBusVirtualObject {
 public:
  /// Accepts a request, or says why not.
  using Accept = std::function<ActivationAcceptance(const ActivationRequest&)>;

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
/// When the bus goes away it is looked for again; when it is back, and nobody else has taken the name
/// meanwhile, the application can be reached again.
class ActivationBus : public QObject {
 public:
  ActivationBus(ActivationObject::Accept accept, std::chrono::milliseconds patience);
  ~ActivationBus() override;

  /// Takes the name, or hands the request over to the program that has it; waits no longer than patience
  /// allows. `serves` is false for a program that does not take the name.
  ActivationOutcome begin(const QString& identifier, const ActivationRequest& request, bool serves);
  const ActivationRequest& rest() const { return rest_; }
  const QString& refusal() const { return refusal_; }
  /// Releases the name and closes the connection.
  void end();
  /// Ends the wait for a bus that does not answer. From any thread.
  void giveUp() { probe_.cancel(); }

 private:
  enum class Name { Ours, Anothers, Unknown };

  base::Result<> connectToBus();
  void disconnectFromBus();
  void connectionEnded();
  void lookAgain();
  Name takeName();
  Name whoHasName();
  QDBusMessage ask(const QDBusMessage& question, std::chrono::milliseconds limit) const;
  enum class HandOver { Taken, Refused, NoAnswer, NobodyThere };
  /// Hands over rest_, in parts of as many files as one request may name, and removes from it what was
  /// accepted.
  HandOver handOver();
  HandOver handOverPart(const ActivationRequest& part);

  const std::chrono::milliseconds patience_;
  ActivationObject::Accept accept_;
  QString identifier_;
  ActivationRequest rest_;
  QString refusal_;
  link::BusProbe probe_;
  QString connectionName_;
  std::chrono::milliseconds delay_{0};
  // Made and destroyed on the thread; none without a bus.
  std::unique_ptr<QDBusConnection> bus_;
  std::unique_ptr<link::BusReceiver> receiver_;
  std::unique_ptr<ActivationObject> object_;
};

}  // namespace velmora::desktop
