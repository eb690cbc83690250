// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace bridge {

/// The text of an attribute's bytes, of which the data set says that they are in `specificCharacterSet` (the
/// bytes of (0008,0005), PS3.3 C.12.1.1.2): one set, or several with the escape sequences of ISO 2022 between
/// them. Escape sequences are obeyed whether or not the data set announces them. Where the set is unknown, or
/// the bytes are not in it, they are taken as UTF-8 if they are that, and as Latin-1 otherwise: some wrong
/// letters rather than no patient.
///
/// Written here because the DICOM toolkit of Debian 12 leaves this to the C library's conversions, which know
/// the Japanese double-byte sets only under names that it does not ask for: ISO 2022 IR 87 and 159 fail with
/// it.
QString decodedText(const QByteArray& bytes, const QByteArray& specificCharacterSet);

}  // namespace bridge
