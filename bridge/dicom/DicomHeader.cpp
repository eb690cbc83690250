// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/dicom/DicomHeader.h"

#include <QList>
#include <QtEndian>
#include <algorithm>
#include <memory>

#include "bridge/dicom/ByteSource.h"
#include "bridge/dicom/Inflater.h"

namespace bridge {
namespace {

constexpr quint32 UndefinedLength = 0xffffffff;
constexpr Tag Item = 0xfffee000;
constexpr Tag ItemEnd = 0xfffee00d;
constexpr Tag SequenceEnd = 0xfffee0dd;
constexpr Tag TransferSyntaxUID = 0x00020010;

constexpr qsizetype DeepestSequence = 64;
constexpr int MostElements =
    200000;  // a header of a few hundred is usual; enhanced objects have some ten thousand

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

  /// Passes over the element's value. False at the end of the file, or where it is damaged.
  bool skipValue(const Element& element) {
    return element.length == UndefinedLength ? skipSequence(element) : source_.skip(element.length);
  }

  bool readValue(const Element& element, QByteArray& value) {
    if (element.length == UndefinedLength) return false;
    const qint64 kept = std::min<qint64>(element.length, LongestValue);
    value.resize(kept);
    return source_.read(value.data(), kept) && source_.skip(element.length - kept);
  }

 private:
  /// A sequence of undefined length is passed over by reading what is in it up to its end.
  bool skipSequence(const Element& sequence) {
    struct Level {
      bool isItem;
      bool implicitVR;
    };
    // What is in an element of unknown kind is in implicit VR (PS3.5 6.2.2, note 2).
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
    const bool wanted = element.tag == TransferSyntaxUID;
    if (!(wanted ? reader.readValue(element, uid) : reader.skipValue(element))) return {};
  }
  while (uid.endsWith('\0') || uid.endsWith(' ')) uid.chop(1);
  return uid;
}

void readDataset(ByteSource& source, Encoding encoding, DicomHeader& header) {
  ElementReader reader(source, encoding);
  const QString damaged = QStringLiteral("its attributes are damaged");
  Element element;
  while (!header.values.contains(studyTags.back())) {
    const ElementReader::Next next = reader.next(element);
    if (next == ElementReader::Next::Damaged) header.error = damaged;
    if (next != ElementReader::Next::Element || element.tag > studyTags.back()) return;
    const bool wanted = std::find(studyTags.begin(), studyTags.end(), element.tag) != studyTags.end() &&
                        !header.values.contains(element.tag);
    QByteArray value;
    if (!(wanted ? reader.readValue(element, value) : reader.skipValue(element))) {
      header.error = damaged;
      return;
    }
    if (wanted) header.values.insert(element.tag, value);
  }
}

}  // namespace

DicomHeader readDicomHeader(QIODevice& file) {
  DicomHeader header;
  constexpr qint64 Preamble = 128;
  if (file.read(Preamble).size() != Preamble || file.read(4) != "DICM") {
    header.error = QStringLiteral("it is not a DICOM file");
    return header;
  }
  header.isDicom = true;
  const QByteArray transferSyntax = readTransferSyntax(file);
  if (transferSyntax.isEmpty()) {
    header.error = QStringLiteral("it does not say how it is encoded");
    return header;
  }
  // PS3.5 A.1 to A.5; all other transfer syntaxes concern the pixels alone.
  Encoding encoding;
  encoding.implicitVR = transferSyntax == "1.2.840.10008.1.2";
  encoding.bigEndian = transferSyntax == "1.2.840.10008.1.2.2";
  const bool deflated =
      transferSyntax == "1.2.840.10008.1.2.1.99" || transferSyntax == "1.2.840.10008.1.2.4.95";
  std::unique_ptr<ByteSource> source;
  if (deflated) {
    source = std::make_unique<Inflater>(file);
  } else {
    source = std::make_unique<DeviceSource>(file);
  }
  readDataset(*source, encoding, header);
  return header;
}

}  // namespace bridge
