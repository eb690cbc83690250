// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/dicom/StudyReader.h"

#include <QBuffer>
#include <QList>
#include <QtEndian>
#include <algorithm>

#include "bridge/dicom/ByteSource.h"
#include "bridge/dicom/Inflater.h"
#include "bridge/dicom/StudyAttributes.h"

namespace bridge {
namespace {

using velmora::base::Failure;
using velmora::base::Result;

constexpr quint32 UndefinedLength = 0xffffffff;
constexpr Tag Item = 0xfffee000;
constexpr Tag ItemEnd = 0xfffee00d;
constexpr Tag SequenceEnd = 0xfffee0dd;

constexpr qsizetype DeepestSequence = 64;
constexpr int MostElements = 200000;  // a few hundred are usual; enhanced objects have some ten thousand
constexpr quint32 LongestValue = 1024 * 1024;

struct Encoding {
  bool implicitVR = false;
  bool bigEndian = false;
};

struct Element {
  Tag tag = 0;
  QByteArray vr;  ///< empty when implicit
  quint32 length = 0;
};

/// Reads data elements one after the other (PS3.5 7.1).
class ElementReader {
 public:
  ElementReader(ByteSource& source, Encoding encoding) : source_(source), encoding_(encoding) {}

  enum class Next { Element, End, Damaged };

  Next next(Element& element, bool implicitVR) {
    if (++count_ > MostElements) return Next::Damaged;
    char bytes[8];
    if (!source_.read(bytes, 8)) return Next::End;
    element.tag = static_cast<Tag>(number16(bytes)) << 16 | number16(bytes + 2);
    element.vr.clear();
    if (implicitVR || element.tag >> 16 == Item >> 16) {
      element.length = number32(bytes + 4);
      return Next::Element;
    }
    element.vr = QByteArray(bytes + 4, 2);
    if (!isVR(element.vr)) return Next::Damaged;
    if (!hasLongLength(element.vr)) {
      element.length = number16(bytes + 6);
      return Next::Element;
    }
    if (!source_.read(bytes, 4)) return Next::End;
    element.length = number32(bytes);
    return Next::Element;
  }
  Next next(Element& element) { return next(element, encoding_.implicitVR); }

  /// Skips the element's value. Returns false at the end of the file or where it is damaged.
  bool skipValue(const Element& element) {
    return element.length == UndefinedLength ? skipSequence(element) : source_.skip(element.length);
  }

  bool readValue(const Element& element, QByteArray& value) {
    if (element.length > LongestValue) return false;
    value.resize(element.length);
    return source_.read(value.data(), value.size());
  }

 private:
  /// A sequence of undefined length is skipped by reading its contents up to its end.
  bool skipSequence(const Element& sequence) {
    struct Level {
      bool isItem;
      bool implicitVR;
    };
    // Within an element of unknown kind everything is in implicit VR (PS3.5 6.2.2, note 2).
    const auto implicitWithin = [](const Element& element, bool around) {
      return around || element.vr == "UN";
    };
    QList<Level> levels{{false, implicitWithin(sequence, encoding_.implicitVR)}};
    Element element;
    while (!levels.isEmpty()) {
      const Level level = levels.constLast();
      if (next(element, level.implicitVR) != Next::Element) return false;
      if (element.tag == (level.isItem ? ItemEnd : SequenceEnd)) {
        levels.removeLast();
        continue;
      }
      if ((element.tag == Item) == level.isItem || element.tag == ItemEnd || element.tag == SequenceEnd)
        return false;
      if (element.length != UndefinedLength) {
        if (!source_.skip(element.length)) return false;
        continue;
      }
      if (levels.size() >= DeepestSequence) return false;
      levels.append(level.isItem ? Level{false, implicitWithin(element, level.implicitVR)}
                                 : Level{true, level.implicitVR});
    }
    return true;
  }

