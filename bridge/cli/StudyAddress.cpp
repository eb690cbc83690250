// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/cli/StudyAddress.h"

#include <QRegularExpression>
#include <QSet>
#include <QStringDecoder>
#include <algorithm>
#include <optional>

#include "base/CalendarDay.h"
#include "bridge/dicom/Uid.h"
#include "link/protocol/BundleIdentifier.h"

using namespace velmora;

namespace bridge {

namespace {

constexpr int LongestIdentifier = 64;

base::Failure refused(const char* reason) { return {QString::fromLatin1(reason)}; }

/// Decodes a percent-encoded text. Returns nothing when a percent sign is not followed by two digits, or the
/// bytes are not UTF-8.
std::optional<QString> decoded(const QString& encoded) {
  static const QRegularExpression broken(QStringLiteral("%(?![0-9A-Fa-f]{2})"));
  if (encoded.contains(broken)) return std::nullopt;
  const QByteArray bytes = QByteArray::fromPercentEncoding(encoded.toLatin1());
  // A byte order mark stays in the text, where it is then refused.
  QStringDecoder decoder(QStringDecoder::Utf8,
                         QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
  const QString text = decoder(bytes);
  if (decoder.hasError()) return std::nullopt;
  return text;
}

bool isForbiddenInIdentifiers(char32_t c) {
  if (c == U'\\' || c == U'*' || c == U'?' || c == 0xfeff || QChar::isNonCharacter(c)) return true;
  switch (QChar::category(c)) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Other_Surrogate:
    case QChar::Other_NotAssigned:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
      return true;
    default:
      return false;
  }
}

/// Takes one value; fails when something is wrong with it.
base::Result<> take(StudyAddress& address, const QString& key, const QString& value) {
  if (key == QLatin1String("uid")) {
    if (!isUid(value)) return refused("its uid is no Study Instance UID");
    address.query.studyInstanceUID = value;
  } else if (key == QLatin1String("accession")) {
    if (!isPlainIdentifier(value)) return refused("its accession number is not acceptable");
    address.query.accessionNumber = value;
  } else if (key == QLatin1String("patient")) {
    if (!isPlainIdentifier(value)) return refused("its patient identifier is not acceptable");
    address.query.patientID = value;
  } else if (key == QLatin1String("date")) {
    const QDate day = base::dayFromIso(value);
    if (!base::noonOf(day).isValid()) return refused("its date is not of the form YYYY-MM-DD");
    address.query.studyDate = day;
  } else if (key == QLatin1String("application")) {
    if (!link::isBundleIdentifier(value)) return refused("its application is no bundle identifier");
    address.application = value;
  } else {
    return refused("it has a key that does not belong there");
  }
  return {};
}

}  // namespace

bool isPlainIdentifier(const QString& text) {
  const QList<uint> characters = text.toUcs4();
  return !text.trimmed().isEmpty() && characters.size() <= LongestIdentifier &&
         std::none_of(characters.begin(), characters.end(), isForbiddenInIdentifiers);
}

base::Result<StudyAddress> studyAddress(const QString& address) {
  if (address.size() > LongestAddress) return refused("it is too long");
  const bool printable = std::all_of(address.begin(), address.end(),
                                     [](QChar c) { return c.unicode() > 0x20 && c.unicode() < 0x7f; });
  if (!printable) return refused("it holds characters that no address has");
  const QString beginning = QStringLiteral("velmora-link:study?");
  // Schemes are case-insensitive (RFC 3986, 3.1); what follows is ours.
  const qsizetype scheme = beginning.indexOf(QLatin1Char(':')) + 1;
  if (address.left(scheme).toLower() + address.mid(scheme, beginning.size() - scheme) != beginning) {
    return refused("it does not begin with \"velmora-link:study?\"");
  }
  if (address.contains(QLatin1Char('#'))) return refused("it names a part of a study");
  StudyAddress result;
  QSet<QString> keys;
  for (const QString& pair : address.mid(beginning.size()).split(QLatin1Char('&'))) {
    const qsizetype equals = pair.indexOf(QLatin1Char('='));
    const QString key = pair.left(std::max<qsizetype>(equals, 0));
    if (keys.contains(key)) return refused("it says the same thing twice");
    keys.insert(key);
    const auto value = decoded(pair.mid(equals + 1));
    if (!value) return refused("a value in it is not percent-encoded UTF-8");
    const base::Result<> taken = take(result, key, *value);
    if (!taken) return taken.failure();
  }
  if (result.query.studyInstanceUID.isEmpty() && result.query.accessionNumber.isEmpty() &&
      result.query.patientID.isEmpty()) {
    return refused("it names no study");
  }
  return result;
}

}  // namespace bridge
