// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/dicom/JpegImage.h"

#include <QList>
#include <algorithm>
#include <array>

namespace bridge {
namespace {

// ITU-T T.81, table B.1.
enum Marker : int {
  StartOfFrameBaseline = 0xc0,
  HuffmanTables = 0xc4,
  ArithmeticConditioning = 0xcc,
  Restart0 = 0xd0,
  Restart7 = 0xd7,
  StartOfImage = 0xd8,
  EndOfImage = 0xd9,
  StartOfScan = 0xda,
  QuantizationTables = 0xdb,
  NumberOfLines = 0xdc,
  RestartInterval = 0xdd,
  Application0 = 0xe0,
  Application14 = 0xee,
  Application15 = 0xef,
  Comment = 0xfe,
};

struct Component {
  int identifier = 0;
  int horizontal = 0;
  int vertical = 0;
  int quantization = 0;
  bool scanned = false;
};

class JpegReader {
 public:
  explicit JpegReader(const QByteArray& jpeg) : jpeg_(jpeg) {}

  JpegImage read() {
    if (!readImage() && image_.error.isNull()) image_.error = QStringLiteral("the JPEG image is damaged");
    return image_;
  }

 private:
  bool refuse(const QString& why) {
    image_.error = QStringLiteral("the JPEG image ") + why;
    return false;
  }

  int byteAt(qsizetype place) const { return static_cast<unsigned char>(jpeg_.at(place)); }
  int numberAt(qsizetype place) const { return byteAt(place) << 8 | byteAt(place + 1); }

  /// The marker at the present place, which any number of fill bytes may precede (B.1.1.2); -1 when there is
  /// none.
  int nextMarker() {
    if (place_ >= jpeg_.size() || byteAt(place_) != 0xff) return -1;
    while (place_ < jpeg_.size() && byteAt(place_) == 0xff) ++place_;
    return place_ < jpeg_.size() ? byteAt(place_++) : -1;
  }

  bool readImage() {
    if (jpeg_.isEmpty()) return refuse(QStringLiteral("is empty"));
    if (!jpeg_.startsWith("\xff\xd8"))
      return refuse(QStringLiteral("is none: it does not begin as JPEG does"));
    place_ = 2;
    for (;;) {
      const int marker = nextMarker();
      if (marker < 0) return refuse(QStringLiteral("breaks off or is damaged"));
      if (marker == EndOfImage) return endImage();
      if (place_ + 2 > jpeg_.size()) return refuse(QStringLiteral("breaks off"));
      const int length = numberAt(place_);
      end_ = place_ + length;
      if (length < 2 || end_ > jpeg_.size()) return refuse(QStringLiteral("breaks off"));
      place_ += 2;
      if (!readSegment(marker)) return false;
      place_ = end_;
      if (marker == StartOfScan && !passEntropyCodedData()) return false;
    }
  }

  bool readSegment(int marker) {
    if (marker == StartOfFrameBaseline) return readFrame();
    if (marker == HuffmanTables) return readHuffmanTables();
    if (marker == QuantizationTables) return readQuantizationTables();
    if (marker == StartOfScan) return readScan();
    if (marker == RestartInterval) return end_ - place_ == 2;
    if (marker >= Application0 && marker <= Application15) return readApplicationData(marker);
    if (marker == Comment) return true;
    if (marker > StartOfFrameBaseline && marker <= 0xcf) {
      return refuse(
          QStringLiteral("is not baseline JPEG (process 0x%1)").arg(marker, 2, 16, QLatin1Char('0')));
    }
    if (marker == NumberOfLines) return refuse(QStringLiteral("says its height only at its end"));
    return refuse(QStringLiteral("has an unknown marker (0x%1)").arg(marker, 2, 16, QLatin1Char('0')));
  }

  bool readFrame() {
    if (!components_.isEmpty()) return refuse(QStringLiteral("has two frames"));
    if (end_ - place_ < 6) return false;
    const int count = byteAt(place_ + 5);
    if (end_ - place_ != 6 + 3 * count) return false;
    if (byteAt(place_) != 8) return refuse(QStringLiteral("has not 8 bits a sample"));
    image_.rows = numberAt(place_ + 1);
    image_.columns = numberAt(place_ + 3);
    if (image_.rows == 0 || image_.columns == 0) return refuse(QStringLiteral("has no size"));
    if (count != 1 && count != 3) return refuse(QStringLiteral("has %1 colours, not 1 or 3").arg(count));
    for (int i = 0; i < count; ++i) {
      const qsizetype at = place_ + 6 + 3 * i;
      const Component component{byteAt(at), byteAt(at + 1) >> 4, byteAt(at + 1) & 15, byteAt(at + 2), false};
      const auto inRange = [](int factor) { return factor >= 1 && factor <= 4; };
      if (!inRange(component.horizontal) || !inRange(component.vertical) || component.quantization > 3)
        return false;
      for (const Component& other : std::as_const(components_)) {
        if (other.identifier == component.identifier) return false;
      }
      components_.append(component);
    }
    return true;
  }

  bool readQuantizationTables() {
    while (place_ < end_) {
      const int precisionAndTable = byteAt(place_);
      if (precisionAndTable > 3) return refuse(QStringLiteral("is not baseline JPEG (quantization)"));
      if (end_ - place_ < 65) return false;
      quantization_[static_cast<size_t>(precisionAndTable)] = true;
      place_ += 65;
    }
    return true;
  }

