// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/dicom/Uid.h"

#include <QRegularExpression>
#include <QUuid>
#include <algorithm>

namespace bridge {
namespace {

/// The UUID as one whole number in decimal digits, after "2.25." (PS3.5 B.2; ITU-T X.667, 6.3).
QString uidFrom(const QUuid& uuid) {
  const QByteArray bytes = uuid.toRfc4122();
  QByteArray digits(1, '\0');  // values 0 to 9, the last digit first
  for (const char byte : bytes) {
    int carry = static_cast<unsigned char>(byte);
    for (char& digit : digits) {
      carry += digit * 256;
      digit = static_cast<char>(carry % 10);
      carry /= 10;
    }
    for (; carry > 0; carry /= 10) digits.append(static_cast<char>(carry % 10));
  }
  QString uid = QStringLiteral("2.25.");
  std::reverse(digits.begin(), digits.end());
  for (const char digit : std::as_const(digits)) uid += QChar::fromLatin1(static_cast<char>('0' + digit));
  return uid;
}

}  // namespace

QString newUid() { return uidFrom(QUuid::createUuid()); }

QString uidOf(const QString& text) {
  // The name space of this system's UIDs; changing it would give every series a second UID.
  static const QUuid names(QStringLiteral("{6a1d2c0e-4f0b-4f7e-9f6b-7c1b8d3f52a4}"));
  return uidFrom(QUuid::createUuidV5(names, text));
}

bool isUid(const QString& text) {
  static const QRegularExpression form(QStringLiteral("\\A[0-9]+(\\.[0-9]+)+\\z"));
  return text.size() <= 64 && form.match(text).hasMatch();
}

}  // namespace bridge
