// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/pacs/QidoAnswer.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QRegularExpression>
#include <QStringList>

namespace bridge {
namespace {

// PS3.6: the tags of the attributes that make a Study.
constexpr const char* StudyDate = "00080020";
constexpr const char* StudyTime = "00080030";
constexpr const char* AccessionNumber = "00080050";
constexpr const char* ReferringPhysician = "00080090";
constexpr const char* StudyDescription = "00081030";
constexpr const char* PatientName = "00100010";
constexpr const char* PatientID = "00100020";
constexpr const char* IssuerOfPatientID = "00100021";
constexpr const char* BirthDate = "00100030";
constexpr const char* Sex = "00100040";
constexpr const char* StudyInstanceUID = "0020000D";
constexpr const char* StudyID = "00200010";

/// Leading and trailing spaces are padding, and a NUL ends a padded UID (PS3.5 6.2).
QString withoutPadding(const QString& text) {
  qsizetype end = text.size();
  while (end > 0 && (text.at(end - 1) == QLatin1Char(' ') || text.at(end - 1) == QChar(0))) --end;
  qsizetype begin = 0;
  while (begin < end && text.at(begin) == QLatin1Char(' ')) ++begin;
  return text.mid(begin, end - begin);
}

/// "YYYYMMDD", or "YYYY.MM.DD" as it was written before DICOM 3.0 (PS3.5 6.2).
QDate dayOf(QString text) {
  if (text.size() == 10 && text.at(4) == QLatin1Char('.') && text.at(7) == QLatin1Char('.')) {
    text.remove(QLatin1Char('.'));
  }
  return QDate::fromString(text, QStringLiteral("yyyyMMdd"));
}

bool isUid(const QString& text) {
  static const QRegularExpression form(QStringLiteral("\\A[0-9]+(\\.[0-9]+)*\\z"));
  return text.size() <= 64 && form.match(text).hasMatch();
}

Study studyOf(const QJsonObject& dataset) {
  Study study;
  study.studyInstanceUID = firstText(dataset, StudyInstanceUID);
  study.patientID = firstText(dataset, PatientID);
  study.issuerOfPatientID = firstText(dataset, IssuerOfPatientID);
  study.patientName = firstName(dataset, PatientName);
  study.birthDate = dayOf(firstText(dataset, BirthDate));
  const QString sex = firstText(dataset, Sex);
  if (sex == QLatin1String("M") || sex == QLatin1String("F") || sex == QLatin1String("O")) study.sex = sex;
  study.studyDate = dayOf(firstText(dataset, StudyDate));
  study.studyTime = firstText(dataset, StudyTime);
  study.studyID = firstText(dataset, StudyID);
  study.accessionNumber = firstText(dataset, AccessionNumber);
  study.referringPhysician = firstName(dataset, ReferringPhysician);
  study.description = firstText(dataset, StudyDescription);
  return study;
}

}  // namespace

QList<QByteArray> studyAttributes() {
  return {StudyDate,        StudyTime,   AccessionNumber, ReferringPhysician,
          StudyDescription, PatientName, PatientID,       IssuerOfPatientID,
          BirthDate,        Sex,         StudyID};
}

QJsonValue firstValue(const QJsonObject& dataset, const char* tag) {
  QJsonValue attribute = dataset.value(QLatin1String(tag));
  if (attribute.isUndefined()) attribute = dataset.value(QString::fromLatin1(tag).toLower());
  const QJsonArray values = attribute.toObject().value(QLatin1String("Value")).toArray();
  return values.isEmpty() ? QJsonValue(QJsonValue::Undefined) : values.first();
}

QString firstText(const QJsonObject& dataset, const char* tag) {
  const QJsonValue value = firstValue(dataset, tag);
  if (value.isDouble()) return value.toVariant().toString();
  return withoutPadding(value.toString());
}

QString firstName(const QJsonObject& dataset, const char* tag) {
  const QJsonValue value = firstValue(dataset, tag);
  // A server that writes the name as DICOM writes it is understood too.
  if (value.isString()) return withoutPadding(value.toString());
  const QJsonObject groups = value.toObject();
  QStringList parts;
  for (const char* group : {"Alphabetic", "Ideographic", "Phonetic"}) {
    const QString part = withoutPadding(groups.value(QLatin1String(group)).toString());
    // Delimiters alone say nothing. A server that cannot write a script in its answers leaves just them.
    parts.append(part.count(QLatin1Char('^')) == part.size() ? QString() : part);
  }
  while (!parts.isEmpty() && parts.last().isEmpty()) parts.removeLast();
  return parts.join(QLatin1Char('='));
}

QidoAnswer studiesFromJson(const QByteArray& json) {
  QidoAnswer answer;
  QJsonParseError error;
  const QJsonDocument document = QJsonDocument::fromJson(json, &error);
  if (error.error != QJsonParseError::NoError || !document.isArray()) {
    answer.error = QStringLiteral("the archive's answer is no list of studies in JSON");
    return answer;
  }
  const QJsonArray elements = document.array();
  for (const auto& element : elements) {
    const Study study = studyOf(element.toObject());
    if (!isUid(study.studyInstanceUID)) {
      answer.studies.clear();
      answer.error = QStringLiteral("the archive's answer holds a study without a Study Instance UID");
      return answer;
    }
    answer.studies.append(study);
  }
  return answer;
}

}  // namespace bridge
