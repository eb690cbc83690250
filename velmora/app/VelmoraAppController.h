// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <memory>

#include "orv/OrvVersion.h"
#include "platform/DocumentController.h"
#include "platform/NotificationCenter.h"
#include "velmora/app/DatabaseFileCache.h"
#include "velmora/document/VelmoraApplicationDelegate.h"
#include "velmora/osirix/BatchOpenQueue.h"
#include "velmora/osirix/LinkReceiver.h"
#include "velmora/osirix/OsirixExportQueue.h"

class AboutController;

namespace platform {
class UserDefaults;
}

/// The one controller of an application of the family: document controller and application delegate in one.
///
/// It registers the settings, asks the first-run questions, shows the splash, runs the steps of the start-up,
/// hears link requests, paces link replies, and answers the menus. An application makes one, tells it how its
/// documents are made (setDocumentFactory) and runs it on a desktop.
class VelmoraAppController : public platform::DocumentController, public VelmoraApplicationDelegate {
 public:
  /// Registers the defaults of the framework's settings. Done by the constructor, before anything reads a
  /// setting.
  static void initialize(platform::UserDefaults& defaults);

  explicit VelmoraAppController(platform::Services& services);
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

  void notifiedOfLinkFromOsirix(const platform::Notification& request) {
    link_.notifiedOfLinkFromOsirix(request);
  }
  void doLinkFromOsirix(const platform::Notification& request) { link_.doLinkFromOsirix(request); }
  void deferredNewRecord(const platform::Notification& request) { link_.deferredNewRecord(request); }
  void batchOpen(const platform::Notification& path) { batchOpenQueue_.batchOpen(path); }
  void delayBatchOpen() { batchOpenQueue_.delayBatchOpen(); }
  void batchExportToOsirix(const platform::Notification& payload) {
    exportQueue_.batchExportToOsirix(payload);
  }
  void delayBatchExportToOsirix() { exportQueue_.delayBatchExportToOsirix(); }
  const QStringList& batchArray() const { return batchOpenQueue_.batchArray(); }
  const QList<QVariantMap>& exportToOsirixArray() const { return exportQueue_.exportToOsirixArray(); }

  // Commands of the menus.

  /// Shows the about window; at the start it is the splash.
  void doSplashAboutBox(const QObject* sender);
  /// Exports the chart of the current document.
  void doExport(const QObject* sender);
  /// Items whose title begins with "Export", in the user's language, need a current document; all others are
  /// enabled.
  bool validateMenuItem(const QString& title) const;

  int runModalOpenPanel(platform::OpenPanel& panel, const QStringList& fileTypes) override;
  QStringList openableFileTypes() const override;
  void documentWindowDidLoad(platform::WindowController& windowController) override;
  bool isUntouched(const platform::Document& document) const override;

  /// What is known of the application's version.
  OrvVersion& orvVersion() { return orvVersion_; }
  /// The about window's controller; none before the splash.
  AboutController* aboutController() const { return aboutController_.get(); }

 private:
  void askFirstRunQuestions();
  void setUpDatabase();
  void removeAbandonedFiles();
  void showStatusString(const QString& status);

  OrvVersion orvVersion_;
  std::unique_ptr<AboutController> aboutController_;
  velmora::DatabaseFileCache databaseFiles_;
  velmora::LinkReceiver link_;
  velmora::BatchOpenQueue batchOpenQueue_;
  velmora::OsirixExportQueue exportQueue_;
};
