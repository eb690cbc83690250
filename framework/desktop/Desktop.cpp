// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/Desktop.h"

#include <malloc.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QSessionManager>
#include <QTimer>
#include <chrono>
#include <cstdlib>

#include "base/files/FileManager.h"
#include "base/log/Guard.h"
#include "base/log/Log.h"
#include "base/process/SignalHandler.h"
#include "desktop/activation/ActivationHandler.h"
#include "desktop/activation/Relaunch.h"
#include "desktop/activation/SingleInstance.h"
#include "desktop/alerts/QtAlerts.h"
#include "desktop/alerts/QtFeedback.h"
#include "desktop/alerts/QtPanels.h"
#include "desktop/alerts/UnattendedAlerts.h"
#include "desktop/notifications/QtDistributedNotificationCenter.h"
#include "desktop/printing/QtPrinter.h"
#include "desktop/runloop/QtRunLoop.h"
#include "desktop/scripts/QtScripts.h"
#include "desktop/settings/QtUserDefaults.h"
#include "desktop/settings/Translations.h"
#include "desktop/web/HelpPages.h"
#include "desktop/web/QtWeb.h"
#include "desktop/workspace/QtWorkspace.h"
#include "platform/bundles/Bundle.h"
#include "platform/bundles/PropertyList.h"
#include "platform/controls/InterfaceFiles.h"
#include "platform/documents/Application.h"
#include "platform/documents/DocumentController.h"
#include "platform/notifications/NotificationCenter.h"
#include "platform/printing/GraphicsContext.h"
#include "platform/printing/Printing.h"

namespace velmora::desktop {

namespace {

/// Quitting ends the main loop; help is a page that the application carries.
class RunningApplication : public platform::Application {
 public:
  RunningApplication(const platform::Bundle& bundle, platform::Workspace& workspace, platform::Alerts& alerts)
      : bundle_(bundle), workspace_(workspace), alerts_(alerts) {}

  // Not quit(): that asks every window whether it wants to close, after all questions have been asked.
  void stop() override { QCoreApplication::exit(0); }
  void showHelp() override {
    desktop::showHelp(bundle_.resourcePath() + QStringLiteral("/help"), workspace_, alerts_);
  }

