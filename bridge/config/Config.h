// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include "base/Result.h"
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

/// Where the configuration is unless --config says otherwise: velmora-link/velmora-link.conf in
/// $XDG_CONFIG_HOME.
QString configPath();
/// Reads the file. The error has a line for each thing that is wrong, with the file and the line's number; of
/// a file that does not exist it says where an example is.
velmora::base::Result<Config> readConfig(const QString& path);

}  // namespace bridge
