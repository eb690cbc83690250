// SPDX-License-Identifier: LGPL-3.0-or-later
#include "platform/bundles/PropertyList.h"

#include <QDateTime>
#include <QFileInfo>
#include <QXmlStreamReader>
#include <cmath>
#include <optional>

#include "base/CalendarDay.h"
#include "base/files/FileManager.h"
#include "base/log/Log.h"
#include "platform/bundles/PropertyListBinary.h"

namespace velmora::platform {

namespace {

constexpr qsizetype LargestPropertyList = 16 * 1024 * 1024;

/// Reads the XML form. The elements are those of Apple's PropertyList-1.0.dtd.
class XmlReader {
 public:
  explicit XmlReader(const QByteArray& data) : xml_(data) {}

  std::optional<QVariant> read() {
    if (!xml_.readNextStartElement() || xml_.name() != QLatin1String("plist")) return std::nullopt;
    if (!xml_.readNextStartElement()) return std::nullopt;
    std::optional<QVariant> whole = value(0);
    while (!xml_.atEnd()) xml_.readNext();
    if (xml_.hasError()) whole.reset();
    return whole;
  }

 private:
  /// The value of the element that has just begun, read to its end; nothing when it has none.
  std::optional<QVariant> value(int depth) {
    if (depth > DeepestPropertyList || ++read_ > MostPropertyListValues) return std::nullopt;
    const QString kind = xml_.name().toString();
    if (kind == QLatin1String("dict")) return dictionary(depth);
    if (kind == QLatin1String("array")) return array(depth);
    const QString text = xml_.readElementText();
    if (kind == QLatin1String("string")) return QVariant(text.isNull() ? QStringLiteral("") : text);
    if (kind == QLatin1String("true")) return QVariant(true);
    if (kind == QLatin1String("false")) return QVariant(false);
    if (kind == QLatin1String("data")) return data(text);
    if (kind == QLatin1String("integer")) return integer(text.trimmed());
    if (kind == QLatin1String("real")) return real(text.trimmed());
    if (kind == QLatin1String("date")) return date(text.trimmed());
    return std::nullopt;
  }

  std::optional<QVariant> dictionary(int depth) {
    QVariantMap map;
    while (xml_.readNextStartElement()) {
      if (xml_.name() != QLatin1String("key")) return std::nullopt;
      const QString key = xml_.readElementText();
      if (!xml_.readNextStartElement()) return std::nullopt;
      const std::optional<QVariant> held = value(depth + 1);
      if (!held) return std::nullopt;
      map.insert(key, *held);
    }
    return QVariant(map);
  }

  std::optional<QVariant> array(int depth) {
    QVariantList list;
    while (xml_.readNextStartElement()) {
      const std::optional<QVariant> element = value(depth + 1);
      if (!element) return std::nullopt;
      list.append(*element);
    }
    return QVariant(list);
  }

  static std::optional<QVariant> data(const QString& text) {
    const QByteArray encoded = text.simplified().remove(QLatin1Char(' ')).toLatin1();
    const auto decoded = QByteArray::fromBase64Encoding(encoded, QByteArray::AbortOnBase64DecodingErrors);
    return decoded ? std::optional<QVariant>(*decoded) : std::nullopt;
  }

  static std::optional<QVariant> integer(const QString& text) {
    bool isNumber = false;
    const bool hexadecimal = text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive);
    const qint64 number = text.toLongLong(&isNumber, hexadecimal ? 16 : 10);
    return isNumber ? std::optional<QVariant>(number) : std::nullopt;
  }

  static std::optional<QVariant> real(const QString& text) {
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? std::optional<QVariant>(number) : std::nullopt;
  }

  static std::optional<QVariant> date(const QString& text) {
    const QDateTime moment = base::momentInUtc(
        base::dayFromIso(text.left(10)), QTime::fromString(text.mid(10), QStringLiteral("'T'HH:mm:ss'Z'")));
    return moment.isValid() ? std::optional<QVariant>(moment) : std::nullopt;
  }

  QXmlStreamReader xml_;
  int read_ = 0;
};

}  // namespace

base::Result<QVariant> propertyListFromData(const QByteArray& data) {
  if (data.size() > LargestPropertyList)
    return base::Failure{QStringLiteral("The property list is too large.")};
  const std::optional<QVariant> value =
      data.startsWith("bplist") ? valueOfBinaryPropertyList(data) : XmlReader(data).read();
  if (!value) return base::Failure{QStringLiteral("It is not a property list, or it is damaged.")};
  return *value;
}

Bundle bundleWithPath(const QString& folder) {
  const QString contents = folder + QStringLiteral("/Contents");
  const QString list = QStringLiteral("/Info.plist");
  const bool deep = !QFileInfo::exists(folder + list) && QFileInfo::exists(contents + list);
  const QString path = (deep ? contents : folder) + list;
  const base::Result<QByteArray> read = base::FileManager().readFile(path, LargestPropertyList);
  const QVariant info = read.ok() ? propertyListFromData(*read).valueOr({}) : QVariant();
  if (info.typeId() != QMetaType::QVariantMap) {
    base::logLine(QStringLiteral("No information dictionary at %1: %2").arg(path, read.error()));
  }
  return Bundle(info.toMap(), deep ? contents + QStringLiteral("/Resources") : folder);
}

}  // namespace velmora::platform