 private:
  const platform::Bundle& bundle_;
  platform::Workspace& workspace_;
  platform::Alerts& alerts_;
};

/// QGuiApplication quits by itself when the last window closes; here the document controller decides. And a
/// session that ends (log-out) must not end the application before its records were asked about.
void letControllerDecideWhenToQuit(platform::DocumentController& controller) {
  QGuiApplication::setQuitOnLastWindowClosed(false);
  QObject::connect(
      qApp, &QGuiApplication::commitDataRequest, qApp,
      [&controller](QSessionManager& session) {
        base::guarded("end of session", [&] {
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

/// How long a program that the bus has started waits for what it was started for.
constexpr std::chrono::seconds BusPatience{5};

struct CommandLine {
  ActivationRequest request;
  bool startedByBus = false;
};

/// Reads the command line. Ends the program when it asks for no more than a word about it, or makes no sense.
CommandLine readCommandLine() {
  const QCommandLineOption print(
      QStringLiteral("print"),
      QStringLiteral("Print the records, without questions, instead of opening them."));
  const QCommandLineOption action(
      QStringLiteral("action"),
      QStringLiteral("Do one of the actions of the desktop entry, such as \"new\"."), QStringLiteral("name"));
  QCommandLineOption service(QStringLiteral("service"),
                             QStringLiteral("Wait for what the session bus asks for."));
  service.setFlags(QCommandLineOption::HiddenFromHelp);
  QCommandLineParser parser;
  parser.addHelpOption();
  parser.addVersionOption();
  parser.addOptions({print, action, service});
  parser.addPositionalArgument(QStringLiteral("files"), QStringLiteral("Records to open."),
                               QStringLiteral("[FILE…]"));
  parser.process(*qApp);

  using Kind = ActivationRequest::Kind;
  CommandLine line;
  line.startedByBus = parser.isSet(service);
  line.request.action = parser.value(action);
  for (const QString& argument : parser.positionalArguments()) {
    // Desktops hand over locations as well as paths.
    const QUrl url(argument);
    const QString path = url.isLocalFile() ? url.toLocalFile() : argument;
    line.request.files.append(QFileInfo(path).absoluteFilePath());
  }
  line.request.activationToken = qEnvironmentVariable("XDG_ACTIVATION_TOKEN");
  if (line.request.activationToken.isEmpty())
    line.request.activationToken = qEnvironmentVariable("DESKTOP_STARTUP_ID");
  const bool files = !line.request.files.isEmpty();
  line.request.kind = parser.isSet(print)    ? Kind::Print
                      : parser.isSet(action) ? Kind::Action
                      : files                ? Kind::Open
                                             : Kind::Activate;
  if (files == (line.request.kind == Kind::Print || line.request.kind == Kind::Open)) return line;
  tellOnStandardError(files ? QStringLiteral("--action takes no files")
                            : QStringLiteral("--print needs the files to print"));
  std::exit(1);
}

}  // namespace

struct Desktop::Parts {
  explicit Parts(const QString& name)
      : mainBundle(platform::bundleWithPath(
            QFileInfo(QCoreApplication::applicationDirPath() + QStringLiteral("/../share/") + name)
                .absoluteFilePath())),
        translations(translationFolders(mainBundle.resourcePath())),
        defaults(mainBundle.bundleIdentifier(), runLoop),
        windowAlerts(runLoop),
        alerts(windowAlerts),
        panels(runLoop),
        printer(runLoop, graphics),
        application(mainBundle, workspace, alerts),
        activation(runLoop) {}

  platform::Bundle mainBundle;
  Translations translations;
  QtRunLoop runLoop;
  QtUserDefaults defaults;
  platform::NotificationCenter notificationCenter;
  QtDistributedNotificationCenter distributedCenter;
  QtAlerts windowAlerts;
  UnattendedAlerts alerts;
  QtPanels panels;
  QtWorkspace workspace;
  base::FileManager fileManager;
  platform::GraphicsContext graphics;
  QtPrinter printer;
  platform::PrintInfo sharedPrintInfo;
  QtFeedback feedback;
  platform::InterfaceFiles interfaceFiles;
  RunningApplication application;
  QtScripts scripts{runLoop};
  QtWeb web{runLoop};
  platform::Services services{defaults,
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
                              feedback,
                              graphics,
                              interfaceFiles,
                              application,
                              scripts,
                              web,
                              nullptr};
  SingleInstance activation;
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

platform::Services& Desktop::services() { return parts_->services; }

int Desktop::run(platform::DocumentController& controller) {
  CommandLine line = readCommandLine();
  const QString identifier = parts_->mainBundle.bundleIdentifier();
  SingleInstance& activation = parts_->activation;
  using Kind = ActivationRequest::Kind;
  using Outcome = SingleInstance::Outcome;
  const Outcome outcome = activation.begin(identifier, line.request, line.request.kind != Kind::Print);
  if (outcome == Outcome::HandedOver) return 0;
  line.request = activation.rest();
  if (outcome == Outcome::Refused) {
    tellOnStandardError(activation.refusal());
    return 1;
  }
  if (outcome == Outcome::Serving && line.startedByBus) line.request = activation.firstRequest(BusPatience);

  letControllerDecideWhenToQuit(controller);
  bool ended = false;
  const base::SignalHandler signalHandler(base::SignalHandler::Program::Desktop, [&] {
    ended = true;
    base::guarded("end", [&] { controller.sessionMayEnd(false); });
    base::guarded("end", [&] { controller.applicationWillTerminate(); });
    parts_->application.stop();
  });
  ActivationHandler handler(parts_->printer, controller);
  int printStatus = 0;
  QTimer::singleShot(0, qApp, [&] {
    if (line.request.kind == Kind::Print) {
      parts_->alerts.setUnattended(true);
      printStatus = EXIT_FAILURE;
      base::guarded("print", [&] {
        printStatus =
            handler.printAlone(line.request.files, [this] { return parts_->printer.printedViews(); });
      });
      parts_->application.stop();
      return;
    }
    controller.setKeepsBlankDocument(true);
    base::guarded("start", [&] { handler.start(line.request); });
    activation.deliverTo(&controller,
                         [&handler](const ActivationRequest& request) { return handler.carryOut(request); });
  });
  const int status = QApplication::exec();
  const QList<ActivationRequest> left = activation.end();
  // Whoever ends this program by a signal wants no other in its place.
  if (!ended) leaveToAnother(left);
  return status == 0 ? printStatus : status;
}

}  // namespace velmora::desktop
