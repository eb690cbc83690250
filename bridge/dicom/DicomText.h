// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDate>
#include <QString>

/// The rules for the texts of DICOM attributes (PS3.5 6.2), for reading and writing.
namespace bridge {

/// Whether the text can be a single value of any length: no control characters, no backslash, which separates
/// values, and nothing but valid Unicode.
bool isOneValue(const QString& text);
/// Whether the text can be a long string (64 characters) unchanged.
bool isLongString(const QString& text);
/// Whether the text can be a short string (16 characters) unchanged.
bool isShortString(const QString& text);
/// Whether the text is a DICOM time (TM).
bool isTime(const QString& text);

/// Whether the text is a Patient's Sex (PS3.3 C.7.1.1): male, female or other.
bool isSex(const QString& text);

/// The text without leading spaces and without the trailing spaces and NULs that pad values.
QString withoutPadding(const QString& text);

/// The day written "YYYYMMDD" or, as before 1993, "YYYY.MM.DD". Invalid for any other text and for a day that
/// does not exist.
QDate dateFromDicom(const QString& text);
/// "YYYYMMDD"; empty for an invalid date.
QString dicomDate(QDate date);

/// The text cleaned and truncated to a long string.
QString asLongString(const QString& text);
/// The name cleaned: at most three component groups of five components, each group at most 64 characters.
QString asPersonName(const QString& name);
/// The name with component groups that hold only delimiters emptied, and trailing ones removed. An archive
/// that cannot answer in a script leaves just its delimiters.
QString withoutEmptyGroups(const QString& name);

}  // namespace bridge
