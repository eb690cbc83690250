// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/dicom/Capture.h"

#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmdata/dcdeftag.h>
#include <dcmtk/dcmdata/dcfilefo.h>
#include <dcmtk/dcmdata/dcmetinf.h>
#include <dcmtk/dcmdata/dcostrmb.h>
#include <dcmtk/dcmdata/dcpixel.h>
#include <dcmtk/dcmdata/dcpixseq.h>
#include <dcmtk/dcmdata/dcpxitem.h>

#include <algorithm>
#include <memory>

#include "bridge/dicom/DicomText.h"
#include "bridge/dicom/JpegImage.h"
#include "bridge/dicom/Uid.h"

namespace bridge {
namespace {

using velmora::base::Failure;
using velmora::base::Result;

/// Empty for a year that no patient or study has ("00010101", "99991231"): archives write such dates when
/// they know none, and readers stumble over them.
QString dateText(const QDate& date) {
  return date.year() < 1000 || date.year() > 2999 ? QString() : dicomDate(date);
}

/// "+HHMM" (PS3.3 C.12.1.1.8).
QString offsetText(const QDateTime& moment) {
  const int minutes = moment.offsetFromUtc() / 60;
  const int size = std::abs(minutes);
  return QStringLiteral("%1%2%3")
      .arg(minutes < 0 ? QLatin1Char('-') : QLatin1Char('+'))
      .arg(size / 60, 2, 10, QLatin1Char('0'))
      .arg(size % 60, 2, 10, QLatin1Char('0'));
}

QString wholeOrEmpty(const QString& identifier) { return isShortString(identifier) ? identifier : QString(); }

/// What PS3.5 table 8.2.1-1 allows for baseline JPEG. Luminance with chrominances is YBR_FULL_422 whatever
/// the subsampling; decoders take that from the JPEG data.
QString photometricInterpretation(JpegImage::Colour colour) {
  switch (colour) {
    case JpegImage::Colour::Grey:
      return QStringLiteral("MONOCHROME2");
    case JpegImage::Colour::Rgb:
      return QStringLiteral("RGB");
    case JpegImage::Colour::YCbCr:
      break;
  }
  return QStringLiteral("YBR_FULL_422");
}

/// Fills a data set. The value representations are given here, so that nothing depends on the toolkit's
/// dictionary, a file that may be missing.
class CaptureWriter {
 public:
  CaptureWriter(const Study& study, const Chart& chart, const CaptureIdentity& identity,
                const JpegImage& image)
      : study_(study), chart_(chart), identity_(identity), image_(image), dataset_(*file_.getDataset()) {}

  Result<QByteArray> write() {
    // UTF-8 holds the text of any study (PS3.3 C.12.1.1.2).
    put(DCM_SpecificCharacterSet, EVR_CS, QStringLiteral("ISO_IR 192"));
    putPatient();
    putStudy();
    putSeriesAndEquipment();
    putImage();
    putPixels();
    return bytes();
  }

 private:
  void put(const DcmTagKey& key, DcmEVR vr, const QString& text) {
    const QByteArray utf8 = text.toUtf8();
    check(dataset_.putAndInsertString(DcmTag(key, DcmVR(vr)), utf8.constData()));
  }
  void put(const DcmTagKey& key, int number) {
    check(dataset_.putAndInsertUint16(DcmTag(key, DcmVR(EVR_US)), static_cast<Uint16>(number)));
  }
  void check(const OFCondition& condition) { failed_ = failed_ || condition.bad(); }

  // PS3.3 C.7.1.1
  void putPatient() {
    put(DCM_PatientName, EVR_PN, asPersonName(study_.patientName));
    put(DCM_PatientID, EVR_LO, study_.patientID);
    if (!study_.issuerOfPatientID.isEmpty()) put(DCM_IssuerOfPatientID, EVR_LO, study_.issuerOfPatientID);
    put(DCM_PatientBirthDate, EVR_DA, dateText(study_.birthDate));
    put(DCM_PatientSex, EVR_CS, isSex(study_.sex) ? study_.sex : QString());
  }