  static bool isVR(const QByteArray& vr) {
    return std::all_of(vr.begin(), vr.end(), [](char c) { return c >= 'A' && c <= 'Z'; });
  }
  /// PS3.5 tables 7.1-1 and 7.1-2.
  static bool hasLongLength(const QByteArray& vr) {
    static const QList<QByteArray> longOnes{"OB", "OD", "OF", "OL", "OV", "OW", "SQ",
                                            "SV", "UC", "UN", "UR", "UT", "UV"};
    return longOnes.contains(vr);
  }
  quint16 number16(const char* bytes) const {
    return encoding_.bigEndian ? qFromBigEndian<quint16>(bytes) : qFromLittleEndian<quint16>(bytes);
  }
  quint32 number32(const char* bytes) const {
    return encoding_.bigEndian ? qFromBigEndian<quint32>(bytes) : qFromLittleEndian<quint32>(bytes);
  }

  ByteSource& source_;
  Encoding encoding_;
  int count_ = 0;
};

/// The group of attributes before the data set, always in explicit VR little endian (PS3.10 7.1). Empty when
/// it names no transfer syntax.
QByteArray readTransferSyntax(QIODevice& file) {
  DeviceSource source(file);
  ElementReader reader(source, {});
  QByteArray uid;
  while (file.peek(2) == QByteArray("\x02\x00", 2)) {
    Element element;
    if (reader.next(element) != ElementReader::Next::Element) return {};
    const bool wanted = element.tag == tags::TransferSyntaxUID;
    if (!(wanted ? reader.readValue(element, uid) : reader.skipValue(element))) return {};
  }
  while (uid.endsWith('\0') || uid.endsWith(' ')) uid.chop(1);
  return uid;
}

Result<Study> readDataset(ByteSource& source, Encoding encoding) {
  ElementReader reader(source, encoding);
  QMap<Tag, QByteArray> values;
  bool damaged = false;
  Element element;
  while (!damaged && !values.contains(StudyAttributes.back())) {
    const ElementReader::Next next = reader.next(element);
    damaged = next == ElementReader::Next::Damaged;
    if (next != ElementReader::Next::Element || element.tag > StudyAttributes.back()) break;
    const bool wanted =
        element.tag == tags::SpecificCharacterSet ||
        std::find(StudyAttributes.begin(), StudyAttributes.end(), element.tag) != StudyAttributes.end();
    if (wanted && !values.contains(element.tag)) {
      QByteArray value;
      damaged = !reader.readValue(element, value);
      if (!damaged) values.insert(element.tag, value);
    } else {
      damaged = !reader.skipValue(element);
    }
  }
  Study study = studyOf(values);
  // The Study Instance UID follows the attributes of the patient: once it is there, they have been read.
  if (!study.studyInstanceUID.isEmpty()) return study;
  if (damaged) return Failure{QStringLiteral("its attributes are damaged")};
  return Failure{QStringLiteral("it is of no study (no Study Instance UID)")};
}

Result<Study> readDataset(QIODevice& dataset, const QByteArray& transferSyntaxUID) {
  // PS3.5 A.1 to A.5; all other transfer syntaxes concern the pixels alone.
  Encoding encoding;
  encoding.implicitVR = transferSyntaxUID == "1.2.840.10008.1.2";
  encoding.bigEndian = transferSyntaxUID == "1.2.840.10008.1.2.2";
  if (transferSyntaxUID == "1.2.840.10008.1.2.1.99" || transferSyntaxUID == "1.2.840.10008.1.2.4.95") {
    Inflater inflater(dataset);
    return readDataset(inflater, encoding);
  }
  DeviceSource source(dataset);
  return readDataset(source, encoding);
}

}  // namespace

Result<Study> studyFromDevice(QIODevice& file) {
  constexpr qint64 Preamble = 128;
  if (file.read(Preamble).size() != Preamble || file.read(4) != "DICM") {
    return Failure{QStringLiteral("it is not a DICOM file")};
  }
  const QByteArray transferSyntax = readTransferSyntax(file);
  if (transferSyntax.isEmpty()) return Failure{QStringLiteral("it does not say how it is encoded")};
  return readDataset(file, transferSyntax);
}

Result<Study> studyFromBytes(const QByteArray& file) {
  QBuffer buffer;
  buffer.setData(file);
  buffer.open(QIODevice::ReadOnly);
  return studyFromDevice(buffer);
}

Result<Study> studyFromDataset(const QByteArray& dataset, const QByteArray& transferSyntaxUID) {
  QBuffer buffer;
  buffer.setData(dataset);
  buffer.open(QIODevice::ReadOnly);
  return readDataset(buffer, transferSyntaxUID);
}

}  // namespace bridge
