// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/document/ChartExporter.h"

#include <tuple>

#include "base/files/FileManager.h"
#include "link/protocol/LinkPayload.h"
#include "platform/Services.h"
#include "platform/bundles/Bundle.h"
#include "platform/controls/Alert.h"
#include "platform/controls/Panels.h"
#include "platform/notifications/NotificationCenter.h"
#include "platform/settings/UserDefaults.h"
#include "platform/text/Localization.h"
#include "velmora/resources/Notifications.h"
#include "velmora/resources/SettingsKeys.h"

using velmora::platform::localizedString;

namespace velmora {

ChartExporter::ChartExporter(platform::Services& services)
    : services_(services), writtenFolders_(services.fileManager, services.mainBundle.bundleIdentifier()) {}

bool ChartExporter::exportsToOsirix() const {
  return services_.defaults.boolForKey(settings::ExportToOsiriX);
}

void ChartExporter::exportThroughPanel(const QByteArray& picture) {
  platform::SavePanel panel;
  panel.prompt = localizedString("VelmoraAppController", "Export");
  panel.title = localizedString("VelmoraAppController", "Export");
  if (services_.panels.runModal(panel) != platform::PanelOKButton) return;
  std::ignore = writtenFolders_.write(panel.url.toLocalFile(), picture);
}

void ChartExporter::exportToFolder(const QByteArray& picture, const QString& fileName) {
  QString folder = base::expandingTildeInPath(services_.defaults.stringForKey(settings::ExportDirectory));
  if (!services_.fileManager.fileExistsAtPath(folder)) {
    folder = base::expandingTildeInPath(QStringLiteral("~/Desktop/"));
  }
  const QString path = folder + QLatin1Char('/') + fileName;
  if (services_.fileManager.fileExistsAtPath(path)) {
    const int answer = services_.alerts.runModal(
        {localizedString("VelmoraDocument", "A file with that name already exists"),
         localizedString("VelmoraDocument", "Overwrite"), localizedString("VelmoraDocument", "Skip"),
         QString(),
         platform::formatted(
             localizedString("VelmoraDocument", "A file named '%@' is already present in '%@/'."),
             {fileName, folder})});
    if (answer == platform::AlertAlternateReturn || answer == platform::AlertStopped) return;
  }
  std::ignore = writtenFolders_.write(path, picture);
}

void ChartExporter::exportToOsirix(link::ChartExport chart) {
  chart.description =
      platform::formatted(localizedString("VelmoraDocument", "%@ Chart"),
                          {services_.mainBundle.stringForInfoDictionaryKey(QStringLiteral("CFBundleName"))});
  services_.notificationCenter.postNotificationName(notifications::BatchExport, link::replyPayload(chart));
}

}  // namespace velmora