  // PS3.3 C.7.2.1
  void putStudy() {
    put(DCM_StudyInstanceUID, EVR_UI, study_.studyInstanceUID);
    put(DCM_StudyDate, EVR_DA, dateText(study_.studyDate));
    put(DCM_StudyTime, EVR_TM, isTime(study_.studyTime) ? study_.studyTime : QString());
    put(DCM_ReferringPhysicianName, EVR_PN, asPersonName(study_.referringPhysician));
    put(DCM_StudyID, EVR_SH, wholeOrEmpty(study_.studyID));
    put(DCM_AccessionNumber, EVR_SH, wholeOrEmpty(study_.accessionNumber));
    const QString description = asLongString(study_.description);
    if (!description.isEmpty()) put(DCM_StudyDescription, EVR_LO, description);
  }

  // PS3.3 C.7.3.1, C.7.5.1, C.8.6.1
  void putSeriesAndEquipment() {
    put(DCM_Modality, EVR_CS, QStringLiteral("OT"));
    put(DCM_SeriesInstanceUID, EVR_UI, identity_.seriesInstanceUID);
    put(DCM_SeriesNumber, EVR_IS, QString::number(identity_.seriesNumber));
    // A chart has no side. An empty or missing Laterality of the series would leave that open.
    put(DCM_ImageLaterality, EVR_CS, QStringLiteral("U"));
    const QString description = asLongString(chart_.description);
    if (!description.isEmpty()) put(DCM_SeriesDescription, EVR_LO, description);

    const QString application = asLongString(chart_.application);
    put(DCM_Manufacturer, EVR_LO, CaptureManufacturer);
    put(DCM_SecondaryCaptureDeviceManufacturer, EVR_LO, CaptureManufacturer);
    if (!application.isEmpty()) {
      put(DCM_ManufacturerModelName, EVR_LO, application);
      put(DCM_SecondaryCaptureDeviceManufacturerModelName, EVR_LO, application);
    }
    put(DCM_ConversionType, EVR_CS, QStringLiteral("WSD"));
  }

  // PS3.3 C.7.6.1, C.8.6.2, C.12.1
  void putImage() {
    const QString date = dateText(identity_.captured.date());
    const QString time = identity_.captured.time().toString(QStringLiteral("HHmmss.zzz"));
    put(DCM_SOPClassUID, EVR_UI, CaptureSopClassUID);
    put(DCM_SOPInstanceUID, EVR_UI, identity_.sopInstanceUID);
    put(DCM_InstanceNumber, EVR_IS, QString::number(identity_.instanceNumber));
    put(DCM_InstanceCreationDate, EVR_DA, date);
    put(DCM_InstanceCreationTime, EVR_TM, time);
    put(DCM_ContentDate, EVR_DA, date);
    put(DCM_ContentTime, EVR_TM, time);
    put(DCM_DateOfSecondaryCapture, EVR_DA, date);
    put(DCM_TimeOfSecondaryCapture, EVR_TM, time);
    put(DCM_TimezoneOffsetFromUTC, EVR_SH, offsetText(identity_.captured));
    put(DCM_ImageType, EVR_CS, QStringLiteral("DERIVED\\SECONDARY"));
    put(DCM_PatientOrientation, EVR_CS, QString());  // a chart has none
    // An archive that gives out de-identified pictures relies on this.
    put(DCM_BurnedInAnnotation, EVR_CS, chart_.showsPatient ? QStringLiteral("YES") : QStringLiteral("NO"));
    // JPEG compression is lossy.
    put(DCM_LossyImageCompression, EVR_CS, QStringLiteral("01"));
    put(DCM_LossyImageCompressionRatio, EVR_DS,
        QString::number(uncompressedSize() / double(chart_.jpeg.size()), 'g', 6));
    put(DCM_LossyImageCompressionMethod, EVR_CS, QStringLiteral("ISO_10918_1"));
  }

  double uncompressedSize() const { return double(image_.columns) * image_.rows * image_.samplesPerPixel(); }

