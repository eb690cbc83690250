// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/cli/StudyJson.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace velmora;

namespace bridge {

base::Result<QVariantMap> studyFromJson(const QByteArray& json) {
  QJsonParseError parse;
  const QJsonDocument document = QJsonDocument::fromJson(json, &parse);
  if (parse.error != QJsonParseError::NoError) {
    return base::Failure{
        QStringLiteral("not JSON, at byte %1: %2").arg(parse.offset).arg(parse.errorString())};
  }
  if (!document.isObject()) return base::Failure{QStringLiteral("not a JSON object")};
  QVariantMap study;
  const QJsonObject object = document.object();
  for (auto entry = object.begin(); entry != object.end(); ++entry) {
    if (!entry.value().isNull()) study.insert(entry.key(), entry.value().toVariant());
  }
  return study;
}

}  // namespace bridge
