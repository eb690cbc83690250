// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDBusMessage>
#include <QObject>
#include <functional>

#include "base/Export.h"

namespace velmora::link {

/// Receives signals, and the end of the connection, from QtDBus on the thread that the object lives on.
class VELMORA_EXPORT BusReceiver : public QObject {
  Q_OBJECT

 public:
  using Arrived = std::function<void(const QDBusMessage&)>;
  using Ended = std::function<void()>;

  BusReceiver(Arrived arrived, Ended ended);

 public Q_SLOTS:
  void receive(const QDBusMessage& signal);
  void end();

 private:
  Arrived arrived_;
  Ended ended_;
};

}  // namespace velmora::link
