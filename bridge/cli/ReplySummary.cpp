// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/cli/ReplySummary.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonValue>
#include <QStringList>
#include <cmath>

#include "base/CalendarDay.h"
#include "base/log/Escape.h"
#include "link/protocol/LinkProtocol.h"
#include "link/protocol/LinkReply.h"

using namespace velmora;

namespace bridge {
namespace {

QJsonValue jsonValue(const QVariant& value) {
  switch (value.typeId()) {
    case QMetaType::QDateTime: {
      const QDateTime date = value.toDateTime();
      return QJsonObject{{QStringLiteral("date"), base::localDayOf(date).toString(Qt::ISODate)},
                         {QStringLiteral("instant"), date.toUTC().toString(Qt::ISODateWithMs)}};
    }
    case QMetaType::QByteArray:
      return QJsonObject{{QStringLiteral("base64"), QString::fromLatin1(value.toByteArray().toBase64())}};
    case QMetaType::QVariantList: {
      QJsonArray array;
      for (const QVariant& element : value.toList()) array.append(jsonValue(element));
      return array;
    }
    case QMetaType::QVariantMap: {
      QJsonObject object;
      const QVariantMap map = value.toMap();
      for (auto entry = map.begin(); entry != map.end(); ++entry) {
        object.insert(entry.key(), jsonValue(entry.value()));
      }
      return object;
    }
    case QMetaType::Double:
      if (!std::isfinite(value.toDouble())) return QString::number(value.toDouble());
      return value.toDouble();
    default:
      return QJsonValue::fromVariant(value);
  }
}

/// With backslashes doubled, so that escapes are unambiguous.
QString escaped(QString text) {
  return base::escaped(text.replace(QLatin1Char('\\'), QStringLiteral("\\\\")));
}

/// A value in a column of the summary: a string as it is, anything else as JSON.
QString column(const QVariant& value) {
  if (!value.isValid()) return QString();
  if (value.typeId() == QMetaType::QString) return escaped(value.toString());
  const QByteArray json = QJsonDocument(QJsonArray{jsonValue(value)}).toJson(QJsonDocument::Compact);
  return escaped(QString::fromUtf8(json.mid(1, json.size() - 2)));
}

}  // namespace

QJsonObject jsonOf(const QVariantMap& reply) {
  QVariantMap others = reply;
  if (!link::readReply(reply).jpeg.isEmpty()) others.remove(link::JPEG);
  return jsonValue(others).toObject();
}

QString summaryOf(const QVariantMap& reply, const QString& number, const QDateTime& arrival) {
  const link::LinkReply read = link::readReply(reply);
  QStringList columns{number,
                      arrival.toString(Qt::ISODateWithMs),
                      column(reply.value(link::Identifier)),
                      column(reply.value(link::StudyDescription)),
                      QStringLiteral("%1 bytes").arg(read.jpeg.size()),
                      column(reply.value(link::OsiriXStudyID))};
  if (!read.complaints.isEmpty()) columns.append(read.complaints.join(QStringLiteral(", ")));
  return columns.join(QLatin1Char('\t'));
}

}  // namespace bridge
