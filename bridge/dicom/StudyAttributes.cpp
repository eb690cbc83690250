// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/dicom/StudyAttributes.h"

#include <algorithm>
#include <optional>

#include "bridge/dicom/CharacterSet.h"
#include "bridge/dicom/DicomText.h"
#include "bridge/dicom/Uid.h"

namespace bridge {
namespace {

std::optional<QString> identifierIn(const QString& value) {
  const QString text = withoutPadding(value);
  const bool isTrusted =
      text.size() <= LongestText && isOneValue(text) && !text.contains(QChar::ReplacementCharacter);
  return isTrusted ? std::optional(text) : std::nullopt;
}

QString textIn(const QString& value) {
  QString text = value.section(QLatin1Char('\\'), 0, 0);
  text.removeIf([](QChar c) { return c.category() == QChar::Other_Control; });
  text = text.trimmed().left(LongestText);
  if (!text.isEmpty() && text.back().isHighSurrogate()) text.chop(1);
  return text;
}

QString asciiIn(const QString& value) {
  const QString text = textIn(value);
  const bool isAscii = std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
  return isAscii ? text : QString();
}

/// Whether the attribute's text is in the data set's character set. All others are in ASCII.
bool hasCharacterSet(Tag tag) {
  switch (tag) {
    case tags::AccessionNumber:
    case tags::ReferringPhysicianName:
    case tags::StudyDescription:
    case tags::PatientName:
    case tags::PatientID:
    case tags::IssuerOfPatientID:
    case tags::StudyID:
      return true;
    default:
      return false;
  }
}

}  // namespace

Study studyOf(const QMap<Tag, QString>& texts) {
  Study study;
  const QString uid = withoutPadding(texts.value(tags::StudyInstanceUID));
  if (isUid(uid)) study.studyInstanceUID = uid;
  const auto patientID = identifierIn(texts.value(tags::PatientID));
  const auto issuer = identifierIn(texts.value(tags::IssuerOfPatientID));
  if (patientID && issuer) {
    study.patientID = *patientID;
    study.issuerOfPatientID = *issuer;
  }
  study.patientName = withoutEmptyGroups(textIn(texts.value(tags::PatientName)));
  study.birthDate = dateFromDicom(withoutPadding(texts.value(tags::PatientBirthDate)));
  const QString sex = withoutPadding(texts.value(tags::PatientSex));
  if (isSex(sex)) study.sex = sex;
  study.studyDate = dateFromDicom(withoutPadding(texts.value(tags::StudyDate)));
  study.studyTime = asciiIn(texts.value(tags::StudyTime));
  study.studyID = identifierIn(texts.value(tags::StudyID)).value_or(QString());
  study.accessionNumber = identifierIn(texts.value(tags::AccessionNumber)).value_or(QString());
  study.referringPhysician = withoutEmptyGroups(textIn(texts.value(tags::ReferringPhysicianName)));
  study.description = textIn(texts.value(tags::StudyDescription));
  return study;
}

Study studyOf(const QMap<Tag, QByteArray>& values) {
  const QByteArray characterSet = values.value(tags::SpecificCharacterSet);
  QMap<Tag, QString> texts;
  for (const Tag tag : StudyAttributes) {
    const QByteArray value = values.value(tag);
    texts.insert(tag, hasCharacterSet(tag) ? decodedText(value, characterSet) : QString::fromLatin1(value));
  }
  return studyOf(texts);
}

}  // namespace bridge