  // PS3.3 C.7.6.3; PS3.5 8.2.1 and A.4: the frame is one fragment after an empty offset table.
  void putPixels() {
    put(DCM_SamplesPerPixel, image_.samplesPerPixel());
    put(DCM_PhotometricInterpretation, EVR_CS, photometricInterpretation(image_.colour));
    if (image_.samplesPerPixel() > 1) put(DCM_PlanarConfiguration, 0);
    put(DCM_Rows, image_.rows);
    put(DCM_Columns, image_.columns);
    put(DCM_BitsAllocated, 8);
    put(DCM_BitsStored, 8);
    put(DCM_HighBit, 7);
    put(DCM_PixelRepresentation, 0);

    const DcmTag item(DCM_Item, DcmVR(EVR_OB));
    auto sequence = std::make_unique<DcmPixelSequence>(DcmTag(DCM_PixelData, DcmVR(EVR_OB)));
    check(sequence->insert(new DcmPixelItem(item)));
    auto frame = std::make_unique<DcmPixelItem>(item);
    QByteArray bytes = chart_.jpeg;
    if (bytes.size() % 2 != 0) bytes.append('\0');
    check(frame->putUint8Array(reinterpret_cast<const Uint8*>(bytes.constData()),
                               static_cast<unsigned long>(bytes.size())));
    check(sequence->insert(frame.release()));
    auto pixels = std::make_unique<DcmPixelData>(DcmTag(DCM_PixelData, DcmVR(EVR_OB)));
    pixels->putOriginalRepresentation(EXS_JPEGProcess1, nullptr, sequence.release());
    check(dataset_.insert(pixels.release(), true));
  }

  Result<QByteArray> bytes() {
    check(file_.validateMetaInfo(EXS_JPEGProcess1));
    QByteArray result(chart_.jpeg.size() + 64 * 1024, '\0');  // the attributes are far smaller than that
    DcmOutputBufferStream stream(result.data(), result.size());
    file_.transferInit();
    check(file_.write(stream, EXS_JPEGProcess1, EET_ExplicitLength, nullptr));
    file_.transferEnd();
    stream.flush();
    void* start = nullptr;
    offile_off_t length = 0;
    stream.flushBuffer(start, length);
    result.truncate(static_cast<qsizetype>(length));
    if (failed_) return Failure{QStringLiteral("the DICOM object could not be written")};
    return result;
  }

  const Study& study_;
  const Chart& chart_;
  const CaptureIdentity& identity_;
  const JpegImage& image_;
  DcmFileFormat file_;
  DcmDataset& dataset_;
  bool failed_ = false;
};

Result<> acceptable(const Study& study, const Chart& chart, const CaptureIdentity& identity) {
  if (study.studyInstanceUID.isEmpty()) return Failure{QStringLiteral("the study has no Study Instance UID")};
  if (!isUid(study.studyInstanceUID))
    return Failure{QStringLiteral("the study's Study Instance UID is not valid")};
  if (study.patientID.isEmpty()) return Failure{QStringLiteral("the study has no Patient ID")};
  if (!isLongString(study.patientID))
    return Failure{QStringLiteral("the study's Patient ID is not valid in DICOM")};
  if (!isLongString(study.issuerOfPatientID)) {
    return Failure{QStringLiteral("the study's Issuer of Patient ID is not valid in DICOM")};
  }
  if (!isUid(identity.sopInstanceUID) || !isUid(identity.seriesInstanceUID)) {
    return Failure{QStringLiteral("the chart has no valid UIDs")};
  }
  if (!identity.captured.isValid()) return Failure{QStringLiteral("the chart has no date")};
  if (chart.jpeg.size() > MostJpegBytes) return Failure{QStringLiteral("the JPEG image is too large")};
  return {};
}

}  // namespace

Result<QByteArray> secondaryCapture(const Study& study, const Chart& chart, const CaptureIdentity& identity) {
  const Result<> accepted = acceptable(study, chart, identity);
  if (!accepted.ok()) return accepted.failure();
  const Result<JpegImage> image = jpegImage(chart.jpeg);
  if (!image.ok()) return image.failure();
  return CaptureWriter(study, chart, identity, *image).write();
}

}  // namespace bridge
