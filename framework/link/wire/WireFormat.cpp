// SPDX-License-Identifier: LGPL-3.0-or-later
#include "link/wire/WireFormat.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QDateTime>
#include <limits>
#include <optional>

namespace {

/// A date on the bus: a structure, to tell it from a whole number.
struct WireDate {
  qint64 milliseconds = 0;
};

QDBusArgument& operator<<(QDBusArgument& argument, const WireDate& date) {
  argument.beginStructure();
  argument << date.milliseconds;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, WireDate& date) {
  argument.beginStructure();
  argument >> date.milliseconds;
  argument.endStructure();
  return argument;
}

}  // namespace

Q_DECLARE_METATYPE(WireDate)

namespace velmora::link {
namespace {

// 0001-01-01T00:00:00.000Z and 9999-12-31T23:59:59.999Z: beyond them no calendar day can be shown.
constexpr qint64 EarliestDate = -62135596800000;
constexpr qint64 LatestDate = 253402300799999;

// What a value takes on the bus beyond its own bytes, rounded up: its signature, its length and the padding.
constexpr qint64 Overhead = 16;

// A hostile message may hold millions of things to leave out, under keys of any length.
constexpr qsizetype MostDescriptions = 8;
constexpr qsizetype LongestKeyShown = 60;

QString shortened(const QString& text) {
  return text.size() <= LongestKeyShown ? text : text.left(LongestKeyShown) + QStringLiteral("...");
}

/// The place of a value in the details; put into words only when needed.
struct Place {
  const Place* outer = nullptr;
  QString key;
  qsizetype index = -1;  ///< in a list, instead of a key

  QString text() const {
    if (!outer) return QString();
    const QString before = outer->text();
    if (index >= 0) return QStringLiteral("%1[%2]").arg(before).arg(index);
    return before.isEmpty() ? shortened(key) : before + QLatin1Char('.') + shortened(key);
  }
};

/// Turns the values of one message from or to their form on the bus; the two differ in dates only.
class Conversion {
 public:
  QVariantMap details(const QVariant& value) {
    const auto converted = convert(value, Place(), 1);
    return converted ? converted->toMap() : QVariantMap();
  }

  /// Bytes that the message takes on the bus, rounded up, as far as it was read.
  qint64 size() const { return size_; }
  bool tooLarge() const { return size_ > MaximumSize; }
  void addText(const QString& text) { size_ += text.toUtf8().size() + Overhead; }

  QStringList dropped() const {
    QStringList list = dropped_;
    if (droppedCount_ > list.size()) {
      list.append(QStringLiteral("%1 more").arg(droppedCount_ - list.size()));
    }
    return list;
  }

 private:
  /// The value in its other form; nothing when it was left out. `where` names the value; `depth` counts the
  /// enclosing lists and dictionaries, and the value itself if it is one.
  std::optional<QVariant> convert(const QVariant& value, const Place& where, int depth);
  std::optional<QVariant> convertArgument(const QDBusArgument& argument, const Place& where, int depth);
  std::optional<QVariant> convertList(const QVariantList& list, const Place& where, int depth);
  std::optional<QVariant> convertMap(const QVariantMap& map, const Place& where, int depth);
  std::optional<QVariant> dateFromBus(const QDBusArgument& argument, const Place& where);
  std::optional<QVariant> dateToBus(const QDateTime& date, const Place& where);

  void addEntry(QVariantMap& map, const QString& key, const QVariant& value, const Place& where, int depth);
  void addElement(QVariantList& list, qsizetype index, const QVariant& value, const Place& where, int depth);

  std::nullopt_t drop(const Place& where, const QString& reason) {
    ++droppedCount_;
    if (dropped_.size() < MostDescriptions) {
      const QString text = where.text();
      dropped_.append(text.isEmpty() ? reason : text + QStringLiteral(" (") + reason + QLatin1Char(')'));
    }
    return std::nullopt;
  }
  bool tooDeep(int depth) const { return depth > MaximumDepth; }

