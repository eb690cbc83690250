// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmdata/dcdeftag.h>
#include <dcmtk/dcmdata/dcfilefo.h>
#include <dcmtk/dcmdata/dcistrmb.h>
#include <dcmtk/dcmdata/dcpixel.h>
#include <dcmtk/dcmdata/dcpixseq.h>
#include <dcmtk/dcmdata/dcpxitem.h>
#include <dcmtk/dcmdata/dcuid.h>
#include <dcmtk/dcmjpeg/djdecode.h>

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QSet>
#include <limits>
#include <memory>

#include "bridge/dicom/StudyReader.h"
#include "bridge/dicom/Uid.h"
#include "orv/chart/JpegEncoder.h"
#include "tests/unit/bridge/dicom/DicomTesting.h"

using namespace velmora;

using namespace dicom_testing;
using bridge::Chart;
using bridge::Study;

namespace {

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

std::unique_ptr<DcmFileFormat> parsed(const QByteArray& file) {
  auto format = std::make_unique<DcmFileFormat>();
  DcmInputBufferStream stream;
  stream.setBuffer(file.constData(), file.size());
  stream.setEos();
  format->transferInit();
  EXPECT_TRUE(format->read(stream).good());
  format->transferEnd();
  return format;
}

QString valueOf(const QByteArray& file, const DcmTagKey& key) {
  OFString value;
  if (parsed(file)->getDataset()->findAndGetOFStringArray(key, value).bad()) return QString();
  return QString::fromUtf8(value.c_str());
}

/// The fragments of the pixel data, the offset table first.
QList<QByteArray> fragmentsOf(const QByteArray& file) {
  const auto format = parsed(file);
  DcmElement* element = nullptr;
  DcmPixelSequence* sequence = nullptr;
  const E_TransferSyntax syntax = format->getDataset()->getOriginalXfer();
  EXPECT_EQ(syntax, EXS_JPEGProcess1);
  EXPECT_TRUE(format->getDataset()->findAndGetElement(DCM_PixelData, element).good());
  EXPECT_TRUE(
      static_cast<DcmPixelData*>(element)->getEncapsulatedRepresentation(syntax, nullptr, sequence).good());
  QList<QByteArray> fragments;
  for (unsigned long i = 0; sequence && i < sequence->card(); ++i) {
    DcmPixelItem* item = nullptr;
    Uint8* bytes = nullptr;
    sequence->getItem(item, i);
    item->getUint8Array(bytes);
    fragments.append(
        QByteArray(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(item->getLength())));
  }
  return fragments;
}

/// The pixels as the DICOM toolkit decodes them, as its Photometric Interpretation says.
QByteArray decodedFrame(const QByteArray& file) {
  DJDecoderRegistration::registerCodecs(EDC_photometricInterpretation);
  const auto format = parsed(file);
  DcmDataset& dataset = *format->getDataset();
  EXPECT_TRUE(dataset.chooseRepresentation(EXS_LittleEndianExplicit, nullptr).good());
  const Uint8* bytes = nullptr;
  unsigned long count = 0;
  EXPECT_TRUE(dataset.findAndGetUint8Array(DCM_PixelData, bytes, &count).good());
  Uint16 rows = 0;
  Uint16 columns = 0;
  Uint16 samples = 0;
  dataset.findAndGetUint16(DCM_Rows, rows);
  dataset.findAndGetUint16(DCM_Columns, columns);
  dataset.findAndGetUint16(DCM_SamplesPerPixel, samples);
  const QByteArray pixels(reinterpret_cast<const char*>(bytes), qsizetype(rows) * columns * samples);
  DJDecoderRegistration::cleanup();
  return pixels;
}

QString complaintsOf(const QString& validator) {
  QStringList complaints;
  for (const QString& line : validator.split(QLatin1Char('\n'))) {
    if (line.contains(text("rror")) || line.contains(text("arning")) || line.contains(text("failed"))) {
      complaints.append(line);
    }
  }
  return complaints.join(QLatin1Char('\n'));
}

struct StudyCase {
  const char* name;
  Study study;
};

QList<StudyCase> studies() {
  Study bare;
  bare.studyInstanceUID = text("2.25.1");
  bare.patientID = text("1");
  bare.studyDate = QDate(2024, 5, 2);
  bare.studyTime = text("00");
  bare.studyID = text("1");

  Study japanese = study();
  japanese.patientName = text("Yamada^Tarou=山田^太郎=やまだ^たろう");
  japanese.referringPhysician = text("=鈴木^一郎");
  japanese.description = text("骨格検査");
  japanese.patientID = text("患者-1");

  Study latin = study();
  latin.patientName = text("Müller^Jörg");
  latin.issuerOfPatientID = text("Klinikum Köln");

  Study longest = study();
  longest.patientID = QString(64, QLatin1Char('9'));
  longest.issuerOfPatientID = QString(64, QLatin1Char('i'));
  longest.patientName = QString(32, QLatin1Char('a')) + text("^") + QString(31, QLatin1Char('b'));
  longest.accessionNumber = QString(16, QLatin1Char('8'));
  longest.studyID = QString(16, QLatin1Char('7'));
  longest.description = QString(64, QLatin1Char('d'));
  longest.studyInstanceUID = text("1.2.") + QString(60, QLatin1Char('3'));
  longest.birthDate = QDate(1000, 1, 1);
  longest.studyDate = QDate(2999, 12, 31);

  Study hostile = study();
  hostile.patientName = text("A\\B^\n\x1b[2J^^^^more^and=x=y=z=") + QString(500, QChar(0x4e00));
  hostile.referringPhysician = text("^^^^=^^=");
  hostile.description = text("a\\b\r\n\t") + QString(1000, QLatin1Char('d')) + QChar(0xd83d);
  hostile.accessionNumber = text("12345678901234567");
  hostile.sex = text("\\");
  hostile.birthDate = QDate(-4000, 1, 1);

  return {{"bare", bare},     {"usual", study()},   {"Japanese", japanese},
          {"Latin-1", latin}, {"longest", longest}, {"hostile", hostile}};
}

struct JpegCase {
  const char* name;
  JpegKind kind;
  const char* photometricInterpretation;
};
constexpr JpegCase jpegCases[]{{"4:4:4", JpegKind::Full, "YBR_FULL_422"},
                               {"4:2:0", JpegKind::Reduced420, "YBR_FULL_422"},
                               {"4:2:2", JpegKind::Reduced422, "YBR_FULL_422"},
                               {"grey", JpegKind::Grey, "MONOCHROME2"},
                               {"RGB", JpegKind::AdobeRgb, "RGB"}};

QByteArray capture(const Study& of, const Chart& chart) {
  const auto result = bridge::secondaryCapture(of, chart, identity());
  EXPECT_TRUE(result.ok()) << qPrintable(result.error());
  return result.valueOr({});
}

}  // namespace

