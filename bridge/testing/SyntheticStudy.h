// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include "bridge/dicom/Study.h"

namespace bridge_testing {

/// A study of an invented child, complete: a valid UID, identifier "P-<number>", accession number
/// "A-<number>", dates.
bridge::Study inventedStudy(int number = 1);

/// An image of a study, as a DICOM file in UTF-8: what stands in an archive before anything was measured.
/// `number` tells the images of a study apart; the same study and number give the same object. Attributes
/// that are empty in the study are empty in the file. An image of `pixels` by `pixels` pixels.
QByteArray syntheticStudy(const bridge::Study& study, int number = 1, int pixels = 8);
/// The SOP Instance UID of that image. Its SOP class is Secondary Capture, its transfer syntax Explicit
/// Little Endian.
QString syntheticUID(const bridge::Study& study, int number = 1);

inline const QString SecondaryCaptureClass = QStringLiteral("1.2.840.10008.5.1.4.1.1.7");

}  // namespace bridge_testing
