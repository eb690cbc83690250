// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <optional>

namespace bridge {

/// A DICOM file taken apart as far as sending it needs: the data set's bytes stay what they are.
struct DicomFileParts {
  QByteArray sopClassUID;        ///< as the meta header has it (0002,0002)
  QByteArray sopInstanceUID;     ///< (0002,0003)
  QByteArray transferSyntaxUID;  ///< (0002,0010)
  QByteArray dataset;            ///< all that follows the meta header
};

/// Nothing when the bytes are no DICOM file with a meta header (PS3.10 7.1).
std::optional<DicomFileParts> partsOf(const QByteArray& file);

/// A DICOM file of a data set that came without a meta header, which then says no more than the transfer
/// syntax.
QByteArray fileOf(const QByteArray& dataset, const QByteArray& transferSyntaxUID);

}  // namespace bridge