TEST(Capture, IsFlawlessForEveryStudyAndEveryKindOfJpeg) {
  for (const StudyCase& each : studies()) {
    for (const JpegCase& image : jpegCases) {
      SCOPED_TRACE(std::string(each.name) + ", " + image.name);
      const QByteArray file = capture(each.study, chart(jpeg(image.kind)));
      const QString words = validatorsWords(file);
      EXPECT_EQ(complaintsOf(words), QString()) << qPrintable(words);
      EXPECT_TRUE(words.contains(text("SCImage"))) << qPrintable(words);
      const QString dump = dumpOf(file);
      EXPECT_FALSE(dump.contains(text("failed")) || dump.contains(text("W: ")) || dump.contains(text("E: ")))
          << qPrintable(dump);
    }
  }
}

TEST(Capture, ShowsThePixelsOfTheJpeg) {
  for (const JpegCase& image : jpegCases) {
    for (const QSize size : {QSize(61, 43), QSize(64, 48), QSize(1, 1), QSize(17, 2), QSize(3, 200)}) {
      SCOPED_TRACE(std::string(image.name) + " " + std::to_string(size.width()));
      const QByteArray bytes = jpeg(image.kind, size.width(), size.height());
      const QByteArray expected = pixelsOf(bytes);
      ASSERT_FALSE(expected.isEmpty());
      const QByteArray file = capture(study(), chart(bytes));
      EXPECT_EQ(valueOf(file, DCM_PhotometricInterpretation), text(image.photometricInterpretation));
      EXPECT_TRUE(decodedFrame(file) == expected);
    }
  }
}

TEST(Capture, KeepsTheJpegByteForByteAsItsOneFragment) {
  bool odd = false;
  bool even = false;
  for (int width = 20; width < 60 && !(odd && even); ++width) {
    const QByteArray bytes = jpeg(JpegKind::Full, width);
    (bytes.size() % 2 != 0 ? odd : even) = true;
    const QList<QByteArray> fragments = fragmentsOf(capture(study(), chart(bytes)));
    ASSERT_EQ(fragments.size(), 2);
    EXPECT_EQ(fragments.at(0), QByteArray());
    EXPECT_EQ(fragments.at(1), bytes.size() % 2 != 0 ? bytes + '\0' : bytes);
  }
  EXPECT_TRUE(odd && even);
}

