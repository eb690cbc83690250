// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <cstring>
#include <functional>

#include "base/Export.h"

namespace velmora::testkit {

/// Values in their form on the bus, written byte by byte: for what no bus library would agree to send.
/// Little-endian; places are aligned as the D-Bus protocol (0.41, "Message Format") has it, counted from the
/// first byte.
class VELMORA_EXPORT RawValues {
 public:
  const QByteArray& bytes() const { return bytes_; }

  void align(qsizetype to) {
    while (bytes_.size() % to != 0) bytes_.append('\0');
  }
  /// A number of its natural size and alignment: y n q i u x t d, and b as a quint32.
  template <typename Number>
  void number(Number value) {
    align(static_cast<qsizetype>(sizeof value));
    bytes_.append(reinterpret_cast<const char*>(&value), static_cast<qsizetype>(sizeof value));
  }
  /// s and o: whatever bytes, valid text or not.
  void text(const QByteArray& utf8) {
    number(static_cast<quint32>(utf8.size()));
    bytes_.append(utf8).append('\0');
  }
  /// g
  void signature(const QByteArray& types) {
    bytes_.append(static_cast<char>(types.size())).append(types).append('\0');
  }
  /// v holding a string.
  void textVariant(const QByteArray& utf8) {
    signature("s");
    text(utf8);
  }
  /// An array whose elements need `alignment`; `fill` writes them.
  void array(qsizetype alignment, const std::function<void()>& fill) {
    number(quint32(0));
    const qsizetype length = bytes_.size() - 4;
    align(alignment);
    const qsizetype start = bytes_.size();
    fill();
    const auto size = static_cast<quint32>(bytes_.size() - start);
    std::memcpy(bytes_.data() + length, &size, sizeof size);
  }
  void raw(const QByteArray& bytes) { bytes_.append(bytes); }

 private:
  QByteArray bytes_;
};

/// A message ready for the socket.
struct VELMORA_EXPORT RawMessage {
  enum Type : quint8 { MethodCall = 1, MethodReturn = 2, Error = 3, Signal = 4 };

  quint8 type = Signal;
  quint8 flags = 1;  ///< no reply is expected
  QByteArray path;
  QByteArray interface;
  QByteArray member;
  QByteArray destination;
  QByteArray sender;
  quint32 replyTo = 0;
  QByteArray signature;
  QByteArray body;

  QByteArray frame(quint32 serial) const {
    RawValues header;
    header.number('l');
    header.number(type);
    header.number(flags);
    header.number(quint8(1));  // version of the protocol
    header.number(static_cast<quint32>(body.size()));
    header.number(serial);
    header.array(8, [&] {
      field(header, 1, "o", path);
      field(header, 2, "s", interface);
      field(header, 3, "s", member);
      if (replyTo != 0) {
        header.align(8);
        header.number(quint8(5));
        header.signature("u");
        header.number(replyTo);
      }
      field(header, 6, "s", destination);
      field(header, 7, "s", sender);
      if (!signature.isEmpty()) {
        header.align(8);
        header.number(quint8(8));
        header.signature("g");
        header.signature(signature);
      }
    });
    header.align(8);
    return header.bytes() + body;
  }

 private:
  static void field(RawValues& header, quint8 code, const char* type, const QByteArray& value) {
    if (value.isEmpty()) return;
    header.align(8);
    header.number(code);
    header.signature(type);
    header.text(value);
  }
};

/// A notification's signal with these details ("a{sv}" without its length, written by `fill`).
inline RawMessage notificationFrame(const QByteArray& name, const QByteArray& object,
                                    const std::function<void(RawValues&)>& fill) {
  RawValues body;
  body.text(name);
  body.text(object);
  body.array(8, [&] { fill(body); });
  RawMessage message;
  message.path = "/org/velmora/DistributedNotificationCenter";
  message.interface = "org.velmora.DistributedNotificationCenter";
  message.member = "Notification";
  message.sender = ":1.7";
  message.signature = "ssa{sv}";
  message.body = body.bytes();
  return message;
}

/// One entry of the details whose value is a string.
inline void textEntry(RawValues& body, const QByteArray& key, const QByteArray& value) {
  body.align(8);
  body.text(key);
  body.textVariant(value);
}

}  // namespace velmora::testkit
