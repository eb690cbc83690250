// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/dicom/StudyDataset.h"

#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmdata/dcelem.h>
#include <dcmtk/dcmdata/dcitem.h>

#include "bridge/dicom/CharacterSet.h"
#include "bridge/dicom/StudyValues.h"

namespace bridge {
namespace {

/// The first value, without the padding and without what no text of one line has.
QString firstValue(QString text) {
  const qsizetype end = text.indexOf(QLatin1Char('\\'));
  if (end >= 0) text.truncate(end);
  text.removeIf([](QChar c) { return c.category() == QChar::Other_Control; });
  text = text.trimmed().left(LongestText);
  if (!text.isEmpty() && text.back().isHighSurrogate()) text.chop(1);
  return text;
}

/// A DICOM date, "YYYYMMDD", or as it was written before 1993, "YYYY.MM.DD" (PS3.5 6.2).
QDate dateFrom(const QString& text) {
  QString digits = text;
  if (digits.size() == 10 && digits.at(4) == QLatin1Char('.') && digits.at(7) == QLatin1Char('.')) {
    digits.remove(7, 1).remove(4, 1);
  }
  if (digits.size() != 8) return QDate();
  for (const QChar c : std::as_const(digits)) {
    if (c < QLatin1Char('0') || c > QLatin1Char('9')) return QDate();
  }
  return QDate(digits.left(4).toInt(), digits.mid(4, 2).toInt(), digits.mid(6, 2).toInt());
}

QByteArray bytesOf(DcmItem& dataset, Tag tag) {
  DcmElement* element = nullptr;
  const DcmTagKey key(static_cast<Uint16>(tag >> 16), static_cast<Uint16>(tag & 0xffff));
  if (dataset.findAndGetElement(key, element).bad() || !element) return {};
  char* text = nullptr;
  Uint32 length = 0;
  if (element->getString(text, length).good()) {
    return text ? QByteArray(text, static_cast<qsizetype>(length)) : QByteArray();
  }
  Uint8* bytes = nullptr;  // of a kind that whoever wrote the data set did not know
  if (element->getUint8Array(bytes).bad() || !bytes) return {};
  return QByteArray(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(element->getLength()));
}

}  // namespace

Study studyOf(const QMap<Tag, QByteArray>& values) {
  const QByteArray characterSet = values.value(tags::SpecificCharacterSet).left(LongestValue);
  const auto text = [&](Tag tag) {
    return firstValue(decodedText(values.value(tag).left(LongestValue), characterSet));
  };
  // Of kinds that are in ASCII whatever the character set.
  const auto plain = [&](Tag tag) {
    return firstValue(QString::fromLatin1(values.value(tag).left(LongestValue)));
  };
  Study study;
  study.studyInstanceUID = plain(tags::StudyInstanceUID);
  study.patientID = text(tags::PatientID);
  study.issuerOfPatientID = text(tags::IssuerOfPatientID);
  study.patientName = text(tags::PatientName);
  study.birthDate = dateFrom(plain(tags::PatientBirthDate));
  const QString sex = plain(tags::PatientSex);
  if (sex == QStringLiteral("M") || sex == QStringLiteral("F") || sex == QStringLiteral("O")) study.sex = sex;
  study.studyDate = dateFrom(plain(tags::StudyDate));
  study.studyTime = plain(tags::StudyTime);
  study.studyID = text(tags::StudyID);
  study.accessionNumber = text(tags::AccessionNumber);
  study.referringPhysician = text(tags::ReferringPhysicianName);
  study.description = text(tags::StudyDescription);
  return study;
}

Study studyFrom(DcmItem& dataset) {
  QMap<Tag, QByteArray> values;
  for (const Tag tag : studyTags) values.insert(tag, bytesOf(dataset, tag));
  return studyOf(values);
}

}  // namespace bridge
