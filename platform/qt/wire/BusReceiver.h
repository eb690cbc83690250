// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDBusMessage>
#include <QObject>
#include <functional>

namespace platform::wire {

/// The object that QtDBus hands arriving signals to, on the thread that the object lives on.
class BusReceiver : public QObject {
  Q_OBJECT

 public:
  using Arrived = std::function<void(const QDBusMessage&)>;

  explicit BusReceiver(Arrived arrived);

 public Q_SLOTS:
  void receive(const QDBusMessage& signal);

 private:
  Arrived arrived_;
};

}  // namespace platform::wire
