// SPDX-License-Identifier: LGPL-3.0-or-later
#include "tests/unit/bridge/dicom/DicomTesting.h"

#include <turbojpeg.h>

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>
#include <QtEndian>
#include <array>
#include <memory>

#include "bridge/dicom/StudyAttributes.h"
#include "bridge/dicom/Uid.h"

namespace dicom_testing {
namespace {

using Handle = std::unique_ptr<void, int (*)(tjhandle)>;

QImage picture(int width, int height) {
  QImage image(width, height, QImage::Format_RGB888);
  image.fill(Qt::white);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  int hue = 0;
  for (int y = 0; y < height; y += 5) {
    painter.setPen(QPen(QColor::fromHsv(hue = (hue + 47) % 360, 255, 200), 1.3));
    painter.drawLine(0, y, width, height - y);
  }
  return image;
}

QByteArray taken(unsigned char* bytes, unsigned long size) {
  const QByteArray result(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size));
  tjFree(bytes);
  return result;
}

QByteArray compressed(const QImage& image, TJSAMP sampling) {
  const Handle compressor(tjInitCompress(), tjDestroy);
  unsigned char* bytes = nullptr;
  unsigned long size = 0;
  if (tjCompress2(compressor.get(), image.constBits(), image.width(), static_cast<int>(image.bytesPerLine()),
                  image.height(), TJPF_RGB, &bytes, &size, sampling, 92, TJFLAG_ACCURATEDCT) != 0) {
    qFatal("%s", tjGetErrorStr2(compressor.get()));
  }
  return taken(bytes, size);
}

/// Red, green and blue as three planes, and Adobe's marker for them in the place of JFIF's.
QByteArray compressedRgb(const QImage& image) {
  std::array<QByteArray, 3> planes;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      const QRgb pixel = image.pixel(x, y);
      planes[0].append(static_cast<char>(qRed(pixel)));
      planes[1].append(static_cast<char>(qGreen(pixel)));
      planes[2].append(static_cast<char>(qBlue(pixel)));
    }
  }
  std::array<const unsigned char*, 3> sources{};
  for (size_t i = 0; i < 3; ++i) sources[i] = reinterpret_cast<const unsigned char*>(planes[i].constData());
  const Handle compressor(tjInitCompress(), tjDestroy);
  unsigned char* bytes = nullptr;
  unsigned long size = 0;
  if (tjCompressFromYUVPlanes(compressor.get(), sources.data(), image.width(), nullptr, image.height(),
                              TJSAMP_444, &bytes, &size, 92, TJFLAG_ACCURATEDCT) != 0) {
    qFatal("%s", tjGetErrorStr2(compressor.get()));
  }
  QByteArray result = taken(bytes, size);
  constexpr qsizetype JfifSegment = 18;
  return result.replace(2, JfifSegment,
                        QByteArray("\xff\xee\x00\x0e"
                                   "Adobe\x00\x64\x00\x00\x00\x00\x00",
                                   16));
}

QByteArray number16(quint16 number, bool big) {
  QByteArray bytes(2, '\0');
  big ? qToBigEndian(number, bytes.data()) : qToLittleEndian(number, bytes.data());
  return bytes;
}

QByteArray number32(quint32 number, bool big) {
  QByteArray bytes(4, '\0');
  big ? qToBigEndian(number, bytes.data()) : qToLittleEndian(number, bytes.data());
  return bytes;
}

QByteArray rawDeflate(const QByteArray& bytes) {
  // Qt puts four bytes of length before, zlib two before and four behind the raw stream.
  return qCompress(bytes, 9).mid(6).chopped(4);
}

QString outputOf(const QString& program, const QStringList& options, const QByteArray& file) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("object.dcm"));
  QFile out(path);
  if (!out.open(QIODevice::WriteOnly) || out.write(file) != file.size())
    return QStringLiteral("failed: cannot write");
  out.close();
  QProcess process;
  process.setProcessChannelMode(QProcess::MergedChannels);
  process.start(program, options + QStringList{path});
  if (!process.waitForFinished(60000)) return QStringLiteral("failed: ") + process.errorString();
  const QString output = QString::fromUtf8(process.readAll());
  return process.exitCode() == 0 ? output : QStringLiteral("failed: ") + output;
}

}  // namespace

QByteArray jpeg(JpegKind kind, int width, int height) {
  const QImage image = picture(width, height);
  switch (kind) {
    case JpegKind::Full:
      return compressed(image, TJSAMP_444);
    case JpegKind::Reduced420:
      return compressed(image, TJSAMP_420);
    case JpegKind::Reduced422:
      return compressed(image, TJSAMP_422);
    case JpegKind::Grey:
      return compressed(image, TJSAMP_GRAY);
    case JpegKind::AdobeRgb:
      break;
  }
  return compressedRgb(image);
}

QByteArray pixelsOf(const QByteArray& jpeg) {
  const Handle decompressor(tjInitDecompress(), tjDestroy);
  const auto* source = reinterpret_cast<const unsigned char*>(jpeg.constData());
  const auto size = static_cast<unsigned long>(jpeg.size());
  int width = 0;
  int height = 0;
  int sampling = 0;
  int colours = 0;
  if (tjDecompressHeader3(decompressor.get(), source, size, &width, &height, &sampling, &colours) != 0)
    return {};
  const bool grey = colours == TJCS_GRAY;
  QByteArray pixels(qsizetype(width) * height * (grey ? 1 : 3), '\0');
  if (tjDecompress2(decompressor.get(), source, size, reinterpret_cast<unsigned char*>(pixels.data()), width,
                    0, height, grey ? TJPF_GRAY : TJPF_RGB, TJFLAG_ACCURATEDCT) != 0) {
    return {};
  }
  return pixels;
}

