// SPDX-License-Identifier: LGPL-3.0-or-later
#include "platform/bundles/PropertyListBinary.h"

#include <QDateTime>
#include <QStringDecoder>
#include <QTimeZone>
#include <QtEndian>
#include <bit>
#include <cmath>
#include <limits>
#include <optional>

namespace velmora::platform {

namespace {

constexpr qsizetype TrailerSize = 32;
/// Property lists count time from 2001-01-01T00:00:00Z.
constexpr double SecondsTo2001 = 978307200;
/// The end of the year 9999, in seconds since 1970: beyond it no date can be shown.
constexpr double LastSecond = 253402300799;

class Reader {
 public:
  explicit Reader(const QByteArray& data) : data_(data) {}

  std::optional<QVariant> read() {
    const qsizetype trailer = data_.size() - TrailerSize;
    if (trailer < 8 || !data_.startsWith("bplist")) return std::nullopt;
    placeSize_ = static_cast<quint8>(data_.at(trailer + 6));
    referenceSize_ = static_cast<quint8>(data_.at(trailer + 7));
    count_ = numberAt(static_cast<quint64>(trailer) + 8, 8).value_or(0);
    const quint64 top = numberAt(static_cast<quint64>(trailer) + 16, 8).value_or(0);
    table_ = numberAt(static_cast<quint64>(trailer) + 24, 8).value_or(0);
    return object(top, 0);
  }

 private:
  struct Head {
    int type;       ///< the upper half of the first byte
    quint64 count;  ///< the lower half, or the number that follows when that is 15
    quint64 place;  ///< of what comes next
  };

  bool holds(quint64 place, quint64 size) const {
    const auto all = static_cast<quint64>(data_.size());
    return place <= all && size <= all - place;
  }

  /// The unsigned number of 1 to 8 bytes that stands at `place`.
  std::optional<quint64> numberAt(quint64 place, quint64 size) const {
    if (size < 1 || size > 8 || !holds(place, size)) return std::nullopt;
    quint64 number = 0;
    for (quint64 i = 0; i < size; ++i) {
      number = number << 8 | static_cast<quint8>(data_.at(static_cast<qsizetype>(place + i)));
    }
    return number;
  }

  std::optional<quint64> placeOf(quint64 index) const {
    if (index >= count_ || index >= static_cast<quint64>(data_.size())) return std::nullopt;
    return table_ > static_cast<quint64>(data_.size()) ? std::nullopt
                                                       : numberAt(table_ + index * placeSize_, placeSize_);
  }

  std::optional<Head> headAt(quint64 place) const {
    const auto first = numberAt(place, 1);
    if (!first) return std::nullopt;
    Head head{static_cast<int>(*first >> 4), *first & 15, place + 1};
    const bool sized = head.type == 0x4 || head.type == 0x5 || head.type == 0x6 || head.type >= 0xA;
    if (!sized || head.count != 15) return head;
    const auto kind = numberAt(head.place, 1);  // an integer object of its own
    if (!kind || *kind >> 4 != 0x1 || (*kind & 15) > 3) return std::nullopt;
    const quint64 size = quint64(1) << (*kind & 15);
    const auto count = numberAt(head.place + 1, size);
    if (!count) return std::nullopt;
    head.count = *count;
    head.place += 1 + size;
    return head;
  }

  QByteArrayView bytes(quint64 place, quint64 size) const {
    return QByteArrayView(data_).sliced(static_cast<qsizetype>(place), static_cast<qsizetype>(size));
  }

