// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>

#include "base/Result.h"
#include "bridge/dicom/Study.h"

namespace bridge {

/// The study of a DICOM file, or of the DICOM files in a folder and in the folders within it. These must all
/// be of one study, and none may contradict another about the patient (contradiction()); otherwise the error
/// names what was found. What one file does not say of the patient is taken from the others, but for the
/// identifier: either all have it or none. Files that are not DICOM are skipped, as are links and everything
/// that is not a regular file. Fails for a folder with more than `MostFiles` files or with folders more than
/// `DeepestFolder` deep.
velmora::base::Result<Study> studyFromPath(const QString& path);

inline constexpr int MostFiles = 20000;
inline constexpr int DeepestFolder = 16;

}  // namespace bridge
