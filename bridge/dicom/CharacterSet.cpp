// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/dicom/CharacterSet.h"

#include <iconv.h>

#include <QList>
#include <QStringDecoder>
#include <array>
#include <optional>

namespace bridge {
namespace {

/// How the bytes of one coded character set become one of the C library's encodings.
struct CodedSet {
  enum class Kind {
    OneByte,   ///< as they are; the lower half is ASCII
    Romaji,    ///< JIS X 0201, left half: ASCII but for the overline; its yen sign separates values here
    Katakana,  ///< JIS X 0201, right half
    Kanji,     ///< JIS X 0208, two bytes in the lower half
    SupplementaryKanji,  ///< JIS X 0212, two bytes in the lower half
    TwoByteUpper,        ///< two bytes in the upper half, as they are
    WholeText,           ///< an encoding of its own that knows no escape sequences
  };
  int registration;      ///< ISO-IR number; 0 for the sets that have none
  const char* escape;    ///< what follows the escape character
  const char* encoding;  ///< the C library's name
  Kind kind;
};

// PS3.3 tables C.12-2 to C.12-5.
constexpr std::array<CodedSet, 21> codedSets{{
    {6, "(B", "US-ASCII", CodedSet::Kind::OneByte},
    {100, "-A", "ISO-8859-1", CodedSet::Kind::OneByte},
    {101, "-B", "ISO-8859-2", CodedSet::Kind::OneByte},
    {109, "-C", "ISO-8859-3", CodedSet::Kind::OneByte},
    {110, "-D", "ISO-8859-4", CodedSet::Kind::OneByte},
    {144, "-L", "ISO-8859-5", CodedSet::Kind::OneByte},
    {127, "-G", "ISO-8859-6", CodedSet::Kind::OneByte},
    {126, "-F", "ISO-8859-7", CodedSet::Kind::OneByte},
    {138, "-H", "ISO-8859-8", CodedSet::Kind::OneByte},
    {148, "-M", "ISO-8859-9", CodedSet::Kind::OneByte},
    {203, "-b", "ISO-8859-15", CodedSet::Kind::OneByte},
    {166, "-T", "TIS-620", CodedSet::Kind::OneByte},
    {14, "(J", "US-ASCII", CodedSet::Kind::Romaji},
    {13, ")I", "EUC-JP", CodedSet::Kind::Katakana},
    {87, "$B", "EUC-JP", CodedSet::Kind::Kanji},
    {159, "$(D", "EUC-JP", CodedSet::Kind::SupplementaryKanji},
    {149, "$)C", "EUC-KR", CodedSet::Kind::TwoByteUpper},
    {58, "$)A", "GB2312", CodedSet::Kind::TwoByteUpper},
    {192, nullptr, "UTF-8", CodedSet::Kind::WholeText},
    {0, nullptr, "GB18030", CodedSet::Kind::WholeText},
    {0, nullptr, "GBK", CodedSet::Kind::WholeText},
}};

const CodedSet* registered(int registration) {
  for (const CodedSet& set : codedSets) {
    if (set.registration == registration) return &set;
  }
  return nullptr;
}

/// The set that one value of the attribute names. Spellings that are seen in the field ("ISO-IR 100",
/// "ISO_IR_100") are read as what they mean.
const CodedSet* named(const QByteArray& value) {
  const QByteArray name = value.trimmed().toUpper();
  if (name.isEmpty()) return registered(6);
  for (const CodedSet& set : codedSets) {
    if (set.kind == CodedSet::Kind::WholeText && name == set.encoding) return &set;
  }
  if (!name.startsWith("ISO")) return nullptr;
  qsizetype digits = name.size();
  while (digits > 0 && name.at(digits - 1) >= '0' && name.at(digits - 1) <= '9') --digits;
  bool number = false;
  const int registration = name.mid(digits).toInt(&number);
  return number && registration > 0 ? registered(registration) : nullptr;
}

bool isLowerHalf(const CodedSet& set) {
  return set.registration == 6 || set.kind == CodedSet::Kind::Romaji || set.kind == CodedSet::Kind::Kanji ||
         set.kind == CodedSet::Kind::SupplementaryKanji;
}

std::optional<QString> converted(const QByteArray& bytes, const char* encoding) {
  const iconv_t conversion = iconv_open("UTF-16LE", encoding);
  // NOLINTNEXTLINE(performance-no-int-to-ptr): iconv's own way of saying no
  if (conversion == iconv_t(-1)) return std::nullopt;
  QByteArray units(bytes.size() * 4 + 16, '\0');  // no set here has characters of more than four bytes
  QByteArray source = bytes;
  char* in = source.data();
  size_t inLeft = static_cast<size_t>(source.size());
  char* out = units.data();
  size_t outLeft = static_cast<size_t>(units.size());
  const size_t result = iconv(conversion, &in, &inLeft, &out, &outLeft);
  iconv_close(conversion);
  if (result == size_t(-1) || inLeft != 0) return std::nullopt;
  units.truncate(units.size() - static_cast<qsizetype>(outLeft));
  QStringDecoder decoder(QStringDecoder::Utf16LE, QStringDecoder::Flag::Stateless);
  QString text = decoder(units);
  if (decoder.hasError()) return std::nullopt;
  return text;
}

/// Bytes with escape sequences between them (PS3.5 6.1.2.5).
class CodeExtensions {
 public:
  explicit CodeExtensions(const CodedSet& first)
      : initialLower_(first.kind == CodedSet::Kind::Katakana ? registered(14) : registered(6)),
        initialUpper_(isLowerHalf(first) ? nullptr : &first) {}

