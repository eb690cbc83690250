// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include "orv/documents/OrvWrittenFolders.h"

namespace velmora::link {
struct ChartExport;
}
namespace velmora::platform {
struct Services;
}

namespace velmora {

/// Exports the picture of a chart, into a file or to OsiriX. A file that cannot be written is not reported.
class ChartExporter {
 public:
  explicit ChartExporter(platform::Services& services);

  bool exportsToOsirix() const;
  /// Writes the picture where the user says in a save panel.
  void exportThroughPanel(const QByteArray& picture);
  /// Writes the picture into the export folder, or onto the desktop where there is none. Asks before it
  /// replaces a file.
  void exportToFolder(const QByteArray& picture, const QString& fileName);
  /// Posts the chart, described by the application's name, as the local notification "BatchExportToOsirix".
  void exportToOsirix(link::ChartExport chart);

 private:
  platform::Services& services_;
  OrvWrittenFolders writtenFolders_;
};

}  // namespace velmora
