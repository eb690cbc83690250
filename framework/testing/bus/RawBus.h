// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>
#include <chrono>
#include <condition_variable>
#include <list>
#include <mutex>
#include <thread>

#include "base/Export.h"
#include "testing/bus/RawMessage.h"

namespace velmora::testkit {

/// Something that stands where the session bus should be, and behaves as badly as it is told. To one program
/// it can send any bytes at all, which a real bus would refuse to pass on.
class VELMORA_EXPORT RawBus {
 public:
  enum class Manner {
    Proper,         ///< greets, and answers every question
    NeverAnswers,   ///< takes connections and says nothing
    NeverGreets,    ///< lets programs in and never answers the first question
    NeverAccepts,   ///< listens and takes no connection
    SpeaksNonsense  ///< answers with something that is not the protocol
  };

  explicit RawBus(Manner manner);
  ~RawBus();
  RawBus(const RawBus&) = delete;
  RawBus& operator=(const RawBus&) = delete;

  QString address() const;

  /// Waits until a program has asked for `subscriptions` notifications on one connection.
  bool waitForSubscriptions(int subscriptions, std::chrono::duration<double> limit);
  /// Waits until that many connections have come in.
  bool waitForConnections(int connections, std::chrono::duration<double> limit);

  /// Sends to the program that asked for notifications last. False when it hangs up.
  bool send(const QByteArray& bytes);
  bool send(const RawMessage& message) { return send(message.frame(++serial_)); }
  /// Hangs up on everybody.
  void hangUp();

 private:
  struct Connection {
    int socket = -1;
    bool pastGreeting = false;
    QByteArray received;
    int subscriptions = 0;
  };

  void serve();
  bool serve(Connection& connection);
  bool takeLine(Connection& connection);
  bool takeMessage(Connection& connection);

  Manner manner_;
  QTemporaryDir folder_;
  int listener_ = -1;
  int wake_ = -1;
  quint32 serial_ = 1000000;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::list<Connection> connections_;
  int accepted_ = 0;
  int listening_ = -1;  // the socket that asked for notifications last
  bool ending_ = false;
  std::thread thread_;
};

}  // namespace velmora::testkit