bridge::Study study() {
  bridge::Study study;
  study.studyInstanceUID = QStringLiteral("1.2.826.0.1.3680043.9.7133.1.1");
  study.patientID = QStringLiteral("12/345/6");
  study.issuerOfPatientID = QStringLiteral("City Hospital");
  study.patientName = QStringLiteral("Adams^John Robert Quincy^^Rev.^B.A. M.Div.");
  study.birthDate = QDate(2019, 3, 14);
  study.sex = QStringLiteral("M");
  study.studyDate = QDate(2024, 5, 2);
  study.studyTime = QStringLiteral("101530.25");
  study.studyID = QStringLiteral("S1");
  study.accessionNumber = QStringLiteral("A-77");
  study.referringPhysician = QStringLiteral("House^Gregory");
  study.description = QStringLiteral("Skeletal survey");
  return study;
}

bridge::Chart chart(const QByteArray& jpeg) {
  return {jpeg, QStringLiteral("Growth Chart"), QStringLiteral("org.velmora.growth")};
}

bridge::CaptureIdentity identity() {
  bridge::CaptureIdentity identity;
  identity.sopInstanceUID = bridge::uidOf(QStringLiteral("an object"));
  identity.seriesInstanceUID = bridge::uidOf(QStringLiteral("a series"));
  identity.instanceNumber = 3;
  identity.seriesNumber = 7001;
  identity.captured =
      QDateTime(QDate(2024, 5, 2), QTime(23, 59, 58, 7), Qt::OffsetFromUTC, -(3 * 60 + 30) * 60);
  return identity;
}

QByteArray dataset(const QList<Element>& elements, Syntax syntax) {
  const bool big = syntax == Syntax::ExplicitBig;
  QByteArray bytes;
  for (const Element& element : elements) {
    QByteArray value = element.value;
    if (value.size() % 2 != 0) value.append(element.vr == "UI" ? '\0' : ' ');
    const quint32 length = element.undefinedLength ? 0xffffffff : static_cast<quint32>(value.size());
    bytes += number16(static_cast<quint16>(element.tag >> 16), big) +
             number16(static_cast<quint16>(element.tag), big);
    if (syntax == Syntax::ImplicitLittle || element.vr.isEmpty()) {
      bytes += number32(length, big);
    } else if (QByteArrayList{"OB", "OW", "SQ", "UN", "UT"}.contains(element.vr)) {
      bytes += element.vr + QByteArray(2, '\0') + number32(length, big);
    } else {
      bytes += element.vr + number16(static_cast<quint16>(length), big);
    }
    bytes += value;
  }
  return bytes;
}

QByteArray transferSyntax(Syntax syntax) {
  switch (syntax) {
    case Syntax::ImplicitLittle:
      return "1.2.840.10008.1.2";
    case Syntax::ExplicitBig:
      return "1.2.840.10008.1.2.2";
    case Syntax::Deflated:
      return "1.2.840.10008.1.2.1.99";
    case Syntax::ExplicitLittle:
      break;
  }
  return "1.2.840.10008.1.2.1";
}

QByteArray dicomFile(const QList<Element>& elements, Syntax syntax) {
  const QByteArray meta = dataset({{0x00020001, "OB", QByteArray("\0\1", 2)},
                                   {0x00020002, "UI", "1.2.840.10008.5.1.4.1.1.7"},
                                   {0x00020003, "UI", "2.25.1"},
                                   {0x00020010, "UI", transferSyntax(syntax)}});
  const QByteArray length = number32(static_cast<quint32>(meta.size()), false);
  const QByteArray body = dataset(elements, syntax);
  return QByteArray(128, '\0') + "DICM" + dataset({{0x00020000, "UL", length}}) + meta +
         (syntax == Syntax::Deflated ? rawDeflate(body) : body);
}

QList<Element> studyElements() {
  using namespace bridge::tags;
  return {{SpecificCharacterSet, "CS", "ISO_IR 100"},
          {StudyDate, "DA", "20240502"},
          {StudyTime, "TM", "101530.25"},
          {AccessionNumber, "SH", "A-77"},
          {ReferringPhysicianName, "PN", "House^Gregory"},
          {StudyDescription, "LO", "Skeletal survey"},
          {PatientName, "PN", "M\xfcller^J\xf6rg"},
          {PatientID, "LO", "12/345/6"},
          {IssuerOfPatientID, "LO", "City Hospital"},
          {PatientBirthDate, "DA", "20190314"},
          {PatientSex, "CS", "M"},
          {StudyInstanceUID, "UI", "1.2.826.0.1.3680043.9.7133.1.1"},
          {StudyID, "SH", "S1"}};
}

QString validatorsWords(const QByteArray& file) {
  // Its exit code says no more than its words.
  QString words = outputOf(QStringLiteral(DCIODVFY), {}, file);
  return words.remove(QStringLiteral("failed: "));
}

QString dumpOf(const QByteArray& file) {
  return outputOf(QStringLiteral("dcmdump"), {QStringLiteral("+U8"), QStringLiteral("+L")}, file);
}

}  // namespace dicom_testing
