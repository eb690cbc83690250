// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Scripts that run.
#include <csignal>

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QShortcut>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>

#include "desktop/scripts/QtScripts.h"
#include "desktop/scripts/ShellStandardError.h"
#include "testing/files/EnvironmentVariable.h"
#include "testing/files/Fifo.h"
#include "testing/files/Files.h"
#include "testing/files/TemporaryHome.h"
#include "testing/main/Shown.h"
#include "testing/standins/LogRecorder.h"
#include "testing/standins/VirtualRunLoop.h"
#include "testing/window/WhenOpen.h"
#include "tests/unit/desktop/scripts/QtScriptsTesting.h"

using namespace velmora;
using namespace velmora::testkit;

using namespace std::chrono_literals;
using testing_support::pinned;
using velmora::desktop::QtScripts;
using velmora::desktop::ScriptTimes;
using velmora::platform::Script;
using velmora::platform::ScriptError;
using velmora::platform::TextRange;

namespace {

/// Whether a process is there and has not ended yet.
bool isAlive(const QByteArray& process) {
  const QByteArray state = readFile("/proc/" + QString::fromLatin1(process.trimmed()) + "/stat");
  // "number (name) state ...": Z is one that has ended, and that nobody has asked for its status.
  return !state.isEmpty() && state.mid(state.lastIndexOf(')') + 2, 1) != "Z";
}

/// A script that says that it runs, through the pipe "started", and waits at the pipe "go" to be let on.
class RunningScripts : public testing::Test {
 protected:
  std::optional<ScriptError> run(const QString& source) {
    script = scripts.initWithSource(source);
    const platform::ScriptResult ended = script->executeAndReturnError();
    return ended.ok() ? std::nullopt : std::optional(ended.failure());
  }
  /// Runs that, and calls `meanwhile` with what the script has said while it waits. `meanwhile` sees to it
  /// that the script ends.
  std::optional<ScriptError> runWhile(const QString& source,
                                      std::function<void(const QByteArray& said)> meanwhile) {
    bool called = false;
    started.whenWritten([&called, meanwhile = std::move(meanwhile)](const QByteArray& said) {
      called = true;
      meanwhile(said);
    });
    std::optional<ScriptError> error = run(source);
    EXPECT_TRUE(called) << "the script ended before it waited";
    return error;
  }

  static constexpr const char* WaitingScript = "echo $$ >started; read x <go";

  TemporaryHome home;
  Fifo started{home.path("started")};
  Fifo go{home.path("go")};
  VirtualRunLoop runLoop;
  QtScripts scripts{runLoop};
  std::unique_ptr<Script> script;
};

/// With a window in which there is something to do.
class RunningScriptsBehindAWindow : public RunningScripts {
 protected:
  RunningScriptsBehindAWindow() {
    auto* layout = new QVBoxLayout(&window);
    layout->addWidget(&field);
    layout->addWidget(&button);
    QObject::connect(&button, &QPushButton::clicked, &window, [this] { done.append("button"); });
    auto* shortcut = new QShortcut(QKeySequence("Ctrl+K"), &window);
    QObject::connect(shortcut, &QShortcut::activated, &window, [this] { done.append("shortcut"); });
    window.show();
    window.activateWindow();
    field.setFocus();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
  }
  void doEverything() {
    QTest::keyClicks(&field, "abc");
    QTest::keyClick(&field, Qt::Key_K, Qt::ControlModifier);
    QTest::keyClick(window.windowHandle(), Qt::Key_K, Qt::ControlModifier);
    QTest::mouseClick(&button, Qt::LeftButton);
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, Qt::NoModifier, button.geometry().center());
    // As the window manager closes it.
    QCloseEvent closing;
    QSpontaneKeyEvent::setSpontaneous(&closing);
    qApp->notify(&window, &closing);
  }

  class Window : public QWidget {
   public:
    explicit Window(QStringList& done) : done_(done) {}

