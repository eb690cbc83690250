// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QApplication>
#include <QDialog>
#include <QObject>
#include <QString>
#include <deque>
#include <functional>

#include "base/files/FileManager.h"
#include "desktop/alerts/QtAlerts.h"
#include "desktop/alerts/QtPanels.h"
#include "desktop/runloop/QtRunLoop.h"
#include "platform/Services.h"
#include "platform/bundles/Bundle.h"
#include "platform/controls/InterfaceFiles.h"
#include "platform/notifications/NotificationCenter.h"
#include "platform/printing/GraphicsContext.h"
#include "platform/printing/Printing.h"
#include "testing/LogRecorder.h"
#include "testing/Scripted.h"
#include "testing/application/RecordApplication.h"
#include "testing/files/TemporaryHome.h"
#include "velmora/app/VelmoraAppController.h"

namespace weather {

/// The person before the real alerts and panels. Each that opens must be the next one expected.
class Person : public QObject {
 public:
  Person() { qApp->installEventFilter(this); }
  /// Fails the test when an expected alert never came.
  ~Person() override;

  /// The next dialog shows `text` (an alert's message, a panel's title). While it is open `act` is done; then
  /// the button of that title is pressed. No title: something else closes the dialog.
  void expect(const QString& text, std::function<void()> act, const QString& button);
  bool done() const { return expected_.empty(); }
  /// How many dialogs have come.
  int came() const { return came_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct Expected {
    QString text;
    std::function<void()> act;
    QString button;
  };
  void attend(QDialog* dialog);

  std::deque<Expected> expected_;
  int came_ = 0;
};

/// Presses the button of that title in the dialog that is open.
void press(QDialog& dialog, const QString& button);
/// Lets what is due now happen, several times over.
void letEventsPass();
/// Waits until `holds`; fails the test when it never does.
void waitUntil(const std::function<bool()>& holds);

/// A desktop with the real run loop, alerts and panels; the rest are stand-ins.
struct Desktop {
  explicit Desktop(const QVariantMap& information) : mainBundle(information, QString()) {}

  velmora::desktop::QtRunLoop runLoop;
  velmora::testkit::MemoryUserDefaults defaults;
  velmora::platform::NotificationCenter notificationCenter;
  velmora::testkit::RecordingDistributedCenter distributedCenter{runLoop};
  velmora::desktop::QtAlerts alerts{runLoop};
  velmora::desktop::QtPanels panels{runLoop};
  velmora::testkit::RecordingWorkspace workspace;
  velmora::base::FileManager fileManager;
  velmora::platform::Bundle mainBundle;
  velmora::testkit::RecordingPrinter printer;
  velmora::platform::PrintInfo sharedPrintInfo;
  velmora::testkit::RecordingFeedback feedback;
  velmora::platform::GraphicsContext graphics;
  velmora::platform::InterfaceFiles interfaceFiles;
  velmora::testkit::RecordingApplication application;
  velmora::testkit::ScriptedScripts scripts;
  velmora::testkit::ScriptedWeb web{runLoop};
  velmora::platform::Services services{defaults,
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
};

/// An application of the family on that desktop, its documents RecordingDocuments.
class Application {
 public:
  Application();
  ~Application();

  QString pathOfRecord(const QString& name) const {
    return home.path(QStringLiteral("Records/%1.rec").arg(name));
  }
  /// Puts a record into the save folder, and the cache knows it.
  void keepRecord(const QString& name);
  velmora::testkit::RecordingDocument& newRecord();
  velmora::testkit::RecordingDocument& openRecord(const QString& name);
  velmora::testkit::RecordingDocument* front() const {
    return dynamic_cast<velmora::testkit::RecordingDocument*>(controller().currentDocument());
  }
  QString identifierInFront() const { return front() ? front()->identifier() : QString(); }
  /// The viewer tells of a study, from a thread of its own as the real centre does.
  void chooseStudy(const QString& identifier);
  VelmoraAppController& controller() const { return *controller_; }
  /// As at the end of main, or worse.
  void destroyController() { controller_.reset(); }

  velmora::testkit::TemporaryHome home;
  velmora::testkit::LogRecorder log;
  Desktop desktop;
  velmora::testkit::RecordingDelegate delegate;

 private:
  QLocale localeBefore_;
  std::unique_ptr<VelmoraAppController> controller_;
};

}  // namespace weather