TEST(Capture, TakesTheChartOfTheApplicationsEncoder) {
  QImage picture(800, 600, QImage::Format_ARGB32_Premultiplied);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  for (int i = 0; i < 9; ++i) {
    painter.setPen(QColor::fromHsv(i * 40, 255, 220));
    painter.drawArc(QRect(-700, 40 * i, 1500, 1200), 0, 90 * 16);
  }
  painter.drawText(QPoint(30, 30), text("97"));
  painter.end();
  const QByteArray bytes = orv::encodeJpeg(picture, 100);
  const QByteArray file = capture(study(), chart(bytes));
  EXPECT_EQ(complaintsOf(validatorsWords(file)), QString());
  EXPECT_EQ(valueOf(file, DCM_PhotometricInterpretation), text("YBR_FULL_422"));
  EXPECT_TRUE(decodedFrame(file) == pixelsOf(bytes));
}

TEST(Capture, SaysWhatItIs) {
  const QByteArray bytes = jpeg(JpegKind::Full, 61, 43);
  const QByteArray file = capture(study(), chart(bytes));
  const struct {
    DcmTagKey key;
    QString value;
  } rows[] = {
      {DCM_SpecificCharacterSet, text("ISO_IR 192")},
      {DCM_ImageType, text("DERIVED\\SECONDARY")},
      {DCM_InstanceCreationDate, text("20240502")},
      {DCM_InstanceCreationTime, text("235958.007")},
      {DCM_SOPClassUID, text("1.2.840.10008.5.1.4.1.1.7")},
      {DCM_SOPInstanceUID, identity().sopInstanceUID},
      {DCM_StudyDate, text("20240502")},
      {DCM_StudyTime, text("101530.25")},
      {DCM_ContentDate, text("20240502")},
      {DCM_ContentTime, text("235958.007")},
      {DCM_AccessionNumber, text("A-77")},
      {DCM_Modality, text("OT")},
      {DCM_ConversionType, text("WSD")},
      {DCM_Manufacturer, text("Velmora")},
      {DCM_ManufacturerModelName, text("org.velmora.growth")},
      {DCM_ReferringPhysicianName, text("House^Gregory")},
      {DCM_TimezoneOffsetFromUTC, text("-0330")},
      {DCM_StudyDescription, text("Skeletal survey")},
      {DCM_SeriesDescription, text("Growth Chart")},
      {DCM_PatientName, text("Adams^John Robert Quincy^^Rev.^B.A. M.Div.")},
      {DCM_PatientID, text("12/345/6")},
      {DCM_IssuerOfPatientID, text("City Hospital")},
      {DCM_PatientBirthDate, text("20190314")},
      {DCM_PatientSex, text("M")},
      {DCM_DateOfSecondaryCapture, text("20240502")},
      {DCM_TimeOfSecondaryCapture, text("235958.007")},
      {DCM_SecondaryCaptureDeviceManufacturer, text("Velmora")},
      {DCM_SecondaryCaptureDeviceManufacturerModelName, text("org.velmora.growth")},
      {DCM_StudyInstanceUID, study().studyInstanceUID},
      {DCM_SeriesInstanceUID, identity().seriesInstanceUID},
      {DCM_StudyID, text("S1")},
      {DCM_SeriesNumber, text("7001")},
      {DCM_InstanceNumber, text("3")},
      {DCM_SamplesPerPixel, text("3")},
      {DCM_PlanarConfiguration, text("0")},
      {DCM_Rows, text("43")},
      {DCM_Columns, text("61")},
      {DCM_BitsAllocated, text("8")},
      {DCM_BitsStored, text("8")},
      {DCM_HighBit, text("7")},
      {DCM_PixelRepresentation, text("0")},
      {DCM_BurnedInAnnotation, text("YES")},
      {DCM_ImageLaterality, text("U")},
      {DCM_PatientOrientation, QString()},
      {DCM_LossyImageCompression, text("01")},
      {DCM_LossyImageCompressionMethod, text("ISO_10918_1")},
  };
  for (const auto& row : rows) EXPECT_EQ(valueOf(file, row.key), row.value) << row.key.toString().c_str();
  EXPECT_NEAR(valueOf(file, DCM_LossyImageCompressionRatio).toDouble(), 61 * 43 * 3 / double(bytes.size()),
              1e-4);
  EXPECT_EQ(bridge::CaptureSopClassUID, text(UID_SecondaryCaptureImageStorage));
  EXPECT_EQ(bridge::CaptureTransferSyntaxUID, text(UID_JPEGProcess1TransferSyntax));
}

