// SPDX-License-Identifier: LGPL-3.0-or-later
//
// What the menus and the desktop ask of the application.
#include <QFileInfo>
#include <QPointer>
#include <QUrl>

#include "platform/controls/Alert.h"
#include "platform/bundles/Bundle.h"
#include "base/files/FileManager.h"
#include "platform/text/Localization.h"
#include "platform/Services.h"
#include "platform/workspace/Workspace.h"
#include "velmora/about/AboutController.h"
#include "velmora/app/MainMenu.h"
#include "velmora/app/VelmoraAppController.h"
#include "velmora/batch/BatchExportController.h"
#include "velmora/document/VelmoraDocument.h"
#include "velmora/preferences/PreferencesController.h"

using namespace velmora;

namespace {

const QString WebSite = QStringLiteral("https://velmora.org");
const QString SupportAddress = QStringLiteral("support@velmora.org");

}  // namespace

void VelmoraAppController::doSplashAboutBox(const QObject*) {
  const bool made = !aboutController_;
  if (made) aboutController_ = std::make_unique<AboutController>(services());
  aboutController_->showWindow(this);
  if (made) velmora::installWindowShortcuts(services(), *this, *aboutController_);
}

void VelmoraAppController::doPreferences(const QObject*) {
  const bool made = !preferencesController_;
  if (made) preferencesController_ = std::make_unique<PreferencesController>(services(), orvVersion_);
  preferencesController_->showWindow(this);
  if (made) velmora::installWindowShortcuts(services(), *this, *preferencesController_);
}

void VelmoraAppController::doBatchExport(const QObject*) {
  const bool made = !batchExportController_;
  if (made) {
    batchExportController_ = std::make_unique<BatchExportController>(services());
    const auto tellWaitingCharts = [this] {
      batchExportController_->setWaitingCharts(exportToOsirixArray().size());
    };
    exportQueue_.setLengthDidChange(tellWaitingCharts);
    tellWaitingCharts();
  }
  batchExportController_->showWindow(this);
  if (made) velmora::installWindowShortcuts(services(), *this, *batchExportController_);
}

void VelmoraAppController::doExport(const QObject*) {
  if (auto* document = dynamic_cast<VelmoraDocument*>(currentDocument())) document->doExport(true);
}

void VelmoraAppController::doCloseAllDocuments(const QObject*) {
  closeAllDocuments([this](bool didCloseAll) { documentControllerDidCloseAll(didCloseAll); });
}

void VelmoraAppController::documentControllerDidCloseAll(bool) {}

void VelmoraAppController::doGoToWebSite(const QObject*) { services().workspace.openURL(QUrl(WebSite)); }

void VelmoraAppController::doMailAuthor(const QObject*) {
  const platform::Bundle& bundle = services().mainBundle;
  const QString subject =
      platform::formatted(QStringLiteral("Technical Support Query for %@ %@"),
                          {bundle.stringForInfoDictionaryKey(QStringLiteral("CFBundleName")),
                           bundle.stringForInfoDictionaryKey(QStringLiteral("CFBundleShortVersionString"))});
  // The subject is escaped by itself, so that a "&" or "#" in an application's name stays in it.
  services().workspace.openURL(QUrl(QStringLiteral("mailto:") + SupportAddress + QStringLiteral("?subject=") +
                                    QString::fromLatin1(QUrl::toPercentEncoding(subject))));
}

bool VelmoraAppController::validateMenuItem(const QString& title) const {
  if (title.startsWith(platform::localizedString("VelmoraAppController", "Export")))
    return currentDocument() != nullptr;
  return true;
}

bool VelmoraAppController::applicationPrintFile(const QString& path) {
  const QUrl url = QUrl::fromLocalFile(path);
  const bool wasOpen = documentForURL(url) != nullptr;
  // Printing may put up a notice, and meanwhile the document may go.
  const QPointer<platform::Document> document = openDocumentWithContentsOfURL(url, true);
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
      {platform::formatted(
           platform::localizedString("VelmoraAppController", "The file '%@' is no longer there."),
           {QFileInfo(path).fileName()}),
       platform::localizedString("OrvVersion", "OK"), QString(), QString(),
       platform::localizedString(
           "VelmoraAppController",
           "It may have been moved or renamed. The menu of recent documents no longer names "
           "it.")});
}
