// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QIODevice>

#include "base/Result.h"
#include "bridge/dicom/Study.h"

namespace bridge {

/// The study of a DICOM file (PS3.10 7.1) of any size and in any transfer syntax, deflated and big endian
/// included. Reads up to the last attribute of the study and no further.
///
/// Does not use the DICOM toolkit, which reads nested sequences by recursion without a limit, so that a file
/// of some hundred kilobytes ends the process. Here nesting, the number of elements and the memory are
/// bounded.
velmora::base::Result<Study> studyFromDevice(QIODevice& file);
/// The same for the bytes of a file; its beginning is enough.
velmora::base::Result<Study> studyFromBytes(const QByteArray& file);
/// The same for a data set without a file header, such as an archive's answer to a query.
velmora::base::Result<Study> studyFromDataset(const QByteArray& dataset, const QByteArray& transferSyntaxUID);

}  // namespace bridge
