// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The controller's making and its commands. Start and end stand in VelmoraAppControllerStart.cpp.
#include "velmora/app/VelmoraAppController.h"

#include <QUrl>

#include "platform/AssertionFailure.h"
#include "platform/FileManager.h"
#include "platform/InterfaceFiles.h"
#include "platform/Localization.h"
#include "platform/Panels.h"
#include "platform/Services.h"
#include "platform/UserDefaults.h"
#include "velmora/about/AboutController.h"
#include "velmora/app/MainMenu.h"
#include "velmora/document/VelmoraDocument.h"
#include "velmora/document/VelmoraGraphView.h"
#include "velmora/resources/FrameworkResources.h"
#include "velmora/resources/SettingsKeys.h"

VelmoraAppController::VelmoraAppController(platform::Services& services)
    : DocumentController(services),
      orvVersion_(services),
      databaseFiles_(services, [this](const QString& status) { showStatusString(status); }),
      link_(services, *this),
      batchOpenQueue_(services, *this),
      exportQueue_(services) {
  initialize(services.defaults);
  services.interfaceFiles.addSearchPath(velmora::frameworkInterfaceFolder());
  services.interfaceFiles.registerWidget(QStringLiteral("VelmoraGraphView"),
                                         [](QWidget* parent) { return new VelmoraGraphView(parent); });
}

VelmoraAppController::~VelmoraAppController() {
  services().distributedCenter.removeObserver(this);
  services().notificationCenter.removeObserver(this);
}

void VelmoraAppController::doSplashAboutBox(const QObject*) {
  if (!aboutController_) aboutController_ = std::make_unique<AboutController>(services());
  aboutController_->showWindow(this);
}

void VelmoraAppController::showStatusString(const QString& status) {
  if (aboutController_) aboutController_->showStatusString(status);
}

void VelmoraAppController::doExport(const QObject*) {
  if (auto* document = dynamic_cast<VelmoraDocument*>(currentDocument())) document->doExport(true);
}

bool VelmoraAppController::validateMenuItem(const QString& title) const {
  if (title.startsWith(platform::localizedString("VelmoraAppController", "Export")))
    return currentDocument() != nullptr;
  return true;
}

int VelmoraAppController::runModalOpenPanel(platform::OpenPanel& panel, const QStringList& fileTypes) {
  panel.directoryURL = QUrl::fromLocalFile(
      platform::expandingTildeInPath(services().defaults.stringForKey(velmora::settings::SaveDirectory)));
  platform::requireValue(panel.directoryURL.isValid(), "VelmoraAppController");
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
