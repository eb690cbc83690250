// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include "base/Result.h"
#include "bridge/dicom/Study.h"

namespace bridge {

/// Manufacturer (0008,0070) of every chart, by which its series is recognised in the archive; Manufacturer's
/// Model Name (0008,1090) is the application that drew it. Both are repeated as Secondary Capture Device
/// Manufacturer (0018,1016) and Secondary Capture Device Manufacturer's Model Name (0018,1018).
inline const QString CaptureManufacturer = QStringLiteral("Velmora");

/// Secondary Capture Image Storage (PS3.4 B.5).
inline const QString CaptureSopClassUID = QStringLiteral("1.2.840.10008.5.1.4.1.1.7");
/// JPEG Baseline (Process 1) (PS3.5 A.4.1).
inline const QString CaptureTransferSyntaxUID = QStringLiteral("1.2.840.10008.1.2.4.50");

/// Far above the size of any chart.
inline constexpr qsizetype MostJpegBytes = 256LL * 1024 * 1024;

/// The identity of a chart as a DICOM object. Decided once and kept with the chart, so that a chart that is
/// sent twice is the same object.
struct CaptureIdentity {
  QString sopInstanceUID;     ///< under 2.25
  QString seriesInstanceUID;  ///< under 2.25; the same for all charts of one study and application
  int instanceNumber = 1;
  int seriesNumber = 0;
  QDateTime captured;  ///< when the chart arrived, with its offset from UTC
};

/// A chart as an application sent it.
struct Chart {
  QByteArray jpeg;      ///< baseline JPEG, stored unchanged
  QString description;  ///< becomes the Series Description
  QString application;  ///< the bundle identifier of the application that drew it
  /// Whether the picture may show who the patient is; becomes Burned In Annotation.
  bool showsPatient = true;
};

/// The Secondary Capture Image (PS3.3 A.8.1) of a chart, in the study that it belongs to: a DICOM file with
/// its meta header, in the transfer syntax JPEG Baseline (Process 1). The same arguments give the same bytes.
///
/// What identifies the study and the patient is written as the study has it or not at all: fails without a
/// valid Study Instance UID, or with a Patient ID that DICOM does not allow, since the archive would file the
/// chart under another patient; leaves out an accession number or study ID that is too long for DICOM, since
/// part of it would name another order. Names and descriptions are cleaned and truncated.
velmora::base::Result<QByteArray> secondaryCapture(const Study& study, const Chart& chart,
                                                   const CaptureIdentity& identity);

}  // namespace bridge