TEST(Capture, SaysWhetherThePictureMayTellWhoThePatientIs) {
  bridge::Chart picture = chart(jpeg(JpegKind::Grey));
  EXPECT_EQ(valueOf(capture(study(), picture), DCM_BurnedInAnnotation), text("YES"));
  picture.showsPatient = false;
  EXPECT_EQ(valueOf(capture(study(), picture), DCM_BurnedInAnnotation), text("NO"));
}

TEST(Capture, IsOfTheStudyThatItWasMadeFor) {
  for (const StudyCase& each : studies()) {
    if (std::string(each.name) == "hostile") continue;
    SCOPED_TRACE(each.name);
    const QByteArray file = capture(each.study, chart(jpeg(JpegKind::Grey)));
    const auto again = bridge::studyFromBytes(file);
    ASSERT_TRUE(again.ok()) << qPrintable(again.error());
    EXPECT_EQ(*again, each.study);
  }
}

TEST(Capture, NamesTheCharacterSetOfItsTexts) {
  Study german = study();
  german.patientName = text("Müller^Jörg");
  EXPECT_EQ(valueOf(capture(german, chart(jpeg(JpegKind::Grey))), DCM_SpecificCharacterSet),
            text("ISO_IR 192"));
  Chart described = chart(jpeg(JpegKind::Grey));
  described.description = text("成長曲線");
  EXPECT_EQ(valueOf(capture(study(), described), DCM_SpecificCharacterSet), text("ISO_IR 192"));
  EXPECT_EQ(valueOf(capture(study(), described), DCM_SeriesDescription), text("成長曲線"));
}

TEST(Capture, CutsDescriptionsButNoIdentifiers) {
  Study of = study();
  of.accessionNumber = QString(17, QLatin1Char('1'));
  of.patientName = text("a\nb\\c^d^e^f^g^h=i=j=k");
  Chart described = chart(jpeg(JpegKind::Grey));
  described.description = text("two\nlines\\") + QString(100, QLatin1Char('d'));
  described.application = QString(100, QLatin1Char('a'));
  const QByteArray file = capture(of, described);
  EXPECT_EQ(complaintsOf(validatorsWords(file)), QString());
  EXPECT_EQ(valueOf(file, DCM_AccessionNumber), QString());
  EXPECT_EQ(valueOf(file, DCM_PatientName), text("a b c^d^e^f^g=i=j"));
  EXPECT_EQ(valueOf(file, DCM_SeriesDescription), text("two lines ") + QString(54, QLatin1Char('d')));
  EXPECT_EQ(valueOf(file, DCM_ManufacturerModelName), QString(64, QLatin1Char('a')));
}

TEST(Capture, CountsCharactersNotBytes) {
  // Not shown to the validator, which counts bytes in UTF-8.
  Study of = study();
  of.description = QString(65, QChar(0x9aa8));
  Chart described = chart(jpeg(JpegKind::Grey));
  described.description = QString::fromUcs4(U"\U00020bb7").repeated(65);
  const QByteArray file = capture(of, described);
  EXPECT_EQ(valueOf(file, DCM_StudyDescription), QString(64, QChar(0x9aa8)));
  EXPECT_EQ(valueOf(file, DCM_SeriesDescription), QString::fromUcs4(U"\U00020bb7").repeated(64));
}

TEST(Capture, LeavesOutDatesThatStandForNone) {
  for (const QDate& none : {QDate(1, 1, 1), QDate(9999, 12, 31), QDate(-4713, 1, 1), QDate()}) {
    Study of = study();
    of.birthDate = none;
    EXPECT_EQ(valueOf(capture(of, chart(jpeg(JpegKind::Grey))), DCM_PatientBirthDate), QString());
  }
}

TEST(Capture, InventsNothingThatTheStudyLacks) {
  Study of = study();
  of.studyDate = QDate(12000, 1, 1);
  of.studyTime = text("25:61");
  of.studyID = text("a\\b");
  const QByteArray file = capture(of, chart(jpeg(JpegKind::Grey)));
  EXPECT_EQ(valueOf(file, DCM_StudyDate), QString());
  EXPECT_EQ(valueOf(file, DCM_StudyTime), QString());
  EXPECT_EQ(valueOf(file, DCM_StudyID), QString());
  // The validator misses what the study itself does not have, and nothing else.
  const QString missing =
      text("Warning - Missing attribute or value that would be needed to build DICOMDIR - ");
  EXPECT_EQ(complaintsOf(validatorsWords(file)),
            missing + text("Study Date\n") + missing + text("Study Time\n") + missing + text("Study ID"));
}

