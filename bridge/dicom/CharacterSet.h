// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace bridge {

/// Decodes the bytes of an attribute. `specificCharacterSet` is the value of (0008,0005) (PS3.3 C.12.1.1.2):
/// one character set, or several, switched by the escape sequences of ISO 2022. Escape sequences are obeyed
/// whether or not the data set announces them. If the character set is unknown, or the bytes are not valid in
/// it, they are decoded as UTF-8 if they are valid UTF-8, and as Latin-1 otherwise: a few wrong letters
/// rather than no patient.
///
/// Written here because the DICOM toolkit of Debian 12 leaves this to the C library, which knows the Japanese
/// double-byte sets only under names that the toolkit does not ask for: ISO 2022 IR 87 and 159 fail with it.
QString decodedText(const QByteArray& bytes, const QByteArray& specificCharacterSet);

}  // namespace bridge
