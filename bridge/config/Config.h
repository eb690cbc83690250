// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include "bridge/pacs/PacsSettings.h"

namespace bridge {

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
