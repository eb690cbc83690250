// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>

/// Texts as the values of DICOM attributes may be written (PS3.5 6.2): on one line, without the backslash
/// that separates values, and not too long.
namespace bridge {

/// Whether the text can be the value of a long string (64 characters) as it is.
bool isLongString(const QString& text);
/// Whether the text can be the value of a short string (16 characters) as it is.
bool isShortString(const QString& text);
/// Whether the text is a UID: numbers with dots, at most 64 characters (PS3.5 9.1). Numbers that begin with a
/// zero are not allowed but seen, and an archive with such a study wants its charts too.
bool isUid(const QString& text);
/// Whether the text is a DICOM time (PS3.5 6.2, TM).
bool isTime(const QString& text);

/// The text cleaned and cut to a long string.
QString asLongString(const QString& text);
/// The name cleaned: at most three component groups of five components, each group at most 64 characters.
QString asPersonName(const QString& name);

}  // namespace bridge
