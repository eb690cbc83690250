// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
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

/// What the configuration file of velmora-link says.
struct Config {
  PacsSettings pacs;
  QStringList applications;  ///< bundle identifiers; the first is the one that a study goes to unless another
                             ///< is named
  QStringList chartsWithoutPatient;  ///< those of them in whose charts nothing tells who the patient is
  QString spoolFolder;               ///< absolute
};

struct ConfigResult {
  Config config;
  QStringList errors;  ///< one line each, with the file and the line's number; empty when all is well
  bool ok() const { return errors.isEmpty(); }
};

/// Where the configuration is unless --config says otherwise: velmora-link/velmora-link.conf in
/// $XDG_CONFIG_HOME.
QString configPath();
/// Reads the file. A file that does not exist is an error that says where an example is.
ConfigResult readConfig(const QString& path);

}  // namespace bridge
