// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QMap>
#include <array>

#include "bridge/dicom/Study.h"

namespace bridge {

/// A data element's tag as one number, the group in the upper half.
using Tag = quint32;

namespace tags {
inline constexpr Tag SpecificCharacterSet = 0x00080005;
inline constexpr Tag StudyDate = 0x00080020;
inline constexpr Tag StudyTime = 0x00080030;
inline constexpr Tag AccessionNumber = 0x00080050;
inline constexpr Tag ReferringPhysicianName = 0x00080090;
inline constexpr Tag StudyDescription = 0x00081030;
inline constexpr Tag PatientName = 0x00100010;
inline constexpr Tag PatientID = 0x00100020;
inline constexpr Tag IssuerOfPatientID = 0x00100021;
inline constexpr Tag PatientBirthDate = 0x00100030;
inline constexpr Tag PatientSex = 0x00100040;
inline constexpr Tag StudyInstanceUID = 0x0020000d;
inline constexpr Tag StudyID = 0x00200010;
}  // namespace tags

/// All that a study is read from, in the order of the data set.
inline constexpr std::array<Tag, 13> studyTags{tags::SpecificCharacterSet,
                                               tags::StudyDate,
                                               tags::StudyTime,
                                               tags::AccessionNumber,
                                               tags::ReferringPhysicianName,
                                               tags::StudyDescription,
                                               tags::PatientName,
                                               tags::PatientID,
                                               tags::IssuerOfPatientID,
                                               tags::PatientBirthDate,
                                               tags::PatientSex,
                                               tags::StudyInstanceUID,
                                               tags::StudyID};

/// The study that the undecoded values describe. Longer ones than `LongestValue` bytes are cut.
Study studyOf(const QMap<Tag, QByteArray>& values);

inline constexpr qsizetype LongestValue = 4096;

}  // namespace bridge
