// SPDX-License-Identifier: LGPL-3.0-or-later
#include <QCoreApplication>
#include <condition_variable>
#include <mutex>
#include <string_view>

#include "link/bus/BusLink.h"
#include "testing/bus/RawBus.h"
#include "tests/fuzz/FuzzTargets.h"

using namespace velmora;

using velmora::link::Message;
using velmora::testkit::RawBus;
using velmora::testkit::RawMessage;
using velmora::testkit::RawValues;

namespace {

constexpr std::chrono::seconds Limit{20};

/// Types and values that the bus lets through, chosen by the input: what a stranger could send.
class Values {
 public:
  explicit Values(const QByteArray& choices) : choices_(choices) {}

  bool atEnd() const { return place_ >= choices_.size(); }

  RawMessage notification() {
    const quint8 shape = next();
    RawMessage message = testkit::notificationFrame("n", "o", [&](RawValues& body) {
      while (!atEnd()) {
        body.align(8);
        body.text(text());
        variant(body, 1);
      }
    });
    if (shape % 16 == 1) {  // arguments that are not those of a notification
      RawValues body;
      body.text("n");
      body.text("o");
      const QByteArray other = type(0);
      value(body, other, 0);
      message.signature = "ss" + other;
      message.body = body.bytes();
    }
    return message;
  }

 private:
  quint8 next() { return atEnd() ? 0 : static_cast<quint8>(choices_.at(place_++)); }

  template <typename Number>
  Number number() {
    Number value{};
    for (size_t i = 0; i < sizeof value; ++i) reinterpret_cast<char*>(&value)[i] = static_cast<char>(next());
    return value;
  }

  QByteArray text() {
    const qsizetype size = next() % 24;
    QByteArray bytes = choices_.mid(place_, size);
    place_ = qMin(place_ + size, choices_.size());
    QString valid = QString::fromUtf8(bytes);
    return valid.remove(QChar(u'\0')).toUtf8();
  }

  /// One complete type.
  QByteArray type(int depth) {
    static constexpr std::string_view basic = "ybnqiuxtdsogv";
    const quint8 choice = next();
    if (depth < 24 && choice >= 240) return "a{" + basicType() + type(depth + 2) + "}";
    if (depth < 24 && choice >= 210) return "a" + type(depth + 1);
    if (depth < 24 && choice >= 180) {
      QByteArray members;
      for (int count = next() % 3 + 1; count > 0 && members.size() < 40; --count) members += type(depth + 1);
      return "(" + members + ")";
    }
    if (choice >= 170) return "(x)";
    return QByteArray(1, basic[choice % basic.size()]);
  }
  QByteArray basicType() {
    static constexpr std::string_view keys = "ssssybnqiuxtdog";
    return QByteArray(1, keys[next() % keys.size()]);
  }

  void variant(RawValues& body, int depth) {
    QByteArray held = type(depth);
    if (held.size() > 100 || depth > 24) held = "s";
    body.signature(held);
    value(body, held, depth);
  }

  static qsizetype alignment(char first) {
    switch (first) {
      case 'y':
      case 'g':
      case 'v':
        return 1;
      case 'n':
      case 'q':
        return 2;
      case 'x':
      case 't':
      case 'd':
      case '(':
      case '{':
        return 8;
      default:
        return 4;
    }
  }

  /// Where the complete type that starts at `start` ends.
  static qsizetype endOfType(const QByteArray& types, qsizetype start) {
    if (types.at(start) == 'a') return endOfType(types, start + 1);
    if (types.at(start) != '(' && types.at(start) != '{') return start + 1;
    const char closing = types.at(start) == '(' ? ')' : '}';
    qsizetype place = start + 1;
    while (types.at(place) != closing) place = endOfType(types, place);
    return place + 1;
  }

  void members(RawValues& body, const QByteArray& types, int depth) {
    body.align(8);
    for (qsizetype place = 1; place < types.size() - 1;) {
      const qsizetype end = endOfType(types, place);
      value(body, types.mid(place, end - place), depth);
      place = end;
    }
  }

  void value(RawValues& body, const QByteArray& held, int depth) {
    switch (held.at(0)) {
      case 'y':
        return body.number(number<quint8>());
      case 'b':
        return body.number(quint32(next() % 2));
      case 'n':
      case 'q':
        return body.number(number<quint16>());
      case 'i':
      case 'u':
        return body.number(number<quint32>());
      case 'x':
      case 't':
      case 'd':
        return body.number(number<quint64>());
      case 's':
        return body.text(text());
      case 'o':
        return body.text(next() % 2 ? "/" : "/a/b");
      case 'g':
        return body.signature(next() % 2 ? "" : "a{sv}");
      case 'v':
        return variant(body, depth + 1);
      case '(':
      case '{':
        return members(body, held, depth + 1);
      default: {
        const QByteArray element = held.mid(1);
        return body.array(alignment(element.at(0)), [&] {
          for (int count = next() % 4; count > 0 && body.bytes().size() < 100000; --count) {
            value(body, element, depth + 1);
          }
        });
      }
    }
  }

  QByteArray choices_;
  qsizetype place_ = 0;
};

/// A program on a bus that passes everything on.
class Receiver {
 public:
  Receiver()
      : bus_(RawBus::Manner::Proper),
        link_(
            bus_.address(), [this](const Message& message) { received(message); }, [](const QString&) {}) {
    link_.subscribe(QStringLiteral("n"), QStringLiteral("o"));
    link_.subscribe(QStringLiteral("fence"), QStringLiteral("o"));
    // These two, and the end of the connection.
    fuzz::require(bus_.waitForSubscriptions(3, Limit), "the link comes up");
  }

  void send(const RawMessage& message) {
    fuzz::require(bus_.send(message), "the link takes every message that a bus passes on");
    std::unique_lock lock(mutex_);
    const quint64 fence = fences_ + 1;
    fuzz::require(bus_.send(testkit::notificationFrame("fence", "o", [](RawValues&) {})),
                  "the link stays up");
    fuzz::require(passed_.wait_for(lock, Limit, [&] { return fences_ >= fence; }),
                  "the link hears the message after this one");
  }

 private:
  void received(const Message& message) {
    if (message.name == QStringLiteral("fence")) {
      const std::lock_guard lock(mutex_);
      ++fences_;
      passed_.notify_all();
      return;
    }
    const base::Result<link::Outgoing> outgoing = link::toBus(message);
    fuzz::require(outgoing.ok() && outgoing->dropped.isEmpty(), "what arrived can be sent on as it is");
  }

  std::mutex mutex_;
  std::condition_variable passed_;
  quint64 fences_ = 0;
  RawBus bus_;
  link::BusLink link_;
};

}  // namespace

void fuzz::busPayload(const QByteArray& input) {
  // Never destroyed: at the end of the process the bus library may be gone already.
  static Receiver* const receiver = new Receiver;
  receiver->send(Values(input).notification());
}