  std::optional<QString> decode(const QByteArray& bytes) {
    reset();
    for (qsizetype i = 0; i < bytes.size();) {
      const int taken = take(bytes, i);
      if (taken == 0) return std::nullopt;
      i += taken;
    }
    if (!flush()) return std::nullopt;
    return text_;
  }

 private:
  void reset() {
    lower_ = initialLower_;
    upper_ = initialUpper_;
  }

  /// How many bytes from `i` on were understood; 0 for none.
  int take(const QByteArray& bytes, qsizetype i) {
    const auto byte = static_cast<unsigned char>(bytes.at(i));
    if (byte == 0x1b) return escape(bytes, i + 1);
    const bool twoBytesLower =
        lower_->kind == CodedSet::Kind::Kanji || lower_->kind == CodedSet::Kind::SupplementaryKanji;
    if (byte < 0x80) {
      if (byte > 0x20 && twoBytesLower) return takeKanji(bytes, i);
      if (byte == '\r' || byte == '\n' || byte == '\t' || byte == '\f' || byte == '\\' || byte == '^' ||
          byte == '=') {
        reset();
      }
      const bool overline = byte == '~' && lower_->kind == CodedSet::Kind::Romaji;
      return append(overline ? QByteArray("\xe2\x80\xbe") : bytes.mid(i, 1), overline ? "UTF-8" : "US-ASCII")
                 ? 1
                 : 0;
    }
    if (!upper_) return 0;
    switch (upper_->kind) {
      case CodedSet::Kind::Katakana:
        return append('\x8e' + bytes.mid(i, 1), upper_->encoding) ? 1 : 0;
      case CodedSet::Kind::TwoByteUpper:
        return i + 1 < bytes.size() && append(bytes.mid(i, 2), upper_->encoding) ? 2 : 0;
      default:
        return append(bytes.mid(i, 1), upper_->encoding) ? 1 : 0;
    }
  }

  int takeKanji(const QByteArray& bytes, qsizetype i) {
    if (i + 1 >= bytes.size()) return 0;
    QByteArray pair = bytes.mid(i, 2);
    for (char& half : pair) half = static_cast<char>(half | '\x80');
    if (lower_->kind == CodedSet::Kind::SupplementaryKanji) pair.prepend('\x8f');
    return append(pair, lower_->encoding) ? 2 : 0;
  }

  int escape(const QByteArray& bytes, qsizetype start) {
    for (const CodedSet& set : codedSets) {
      if (!set.escape) continue;
      const QByteArray sequence(set.escape);
      if (bytes.mid(start, sequence.size()) != sequence) continue;
      (isLowerHalf(set) ? lower_ : upper_) = &set;
      return static_cast<int>(1 + sequence.size());
    }
    return 0;
  }

  /// Collects what is in one encoding, so that it is converted at one go.
  bool append(const QByteArray& bytes, const char* encoding) {
    if (encoding_ && qstrcmp(encoding_, encoding) != 0 && !flush()) return false;
    encoding_ = encoding;
    run_ += bytes;
    return true;
  }

  bool flush() {
    if (run_.isEmpty()) return true;
    const std::optional<QString> part = converted(run_, encoding_);
    run_.clear();
    if (part) text_ += *part;
    return part.has_value();
  }

  const CodedSet* initialLower_;
  const CodedSet* initialUpper_;
  const CodedSet* lower_ = nullptr;
  const CodedSet* upper_ = nullptr;
  const char* encoding_ = nullptr;
  QByteArray run_;
  QString text_;
};

std::optional<QString> decodedAsSaid(const QByteArray& bytes, const QByteArray& specificCharacterSet) {
  const CodedSet* const first = named(specificCharacterSet.split('\\').constFirst());
  if (!first) return std::nullopt;
  if (first->kind == CodedSet::Kind::WholeText) return converted(bytes, first->encoding);
  return CodeExtensions(*first).decode(bytes);
}

}  // namespace

QString decodedText(const QByteArray& bytes, const QByteArray& specificCharacterSet) {
  if (const std::optional<QString> text = decodedAsSaid(bytes, specificCharacterSet)) return *text;
  QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
  const QString text = utf8(bytes);
  return utf8.hasError() ? QString::fromLatin1(bytes) : text;
}

}  // namespace bridge
