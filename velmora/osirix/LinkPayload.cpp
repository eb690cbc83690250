// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/osirix/LinkPayload.h"

#include "velmora/osirix/LinkProtocol.h"

namespace velmora::link {

QVariantMap replyPayload(const ChartExport& chart, const platform::DateFormatter& formatter) {
  QVariantMap payload;
  if (!chart.name.isNull()) payload.insert(Name, chart.name);
  if (chart.studyID.isValid()) payload.insert(OsiriXStudyID, chart.studyID);
  payload.insert(Identifier, chart.identifier);
  payload.insert(StudyDescription, chart.description);
  const QDateTime birth = formatter.dateFromString(chart.birthDate);
  if (birth.isValid()) payload.insert(DateOfBirth, birth);
  const QDateTime exam = formatter.dateFromString(chart.examDate);
  if (exam.isValid()) payload.insert(DateOfStudy, exam);
  payload.insert(JPEG, chart.jpeg);
  return payload;
}

QString fileNameIdentifier(const QString& identifier) {
  QString name = identifier;
  return name.replace(QLatin1Char('/'), QLatin1Char('-'));
}

}  // namespace velmora::link
