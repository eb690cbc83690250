// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/pacs/DicomJson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QStringList>

#include "bridge/dicom/DicomText.h"

namespace bridge {
namespace {

using velmora::base::Failure;
using velmora::base::Result;

QString textOf(const QJsonValue& value) {
  if (value.isDouble()) {
    const qint64 number = value.toInteger(-1);
    return number < 0 ? QString() : QString::number(number);
  }
  // A server that writes a name as a data set does is understood too.
  if (!value.isObject()) return value.toString();
  QStringList groups;
  for (const char* group : {"Alphabetic", "Ideographic", "Phonetic"}) {
    groups.append(value.toObject().value(QLatin1String(group)).toString());
  }
  return withoutEmptyGroups(groups.join(QLatin1Char('=')));
}

}  // namespace

QString jsonKey(Tag tag) { return QStringLiteral("%1").arg(tag, 8, 16, QLatin1Char('0')).toUpper(); }

QString jsonText(const QJsonObject& dataset, Tag tag) {
  QJsonValue attribute = dataset.value(jsonKey(tag));
  if (attribute.isUndefined()) attribute = dataset.value(jsonKey(tag).toLower());
  QStringList texts;
  const QJsonArray values = attribute.toObject().value(QLatin1String("Value")).toArray();
  for (const auto& value : values) texts.append(textOf(value));
  return texts.join(QLatin1Char('\\'));
}

Result<QList<Study>> studiesFromJson(const QByteArray& json) {
  const QJsonDocument document = QJsonDocument::fromJson(json);
  if (!document.isArray())
    return Failure{QStringLiteral("the archive's answer is no list of studies in JSON")};
  QList<Study> studies;
  const QJsonArray elements = document.array();
  for (const auto& element : elements) {
    QMap<Tag, QString> texts;
    for (const Tag tag : StudyAttributes) texts.insert(tag, jsonText(element.toObject(), tag));
    const Study study = studyOf(texts);
    if (study.studyInstanceUID.isEmpty()) {
      return Failure{QStringLiteral("the archive's answer holds a study without a Study Instance UID")};
    }
    studies.append(study);
  }
  return studies;
}

}  // namespace bridge
