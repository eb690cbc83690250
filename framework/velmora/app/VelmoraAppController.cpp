// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The controller's making and what documents ask of it. Start and end stand in VelmoraAppControllerStart.cpp,
// the commands in VelmoraAppControllerCommands.cpp.
#include "velmora/app/VelmoraAppController.h"

#include <QUrl>

#include "base/log/AssertionFailure.h"
#include "base/files/FileManager.h"
#include "platform/controls/InterfaceFiles.h"
#include "platform/controls/Panels.h"
#include "platform/Services.h"
#include "platform/settings/UserDefaults.h"
#include "velmora/about/AboutController.h"
#include "velmora/app/MainMenu.h"
#include "velmora/batch/BatchExportController.h"
#include "velmora/document/VelmoraDocument.h"
#include "velmora/document/VelmoraGraphView.h"
#include "velmora/preferences/PreferencesController.h"
#include "velmora/resources/FrameworkResources.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;

VelmoraAppController::VelmoraAppController(platform::Services& services)
    : DocumentController(services),
      orvVersion_(services),
      recentDocuments_(services.defaults),
      databaseFiles_(services, [this](const QString& status) { showStatusString(status); }),
      link_(services, *this),
      batchOpenQueue_(services, *this),
      exportQueue_(services),
      plugin_(services),
      startupScript_(services, [this](const QString& status) { showStatusString(status); }),
      versionCheck_(
          services, orvVersion_, [this](const QString& status) { showStatusString(status); },
          [this] {
            if (preferencesController_) preferencesController_->updateVersionLastChecked();
          }) {
  initialize(services.defaults);
  services.interfaceFiles.addSearchPath(velmora::frameworkInterfaceFolder());
  services.interfaceFiles.registerWidget(QStringLiteral("VelmoraGraphView"),
                                         [](QWidget* parent) { return new VelmoraGraphView(parent); });
}

VelmoraAppController::~VelmoraAppController() {
  services().distributedCenter.removeObserver(this);
  services().notificationCenter.removeObserver(this);
}

void VelmoraAppController::showStatusString(const QString& status) {
  if (aboutController_) aboutController_->showStatusString(status);
}

int VelmoraAppController::runModalOpenPanel(platform::OpenPanel& panel, const QStringList& fileTypes) {
  panel.directoryURL = QUrl::fromLocalFile(
      base::expandingTildeInPath(services().defaults.stringForKey(velmora::settings::SaveDirectory)));
  base::requireValue(panel.directoryURL.isValid(), "VelmoraAppController");
  return DocumentController::runModalOpenPanel(panel, fileTypes);
}

QStringList VelmoraAppController::openableFileTypes() const {
  const QString extension = services().defaults.stringForKey(velmora::settings::DataFileExtension);
  return extension.isEmpty() ? QStringList() : QStringList{extension};
}

void VelmoraAppController::documentWindowDidLoad(platform::WindowController& windowController) {
  velmora::installMainMenu(services(), *this, windowController);
}

bool VelmoraAppController::isUntouched(const platform::Document& document) const {
  const auto* record = dynamic_cast<const VelmoraDocument*>(&document);
  return DocumentController::isUntouched(document) && record && record->isBlank();
}
