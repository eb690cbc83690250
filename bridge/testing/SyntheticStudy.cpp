// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/testing/SyntheticStudy.h"

#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmdata/dcostrmb.h>
#include <dcmtk/dcmdata/dctk.h>

#include <stdexcept>
#include <vector>

namespace bridge_testing {

namespace {

void check(const OFCondition& condition) {
  if (condition.bad()) throw std::runtime_error(condition.text());
}

void put(DcmDataset& dataset, const DcmTagKey& tag, const QString& text) {
  check(dataset.putAndInsertString(tag, text.toUtf8().constData()));
}

void put(DcmDataset& dataset, const DcmTagKey& tag, QDate day) {
  put(dataset, tag, day.isValid() ? day.toString(QStringLiteral("yyyyMMdd")) : QString());
}

QByteArray bytesOf(DcmFileFormat& file) {
  check(file.validateMetaInfo(EXS_LittleEndianExplicit));
  const Uint32 size = file.calcElementLength(EXS_LittleEndianExplicit, EET_ExplicitLength);
  QByteArray bytes(static_cast<qsizetype>(size) + 1024, '\0');
  DcmOutputBufferStream stream(bytes.data(), bytes.size());
  file.transferInit();
  check(file.write(stream, EXS_LittleEndianExplicit, EET_ExplicitLength, nullptr));
  file.transferEnd();
  bytes.truncate(static_cast<qsizetype>(stream.tell()));
  return bytes;
}

}  // namespace

bridge::Study inventedStudy(int number) {
  bridge::Study study;
  study.studyInstanceUID = QStringLiteral("2.25.4711.%1").arg(number);
  study.patientID = QStringLiteral("P-%1").arg(number);
  study.patientName = QStringLiteral("Lindqvist^Maja");
  study.birthDate = QDate(2015, 4, 12);
  study.sex = QStringLiteral("F");
  study.studyDate = QDate(2024, 3, 1);
  study.studyTime = QStringLiteral("101500");
  study.studyID = QString::number(number);
  study.accessionNumber = QStringLiteral("A-%1").arg(number);
  study.referringPhysician = QStringLiteral("Berg^Anna");
  study.description = QStringLiteral("Left hand");
  return study;
}

QString syntheticUID(const bridge::Study& study, int number) {
  return QStringLiteral("%1.1.%2").arg(study.studyInstanceUID).arg(number);
}

QByteArray syntheticStudy(const bridge::Study& study, int number, int pixels) {
  DcmFileFormat file;
  DcmDataset& dataset = *file.getDataset();
  put(dataset, DCM_SpecificCharacterSet, QStringLiteral("ISO_IR 192"));
  put(dataset, DCM_SOPClassUID, SecondaryCaptureClass);
  put(dataset, DCM_SOPInstanceUID, syntheticUID(study, number));
  put(dataset, DCM_StudyDate, study.studyDate);
  put(dataset, DCM_StudyTime, study.studyTime);
  put(dataset, DCM_AccessionNumber, study.accessionNumber);
  put(dataset, DCM_Modality, QStringLiteral("CR"));
  put(dataset, DCM_ConversionType, QStringLiteral("WSD"));
  put(dataset, DCM_ReferringPhysicianName, study.referringPhysician);
  put(dataset, DCM_StudyDescription, study.description);
  put(dataset, DCM_PatientName, study.patientName);
  put(dataset, DCM_PatientID, study.patientID);
  put(dataset, DCM_IssuerOfPatientID, study.issuerOfPatientID);
  put(dataset, DCM_PatientBirthDate, study.birthDate);
  put(dataset, DCM_PatientSex, study.sex);
  put(dataset, DCM_StudyInstanceUID, study.studyInstanceUID);
  put(dataset, DCM_SeriesInstanceUID, study.studyInstanceUID + QStringLiteral(".1"));
  put(dataset, DCM_StudyID, study.studyID);
  put(dataset, DCM_SeriesNumber, QStringLiteral("1"));
  put(dataset, DCM_InstanceNumber, QString::number(number));
  // Both have to be there, and are not known of a picture of nobody.
  put(dataset, DCM_PatientOrientation, QString());
  put(dataset, DCM_ImageLaterality, QStringLiteral("U"));
  const Uint16 side = static_cast<Uint16>(pixels);
  check(dataset.putAndInsertUint16(DCM_SamplesPerPixel, 1));
  put(dataset, DCM_PhotometricInterpretation, QStringLiteral("MONOCHROME2"));
  check(dataset.putAndInsertUint16(DCM_Rows, side));
  check(dataset.putAndInsertUint16(DCM_Columns, side));
  check(dataset.putAndInsertUint16(DCM_BitsAllocated, 8));
  check(dataset.putAndInsertUint16(DCM_BitsStored, 8));
  check(dataset.putAndInsertUint16(DCM_HighBit, 7));
  check(dataset.putAndInsertUint16(DCM_PixelRepresentation, 0));
  std::vector<Uint8> grey(static_cast<std::size_t>(side) * side);
  for (std::size_t index = 0; index < grey.size(); ++index) grey[index] = static_cast<Uint8>(index % 251);
  check(dataset.putAndInsertUint8Array(DCM_PixelData, grey.data(), static_cast<unsigned long>(grey.size())));
  return bytesOf(file);
}

}  // namespace bridge_testing