   protected:
    void closeEvent(QCloseEvent*) override { done_.append("closing"); }

   private:
    QStringList& done_;
  };

  QStringList done;
  Window window{done};
  QLineEdit field{&window};
  QPushButton button{"Button", &window};
};

}  // namespace

TEST_F(RunningScripts, EndWell) {
  EXPECT_FALSE(run("echo a; echo complaint >&2; touch made"));
  EXPECT_TRUE(QFile::exists(home.path("made")));
}

TEST_F(RunningScripts, RunInTheHomeFolderWithNothingToRead) {
  EXPECT_FALSE(run("pwd >where; cat >read; echo $0 >name"));
  EXPECT_EQ(readFile(home.path("where")).trimmed(), QDir(home.path()).canonicalPath().toUtf8());
  EXPECT_EQ(readFile(home.path("read")), "");
}

TEST_F(RunningScripts, RunInAProcessGroupOfTheirOwn) {
  EXPECT_FALSE(run("cut -d' ' -f1,5 /proc/self/stat >group; echo $$ >shell"));
  const QByteArray shell = readFile(home.path("shell")).trimmed();
  EXPECT_EQ(readFile(home.path("group")).trimmed().split(' ').value(1), shell);
}

TEST_F(RunningScripts, ReportTheirWholeStandardErrorAndItsFirstLine) {
  const QString source = "echo größe 1 >&2; echo 2 >&2; exit 4";
  const std::optional<ScriptError> error = run(source);
  ASSERT_TRUE(error);
  EXPECT_EQ(*error, (ScriptError{"größe 1\n2", "größe 1", {source.size(), 0}}));
}

TEST_F(RunningScripts, SayHowTheyEndedWhenTheyComplainOfNothing) {
  EXPECT_EQ(run("echo a; exit 3")->message, "The script ended with status 3.");
  EXPECT_EQ(run("kill -9 $$")->message, "The script was ended by signal 9.");
}

TEST_F(RunningScripts, PointAtTheLineThatTheShellNames) {
  const QString source = "# größe\n\tno_such_tool a\n";
  const std::optional<ScriptError> error = run(source);
  ASSERT_TRUE(error);
  EXPECT_EQ(error->message, "sh: 2: no_such_tool: not found");
  EXPECT_EQ(pinned(source, *error), "no_such_tool a");
}

TEST_F(RunningScripts, RunNothingOfAScriptWithASyntaxError) {
  const std::optional<ScriptError> error = run("touch made\nif true\n");
  ASSERT_TRUE(error);
  EXPECT_FALSE(QFile::exists(home.path("made")));
}

TEST_F(RunningScripts, RunWhatTheShellTakesThoughShfmtDoesNot) {
  const QString source = "if false; then echo \"${a//x/y}\"; fi; touch made";
  EXPECT_FALSE(scripts.initWithSource(source)->compileAndReturnError().ok()) << "shfmt is to complain";
  EXPECT_FALSE(run(source));
  EXPECT_TRUE(QFile::exists(home.path("made")));
}

TEST_F(RunningScripts, RunAlsoAfterACheckThatOnlyShfmtObjectsTo) {
  script = scripts.initWithSource("if false; then echo \"${a//x/y}\"; fi");
  EXPECT_FALSE(script->compileAndReturnError().ok());
  EXPECT_TRUE(script->executeAndReturnError().ok());
}

TEST_F(RunningScripts, SayWithTheWordsOfShfmtWhereTheShellRefusesThem) {
  const QString source = "touch made\n( a";
  const std::optional<ScriptError> error = run(source);
  ASSERT_TRUE(error);
  EXPECT_EQ(error->message, "2:1: reached EOF without matching ( with )");
  EXPECT_EQ(pinned(source, *error), "(");
  EXPECT_FALSE(QFile::exists(home.path("made")));
}

