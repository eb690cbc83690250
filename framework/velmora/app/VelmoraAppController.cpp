// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/app/VelmoraAppController.h"

#include <QFileInfo>
#include <QPointer>
#include <QUrl>

#include "base/files/FileManager.h"
#include "base/log/AssertionFailure.h"
#include "link/protocol/LinkProtocol.h"
#include "platform/Services.h"
#include "platform/bundles/Bundle.h"
#include "platform/controls/Alert.h"
#include "platform/controls/InterfaceFiles.h"
#include "platform/controls/Panels.h"
#include "platform/runloop/RunLoop.h"
#include "platform/settings/UserDefaults.h"
#include "platform/text/Localization.h"
#include "velmora/about/AboutController.h"
#include "velmora/app/AbandonedFiles.h"
#include "velmora/app/FirstRunQuestions.h"
#include "velmora/app/MainMenu.h"
#include "velmora/app/PluginOffer.h"
#include "velmora/app/SupportContact.h"
#include "velmora/app/WindowShortcuts.h"
#include "velmora/batch/BatchExportController.h"
#include "velmora/document/VelmoraDocument.h"
#include "velmora/document/VelmoraGraphView.h"
#include "velmora/preferences/PreferencesController.h"
#include "velmora/resources/FrameworkResources.h"
#include "velmora/resources/Notifications.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;

namespace settings = velmora::settings;
using velmora::platform::localizedString;

namespace {

// When the steps of the start-up run, in seconds after the splash.
constexpr double ScriptDelay = 0.5;
constexpr double CacheDelay = 1.5;
constexpr double VersionCheckDelay = 2.0;

}  // namespace

