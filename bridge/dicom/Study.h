// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDate>
#include <QList>
#include <QString>

namespace bridge {

/// What a PACS or a DICOM file says of one study and its patient. Texts are decoded; an attribute that is
/// absent, or cannot be trusted, is empty (studyOf()).
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

/// Which studies are asked for: those that match every member that is not empty.
struct StudyQuery {
  QString studyInstanceUID;
  QString accessionNumber;
  QString patientID;
  QDate studyDate;
};

}  // namespace bridge