TEST_F(RunningScripts, CannotBeStartedWithoutAHomeFolder) {
  const EnvironmentVariable variable("HOME", "/nowhere/at/all");
  const std::optional<ScriptError> error = run("true");
  ASSERT_TRUE(error);
  EXPECT_TRUE(error->message.startsWith("The script cannot be started: ")) << qPrintable(error->message);
}

TEST_F(RunningScripts, RunAScriptOfOneMegabyte) {
  QString source = "n=0\n";
  while (source.size() < 1024 * 1024) source += "n=$((n + 1)) # größe 患者\n";
  EXPECT_FALSE(run(source + "echo $n >count"));
  EXPECT_EQ(readFile(home.path("count")).trimmed().toLongLong(), source.count('\n') - 1);
}

TEST_F(RunningScripts, KeepBothEndsOfALongStandardError) {
  const std::optional<ScriptError> error =
      run("echo first >&2; yes complaint | head -c 5000000 >&2; echo last >&2; exit 1");
  ASSERT_TRUE(error);
  EXPECT_EQ(error->briefMessage, "first");
  EXPECT_TRUE(error->message.endsWith("\nlast"));
  EXPECT_TRUE(error->message.contains("\n[...]\n"));
  EXPECT_GT(error->message.size(), 60 * 1024);
  EXPECT_LT(error->message.size(), 66 * 1024);
}

TEST_F(RunningScripts, EndWithTheShellThoughAProgramInTheBackgroundHoldsStandardError) {
  EXPECT_FALSE(run("(read x <go; echo late >&2; echo alive >started) &"));
  QByteArray said;
  started.whenWritten([&](const QByteArray& text) { said = text; });
  go.writeLine();
  EXPECT_TRUE(QTest::qWaitFor([&] { return !said.isEmpty(); })) << "what it left behind goes on";
  EXPECT_EQ(said, "alive\n");
}

TEST_F(RunningScripts, DropWhatAProgramInTheBackgroundGoesOnToSay) {
  // More than a pipe holds: it can only end if somebody takes it.
  EXPECT_FALSE(run("(read x <go; head -c 1000000 /dev/zero >&2; echo done >started) &"));
  QByteArray said;
  started.whenWritten([&](const QByteArray& text) { said = text; });
  go.writeLine();
  EXPECT_TRUE(QTest::qWaitFor([&] { return !said.isEmpty(); }));
}

TEST_F(RunningScripts, HoldDeferredCallsUntilTheirEnd) {
  QObject owner;
  int calls = 0;
  EXPECT_FALSE(runWhile(WaitingScript, [&](const QByteArray&) {
    runLoop.performAfterDelay(&owner, 0, [&] { ++calls; });
    runLoop.performAfterDelay(&owner, 1, [&] { ++calls; });
    runLoop.advance(3600);
    EXPECT_TRUE(runLoop.inModalSession());
    EXPECT_EQ(calls, 0);
    go.writeLine();
  }));
  EXPECT_FALSE(runLoop.inModalSession());
  runLoop.settle();
  EXPECT_EQ(calls, 2);
}

TEST_F(RunningScripts, AreNotedInTheLogWhenTheyRunForLong) {
  EXPECT_EQ(ScriptTimes().untilLogged, 10s);
  const LogRecorder log;
  QtScripts impatient(runLoop, {.untilLogged = 30ms});
  script = impatient.initWithSource(WaitingScript);
  // It ends as soon as the line is there, and else not at all.
  QTimer looking;
  QObject::connect(&looking, &QTimer::timeout, &looking, [&] {
    if (log.lines().isEmpty()) return;
    looking.stop();
    go.writeLine();
  });
  looking.start(5ms);
  EXPECT_TRUE(script->executeAndReturnError().ok());
  EXPECT_EQ(log.lines(), QStringList{"A script has been running for 0.03 s; Escape stops it."});
}