  std::optional<QVariant> object(quint64 index, int depth) {
    // One object may stand in many places, so that a small file could hold more values than there is time
    // for.
    if (depth > DeepestPropertyList || ++read_ > MostPropertyListValues) return std::nullopt;
    const auto place = placeOf(index);
    const auto head = place ? headAt(*place) : std::nullopt;
    if (!head) return std::nullopt;
    switch (head->type) {
      case 0x0:  // 8 is false, 9 true
        if (head->count == 8 || head->count == 9) return QVariant(head->count == 9);
        return std::nullopt;
      case 0x1:
        return integer(*head);
      case 0x2:
        return real(*head);
      case 0x3:
        return date(*head);
      case 0x4:  // data
        if (!holds(head->place, head->count)) return std::nullopt;
        return QVariant(bytes(head->place, head->count).toByteArray());
      case 0x5:  // text in ASCII
        if (!holds(head->place, head->count)) return std::nullopt;
        return QVariant(QString::fromLatin1(bytes(head->place, head->count)));
      case 0x6:  // text in UTF-16
        if (head->count > static_cast<quint64>(data_.size()) || !holds(head->place, 2 * head->count))
          return std::nullopt;
        return QVariant(
            QString(QStringDecoder(QStringDecoder::Utf16BE)(bytes(head->place, 2 * head->count))));
      case 0xA:
        return array(*head, depth);
      case 0xD:
        return dictionary(*head, depth);
      default:
        return std::nullopt;
    }
  }

  std::optional<QVariant> integer(const Head& head) const {
    if (head.count > 4) return std::nullopt;
    const quint64 size = quint64(1) << head.count;
    const auto number = numberAt(size == 16 ? head.place + 8 : head.place, qMin(size, quint64(8)));
    if (!number) return std::nullopt;
    // Numbers of 16 bytes are written for what is unsigned and too large for 8.
    if (size == 16 && *number > static_cast<quint64>(std::numeric_limits<qint64>::max())) return std::nullopt;
    return QVariant(static_cast<qint64>(*number));
  }

  std::optional<double> realOf(const Head& head) const {
    if (head.count == 2) {
      const auto bits = numberAt(head.place, 4);
      return bits ? std::optional<double>(std::bit_cast<float>(static_cast<quint32>(*bits))) : std::nullopt;
    }
    const auto bits = head.count == 3 ? numberAt(head.place, 8) : std::nullopt;
    return bits ? std::optional<double>(std::bit_cast<double>(*bits)) : std::nullopt;
  }

  std::optional<QVariant> real(const Head& head) const {
    const auto number = realOf(head);
    return number ? std::optional<QVariant>(*number) : std::nullopt;
  }

  std::optional<QVariant> date(const Head& head) const {
    const auto since2001 = realOf(head);
    if (!since2001 || !std::isfinite(*since2001)) return std::nullopt;
    const double seconds = SecondsTo2001 + *since2001;
    if (std::abs(seconds) > LastSecond) return std::nullopt;
    return QVariant(QDateTime::fromMSecsSinceEpoch(std::llround(seconds * 1000), QTimeZone::utc()));
  }

  std::optional<QVariant> array(const Head& head, int depth) {
    QVariantList list;
    for (quint64 i = 0; i < head.count; ++i) {
      const auto reference = numberAt(head.place + i * referenceSize_, referenceSize_);
      const auto element = reference ? object(*reference, depth + 1) : std::nullopt;
      if (!element) return std::nullopt;
      list.append(*element);
    }
    return QVariant(list);
  }

  std::optional<QVariant> dictionary(const Head& head, int depth) {
    QVariantMap map;
    for (quint64 i = 0; i < head.count; ++i) {
      const auto keyReference = numberAt(head.place + i * referenceSize_, referenceSize_);
      const auto reference = numberAt(head.place + (head.count + i) * referenceSize_, referenceSize_);
      const auto key = keyReference ? object(*keyReference, depth + 1) : std::nullopt;
      const auto value = reference ? object(*reference, depth + 1) : std::nullopt;
      if (!key || !value || key->typeId() != QMetaType::QString) return std::nullopt;
      map.insert(key->toString(), *value);
    }
    return QVariant(map);
  }

  const QByteArray& data_;
  quint64 placeSize_ = 0;      // of an entry in the table of places
  quint64 referenceSize_ = 0;  // of an object's index
  quint64 count_ = 0;          // of objects
  quint64 table_ = 0;          // where it begins
  int read_ = 0;
};

}  // namespace

std::optional<QVariant> valueOfBinaryPropertyList(const QByteArray& data) { return Reader(data).read(); }

}  // namespace velmora::platform
