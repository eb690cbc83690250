// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDate>
#include <QList>
#include <QString>
#include <optional>

namespace bridge {

/// What a PACS or a DICOM file says about one study and its patient. Texts are decoded; an attribute that is
/// absent or cannot be trusted is empty (studyOf()).
struct Study {
  QString studyInstanceUID;
  QString patientID;
  QString issuerOfPatientID;
  QString patientName;  ///< as DICOM writes it: component groups with "=", components with "^"
  QDate birthDate;      ///< invalid when absent or damaged
  QString sex;          ///< "M", "F", "O" or empty
  QDate studyDate;      ///< invalid when absent or damaged
  QString studyTime;    ///< as DICOM writes it
  QString studyID;
  QString accessionNumber;
  QString referringPhysician;  ///< as DICOM writes it
  QString description;

  bool operator==(const Study&) const = default;
};

/// What tells patients apart, the strongest first.
enum class PatientAttribute { Identifier, Issuer, BirthDate, Sex, Name };

/// The first thing that two descriptions both say of the patient, and say differently; nothing when they may
/// be of one patient. What is not said contradicts nothing.
///
/// Sex and name are looked at with care, for one patient's are written in many ways: of the sexes only male
/// and female contradict each other. Names do when no word of the one is in the other, in any component group
/// that both have, whatever the case and the accents: a name that was spelt differently, shortened or changed
/// by marriage is no other patient's. Whoever compares studies of several days should pass over both, which
/// may have been corrected in between.
std::optional<PatientAttribute> contradiction(const Study& one, const Study& other);

/// Which studies to look for: those that match every member that is not empty.
struct StudyQuery {
  QString studyInstanceUID;
  QString accessionNumber;
  QString patientID;
  QDate studyDate;
};

}  // namespace bridge
