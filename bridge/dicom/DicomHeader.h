// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QMap>
#include <QString>

#include "bridge/dicom/StudyValues.h"

namespace bridge {

struct DicomHeader {
  QMap<Tag, QByteArray> values;  ///< of `studyTags`, those that are there, undecoded
  bool isDicom = false;          ///< it begins as a DICOM file does
  QString error;                 ///< why `values` may be incomplete; null when they are not
};

/// The beginning of a DICOM file (PS3.10 7.1), up to the last attribute of its study. Every transfer syntax
/// is read, the deflated and the big endian one too. What lies between is skipped without being kept.
///
/// Not with the DICOM toolkit: that one reads sequences within sequences by recursion without a limit, and a
/// file of some hundred kilobytes ends the process. Here nesting, the number of elements and the memory are
/// bounded.
DicomHeader readDicomHeader(QIODevice& file);

}  // namespace bridge
