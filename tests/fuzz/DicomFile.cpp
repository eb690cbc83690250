// SPDX-License-Identifier: LGPL-3.0-or-later
#include <turbojpeg.h>

#include <array>
#include <memory>

#include "bridge/dicom/Capture.h"
#include "bridge/dicom/JpegImage.h"
#include "bridge/dicom/PersonName.h"
#include "bridge/dicom/StudyReader.h"
#include "bridge/dicom/Uid.h"
#include "tests/fuzz/FuzzTargets.h"

namespace {

bridge::CaptureIdentity identity() {
  static const QString object = bridge::uidOf(QStringLiteral("object"));
  static const QString series = bridge::uidOf(QStringLiteral("series"));
  return {object, series, 1, 1, QDateTime(QDate(2024, 5, 2), QTime(12, 0), Qt::OffsetFromUTC, 7200)};
}

/// One pixel of grey.
QByteArray smallJpeg() {
  const std::unique_ptr<void, int (*)(tjhandle)> compressor(tjInitCompress(), tjDestroy);
  const unsigned char pixel = 128;
  unsigned char* bytes = nullptr;
  unsigned long size = 0;
  fuzz::require(
      tjCompress2(compressor.get(), &pixel, 1, 1, 1, TJPF_GRAY, &bytes, &size, TJSAMP_GRAY, 90, 0) == 0,
      "a pixel can be compressed");
  const QByteArray jpeg(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size));
  tjFree(bytes);
  return jpeg;
}

/// What was written is of the same study and patient, and the frame is in it as it came.
void requireWellFiled(const QByteArray& file, const bridge::Study& study, const QByteArray& jpeg) {
  const auto again = bridge::studyFromBytes(file);
  fuzz::require(again.ok(), "what was written can be read");
  fuzz::require(again->studyInstanceUID == study.studyInstanceUID, "it is of the same study");
  fuzz::require(again->patientID == study.patientID, "it is of the same patient");
  fuzz::require(again->issuerOfPatientID == study.issuerOfPatientID, "and of the same issuer");
  fuzz::require(file.contains(jpeg), "the frame is the JPEG");
}

void readStudy(const QByteArray& input) {
  static const QByteArray jpeg = smallJpeg();
  const auto result = bridge::studyFromBytes(input);
  if (!result.ok()) return;
  const bridge::Study& study = *result;
  for (const QString& name : {study.patientName, study.referringPhysician}) {
    for (const QChar c : bridge::readablePersonName(name)) {
      fuzz::require(c.category() != QChar::Other_Control, "a name stays on its line");
    }
  }
  const bridge::Chart chart{jpeg, study.description, study.accessionNumber};
  const auto capture = bridge::secondaryCapture(study, chart, identity());
  if (capture.ok()) requireWellFiled(*capture, study, jpeg);
}

void readJpeg(const QByteArray& input) {
  const auto image = bridge::jpegImage(input);
  bridge::Study study;
  study.studyInstanceUID = QStringLiteral("1.2.3");
  study.patientID = QStringLiteral("1");
  const bridge::Chart chart{input, QStringLiteral("Chart"), QStringLiteral("org.velmora.growth")};
  const auto capture = bridge::secondaryCapture(study, chart, identity());
  fuzz::require(capture.ok() == image.ok(), "a sound JPEG becomes an object, another does not");
  if (!image.ok()) return;
  requireWellFiled(*capture, study, input);

  // A decoder sees what the object says.
  const std::unique_ptr<void, int (*)(tjhandle)> decompressor(tjInitDecompress(), tjDestroy);
  int width = 0;
  int height = 0;
  int sampling = 0;
  int colours = 0;
  tjDecompressHeader3(decompressor.get(), reinterpret_cast<const unsigned char*>(input.constData()),
                      static_cast<unsigned long>(input.size()), &width, &height, &sampling, &colours);
  if (colours < 0 || width == 0) return;  // an unusual sampling, which this decoder does not name
  fuzz::require(width == image->columns && height == image->rows, "the size is the decoder's");
  using Colour = bridge::JpegImage::Colour;
  const Colour expected = colours == TJCS_GRAY  ? Colour::Grey
                          : colours == TJCS_RGB ? Colour::Rgb
                                                : Colour::YCbCr;
  fuzz::require(image->colour == expected, "the colours are the decoder's");
}

/// The beginning of a DICOM file of this transfer syntax.
QByteArray beginning(const char* transferSyntax) {
  QByteArray uid(transferSyntax);
  if (uid.size() % 2 != 0) uid.append('\0');
  QByteArray bytes = QByteArray(128, '\0') + "DICM" + QByteArray("\x02\x00\x10\x00UI", 6);
  bytes.append(static_cast<char>(uid.size())).append('\0');
  return bytes + uid;
}

}  // namespace

void fuzz::dicomFile(const QByteArray& input) {
  readStudy(input);
  static const std::array<QByteArray, 4> beginnings{
      beginning("1.2.840.10008.1.2"), beginning("1.2.840.10008.1.2.1"), beginning("1.2.840.10008.1.2.2"),
      beginning("1.2.840.10008.1.2.1.99")};
  for (const QByteArray& each : beginnings) readStudy(each + input);
  readJpeg(input);
}
