// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/pacs/DicomFileParts.h"

#include <QtEndian>

namespace bridge {

namespace {

constexpr qsizetype Preamble = 128;
constexpr qsizetype Prefix = 4;  // "DICM"
constexpr qsizetype ShortHeader = 8;
constexpr qsizetype LongHeader = 12;

template <typename Number>
Number numberAt(const QByteArray& bytes, qsizetype offset) {
  return qFromLittleEndian<Number>(bytes.constData() + offset);
}

/// The value representations whose length takes four bytes, PS3.5 table 7.1-1, as far as a meta header may
/// hold them.
bool hasLongLength(const QByteArray& vr) { return vr == "OB" || vr == "OW" || vr == "UN" || vr == "UT"; }

QByteArray withoutPadding(QByteArray uid) {
  while (uid.endsWith('\0') || uid.endsWith(' ')) uid.chop(1);
  return uid;
}

QByteArray element(quint16 number, const char* vr, QByteArray value) {
  if (value.size() % 2 != 0) value.append('\0');
  QByteArray header(ShortHeader, '\0');
  qToLittleEndian<quint16>(0x0002, header.data());
  qToLittleEndian<quint16>(number, header.data() + 2);
  header.replace(4, 2, vr);
  qToLittleEndian<quint16>(static_cast<quint16>(value.size()), header.data() + 6);
  return header + value;
}

}  // namespace

std::optional<DicomFileParts> partsOf(const QByteArray& file) {
  if (file.mid(Preamble, Prefix) != "DICM") return std::nullopt;
  DicomFileParts parts;
  qsizetype offset = Preamble + Prefix;
  // The meta header is explicit little endian whatever follows it, and all of group 0002.
  while (file.size() - offset >= ShortHeader && numberAt<quint16>(file, offset) == 0x0002) {
    const quint16 number = numberAt<quint16>(file, offset + 2);
    const bool isLong = hasLongLength(file.mid(offset + 4, 2));
    const qsizetype header = isLong ? LongHeader : ShortHeader;
    if (file.size() - offset < header) return std::nullopt;
    const qsizetype size = isLong ? static_cast<qsizetype>(numberAt<quint32>(file, offset + 8))
                                  : static_cast<qsizetype>(numberAt<quint16>(file, offset + 6));
    if (file.size() - offset - header < size) return std::nullopt;
    const QByteArray value = withoutPadding(file.mid(offset + header, size));
    if (number == 0x0002) parts.sopClassUID = value;
    if (number == 0x0003) parts.sopInstanceUID = value;
    if (number == 0x0010) parts.transferSyntaxUID = value;
    offset += header + size;
  }
  if (parts.transferSyntaxUID.isEmpty() || file.size() - offset < ShortHeader) return std::nullopt;
  parts.dataset = file.mid(offset);
  return parts;
}

QByteArray fileOf(const QByteArray& dataset, const QByteArray& transferSyntaxUID) {
  const QByteArray syntax = element(0x0010, "UI", transferSyntaxUID);
  QByteArray length(4, '\0');
  qToLittleEndian<quint32>(static_cast<quint32>(syntax.size()), length.data());
  return QByteArray(Preamble, '\0') + "DICM" + element(0x0000, "UL", length) + syntax + dataset;
}

}  // namespace bridge
