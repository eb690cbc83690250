// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include "bridge/dicom/Study.h"

namespace bridge {

/// Whether every study would match the query.
inline bool isUnrestricted(const StudyQuery& query) {
  return query.studyInstanceUID.isEmpty() && query.accessionNumber.isEmpty() && query.patientID.isEmpty() &&
         !query.studyDate.isValid();
}

/// Whether no study can match: DICOM separates values with a backslash, so none holds one, and an archive
/// would take the query for a list of values.
inline bool cannotMatch(const StudyQuery& query) {
  return (query.studyInstanceUID + query.accessionNumber + query.patientID).contains(QLatin1Char('\\'));
}

/// Whether the study is what was asked for, letter by letter except for padding. An archive may match more:
/// "*" and "?" are wildcards to it, and it may ignore case.
inline bool matches(const Study& study, const StudyQuery& query) {
  const auto same = [](const QString& asked, const QString& found) {
    return asked.isEmpty() || asked.trimmed() == found.trimmed();
  };
  return !study.studyInstanceUID.isEmpty() && same(query.studyInstanceUID, study.studyInstanceUID) &&
         same(query.accessionNumber, study.accessionNumber) && same(query.patientID, study.patientID) &&
         (!query.studyDate.isValid() || query.studyDate == study.studyDate);
}

}  // namespace bridge
