// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <array>

#include "bridge/dicom/Study.h"

namespace bridge {

/// A data element's tag as one number, the group in the upper half.
using Tag = quint32;

namespace tags {
inline constexpr Tag TransferSyntaxUID = 0x00020010;
inline constexpr Tag SpecificCharacterSet = 0x00080005;
inline constexpr Tag StudyDate = 0x00080020;
inline constexpr Tag StudyTime = 0x00080030;
inline constexpr Tag AccessionNumber = 0x00080050;
inline constexpr Tag ReferringPhysicianName = 0x00080090;
inline constexpr Tag StudyDescription = 0x00081030;
inline constexpr Tag ReferencedSOPInstanceUID = 0x00081155;
inline constexpr Tag FailureReason = 0x00081197;
inline constexpr Tag FailedSOPSequence = 0x00081198;
inline constexpr Tag ReferencedSOPSequence = 0x00081199;
inline constexpr Tag PatientName = 0x00100010;
inline constexpr Tag PatientID = 0x00100020;
inline constexpr Tag IssuerOfPatientID = 0x00100021;
inline constexpr Tag PatientBirthDate = 0x00100030;
inline constexpr Tag PatientSex = 0x00100040;
inline constexpr Tag StudyInstanceUID = 0x0020000d;
inline constexpr Tag StudyID = 0x00200010;
}  // namespace tags

/// The attributes of a study and its patient, in the order of the data set.
inline constexpr std::array<Tag, 12> StudyAttributes{
    tags::StudyDate,        tags::StudyTime,   tags::AccessionNumber,  tags::ReferringPhysicianName,
    tags::StudyDescription, tags::PatientName, tags::PatientID,        tags::IssuerOfPatientID,
    tags::PatientBirthDate, tags::PatientSex,  tags::StudyInstanceUID, tags::StudyID};

/// The study that these values describe. The values are decoded and otherwise as received, several values of
/// one attribute separated by backslashes. Every transport goes through here, so that the same values give
/// the same study.
///
/// Identifiers, UIDs and dates are taken whole, without padding, or not at all: part of a Patient ID, or the
/// first of two, may be another patient's, and part of an accession number another order's. One that holds a
/// control character, several values, a character that was lost on the way (U+FFFD) or more than
/// `LongestText` characters is empty (a date invalid), as is a Study Instance UID that is not a UID. A study
/// whose issuer cannot be read has no Patient ID either: from another issuer it is another patient's.
///
/// Names, descriptions and times are for reading: the first value, without control characters, truncated
/// after `LongestText` characters. A time that is not ASCII is empty, as is a sex other than "M", "F" and
/// "O".
Study studyOf(const QMap<Tag, QString>& texts);

/// The same for undecoded values. Texts are decoded by the value of Specific Character Set among them (PS3.3
/// C.12.1.1.2); see decodedText() for where that is unknown or untrue.
Study studyOf(const QMap<Tag, QByteArray>& values);

/// In UTF-16 units. The longest attribute of a study that PS3.5 allows, a person name, has 3 x 64 characters.
inline constexpr int LongestText = 1024;

}  // namespace bridge
