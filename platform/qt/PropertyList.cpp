// SPDX-License-Identifier: LGPL-3.0-or-later
#include "platform/qt/PropertyList.h"

#include <plist/plist.h>

#include <QDateTime>
#include <QTimeZone>
#include <cstdlib>
#include <memory>

#include "platform/FileManager.h"
#include "platform/Log.h"

namespace platform::qt {

namespace {

constexpr int DeepestNesting = 64;
/// Property lists count time from 2001-01-01T00:00:00Z.
constexpr qint64 SecondsTo2001 = 978307200;

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};

struct FreeNode {
  void operator()(void* node) const { plist_free(node); }
};
using OwnedNode = std::unique_ptr<void, FreeNode>;

QVariant valueOf(plist_t node, int depth);

QVariantMap dictionaryOf(plist_t node, int depth) {
  QVariantMap map;
  plist_dict_iter iterator = nullptr;
  plist_dict_new_iter(node, &iterator);
  const std::unique_ptr<void, Free> owned(iterator);
  for (;;) {
    char* key = nullptr;
    plist_t item = nullptr;
    plist_dict_next_item(node, iterator, &key, &item);
    const std::unique_ptr<char, Free> ownedKey(key);
    if (!item) return map;
    map.insert(QString::fromUtf8(key), valueOf(item, depth + 1));
  }
}

QVariantList arrayOf(plist_t node, int depth) {
  QVariantList list;
  const uint32_t count = plist_array_get_size(node);
  for (uint32_t i = 0; i < count; ++i) list.append(valueOf(plist_array_get_item(node, i), depth + 1));
  return list;
}

QVariant valueOf(plist_t node, int depth) {
  if (!node || depth > DeepestNesting) return {};
  switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
      uint8_t value = 0;
      plist_get_bool_val(node, &value);
      return value != 0;
    }
    case PLIST_UINT: {
      uint64_t value = 0;
      plist_get_uint_val(node, &value);
      return QVariant::fromValue(static_cast<qint64>(value));
    }
    case PLIST_REAL: {
      double value = 0;
      plist_get_real_val(node, &value);
      return value;
    }
    case PLIST_STRING: {
      char* value = nullptr;
      plist_get_string_val(node, &value);
      const std::unique_ptr<char, Free> owned(value);
      return QString::fromUtf8(value);
    }
    case PLIST_DATA: {
      char* value = nullptr;
      uint64_t length = 0;
      plist_get_data_val(node, &value, &length);
      const std::unique_ptr<char, Free> owned(value);
      return QByteArray(value, static_cast<qsizetype>(length));
    }
    case PLIST_DATE: {
      int32_t seconds = 0;
      int32_t microseconds = 0;
      plist_get_date_val(node, &seconds, &microseconds);
      return QDateTime::fromMSecsSinceEpoch((SecondsTo2001 + seconds) * 1000 + microseconds / 1000, QTimeZone::utc());
    }
    case PLIST_ARRAY:
      return arrayOf(node, depth);
    case PLIST_DICT:
      return dictionaryOf(node, depth);
    default:
      return {};
  }
}

/// A property list in its text form, whichever form it has. A key with a NUL in it is cut off there.
QByteArray asXml(const QByteArray& data) {
  if (!plist_is_binary(data.constData(), static_cast<uint32_t>(data.size()))) return data;
  plist_t root = nullptr;
  plist_from_bin(data.constData(), static_cast<uint32_t>(data.size()), &root);
  const OwnedNode owned(root);
  if (!root) return {};
  char* text = nullptr;
  uint32_t length = 0;
  plist_to_xml(root, &text, &length);
  const std::unique_ptr<char, void (*)(char*)> ownedText(text,
                                                         [](char* memory) { plist_to_xml_free(memory); });
  return QByteArray(text, static_cast<qsizetype>(length));
}

}  // namespace

QVariant propertyListFromData(const QByteArray& data) {
  if (data.isEmpty() || data.size() > 16 * 1024 * 1024) return {};
  const QByteArray xml = asXml(data);
  // libplist ends the process when it is asked for a string with a NUL in it, which only a damaged file has.
  if (xml.contains('\0')) return {};
  plist_t root = nullptr;
  plist_from_xml(xml.constData(), static_cast<uint32_t>(xml.size()), &root);
  const OwnedNode owned(root);
  return valueOf(root, 0);
}

Bundle bundleWithPath(const QString& folder) {
  const QString path = folder + QStringLiteral("/Info.plist");
  QByteArray data;
  const FileResult read = FileManager().readFile(path, data, 16 * 1024 * 1024);
  QVariant info;
  if (read.ok()) info = propertyListFromData(data);
  if (info.typeId() != QMetaType::QVariantMap) {
    logLine(QStringLiteral("No information dictionary at %1: %2").arg(path, read.error));
  }
  return Bundle(info.toMap(), folder);
}

}  // namespace platform::qt
