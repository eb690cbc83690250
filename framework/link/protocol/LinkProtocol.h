// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>

/// The names that an application of the family and the viewer's end of the link agree on.
///
/// Both directions use the same notification name, "<bundle identifier>.osirixLink", and are told apart by
/// the object: requests (a study chosen in the viewer) and replies (a chart for that study). The details are
/// a dictionary with the keys below. Dates are points in time; a calendar date travels as noon, local time,
/// of that day.
namespace velmora::link {

inline const QString RequestObject = QStringLiteral("OsirixLink");
inline const QString ReplyObject = QStringLiteral("OsirixLinkReturn");

/// The patient's identifier, a string. Required in requests, always present in replies.
inline const QString Identifier = QStringLiteral("Identifier");
/// The patient's name, a string.
inline const QString Name = QStringLiteral("Name");
/// Date of birth, a date.
inline const QString DateOfBirth = QStringLiteral("DateOfBirth");
/// Date of the examination, a date.
inline const QString DateOfStudy = QStringLiteral("DateOfStudy");
/// The viewer's identifier of the study; kept and returned as it came.
inline const QString OsiriXStudyID = QStringLiteral("OsiriXStudyID");
/// Caption for the image series, a string. Replies only, always present.
inline const QString StudyDescription = QStringLiteral("StudyDescription");
/// The chart as a JPEG file image, bytes. Replies only, always present.
inline const QString JPEG = QStringLiteral("JPEG");

/// The notification name of the application with that bundle identifier.
inline QString notificationName(const QString& bundleIdentifier) {
  return bundleIdentifier + QStringLiteral(".osirixLink");
}

}  // namespace velmora::link