  bool readHuffmanTables() {
    while (place_ < end_) {
      if (end_ - place_ < 17) return false;
      const int kind = byteAt(place_) >> 4;
      const int table = byteAt(place_) & 15;
      if (kind > 1 || table > 1) return refuse(QStringLiteral("is not baseline JPEG (Huffman tables)"));
      int values = 0;
      int codesLeft = 1;  // of the length at hand; one more than are used, for none consists of ones alone
      for (int length = 1; length <= 16; ++length) {
        const int codes = byteAt(place_ + length);
        codesLeft = codesLeft * 2 - codes;
        values += codes;
        if (codesLeft < 0) return false;
      }
      if (values == 0 || values > 256 || end_ - place_ < 17 + values) return false;
      huffman_[static_cast<size_t>(kind)][static_cast<size_t>(table)] = true;
      place_ += 17 + values;
    }
    return true;
  }

  bool readApplicationData(int marker) {
    const QByteArray data = jpeg_.mid(place_, end_ - place_);
    // A shorter one is no JFIF header, to decoders neither.
    if (marker == Application0 && data.size() >= 14 && data.startsWith(QByteArray("JFIF\0", 5))) jfif_ = true;
    // Adobe Technical Note 5116: the colour transform is the twelfth byte.
    if (marker == Application14 && data.size() >= 12 && data.startsWith("Adobe")) {
      adobeTransform_ = static_cast<unsigned char>(data.at(11));
    }
    return true;
  }

  bool readScan() {
    if (components_.isEmpty() || place_ >= end_) return false;
    const int count = byteAt(place_);
    if (count < 1 || count > 3 || end_ - place_ != 4 + 2 * count) return false;
    int blocksInUnit = 0;
    scanned_.clear();
    for (int i = 0; i < count; ++i) {
      const int identifier = byteAt(place_ + 1 + 2 * i);
      const int tables = byteAt(place_ + 2 + 2 * i);
      const auto component = std::find_if(components_.begin(), components_.end(), [&](const Component& each) {
        return each.identifier == identifier;
      });
      if (component == components_.end() || component->scanned) return false;
      if ((tables >> 4) > 1 || (tables & 15) > 1) return false;
      if (!huffman_[0][static_cast<size_t>(tables >> 4)] || !huffman_[1][static_cast<size_t>(tables & 15)] ||
          !quantization_[static_cast<size_t>(component->quantization)]) {
        return refuse(QStringLiteral("lacks tables that it needs"));
      }
      component->scanned = true;
      scanned_.append(*component);
      blocksInUnit += component->horizontal * component->vertical;
    }
    if (count > 1 && blocksInUnit > 10) return false;  // B.2.3
    const qsizetype spectral = place_ + 1 + 2 * count;
    return byteAt(spectral) == 0 && byteAt(spectral + 1) == 63 && byteAt(spectral + 2) == 0;
  }

  /// Goes on to the marker after the scan.
  bool passEntropyCodedData() {
    const qsizetype start = place_;
    for (;; ++place_) {
      place_ = jpeg_.indexOf('\xff', place_);
      if (place_ < 0 || place_ + 1 >= jpeg_.size()) return refuse(QStringLiteral("breaks off"));
      const int next = byteAt(place_ + 1);
      if (next == 0xff || next == 0) continue;  // fill bytes; a byte 0xff of the data
      if (next < Restart0 || next > Restart7) break;
    }
    // Each block has two codes at least, each of one bit at least.
    qint64 fewestBits = 0;
    for (const Component& component : std::as_const(scanned_)) fewestBits += 2 * blocksOf(component);
    if ((place_ - start) * 8 < fewestBits) return refuse(QStringLiteral("is incomplete"));
    return true;
  }

  /// A.1.1, A.2.2
  qint64 blocksOf(const Component& component) const {
    int horizontal = 1;
    int vertical = 1;
    for (const Component& each : components_) {
      horizontal = std::max(horizontal, each.horizontal);
      vertical = std::max(vertical, each.vertical);
    }
    const auto blocks = [](qint64 pixels, int factor, int largest) {
      const qint64 samples = (pixels * factor + largest - 1) / largest;
      return (samples + 7) / 8;
    };
    return blocks(image_.columns, component.horizontal, horizontal) *
           blocks(image_.rows, component.vertical, vertical);
  }

  bool endImage() {
    if (components_.isEmpty()) return refuse(QStringLiteral("has no frame"));
    for (const Component& component : std::as_const(components_)) {
      if (!component.scanned) return refuse(QStringLiteral("is incomplete"));
    }
    if (place_ != jpeg_.size()) return refuse(QStringLiteral("has something behind its end"));
    return decideColour();
  }

  /// What decoders make of three components: JFIF means luminance and chrominances; Adobe's marker says;
  /// without either, components named R, G and B are these.
  bool decideColour() {
    if (components_.size() == 1) return true;
    const Component& first = components_.at(0);
    for (const Component& each : std::as_const(components_)) {
      if (each.horizontal > first.horizontal || each.vertical > first.vertical) {
        return refuse(QStringLiteral("has more places for its second or third colour than for its first"));
      }
    }
    const bool namedRgb =
        first.identifier == 'R' && components_.at(1).identifier == 'G' && components_.at(2).identifier == 'B';
    const bool rgb = !jfif_ && (adobeTransform_ >= 0 ? adobeTransform_ == 0 : namedRgb);
    image_.colour = rgb ? JpegImage::Colour::Rgb : JpegImage::Colour::YCbCr;
    return true;
  }

  const QByteArray jpeg_;
  qsizetype place_ = 0;
  qsizetype end_ = 0;  ///< of the segment at hand
  JpegImage image_;
  QList<Component> components_;
  QList<Component> scanned_;  ///< by the scan at hand
  std::array<bool, 4> quantization_{};
  std::array<std::array<bool, 2>, 2> huffman_{};
  bool jfif_ = false;
  int adobeTransform_ = -1;
};

}  // namespace

JpegImage jpegImage(const QByteArray& jpeg) { return JpegReader(jpeg).read(); }

}  // namespace bridge
