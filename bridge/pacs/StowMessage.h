// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <functional>

namespace bridge {

/// What is sent to store one DICOM file with STOW-RS (PS3.18 10.5): a multipart message of one part.
struct StowMessage {
  QByteArray contentType;
  QByteArray body;
};

/// The boundary that is taken unless the file holds it: different each time, never guessable from the file.
QByteArray randomBoundary();

/// The message for a file, which stands in it as it is. By hand, since QHttpMultiPart gives no bytes to look
/// at, sends no message without a part, and does not look whether its boundary stands in a part. Candidates
/// for the boundary are asked for until one does not occur in the file. An empty file gives a message without
/// a part, which stores nothing.
StowMessage stowMessage(const QByteArray& file,
                        const std::function<QByteArray()>& candidate = &randomBoundary);

/// What the body of the archive's answer, in JSON, says of one instance (PS3.18 10.5.3, I.2.2).
struct StowVerdict {
  enum class Said {
    Nothing,  ///< it does not speak of this instance, or is no such answer
    Stored,
    Failed,
  };
  Said said = Said::Nothing;
  int failureReason = 0;  ///< (0008,1197), 0 to 0xFFFF, a status of C-STORE; 0 when there is none
};
StowVerdict stowVerdict(const QByteArray& json, const QString& sopInstanceUID);

}  // namespace bridge
