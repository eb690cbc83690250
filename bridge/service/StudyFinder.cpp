// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/service/StudyFinder.h"

#include <QStringList>
#include <algorithm>

#include "bridge/dicom/Uid.h"
#include "bridge/spool/RequestHistory.h"

using namespace velmora;

namespace bridge {
namespace {

/// The study, unless it is another patient's.
PacsResult<Study> found(const SpooledReply& reply, const Study& study) {
  const base::Result<> agrees = checkSamePatient(reply, study);
  if (!agrees) return PacsFailure::never(agrees.error());
  return study;
}

/// The only study with that UID among those that the PACS returned.
PacsResult<Study> only(const SpooledReply& reply, QList<Study> studies, const QString& uid) {
  studies.removeIf([&uid](const Study& study) { return study.studyInstanceUID != uid; });
  if (studies.isEmpty()) return PacsFailure::never(QStringLiteral("the PACS does not know its study"));
  if (studies.size() > 1) return PacsFailure::never(QStringLiteral("the PACS has its study more than once"));
  return found(reply, studies.first());
}

/// Whether two studies may be of different patients, as far as the PACS tells.
bool areDifferentPatients(const Study& one, const Study& other) {
  const auto difference = contradiction(one, other);
  // Sex and name may have been corrected between the two.
  if (difference && *difference < PatientAttribute::Sex) return true;
  // One issuer unnamed: it may be the other one, where the birth date says so, too.
  const bool bornTogether = one.birthDate.isValid() && one.birthDate == other.birthDate;
  return one.issuerOfPatientID != other.issuerOfPatientID && !bornTogether;
}

/// Compares each with each: of three, the first may be compatible with both others, and those not with each
/// other.
bool hasSeveralPatients(const QList<Study>& studies) {
  for (const Study& one : studies) {
    for (const Study& other : studies) {
      if (areDifferentPatients(one, other)) return true;
    }
  }
  return false;
}

/// More would take too many queries: each hyphen doubles their number.
constexpr qsizetype MostHyphens = 5;

/// Every Patient ID that an application would hold as this identifier.
QStringList patientIDs(const QString& identifier) {
  QStringList all{QString()};
  for (const QChar c : identifier) {
    QStringList longer;
    for (const QString& beginning : all) {
      longer.append(beginning + c);
      if (c == QLatin1Char('-')) longer.append(beginning + QLatin1Char('/'));
    }
    all = longer;
  }
  return all;
}

/// All studies of the patients whose identifier an application would hold as this one.
PacsResult<QList<Study>> ofPatient(const QString& identifier, Pacs& pacs) {
  QList<Study> studies;
  for (const QString& patientID : patientIDs(identifier)) {
    StudyQuery query;
    query.patientID = patientID;
    const PacsResult<QList<Study>> found = pacs.findStudies(query);
    if (!found.ok()) return found;
    // An archive that ignores case, or takes a character for a wildcard, returns too
    // much.
    for (const Study& study : *found) {
      if (study.patientID.trimmed() == patientID) studies.append(study);
    }
  }
  return studies;
}

}  // namespace

base::Result<> checkSamePatient(const SpooledReply& reply, const Study& study) {
  Study ours;
  ours.patientID = applicationIdentifier(reply.identifier);
  ours.birthDate = reply.birthDay;
  Study theirs;
  theirs.patientID = applicationIdentifier(study.patientID);
  theirs.birthDate = study.birthDate;
  if (ours.patientID.isEmpty()) return base::Failure{QStringLiteral("it has no patient's identifier")};
  if (theirs.patientID.isEmpty()) return base::Failure{QStringLiteral("its study has no Patient ID")};
  const auto difference = contradiction(ours, theirs);
  if (difference == PatientAttribute::BirthDate) {
    return base::Failure{QStringLiteral("its birth date is not that of the study's patient")};
  }
  // An application may turn the identifier of its first document into capitals. In capitals it may be another
  // patient's, so the birth date must agree, too.
  const bool inCapitals = ours.patientID == theirs.patientID.toUpper() && ours.birthDate.isValid() &&
                          ours.birthDate == theirs.birthDate;
  if (difference && !inCapitals) {
    return base::Failure{QStringLiteral("its identifier is not that of the study's patient")};
  }
  return {};
}

PacsResult<Study> studyOfUID(const QString& uid, const SpooledReply& reply, Pacs& pacs) {
  if (!isUid(uid)) return PacsFailure::never(QStringLiteral("its study ID is not a Study Instance UID"));
  StudyQuery query;
  query.studyInstanceUID = uid;
  const PacsResult<QList<Study>> studies = pacs.findStudies(query);
  return studies.ok() ? only(reply, *studies, uid) : studies.failure();
}

PacsResult<Study> findStudyFor(const SpooledReply& reply, Pacs& pacs) {
  const QString identifier = applicationIdentifier(reply.identifier);
  if (identifier.isEmpty()) return PacsFailure::never(QStringLiteral("it has no patient's identifier"));
  const QString uid = reply.studyID.trimmed();
  if (!uid.isEmpty()) return studyOfUID(uid, reply, pacs);

  const auto cannotBeAsked = [](QChar c) {
    return c == QLatin1Char('\\') || c.category() == QChar::Other_Control;
  };
  if (identifier.size() > 64 || std::any_of(identifier.begin(), identifier.end(), cannotBeAsked)) {
    return PacsFailure::never(QStringLiteral("its identifier cannot be a Patient ID"));
  }
  if (identifier.count(QLatin1Char('-')) > MostHyphens) {
    return PacsFailure::never(
        QStringLiteral("its identifier has too many hyphens to look for all that they may stand for"));
  }
  const PacsResult<QList<Study>> ofThePatient = ofPatient(identifier, pacs);
  if (!ofThePatient.ok()) return ofThePatient.failure();
  QList<Study> studies = *ofThePatient;
  const auto several = [] {
    return PacsFailure::never(
        QStringLiteral("the PACS has more than one patient whom its identifier can mean"));
  };
  if (hasSeveralPatients(studies)) return several();

  if (!reply.requestedStudyUID.isEmpty()) {
    // Queried by its UID: if the reply has the identifier in capitals, the study is not among those found
    // above.
    PacsResult<Study> requested = studyOfUID(reply.requestedStudyUID, reply, pacs);
    if (requested.ok() && hasSeveralPatients(studies << *requested)) return several();
    return requested;
  }

  if (!reply.studyDay.isValid())
    return PacsFailure::never(QStringLiteral("it names neither a study nor a day"));
  studies.removeIf([&](const Study& study) { return study.studyDate != reply.studyDay; });
  if (studies.isEmpty())
    return PacsFailure::never(QStringLiteral("the PACS has no study of that patient on that day"));
  if (studies.size() > 1) {
    return PacsFailure::never(
        QStringLiteral("the PACS has %1 studies of that patient on that day").arg(studies.size()));
  }
  return found(reply, studies.first());
}

}  // namespace bridge