TEST(Capture, IsRefusedWhereItWouldGoAstray) {
  const Chart good = chart(jpeg(JpegKind::Grey));
  const auto errorFor = [&](auto change) {
    Study of = study();
    bridge::CaptureIdentity as = identity();
    Chart picture = good;
    change(of, as, picture);
    return bridge::secondaryCapture(of, picture, as).error();
  };
  EXPECT_EQ(errorFor([](Study&, auto&, Chart&) {}), QString());
  EXPECT_EQ(errorFor([](Study& of, auto&, Chart&) { of.studyInstanceUID.clear(); }),
            text("the study has no Study Instance UID"));
  for (const char* uid : {"1", "1..2", "1.2.", "1.2a", "1.2\n", "１.2", "1.2\\1.3"}) {
    EXPECT_EQ(errorFor([&](Study& of, auto&, Chart&) { of.studyInstanceUID = text(uid); }),
              text("the study's Study Instance UID is not valid"))
        << uid;
  }
  EXPECT_EQ(errorFor([](Study& of, auto&, Chart&) {
              of.studyInstanceUID = text("1.") + QString(63, QLatin1Char('1'));
            }),
            text("the study's Study Instance UID is not valid"));
  for (const QString& id :
       {QString(65, QLatin1Char('1')), text("1\\2"), text("1\n"), QString(QChar(0xd800))}) {
    EXPECT_EQ(errorFor([&](Study& of, auto&, Chart&) { of.patientID = id; }),
              text("the study's Patient ID is not valid in DICOM"));
    EXPECT_EQ(errorFor([&](Study& of, auto&, Chart&) { of.issuerOfPatientID = id; }),
              text("the study's Issuer of Patient ID is not valid in DICOM"));
  }
  EXPECT_EQ(errorFor([](Study&, auto& as, Chart&) { as.sopInstanceUID.clear(); }),
            text("the chart has no valid UIDs"));
  EXPECT_EQ(errorFor([](Study&, auto& as, Chart&) { as.seriesInstanceUID = text("x"); }),
            text("the chart has no valid UIDs"));
  EXPECT_EQ(errorFor([](Study&, auto& as, Chart&) { as.captured = QDateTime(); }),
            text("the chart has no date"));
  EXPECT_EQ(errorFor([](Study&, auto&, Chart& picture) { picture.jpeg = "GIF89a"; }),
            text("the JPEG image is none: it does not begin as JPEG does"));
}

TEST(Capture, IsTheSameObjectWhenItIsMadeAgain) {
  const Chart picture = chart(jpeg(JpegKind::Full));
  EXPECT_TRUE(capture(study(), picture) == capture(study(), picture));
}

TEST(Capture, KeepsItsTimeInEveryTimeZone) {
  const struct {
    int offset;
    const char* expected;
  } rows[] = {{0, "+0000"}, {5 * 3600 + 45 * 60, "+0545"}, {14 * 3600, "+1400"}, {-9 * 3600 - 1800, "-0930"}};
  for (const auto& row : rows) {
    bridge::CaptureIdentity as = identity();
    as.captured = QDateTime(QDate(2024, 1, 2), QTime(3, 4, 5), Qt::OffsetFromUTC, row.offset);
    const QByteArray file = *bridge::secondaryCapture(study(), chart(jpeg(JpegKind::Grey)), as);
    EXPECT_EQ(valueOf(file, DCM_TimezoneOffsetFromUTC), text(row.expected));
    EXPECT_EQ(valueOf(file, DCM_ContentTime), text("030405.000"));
    EXPECT_EQ(complaintsOf(validatorsWords(file)), QString());
  }
}

TEST(Uids, AreUnder225AndNeverTheSame) {
  QSet<QString> seen;
  for (int i = 0; i < 1000; ++i) {
    const QString uid = bridge::newUid();
    EXPECT_TRUE(uid.startsWith(text("2.25.")) && uid.size() <= 44 && uid.size() > 30) << qPrintable(uid);
    EXPECT_FALSE(uid.startsWith(text("2.25.0")));
    seen.insert(uid);
  }
  EXPECT_EQ(seen.size(), 1000);
}

TEST(Uids, StandForTheirText) {
  // Reckoned with Python: uuid.uuid5(UUID("6a1d2c0e-4f0b-4f7e-9f6b-7c1b8d3f52a4"), text).int
  EXPECT_EQ(bridge::uidOf(text("a series")), text("2.25.257088797013878932028052039225617408819"));
  EXPECT_EQ(bridge::uidOf(QString()), text("2.25.225178073727429953328506534236261186207"));
  EXPECT_NE(bridge::uidOf(text("1")), bridge::uidOf(text("2")));
}
