// SPDX-License-Identifier: LGPL-3.0-or-later
#include "link/protocol/LinkPayload.h"

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

QString fileNameIdentifier(const QString& identifier) {
  QString name = identifier;
  return name.replace(QLatin1Char('/'), QLatin1Char('-'));
}

}  // namespace velmora::link