VelmoraAppController::VelmoraAppController(platform::Services& services)
    : DocumentController(services),
      orvVersion_(services),
      recentDocuments_(services.defaults),
      databaseFiles_(services.defaults, services.fileManager, services.runLoop,
                     [this](const QString& status) { showStatusString(status); }),
      link_(*this, services.runLoop, services.alerts),
      batchOpenQueue_(*this, services.runLoop, services.alerts),
      exportQueue_(services.distributedCenter, services.runLoop, services.mainBundle),
      plugin_(services.fileManager, services.alerts, services.runLoop, services.mainBundle),
      startupScript_(services.scripts, services.defaults,
                     [this](const QString& status) { showStatusString(status); }),
      versionCheck_(
          services.defaults, services.notificationCenter, services.runLoop, orvVersion_,
          [this](const QString& status) { showStatusString(status); },
          [this] {
            if (preferencesController_) preferencesController_->updateVersionLastChecked();
          }) {
  initialize(services.defaults);
  services.interfaceFiles.addSearchPath(frameworkInterfaceFolder());
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

// Start and end.

void VelmoraAppController::initialize(platform::UserDefaults& defaults) {
  defaults.registerDefaults({
      {settings::SaveDirectory, QStringLiteral("~/Desktop/")},
      {settings::ExportDirectory, QStringLiteral("~/Desktop/")},
      {settings::AutoSave, false},
      {settings::ExportToOsiriX, false},
      {settings::LaunchScript, QStringLiteral("")},
      {settings::AutomaticVersionCheck, false},
      {settings::VersionCheckInterval, 0},
      {settings::LastVersionCheckDate, platform::distantPast()},
  });
}

void VelmoraAppController::awakeFromNib() {
  platform::NotificationCenter& local = services().notificationCenter;
  local.addObserver(this, notifications::BatchOpen,
                    [this](const platform::Notification& path) { batchOpen(path); });
  local.addObserver(this, notifications::BatchExport,
                    [this](const platform::Notification& payload) { batchExportToOsirix(payload); });
  local.addObserver(this, notifications::InstallPlugin,
                    [this](const platform::Notification&) { doInstallOsirixPlugin(this); });
  services().distributedCenter.addObserver(
      this, link::notificationName(services().mainBundle.bundleIdentifier()), link::RequestObject,
      [this](const platform::Notification& request) { notifiedOfLinkFromOsirix(request); });
}

void VelmoraAppController::applicationDidFinishLaunching() {
  FirstRunQuestions firstRun(services().defaults, services().alerts, services().fileManager,
                             services().mainBundle);
  if (firstRun.areDue() && !firstRun.ask()) return;
  if (!PluginOffer(plugin_, services().workspace, services().alerts, services().defaults).make()) return;
  doSplashAboutBox(this);
  platform::RunLoop& runLoop = services().runLoop;
  runLoop.performAfterDelay(this, ScriptDelay, [this] { doLaunchScript(); });
  runLoop.performAfterDelay(this, CacheDelay, [this] { cacheDatabaseFiles(); });
  // A call of its own: a large folder must not hold up the first window, nor a failed scan keep strays alive.
  runLoop.performAfterDelay(this, CacheDelay, [this] {
    removeAbandonedFiles(services().fileManager, services().defaults, services().runLoop,
                         services().mainBundle);
  });
  runLoop.performAfterDelay(this, VersionCheckDelay, [this] { autoCheckForNewVersion(); });
}

void VelmoraAppController::applicationWillTerminate() {
  services().distributedCenter.removeObserver(this);
  services().notificationCenter.removeObserver(this);
  versionCheck_.stop();
  exportQueue_.clear();
  batchOpenQueue_.clear();
  databaseFiles_.clear();
}

// Commands.

template <typename Controller, typename Make>
void VelmoraAppController::showWindowOf(std::unique_ptr<Controller>& controller, Make make) {
  const bool made = !controller;
  if (made) controller = make();
  controller->showWindow(this);
  if (made) installWindowShortcuts(*controller, services().runLoop, services().application, *this);
}

void VelmoraAppController::doSplashAboutBox(const QObject*) {
  showWindowOf(aboutController_, [this] { return std::make_unique<AboutController>(services()); });
}

void VelmoraAppController::doPreferences(const QObject*) {
  showWindowOf(preferencesController_,
               [this] { return std::make_unique<PreferencesController>(services(), orvVersion_); });
}

void VelmoraAppController::doBatchExport(const QObject*) {
  showWindowOf(batchExportController_, [this] {
    auto controller = std::make_unique<BatchExportController>(services());
    const auto tellWaitingCharts = [this, window = controller.get()] {
      window->setWaitingCharts(exportToOsirixArray().size());
    };
    exportQueue_.setLengthDidChange(tellWaitingCharts);
    tellWaitingCharts();
    return controller;
  });
}

void VelmoraAppController::doExport(const QObject*) {
  if (auto* document = dynamic_cast<VelmoraDocument*>(currentDocument())) document->doExport(true);
}

void VelmoraAppController::doCloseAllDocuments(const QObject*) {
  closeAllDocuments([this](bool didCloseAll) { documentControllerDidCloseAll(didCloseAll); });
}

void VelmoraAppController::documentControllerDidCloseAll(bool) {}

void VelmoraAppController::doGoToWebSite(const QObject*) {
  SupportContact(services().workspace, services().mainBundle).openWebSite();
}

void VelmoraAppController::doMailAuthor(const QObject*) {
  SupportContact(services().workspace, services().mainBundle).beginMail();
}

bool VelmoraAppController::validateMenuItem(const QString& title) const {
  if (title.startsWith(localizedString("VelmoraAppController", "Export")))
    return currentDocument() != nullptr;
  return true;
}

bool VelmoraAppController::applicationPrintFile(const QString& path) {
  const QUrl url = QUrl::fromLocalFile(path);
  const bool wasOpen = documentForURL(url) != nullptr;
  // Printing may put up a notice, and meanwhile the document may go.
  const QPointer<platform::Document> document(openDocumentWithContentsOfURL(url, true).valueOr(nullptr));
  if (!document) return true;
  document->printDocument({}, false);
  if (!document || document->isClosed()) return true;
  // Nobody is asked about what was being typed into a window that was open before, so it is kept. What was
  // opened for this alone stands in its file, a rescue copy too, which opens as a changed record.
  auto* record = wasOpen ? dynamic_cast<VelmoraDocument*>(document.data()) : nullptr;
  if (record) {
    record->closeTellingOfACopy();
  } else {
    document->close();
  }
  return true;
}

bool VelmoraAppController::applicationPerformAction(const QString& name) {
  if (name == QLatin1String("preferences")) {
    doPreferences(nullptr);
  } else if (name == QLatin1String("batch-export")) {
    doBatchExport(nullptr);
  } else {
    return DocumentController::applicationPerformAction(name);
  }
  return true;
}

void VelmoraAppController::openRecentDocument(const QString& path) {
  if (services().fileManager.fileExistsAtPath(path)) {
    openDocuments({QUrl::fromLocalFile(path)});
    return;
  }
  recentDocuments_.remove(path);
  services().alerts.runModal(
      {platform::formatted(localizedString("VelmoraAppController", "The file '%@' is no longer there."),
                           {QFileInfo(path).fileName()}),
       localizedString("OrvVersion", "OK"), QString(), QString(),
       localizedString("VelmoraAppController",
                       "It may have been moved or renamed. The menu of recent documents no longer names "
                       "it.")});
}

// Documents.

int VelmoraAppController::runModalOpenPanel(platform::OpenPanel& panel, const QStringList& fileTypes) {
  panel.directoryURL = QUrl::fromLocalFile(
      base::expandingTildeInPath(services().defaults.stringForKey(settings::SaveDirectory)));
  base::requireValue(panel.directoryURL.isValid(), "VelmoraAppController");
  return DocumentController::runModalOpenPanel(panel, fileTypes);
}

QStringList VelmoraAppController::openableFileTypes() const {
  const QString extension = services().defaults.stringForKey(settings::DataFileExtension);
  return extension.isEmpty() ? QStringList() : QStringList{extension};
}

void VelmoraAppController::documentWindowDidLoad(platform::WindowController& windowController) {
  MainMenu::install(services(), *this, *this, windowController);
}

bool VelmoraAppController::isUntouched(const platform::Document& document) const {
  const auto* record = dynamic_cast<const VelmoraDocument*>(&document);
  return DocumentController::isUntouched(document) && record && record->isBlank();
}
