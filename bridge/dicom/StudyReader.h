// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QIODevice>

#include "base/Result.h"
#include "bridge/dicom/Study.h"

namespace bridge {

/// The study of a DICOM file (PS3.10 7.1), which is read up to its study's last attribute and no further,
/// whatever its size. Every transfer syntax is read, the deflated and the big endian one too.
///
/// Not with the DICOM toolkit: it reads sequences within sequences by recursion without a limit, so that a
/// file of some hundred kilobytes ends the process. Here nesting, the number of elements and the memory are
/// bounded.
velmora::base::Result<Study> studyFromDevice(QIODevice& file);
/// The same of the file's bytes; its beginning will do.
velmora::base::Result<Study> studyFromBytes(const QByteArray& file);
/// The same of a data set without a file's header, such as an archive's answer to a query.
velmora::base::Result<Study> studyFromDataset(const QByteArray& dataset, const QByteArray& transferSyntaxUID);

}  // namespace bridge