TEST_F(RunningScriptsBehindAWindow, LetWindowsBePainted) {
  // The script is let on by the painting alone.
  class Letting : public QObject {
   public:
    explicit Letting(const Fifo& pipe) : pipe_(pipe) {}
    bool eventFilter(QObject* watched, QEvent* event) override {
      if (event->type() == QEvent::Paint) {
        watched->removeEventFilter(this);
        pipe_.writeLine();
      }
      return false;
    }

   private:
    const Fifo& pipe_;
  };
  Letting letting(go);
  EXPECT_FALSE(runWhile(WaitingScript, [&](const QByteArray&) {
    field.installEventFilter(&letting);
    field.setText("changed");
  }));
}

TEST_F(RunningScriptsBehindAWindow, HoldBackTheUsersInput) {
  EXPECT_FALSE(runWhile(WaitingScript, [&](const QByteArray&) {
    doEverything();
    EXPECT_EQ(done, QStringList());
    EXPECT_EQ(field.text(), "");
    go.writeLine();
  }));
  QCoreApplication::processEvents();
  EXPECT_EQ(done, QStringList()) << "nor is it made up for";
  EXPECT_EQ(field.text(), "");

  doEverything();
  EXPECT_EQ(done.count("button"), 2) << "all of which does something when no script runs";
  EXPECT_TRUE(done.contains("shortcut"));
  EXPECT_EQ(field.text(), "abc");
  EXPECT_TRUE(done.contains("closing"));
}

TEST_F(RunningScriptsBehindAWindow, ShowThatTheApplicationIsBusy) {
  EXPECT_FALSE(runWhile(WaitingScript, [&](const QByteArray&) {
    ASSERT_TRUE(QApplication::overrideCursor());
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::BusyCursor);
    go.writeLine();
  }));
  EXPECT_FALSE(QApplication::overrideCursor());
}

TEST_F(RunningScriptsBehindAWindow, AreStoppedByEscapeWithAllThatTheyHaveStarted) {
  const QShortcut escape(Qt::Key_Escape, &window);
  QObject::connect(&escape, &QShortcut::activated, &window, [this] { done.append("escape"); });
  // It never ends by itself.
  QByteArray processes;
  const QString source = "read x <go &\necho $$ $! >started\nwait\n";
  const std::optional<ScriptError> error = runWhile(source, [&](const QByteArray& said) {
    processes = said;
    QTest::keyClick(window.windowHandle(), Qt::Key_Escape);
  });
  ASSERT_TRUE(error);
  EXPECT_EQ(*error, (ScriptError{"The script was stopped.", "The script was stopped.", {source.size(), 0}}));
  ASSERT_EQ(processes.trimmed().split(' ').size(), 2);
  for (const QByteArray& process : processes.trimmed().split(' '))
    EXPECT_FALSE(isAlive(process)) << process.data();
  EXPECT_EQ(done, QStringList()) << "the Escape is not the window's, too";
}

TEST_F(RunningScriptsBehindAWindow, AreKilledWhenTheyDoNotEndThough) {
  QtScripts impatient(runLoop, {.untilKilled = 30ms});
  script = impatient.initWithSource("trap '' TERM; echo $$ >started; while :; do read x <go; done");
  QByteArray process;
  started.whenWritten([&](const QByteArray& said) {
    process = said;
    QTest::keyClick(&field, Qt::Key_Escape);
  });
  EXPECT_EQ(script->executeAndReturnError().error(), "The script was stopped.");
  EXPECT_FALSE(isAlive(process));
}

TEST_F(RunningScriptsBehindAWindow, AreKilledAtOnceByASecondEscape) {
  QtScripts patient(runLoop, {.untilKilled = 24h});
  script = patient.initWithSource("trap '' TERM; echo $$ >started; while :; do read x <go; done");
  started.whenWritten([&](const QByteArray&) {
    QTest::keyClick(&field, Qt::Key_Escape);
    QTest::keyClick(&field, Qt::Key_Escape);
  });
  EXPECT_EQ(script->executeAndReturnError().error(), "The script was stopped.");
}

