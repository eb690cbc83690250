// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include "base/Result.h"
#include "bridge/pacs/PacsSettings.h"

namespace bridge {

/// The configuration of velmora-link.
struct Config {
  PacsSettings pacs;
  QStringList applications;          ///< bundle identifiers; a study goes to the first one unless another is
                                     ///< named
  QStringList chartsWithoutPatient;  ///< those whose charts do not show who the patient is
  QString spoolFolder;               ///< absolute
};

/// The path of the configuration unless --config names another: velmora-link/velmora-link.conf in
/// $XDG_CONFIG_HOME.
QString configPath();
/// Reads the file. The error has a line for each mistake, with the path and the line number; for a missing
/// file it says where to find an example.
velmora::base::Result<Config> readConfig(const QString& path);

}  // namespace bridge
