// SPDX-License-Identifier: LGPL-3.0-or-later
#include "link/protocol/LinkPayload.h"

#include <QMetaType>

#include "base/CalendarDay.h"
#include "link/protocol/LinkProtocol.h"

namespace velmora::link {

QVariantMap replyPayload(const ChartExport& chart) {
  QVariantMap payload;
  if (!chart.name.isNull()) payload.insert(Name, chart.name);
  if (chart.studyID.isValid()) payload.insert(OsiriXStudyID, chart.studyID);
  payload.insert(Identifier, chart.identifier);
  payload.insert(StudyDescription, chart.description);
  if (chart.birthDate.isValid()) payload.insert(DateOfBirth, chart.birthDate);
  if (chart.examDate.isValid()) payload.insert(DateOfStudy, chart.examDate);
  payload.insert(JPEG, chart.jpeg);
  return payload;
}

base::Result<QVariantMap> requestPayload(const QVariantMap& study) {
  if (!study.contains(Identifier))
    return base::Failure{QStringLiteral("the patient's identifier is missing")};
  QVariantMap request;
  for (auto entry = study.begin(); entry != study.end(); ++entry) {
    const QString& key = entry.key();
    const bool isText = entry.value().typeId() == QMetaType::QString;
    const QString text = entry.value().toString();
    if (key == Identifier || key == Name) {
      if (!isText) return base::Failure{key + QStringLiteral(" is not a string")};
      request.insert(key, text);
    } else if (key == DateOfBirth || key == DateOfStudy) {
      const QDateTime noon = isText ? base::noonOf(base::dayFromIso(text)) : QDateTime();
      if (!noon.isValid()) {
        return base::Failure{
            QStringLiteral("%1: \"%2\" is not a date of the form YYYY-MM-DD").arg(key, text)};
      }
      request.insert(key, noon);
    } else if (key == OsiriXStudyID) {
      request.insert(key, entry.value());
    } else {
      return base::Failure{QStringLiteral("a link request has no key \"%1\"").arg(key)};
    }
  }
  if (request.value(Identifier).toString().isEmpty()) {
    return base::Failure{QStringLiteral("the patient's identifier is empty")};
  }
  return request;
}

LinkRequest readRequest(const QVariantMap& payload) {
  const auto date = [&payload](const QString& key) {
    const QVariant value = payload.value(key);
    return value.typeId() == QMetaType::QDateTime ? value.toDateTime() : QDateTime();
  };
  return {payload.value(Identifier), payload.value(Name).toString(), date(DateOfBirth), date(DateOfStudy),
          payload.value(OsiriXStudyID)};
}

QVariantMap requestKeysOnly(const QVariantMap& payload) {
  QVariantMap request;
  for (const QString& key : {Identifier, Name, DateOfBirth, DateOfStudy, OsiriXStudyID}) {
    const auto found = payload.constFind(key);
    if (found != payload.constEnd()) request.insert(key, *found);
  }
  return request;
}

QString fileNameIdentifier(const QString& identifier) {
  QString name = identifier;
  return name.replace(QLatin1Char('/'), QLatin1Char('-'));
}

}  // namespace velmora::link
