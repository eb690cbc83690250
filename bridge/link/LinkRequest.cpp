// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/link/LinkRequest.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include "bridge/link/LinkDates.h"
#include "link/protocol/LinkProtocol.h"

namespace protocol = velmora::link;

namespace bridge {
namespace {

RequestResult failure(const QString& reason) { return {{}, reason}; }

}  // namespace

RequestResult studyFromJson(const QByteArray& json) {
  QJsonParseError parse;
  const QJsonDocument document = QJsonDocument::fromJson(json, &parse);
  if (parse.error != QJsonParseError::NoError) {
    return failure(QStringLiteral("not JSON, at byte %1: %2").arg(parse.offset).arg(parse.errorString()));
  }
  if (!document.isObject()) return failure(QStringLiteral("not a JSON object"));
  QVariantMap study;
  const QJsonObject object = document.object();
  for (auto entry = object.begin(); entry != object.end(); ++entry) {
    if (!entry.value().isNull()) study.insert(entry.key(), entry.value().toVariant());
  }
  return {study, QString()};
}

RequestResult linkRequest(const QVariantMap& study) {
  if (!study.contains(protocol::Identifier))
    return failure(QStringLiteral("the patient's identifier is missing"));
  QVariantMap request;
  for (auto entry = study.begin(); entry != study.end(); ++entry) {
    const QString& key = entry.key();
    const bool isText = entry.value().typeId() == QMetaType::QString;
    const QString text = entry.value().toString();
    if (key == protocol::Identifier || key == protocol::Name) {
      if (!isText) return failure(key + QStringLiteral(" is not a string"));
      request.insert(key, text);
    } else if (key == protocol::DateOfBirth || key == protocol::DateOfStudy) {
      const auto noon = isText ? noonOfDay(text) : std::nullopt;
      if (!noon) {
        return failure(QStringLiteral("%1: \"%2\" is not a date of the form YYYY-MM-DD").arg(key, text));
      }
      request.insert(key, *noon);
    } else if (key == protocol::OsiriXStudyID) {
      request.insert(key, entry.value());
    } else {
      return failure(QStringLiteral("a link request has no key \"%1\"").arg(key));
    }
  }
  if (request.value(protocol::Identifier).toString().isEmpty()) {
    return failure(QStringLiteral("the patient's identifier is empty"));
  }
  return {request, QString()};
}

bool isBundleIdentifier(const QString& text) {
  static const QRegularExpression form(QStringLiteral("\\A[A-Za-z0-9._-]+\\z"));
  return form.match(text).hasMatch();
}

}  // namespace bridge