  qint64 size_ = 0;
  QStringList dropped_;
  qsizetype droppedCount_ = 0;
};

const QString TooDeep = QStringLiteral("nested too deeply");

/// The value inside any number of nested variants; the bus itself allows no more than 64.
QVariant unwrapped(QVariant value) {
  while (value.typeId() == qMetaTypeId<QDBusVariant>()) value = qvariant_cast<QDBusVariant>(value).variant();
  return value;
}

std::optional<QVariant> Conversion::convert(const QVariant& wrapped, const Place& where, int depth) {
  size_ += Overhead;
  const QVariant value = unwrapped(wrapped);
  const int type = value.typeId();
  switch (type) {
    case QMetaType::QString: {
      const QString text = value.toString();
      size_ += text.toUtf8().size();
      // A string on the bus ends at its first NUL: a truncated identifier would be another patient's.
      if (text.contains(QChar(u'\0'))) return drop(where, QStringLiteral("a string with a NUL in it"));
      return text;
    }
    case QMetaType::QByteArray:
      size_ += value.toByteArray().size();
      return value;
    case QMetaType::Bool:
    case QMetaType::LongLong:
    case QMetaType::Double:
      return value;
    case QMetaType::Float:
      return value.toDouble();
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
      return value.toLongLong();
    case QMetaType::ULong:
    case QMetaType::ULongLong:
      if (value.toULongLong() > static_cast<quint64>(std::numeric_limits<qint64>::max())) {
        return drop(where, QStringLiteral("a number above 2^63 - 1"));
      }
      return value.toLongLong();
    case QMetaType::QDateTime:
      return dateToBus(value.toDateTime(), where);
    case QMetaType::QStringList:
    case QMetaType::QVariantList:
      return convertList(value.toList(), where, depth);
    case QMetaType::QVariantMap:
      return convertMap(value.toMap(), where, depth);
    case QMetaType::UnknownType:
      return drop(where, QStringLiteral("no value"));
    default:
      break;
  }
  if (type == qMetaTypeId<QDBusArgument>()) {
    return convertArgument(qvariant_cast<QDBusArgument>(value), where, depth);
  }
  return drop(where, QStringLiteral("type ") + QString::fromLatin1(value.typeName()));
}

std::optional<QVariant> Conversion::convertArgument(const QDBusArgument& argument, const Place& where,
                                                    int depth) {
  const QString signature = argument.currentSignature();
  if (signature == QLatin1String("(x)")) return dateFromBus(argument, where);
  if (tooDeep(depth)) return drop(where, TooDeep);
  switch (argument.currentType()) {
    case QDBusArgument::ArrayType: {
      QVariantList list;
      argument.beginArray();
      for (qsizetype index = 0; !argument.atEnd() && !tooLarge(); ++index) {
        addElement(list, index, argument.asVariant(), where, depth);
      }
      argument.endArray();
      return list;
    }
    case QDBusArgument::MapType: {
      if (!signature.startsWith(QLatin1String("a{s"))) break;
      QVariantMap map;
      argument.beginMap();
      while (!argument.atEnd() && !tooLarge()) {
        argument.beginMapEntry();
        const QString key = argument.asVariant().toString();
        const QVariant value = argument.asVariant();
        argument.endMapEntry();
        addEntry(map, key, value, where, depth);
      }
      argument.endMap();
      return map;
    }
    default:
      break;
  }
  return drop(where, QStringLiteral("D-Bus type ") + shortened(signature));
}

std::optional<QVariant> Conversion::convertList(const QVariantList& list, const Place& where, int depth) {
  if (tooDeep(depth)) return drop(where, TooDeep);
  QVariantList result;
  for (qsizetype index = 0; index < list.size() && !tooLarge(); ++index) {
    addElement(result, index, list.at(index), where, depth);
  }
  return result;
}

std::optional<QVariant> Conversion::convertMap(const QVariantMap& map, const Place& where, int depth) {
  if (tooDeep(depth)) return drop(where, TooDeep);
  QVariantMap result;
  for (auto entry = map.cbegin(); entry != map.cend() && !tooLarge(); ++entry) {
    addEntry(result, entry.key(), entry.value(), where, depth);
  }
  return result;
}

void Conversion::addElement(QVariantList& list, qsizetype index, const QVariant& value, const Place& where,
                            int depth) {
  if (auto converted = convert(value, Place{&where, QString(), index}, depth + 1))
    list.append(*std::move(converted));
}

void Conversion::addEntry(QVariantMap& map, const QString& key, const QVariant& value, const Place& where,
                          int depth) {
  addText(key);
  if (key.contains(QChar(u'\0'))) {
    drop(where, QStringLiteral("a key with a NUL in it"));
    return;
  }
  if (auto converted = convert(value, Place{&where, key}, depth + 1)) map.insert(key, *std::move(converted));
}

std::optional<QVariant> Conversion::dateFromBus(const QDBusArgument& argument, const Place& where) {
  WireDate date;
  argument >> date;
  if (date.milliseconds < EarliestDate || date.milliseconds > LatestDate) {
    return drop(where, QStringLiteral("a date outside the years 1 to 9999"));
  }
  return QDateTime::fromMSecsSinceEpoch(date.milliseconds, Qt::UTC);
}

std::optional<QVariant> Conversion::dateToBus(const QDateTime& date, const Place& where) {
  if (!date.isValid()) return drop(where, QStringLiteral("an invalid date"));
  const qint64 milliseconds = date.toMSecsSinceEpoch();
  if (milliseconds < EarliestDate || milliseconds > LatestDate) {
    return drop(where, QStringLiteral("a date outside the years 1 to 9999"));
  }
  [[maybe_unused]] static const QMetaType registered = qDBusRegisterMetaType<WireDate>();
  return QVariant::fromValue(WireDate{milliseconds});
}

base::Failure tooLarge() { return {QStringLiteral("larger than %1 MiB").arg(MaximumSize / (1024 * 1024))}; }

}  // namespace

base::Result<Outgoing> toBus(const Message& message) {
  if (message.name.contains(QChar(u'\0')) || message.object.contains(QChar(u'\0'))) {
    return base::Failure{QStringLiteral("a NUL in its name or object")};
  }
  Conversion conversion;
  conversion.addText(message.name);
  conversion.addText(message.object);
  const QVariantMap details = conversion.details(message.userInfo);
  if (conversion.tooLarge()) return tooLarge();
  Outgoing outgoing{QDBusMessage::createSignal(Path, Interface, Member), conversion.dropped()};
  outgoing.message.setArguments({message.name, message.object, details});
  return outgoing;
}

base::Result<Incoming> fromBus(const QDBusMessage& signal) {
  const QVariantList arguments = signal.arguments();
  if (arguments.size() != 3 || arguments.at(0).typeId() != QMetaType::QString ||
      arguments.at(1).typeId() != QMetaType::QString) {
    return base::Failure{QStringLiteral("not name, object and details")};
  }
  Conversion conversion;
  conversion.addText(arguments.at(0).toString());
  conversion.addText(arguments.at(1).toString());
  QVariantMap details = conversion.details(arguments.at(2));
  if (conversion.tooLarge()) return tooLarge();
  return Incoming{{arguments.at(0).toString(), arguments.at(1).toString(), std::move(details)},
                  conversion.dropped()};
}

bool canBeMatched(const QString& text) {
  return !text.contains(QLatin1Char('\'')) && !text.contains(QChar(u'\0'));
}

}  // namespace velmora::link
