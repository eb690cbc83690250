// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/app/StartupScript.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QPointer>
#include <QTest>
#include <QTimer>

#include "desktop/scripts/QtScripts.h"
#include "platform/documents/Document.h"
#include "platform/documents/DocumentController.h"
#include "testing/files/Fifo.h"
#include "testing/files/TemporaryHome.h"
#include "testing/main/Shown.h"
#include "testing/standins/LogRecorder.h"
#include "testing/standins/TestServices.h"
#include "velmora/about/AboutController.h"
#include "velmora/resources/FrameworkResources.h"
#include "velmora/resources/SettingsKeys.h"

namespace base = velmora::base;
namespace platform = velmora::platform;
namespace testkit = velmora::testkit;

using velmora::desktop::QtScripts;
using velmora::platform::ScriptError;
using velmora::settings::LaunchScript;
using velmora::testkit::Fifo;
using velmora::testkit::TemporaryHome;

namespace {

/// What is told of the start-up script when the script runner does as the test says.
class StartupScript : public testing::Test {
 protected:
  void launch(const QString& source) {
    desktop.defaults.setObject(source, LaunchScript);
    startupScript->doLaunchScript();
  }

  testkit::TestServices desktop{QVariantMap()};
  QStringList said;  // statuses and log lines, as they come
  testkit::LogRecorder log;
  std::unique_ptr<velmora::StartupScript> startupScript = std::make_unique<velmora::StartupScript>(
      desktop.scripts, desktop.defaults, [this](const QString& status) { said.append(status); });
};

/// A document with a change, which keeps that it was asked about it.
class UnsavedDocument : public platform::Document {
 public:
  UnsavedDocument(platform::Services& services, QStringList& said) : Document(services), said_(said) {
    updateChangeCount(platform::ChangeType::Done);
  }
  base::Result<> readFromData(const QByteArray&, const QString&) override { return {}; }
  base::Result<QByteArray> dataOfType(const QString&) override { return QByteArray(); }
  void canCloseDocument(ShouldClose shouldClose) override {
    said_.append("question");
    shouldClose(this, false);
  }

 private:
  QStringList& said_;
};

/// The same with real scripts of the shell, and with the splash.
class StartupScriptOfTheShell : public testing::Test {
 protected:
  StartupScriptOfTheShell() {
    desktop.interfaceFiles.addSearchPath(velmora::frameworkInterfaceFolder());
    about.showWindow(nullptr);
  }
  ~StartupScriptOfTheShell() override { about.close(); }

  void launch(const QString& source) {
    desktop.defaults.setObject(source, LaunchScript);
    startupScript.doLaunchScript();
  }
  /// Runs a script that never ends by itself, and does that meanwhile. If it does not stop the script, the
  /// script stops waiting after a while, so that the test can fail.
  void launchAndMeanwhile(const std::function<void()>& meanwhile) {
    QTimer letting;
    QObject::connect(&letting, &QTimer::timeout, &letting, [this] { go.writeLine(); });
    started.whenWritten([&](const QByteArray&) {
      meanwhile();
      letting.start(5000);
    });
    launch("echo >started; read x <go");
  }
  QString status() { return about.outlet<QLabel>("statusField")->text(); }

  TemporaryHome home;
  Fifo started{home.path("started")};
  Fifo go{home.path("go")};
  testkit::TestServices desktop{QVariantMap()};
  QStringList said;
  testkit::LogRecorder log;
  QtScripts scripts{desktop.runLoop};
  platform::Services services = testkit::with(desktop.services, scripts);
  AboutController about{services};
  velmora::StartupScript startupScript{services.scripts, services.defaults,
                                       [this](const QString& text) { about.showStatusString(text); }};
};

}  // namespace

TEST_F(StartupScript, ShowsNoStatusWhenThereIsNone) {
  launch("");
  EXPECT_TRUE(said.isEmpty());
  EXPECT_TRUE(desktop.scripts.executed.isEmpty());
}

