// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include "bridge/dicom/Study.h"

namespace bridge {

/// Whether a query leaves everything open: every study would match.
inline bool asksForNothing(const StudyQuery& query) {
  return query.studyInstanceUID.isEmpty() && query.accessionNumber.isEmpty() && query.patientID.isEmpty() &&
         !query.studyDate.isValid();
}

/// Whether no study can match: DICOM separates values with a backslash, so none holds one, and an archive
/// would take the query for a list of values.
inline bool asksForTheImpossible(const StudyQuery& query) {
  return (query.studyInstanceUID + query.accessionNumber + query.patientID).contains(QLatin1Char('\\'));
}

/// Whether the study is what was asked for, letter by letter but for padding. An archive may match more
/// generously: "*" and "?" are wildcards to it, and it may not tell capital letters from small ones.
inline bool matches(const Study& study, const StudyQuery& query) {
  const auto same = [](const QString& asked, const QString& found) {
    return asked.isEmpty() || asked.trimmed() == found.trimmed();
  };
  return !study.studyInstanceUID.isEmpty() && same(query.studyInstanceUID, study.studyInstanceUID) &&
         same(query.accessionNumber, study.accessionNumber) && same(query.patientID, study.patientID) &&
         (!query.studyDate.isValid() || query.studyDate == study.studyDate);
}

}  // namespace bridge
