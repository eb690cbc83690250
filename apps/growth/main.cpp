// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Growth: weight, height and head circumference of children against the CDC 2000 reference.
#include <QApplication>

#include "apps/growth/document/GrowthDocument.h"
#include "apps/growth/reference/GrowthReferences.h"
#include "apps/growth/resources/GrowthResources.h"
#include "desktop/Desktop.h"
#include "desktop/activation/SessionBus.h"
#include "platform/bundles/Bundle.h"
#include "platform/controls/InterfaceFiles.h"
#include "platform/settings/UserDefaults.h"
#include "velmora/app/VelmoraAppController.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;

int main(int argc, char** argv) {
  desktop::prepareSessionBus();
  QApplication application(argc, argv);
  desktop::Desktop desktop(QStringLiteral("growth"));
  platform::Services& services = desktop.services();

  services.defaults.registerDefaults(
      {{velmora::settings::DataFileExtension,
        services.mainBundle.stringForInfoDictionaryKey(QStringLiteral("VelmoraDataFileExtension"))}});
  const growth::GrowthReferences references(services.mainBundle.resourcePath() +
                                            QStringLiteral("/reference"));

  VelmoraAppController controller(services);
  services.interfaceFiles.addSearchPath(growth::interfaceFolder());
  controller.setDocumentFactory(
      [&] { return std::make_unique<GrowthDocument>(services, controller, references); });
  return desktop.run(controller);
}
