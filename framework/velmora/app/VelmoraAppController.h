// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <memory>

#include "base/Export.h"
#include "orv/updates/OrvVersion.h"
#include "platform/documents/DocumentController.h"
#include "platform/notifications/NotificationCenter.h"
#include "velmora/app/DatabaseFileCache.h"
#include "velmora/app/MenuCommands.h"
#include "velmora/app/RecentDocuments.h"
#include "velmora/app/StartupScript.h"
#include "velmora/app/VersionCheck.h"
#include "velmora/document/VelmoraApplicationDelegate.h"
#include "velmora/osirix/BatchOpenQueue.h"
#include "velmora/osirix/LinkReceiver.h"
#include "velmora/osirix/OsirixExportQueue.h"
#include "velmora/osirix/PluginInstaller.h"

class AboutController;
class BatchExportController;
class PreferencesController;

namespace velmora::platform {
class UserDefaults;
}

/// The one controller of an application of the family: document controller and application delegate in one.
///
/// It registers the settings, asks the first-run questions, shows the splash, runs the steps of the start-up,
/// hears link requests, paces link replies, and answers the menus. An application makes one, tells it how its
/// documents are made (setDocumentFactory) and runs it on a desktop.
class VELMORA_EXPORT VelmoraAppController : public velmora::platform::DocumentController,
                                            public VelmoraApplicationDelegate,
                                            public velmora::MenuCommands {
 public:
  /// Registers the defaults of the framework's settings. Done by the constructor, before anything reads a
  /// setting.
  static void initialize(velmora::platform::UserDefaults& defaults);

  explicit VelmoraAppController(velmora::platform::Services& services);
  ~VelmoraAppController() override;

  // Start and end.

  void awakeFromNib() override;
  void applicationDidFinishLaunching() override;
  void applicationWillTerminate() override;

  // The data-file cache.

  void cacheDatabaseFiles() { databaseFiles_.cacheDatabaseFiles(); }
  bool fileIsInCachedDatabaseFiles(const QString& name) const override {
    return databaseFiles_.contains(name);
  }
  void addToCachedDatabaseFiles(const QString& fileName) override { databaseFiles_.add(fileName); }
  const QStringList& cachedDatabaseArray() const { return databaseFiles_.names(); }

  // The link with OsiriX.

  void notifiedOfLinkFromOsirix(const velmora::platform::Notification& request) {
    link_.notifiedOfLinkFromOsirix(request);
  }
  void doLinkFromOsirix(const velmora::platform::Notification& request) { link_.doLinkFromOsirix(request); }
  void deferredNewRecord(const velmora::platform::Notification& request) { link_.deferredNewRecord(request); }
  void batchOpen(const velmora::platform::Notification& path) { batchOpenQueue_.batchOpen(path); }
  void delayBatchOpen() { batchOpenQueue_.delayBatchOpen(); }
  void batchExportToOsirix(const velmora::platform::Notification& payload) {
    exportQueue_.batchExportToOsirix(payload);
  }
  void delayBatchExportToOsirix() { exportQueue_.delayBatchExportToOsirix(); }
  const QStringList& batchArray() const { return batchOpenQueue_.batchArray(); }
  const QList<QVariantMap>& exportToOsirixArray() const { return exportQueue_.exportToOsirixArray(); }

  // The plugin inside OsiriX.

  std::optional<QString> nameOfInstallableOsirixPlugin() const {
    return plugin_.nameOfInstallableOsirixPlugin();
  }
  bool osirixPluginVersionCurrent() const { return plugin_.osirixPluginVersionCurrent(); }
  void doInstallOsirixPlugin(const QObject* /*sender*/) { plugin_.doInstallOsirixPlugin(); }

  // The start-up script and the version check.

  void doLaunchScript() { startupScript_.doLaunchScript(); }
  void autoCheckForNewVersion() { versionCheck_.autoCheckForNewVersion(); }
  /// Without telling the result when the controller itself is the sender.
  void doCheckForNewVersion(const QObject* sender) override {
    versionCheck_.doCheckForNewVersion(sender == this);
  }
  void versionCheckSuccessful() { versionCheck_.versionCheckSuccessful(); }
  void versionCheckUnsuccessful() { versionCheck_.versionCheckUnsuccessful(); }

  // Commands of the menus.

  void doSplashAboutBox(const QObject* sender) override;
  void doPreferences(const QObject* sender) override;
  void doBatchExport(const QObject* sender) override;
  /// Exports the chart of the current document.
  void doExport(const QObject* sender);
  void doCloseAllDocuments(const QObject* sender) override;
  /// Close-all has ended, with all documents closed or not. There is nothing to do then.
  void documentControllerDidCloseAll(bool didCloseAll);
  void doGoToWebSite(const QObject* sender) override;
  void doMailAuthor(const QObject* sender) override;
  /// Items whose title begins with "Export", in the user's language, need a current document; all others are
  /// enabled.
  bool validateMenuItem(const QString& title) const override;

  /// Prints a file that the desktop asks to print: opens it, prints it without a panel, and closes it, also
  /// when it was open before. Always true: the request has been dealt with.
  bool applicationPrintFile(const QString& path) override;

  /// Knows, beside what the base knows: "preferences" and "batch-export", the windows of these names.
  bool applicationPerformAction(const QString& name) override;

  // Recent documents.

  velmora::RecentDocuments& recentDocuments() override { return recentDocuments_; }
  void noteNewRecentDocumentURL(const QUrl& url) override { recentDocuments_.note(url); }
  void openRecentDocument(const QString& path) override;

  int runModalOpenPanel(velmora::platform::OpenPanel& panel, const QStringList& fileTypes) override;
  QStringList openableFileTypes() const override;
  void documentWindowDidLoad(velmora::platform::WindowController& windowController) override;
  bool isUntouched(const velmora::platform::Document& document) const override;

  /// What is known of the application's version.
  OrvVersion& orvVersion() { return orvVersion_; }
  /// The about window's controller; none before the splash.
  AboutController* aboutController() const { return aboutController_.get(); }
  /// The preferences window's controller; none before its first showing.
  PreferencesController* preferencesController() const { return preferencesController_.get(); }
  /// The batch-export window's controller; none before its first showing.
  BatchExportController* batchExportController() const { return batchExportController_.get(); }

 private:
  /// Shows a window of the application, making its controller by `make` when there is none yet.
  template <typename Controller, typename Make>
  void showWindowOf(std::unique_ptr<Controller>& controller, Make make);
  void showStatusString(const QString& status);

  OrvVersion orvVersion_;
  velmora::RecentDocuments recentDocuments_;
  std::unique_ptr<PreferencesController> preferencesController_;
  std::unique_ptr<BatchExportController> batchExportController_;
  std::unique_ptr<AboutController> aboutController_;
  velmora::DatabaseFileCache databaseFiles_;
  velmora::LinkReceiver link_;
  velmora::BatchOpenQueue batchOpenQueue_;
  velmora::OsirixExportQueue exportQueue_;
  velmora::PluginInstaller plugin_;
  velmora::StartupScript startupScript_;
  velmora::VersionCheck versionCheck_;
};
