// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include "bridge/dicom/Study.h"

namespace bridge {

struct StudyFileResult {
  Study study;
  QString error;  ///< why there is no study, in words for the user; null when there is one
  bool ok() const { return error.isNull(); }
};

/// The study of a DICOM file, or of the DICOM files in a folder and in the folders within it. These must all
/// be of one study and one patient; otherwise the error names what was found. What is no DICOM file is passed
/// over, as are links and everything that is no regular file. A folder with more than `MostFiles` files, or
/// with folders more than `DeepestFolder` deep, is refused. A file is read no further than its study's
/// attributes, whatever its size.
StudyFileResult studyFromPath(const QString& path);

/// The study of a DICOM file's bytes; its beginning will do.
StudyFileResult studyFromBytes(const QByteArray& file);

inline constexpr int MostFiles = 20000;
inline constexpr int DeepestFolder = 16;

}  // namespace bridge
