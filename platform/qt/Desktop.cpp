// SPDX-License-Identifier: LGPL-3.0-or-later
#include "platform/qt/Desktop.h"

#include <malloc.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QSessionManager>
#include <QTimer>

#include "platform/Application.h"
#include "platform/Bundle.h"
#include "platform/DocumentController.h"
#include "platform/FileManager.h"
#include "platform/GraphicsContext.h"
#include "platform/Guard.h"
#include "platform/InterfaceFiles.h"
#include "platform/NotificationCenter.h"
#include "platform/Printing.h"
#include "platform/qt/PropertyList.h"
#include "platform/qt/QtAlerts.h"
#include "platform/qt/QtDistributedNotificationCenter.h"
#include "platform/qt/QtEffects.h"
#include "platform/qt/QtPanels.h"
#include "platform/qt/QtPrinter.h"
#include "platform/qt/QtRunLoop.h"
#include "platform/qt/QtUserDefaults.h"
#include "platform/qt/QtWorkspace.h"

namespace platform::qt {

namespace {

/// Quitting ends the main loop; help is a page that the application carries.
class RunningApplication : public Application {
 public:
  RunningApplication(const Bundle& bundle, Workspace& workspace) : bundle_(bundle), workspace_(workspace) {}

  // Not quit(): that asks every window whether it wants to close, after all questions have been asked.
  void stop() override { QCoreApplication::exit(0); }
  void showHelp() override {
    const QString page = bundle_.resourcePath() + QStringLiteral("/help/index.html");
    if (QFileInfo::exists(page)) workspace_.openURL(QUrl::fromLocalFile(page));
  }

 private:
  const Bundle& bundle_;
  Workspace& workspace_;
};

/// QGuiApplication quits by itself when the last window closes; here the document controller decides. And a
/// session that ends (log-out) must not end the application before its records were asked about.
void letControllerDecideWhenToQuit(DocumentController& controller) {
  QGuiApplication::setQuitOnLastWindowClosed(false);
  QObject::connect(
      qApp, &QGuiApplication::commitDataRequest, qApp,
      [&controller](QSessionManager& session) {
        guarded("end of session", [&] {
          if (!controller.sessionMayEnd(session.allowsInteraction())) session.cancel();
        });
      },
      Qt::DirectConnection);
}

/// A block of this many bytes and more goes back to the system when it is freed.
constexpr int LargeBlock = 256 * 1024;

/// Left to itself, the C library raises that size with every larger block that is freed, up to 32 MiB, and
/// then keeps all below it: 200 link requests of 1 MiB left 210 MiB behind (measured, glibc 2.36).
void giveLargeBlocksBack() { mallopt(M_MMAP_THRESHOLD, LargeBlock); }

/// Opens the files named on the command line, or a blank document when none of them opens.
void openFirstDocuments(DocumentController& controller, const QStringList& files) {
  for (const QString& file : files) {
    guarded("open", [&] {
      const QUrl url = QUrl::fromLocalFile(QFileInfo(file).absoluteFilePath());
      QString error;
      if (!controller.openDocumentWithContentsOfURL(url, true, &error))
        controller.presentOpenError(url, error);
    });
  }
  if (controller.documents().isEmpty()) guarded("open", [&] { controller.openUntitledDocument(true); });
}

}  // namespace

struct Desktop::Parts {
  explicit Parts(const QString& name)
      : mainBundle(bundleWithPath(
            QFileInfo(QCoreApplication::applicationDirPath() + QStringLiteral("/../share/") + name)
                .absoluteFilePath())),
        defaults(mainBundle.bundleIdentifier()),
        alerts(runLoop),
        panels(runLoop),
        printer(runLoop, graphics),
        application(mainBundle, workspace) {}

  Bundle mainBundle;
  QtRunLoop runLoop;
  QtUserDefaults defaults;
  NotificationCenter notificationCenter;
  QtDistributedNotificationCenter distributedCenter;
  QtAlerts alerts;
  QtPanels panels;
  QtWorkspace workspace;
  FileManager fileManager;
  GraphicsContext graphics;
  QtPrinter printer;
  PrintInfo sharedPrintInfo;
  QtEffects effects;
  InterfaceFiles interfaceFiles;
  RunningApplication application;
  Services services{defaults,
                    notificationCenter,
                    distributedCenter,
                    alerts,
                    panels,
                    workspace,
                    fileManager,
                    runLoop,
                    mainBundle,
                    printer,
                    sharedPrintInfo,
                    effects,
                    graphics,
                    interfaceFiles,
                    application,
                    nullptr};
};

Desktop::Desktop(const QString& name) : parts_(std::make_unique<Parts>(name)) {
  giveLargeBlocksBack();
  QCoreApplication::setApplicationName(name);
  QCoreApplication::setApplicationVersion(
      parts_->mainBundle.stringForInfoDictionaryKey(QStringLiteral("CFBundleShortVersionString")));
  QGuiApplication::setApplicationDisplayName(
      parts_->mainBundle.stringForInfoDictionaryKey(QStringLiteral("CFBundleName")));
  QGuiApplication::setDesktopFileName(parts_->mainBundle.bundleIdentifier());
}

Desktop::~Desktop() = default;

Services& Desktop::services() { return parts_->services; }

int Desktop::run(DocumentController& controller) {
  QCommandLineParser commandLine;
  commandLine.addHelpOption();
  commandLine.addVersionOption();
  commandLine.addPositionalArgument(QStringLiteral("files"), QStringLiteral("Records to open."),
                                    QStringLiteral("[FILE…]"));
  commandLine.process(*qApp);

  letControllerDecideWhenToQuit(controller);
  controller.setKeepsBlankDocument(true);
  // Each step by itself: a file that cannot be opened must not take the rest of the start with it.
  QTimer::singleShot(0, qApp, [&controller, files = commandLine.positionalArguments()] {
    guarded("start", [&] { controller.awakeFromNib(); });
    openFirstDocuments(controller, files);
    guarded("start", [&] { controller.applicationDidFinishLaunching(); });
  });
  return QApplication::exec();
}

}  // namespace platform::qt
