// SPDX-License-Identifier: LGPL-3.0-or-later
#include "orv/documents/OrvChecksum.h"

#include <QCryptographicHash>

namespace velmora::orv {

namespace {

constexpr qsizetype Digits = 64;

/// Where the digits begin, or -1. Inside a string quotation marks are escaped, and the members of the
/// outermost object stand in alphabetical order with only "application", a string, before this one: the first
/// place is the right one.
qsizetype placeOfDigits(const QByteArray& file) {
  static const QByteArray key = "\"checksum\": \"";
  const qsizetype found = file.indexOf(key);
  if (found < 0 || found + key.size() + Digits > file.size()) return -1;
  return found + key.size();
}

QByteArray checksumOf(const QByteArray& file) {
  return QCryptographicHash::hash(file, QCryptographicHash::Sha256).toHex();
}

}  // namespace

QByteArray emptyChecksum() { return QByteArray(Digits, '0'); }

QByteArray withChecksum(QByteArray file) {
  const qsizetype place = placeOfDigits(file);
  if (place >= 0) file.replace(place, Digits, checksumOf(file));
  return file;
}

bool checksumHolds(QByteArray file) {
  const qsizetype place = placeOfDigits(file);
  if (place < 0) return false;
  const QByteArray stated = file.mid(place, Digits);
  file.replace(place, Digits, emptyChecksum());
  return stated == checksumOf(file);
}

}  // namespace velmora::orv