TEST_F(StartupScript, ShowsNoStatusWhenTheSettingIsAbsent) {
  startupScript->doLaunchScript();
  EXPECT_TRUE(said.isEmpty());
  EXPECT_TRUE(desktop.scripts.executed.isEmpty());
}

TEST_F(StartupScript, IsSkippedSilentlyWhenTheRunnerRefusesIt) {
  desktop.scripts.behaviours["junk"].refused = true;
  launch("junk");
  EXPECT_TRUE(said.isEmpty());
  EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(StartupScript, LeavesTheStatusThatItRunsWhenItEndsWell) {
  desktop.scripts.whileRunning = [this](const QString&) { said.append("(runs)"); };
  launch("echo a");
  EXPECT_EQ(said, (QStringList{"Running startup script...", "(runs)"}));
  EXPECT_EQ(desktop.scripts.executed, QStringList{"echo a"});
  EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(StartupScript, RunsATextOfBlanksToo) {
  launch(" ");
  EXPECT_EQ(desktop.scripts.executed, QStringList{" "});
}

TEST_F(StartupScript, WithASyntaxErrorShowsThatAndLogsTheFullMessage) {
  desktop.scripts.behaviours["fi"].compileError = ScriptError{"1:1: fi where nothing began", "fi", {0, 2}};
  launch("fi");
  EXPECT_EQ(said, (QStringList{"Running startup script...", "Startup script error"}));
  EXPECT_EQ(log.lines(), QStringList{"Startup script error: 1:1: fi where nothing began"});
  EXPECT_TRUE(desktop.scripts.executed.isEmpty());
}

TEST_F(StartupScript, ThatFailsIsReportedByStatusAndLogLineAlone) {
  desktop.scripts.behaviours["mount"].runError = ScriptError{"no %@ disk\nat all", "no %@ disk", {5, 0}};
  launch("mount");
  EXPECT_EQ(said, (QStringList{"Running startup script...", "Startup script error"}));
  EXPECT_EQ(log.lines(), QStringList{"Startup script error: no %@ disk\\nat all"});
}

TEST_F(StartupScript, OutlivesTheApplicationOnlyInTheLog) {
  desktop.scripts.behaviours["mount"].runError = ScriptError{"stopped", "stopped", {5, 0}};
  desktop.scripts.whileRunning = [this](const QString&) { startupScript.reset(); };
  launch("mount");
  EXPECT_EQ(said, QStringList{"Running startup script..."});
  EXPECT_EQ(log.lines(), QStringList{"Startup script error: stopped"});
}

TEST_F(StartupScriptOfTheShell, ThatFailsIsReportedInTheStatusLine) {
  launch("echo no such disk >&2; exit 1");
  EXPECT_EQ(status(), "Startup script error");
  EXPECT_EQ(log.lines(), QStringList{"Startup script error: no such disk"});
}

TEST_F(StartupScriptOfTheShell, WithASyntaxErrorRunsNothing) {
  launch("touch made\n( a");
  EXPECT_EQ(status(), "Startup script error");
  EXPECT_EQ(log.lines(), QStringList{"Startup script error: 2:1: reached EOF without matching ( with )"});
  EXPECT_FALSE(QFile::exists(home.path("made")));
}

TEST_F(StartupScriptOfTheShell, HoldsUpTheSplashWhichShowsThatItRuns) {
  // The script ends when the status has been painted, and not before.
  class Watching : public QObject {
   public:
    explicit Watching(std::function<void()> painted) : painted_(std::move(painted)) {}
    bool eventFilter(QObject* watched, QEvent* event) override {
      if (event->type() != QEvent::Paint) return false;
      watched->removeEventFilter(this);
      painted_();
      return false;
    }

   private:
    std::function<void()> painted_;
  };
  QString painted;
  Watching watching([&] {
    painted = status();
    desktop.runLoop.advance(60);
    EXPECT_TRUE(about.window()->isVisible()) << "the splash's own end waits, too";
    go.writeLine();
  });
  ASSERT_TRUE(QTest::qWaitForWindowExposed(about.window()));
  QCoreApplication::processEvents();
  about.outlet<QLabel>("statusField")->installEventFilter(&watching);
  launch("read x <go");
  EXPECT_EQ(painted, "Running startup script...");
  EXPECT_TRUE(log.lines().isEmpty());

  EXPECT_TRUE(about.window()->isVisible());
  desktop.runLoop.settle();
  EXPECT_FALSE(about.window()->isVisible());
}

TEST_F(StartupScriptOfTheShell, ThatNeverEndsIsStoppedByEscapeWhichLeavesTheSplashOpen) {
  started.whenWritten(
      [this](const QByteArray&) { QTest::keyClick(about.window()->windowHandle(), Qt::Key_Escape); });
  launch("echo >started; while :; do read x <go; done");
  EXPECT_EQ(status(), "Startup script error");
  EXPECT_EQ(log.lines(), QStringList{"Startup script error: The script was stopped."});
  EXPECT_TRUE(about.window()->isVisible());
}

TEST_F(StartupScriptOfTheShell, HoldsUpTheRestOfTheStart) {
  QStringList order;
  QObject owner;
  desktop.defaults.setObject(QStringLiteral("echo >started; read x <go"), LaunchScript);
  desktop.runLoop.performAfterDelay(&owner, 0.5, [&] {
    startupScript.doLaunchScript();
    order.append("script");
  });
  desktop.runLoop.performAfterDelay(&owner, 1.5, [&] { order.append("cache"); });
  started.whenWritten([&](const QByteArray&) {
    desktop.runLoop.advance(30);
    EXPECT_EQ(order, QStringList());
    go.writeLine();
  });
  desktop.runLoop.advance(0.5);
  EXPECT_EQ(order, QStringList{"script"});
  desktop.runLoop.settle();
  EXPECT_EQ(order, (QStringList{"script", "cache"}));
}

TEST_F(StartupScriptOfTheShell, IsStoppedByTheEndOfTheSessionWhichThenAsksAboutUnsavedChanges) {
  platform::DocumentController controller(services);
  controller.setDocumentFactory([this] { return std::make_unique<UnsavedDocument>(services, said); });
  controller.openUntitledDocument(false);
  launchAndMeanwhile([&] { EXPECT_FALSE(controller.sessionMayEnd(true)); });
  EXPECT_EQ(log.lines(), QStringList{"Startup script error: The script was stopped."});

  EXPECT_EQ(said, QStringList()) << "no question while the script has the windows";
  desktop.runLoop.settle();
  EXPECT_EQ(said, QStringList{"question"});
}

TEST_F(StartupScriptOfTheShell, IsStoppedByARequestToQuitWhichThenGoesOn) {
  platform::DocumentController controller(services);
  launchAndMeanwhile([&] { controller.terminate(); });
  EXPECT_EQ(log.lines(), QStringList{"Startup script error: The script was stopped."});
  EXPECT_EQ(desktop.application.stops, 0);
  desktop.runLoop.settle();
  EXPECT_EQ(desktop.application.stops, 1);
}

TEST_F(StartupScriptOfTheShell, IsStoppedByTheNextRequestToQuitWhenItBeganBehindTheFirst) {
  platform::DocumentController controller(services);
  controller.terminate();
  launchAndMeanwhile([&] { controller.terminate(); });
  EXPECT_EQ(log.lines(), QStringList{"Startup script error: The script was stopped."});
}

TEST_F(StartupScriptOfTheShell, GoesOnWhenTheSessionMayEndWithoutAQuestion) {
  // Another application may keep the session from ending.
  platform::DocumentController controller(services);
  started.whenWritten([&](const QByteArray&) {
    EXPECT_TRUE(controller.sessionMayEnd(true));
    go.writeLine();
  });
  launch("echo >started; read x <go; touch made");
  EXPECT_EQ(log.lines(), QStringList());
  EXPECT_TRUE(QFile::exists(home.path("made")));
}