TEST_F(RunningScriptsBehindAWindow, GiveTheirProgramsTimeToEndWhenTheyAreStopped) {
  // The shell itself is gone at once; what it started has something to do first.
  const std::optional<ScriptError> error = runWhile(
      "(trap 'n=0; while [ $n -lt 20000 ]; do n=$((n + 1)); done; echo $n >left; exit' TERM\n"
      "echo $$ >started; while :; do read x <go; done) &\nwait",
      [&](const QByteArray&) { QTest::keyClick(&field, Qt::Key_Escape); });
  EXPECT_EQ(error->message, "The script was stopped.");
  EXPECT_EQ(readFile(home.path("left")), "20000\n");
}

TEST_F(RunningScriptsBehindAWindow, MayEndInTheirOwnWayWhenTheyAreStopped) {
  const std::optional<ScriptError> error =
      runWhile("trap 'echo tidied >left; exit 0' TERM; echo $$ >started; while :; do read x <go; done",
               [&](const QByteArray&) { QTest::keyClick(&field, Qt::Key_Escape); });
  EXPECT_EQ(error->message, "The script was stopped.");
  EXPECT_EQ(readFile(home.path("left")), "tidied\n");
}

TEST_F(RunningScriptsBehindAWindow, LetADialogOfTheApplicationBeAnswered) {
  EXPECT_FALSE(runWhile(WaitingScript, [&](const QByteArray&) {
    whenOpen<QMessageBox>([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
    QMessageBox box(QMessageBox::Question, "End of session", "Save?",
                    QMessageBox::Save | QMessageBox::Cancel);
    EXPECT_EQ(box.exec(), QMessageBox::Cancel);
    go.writeLine();
  })) << "and its Escape is not the script's";
}

TEST_F(RunningScripts, EndWithTheApplication) {
  QByteArray process;
  std::optional<ScriptError> error;
  QTimer::singleShot(0, qApp, [&] {
    error = runWhile("read x <go &\necho $! >started\nwait", [&](const QByteArray& said) {
      process = said;
      QCoreApplication::exit(5);
    });
  });
  EXPECT_EQ(QApplication::exec(), 5);
  ASSERT_TRUE(error);
  EXPECT_EQ(error->message, "The script was stopped.");
  EXPECT_TRUE(QTest::qWaitFor([&] { return !isAlive(process); }));
}

TEST_F(RunningScripts, AreKilledWhenTheyAreGivenUp) {
  QtScripts patient(runLoop, {.untilKilled = 24h});
  script = patient.initWithSource("trap '' TERM\nread x <go &\necho $! >started\nwait");
  QByteArray process;
  started.whenWritten([&](const QByteArray& said) {
    process = said;
    script.reset();
  });
  EXPECT_EQ(script->executeAndReturnError().error(), "The script was stopped.");
  EXPECT_TRUE(QTest::qWaitFor([&] { return !isAlive(process); }));
}

TEST(StandardErrorOfAScript, IsReadToItsEndWithoutAnEventLoop) {
  desktop::ShellStandardError pipe;
  ASSERT_EQ(write(pipe.scriptsEnd(), "last words\n", 11), 11);
  EXPECT_EQ(pipe.text(), "last words\n");
}

TEST_F(RunningScripts, EndWithAnApplicationThatIsKilled) {
  // The application is this program once more. What it leaves behind lies in this test's folder.
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const EnvironmentVariable temporary("TMPDIR", QFile::encodeName(home.path()));
  const EnvironmentVariable told(
      "TOLD", qEnvironmentVariableIsSet("TOLD") ? qgetenv("TOLD") : QFile::encodeName(home.path("started")));
  EXPECT_EXIT(run("echo $$ >\"$TOLD\"; kill -9 $PPID; while :; do read x <go; done"),
              testing::KilledBySignal(SIGKILL), "");
  const QByteArray process = started.takeText();
  ASSERT_GT(process.toInt(), 0) << process.data();
  EXPECT_TRUE(QTest::qWaitFor([&] { return !isAlive(process); }));
}
