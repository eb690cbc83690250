// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDate>
#include <QString>

/// What the texts of DICOM attributes may be (PS3.5 6.2), for reading and for writing them.
namespace bridge {

/// Whether the text can be one value, whatever its length: no control characters, no backslash, which
/// separates values, and nothing that is not Unicode.
bool isOneValue(const QString& text);
/// Whether the text can be the value of a long string (64 characters) as it is.
bool isLongString(const QString& text);
/// Whether the text can be the value of a short string (16 characters) as it is.
bool isShortString(const QString& text);
/// Whether the text is a DICOM time (TM).
bool isTime(const QString& text);

/// Whether the text is a Patient's Sex (PS3.3 C.7.1.1): male, female or other.
bool isSex(const QString& text);

/// Without leading spaces and without trailing spaces and NULs, with which values are padded.
QString withoutPadding(const QString& text);

/// The day that "YYYYMMDD" or, as it was written before 1993, "YYYY.MM.DD" stands for. Invalid for any other
/// text, and where there is no such day.
QDate dateFromDicom(const QString& text);
/// "YYYYMMDD"; empty for an invalid date.
QString dicomDate(QDate date);

/// The text cleaned and cut to a long string.
QString asLongString(const QString& text);
/// The name cleaned: at most three component groups of five components, each group at most 64 characters.
QString asPersonName(const QString& name);
/// The component groups of a name as they are, but for groups that hold nothing except delimiters: these
/// become empty, and trailing ones go. An archive that cannot answer in a script leaves just its delimiters.
QString withoutEmptyGroups(const QString& name);

}  // namespace bridge
