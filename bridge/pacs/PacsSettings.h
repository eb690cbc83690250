// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <QUrl>
#include <chrono>

namespace bridge {

/// How the archive is reached.
struct PacsSettings {
  enum class Kind { Dimse, Web };
  Kind kind = Kind::Dimse;
  QString host;                                            ///< DIMSE
  int port = 104;                                          ///< DIMSE, 1 to 65535
  QString calledAETitle = QStringLiteral("ANY-SCP");       ///< DIMSE, the archive's, at most 16 characters
  QString callingAETitle = QStringLiteral("VELMORALINK");  ///< DIMSE, ours, at most 16 characters
  QUrl url;                                                ///< DICOMweb, the root above "studies"
  QString user;                                            ///< DICOMweb; empty for none
  QString password;                                        ///< DICOMweb
  std::chrono::seconds timeout{30};                        ///< for one exchange, 1 to 600

  /// What an exchange in which so much is sent may take: a large chart on a slow line is no fault.
  std::chrono::seconds timeFor(qint64 bytes) const {
    return timeout + std::chrono::seconds(bytes / (32 * 1024));
  }
};

}  // namespace bridge
