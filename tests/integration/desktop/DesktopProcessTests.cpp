// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The application as the desktop sees it: processes that are started, and find one another on a bus.
#include <gtest/gtest.h>
#include <csignal>

#include <QFile>
#include <QTemporaryDir>
#include <QUrl>
#include <memory>
#include <vector>

#include "testing/bus/BusPeer.h"
#include "testing/bus/PrivateBus.h"
#include "testing/files/EnvironmentVariable.h"
#include "testing/files/Files.h"
#include "testing/process/Program.h"

using namespace velmora::testkit;

namespace {

const QString Identifier = QStringLiteral("org.velmora.desktop-application");

/// Processes of the application, on one bus, with files to open.
class Processes : public testing::Test {
 protected:
  Processes() {
    writeFile(
        folder.filePath(QStringLiteral("data/dbus-1/services/%1.service").arg(Identifier)),
        "[D-BUS Service]\nName=" + Identifier.toUtf8() + "\nExec=" + DESKTOP_APPLICATION " --service\n");
    bus = std::make_unique<PrivateBus>();
  }
  ~Processes() override {
    // The bus has started some of them.
    for (const qint64 process : processesThatSpoke()) ::kill(static_cast<pid_t>(process), SIGKILL);
  }

  QString file(const QString& name) const {
    writeFile(folder.filePath(name), {});
    return folder.filePath(name);
  }
  Program& start(const QStringList& arguments, const QString& asks = {}) {
    QProcessEnvironment environment = bus->environment();
    if (!asks.isEmpty()) environment.insert(QStringLiteral("DESK_ASKS"), asks);
    processes.push_back(std::make_unique<Program>(QStringLiteral(DESKTOP_APPLICATION), environment));
    processes.back()->start(arguments);
    return *processes.back();
  }
  QStringList lines() const {
    return QString::fromUtf8(readFile(folder.filePath("says"))).split(u'\n', Qt::SkipEmptyParts);
  }
  /// How often that was said, by whomsoever or by that process.
  qsizetype times(const QString& what, const Program* by = nullptr) const {
    return std::ranges::count_if(lines(), [&](const QString& line) {
      return line.section(u' ', 1) == what &&
             (!by || line.section(u' ', 0, 0).toLongLong() == by->processId());
    });
  }
  bool waitFor(const QString& what, qsizetype count = 1) const {
    return waitUntil(Patience.count(), [&] { return times(what) >= count; });
  }
  /// What was kept of unsaved changes.
  QStringList rescueCopies() const {
    return fileNames(folder.filePath(QStringLiteral("data/%1/Rescued").arg(Identifier)));
  }
  /// Whether a process handles a signal itself (proc(5), SigCgt).
  static bool catches(pid_t process, int signal) {
    const QByteArray status = readFile(QStringLiteral("/proc/%1/status").arg(process));
    for (const QByteArray& line : status.split('\n')) {
      if (line.startsWith("SigCgt:"))
        return line.mid(7).trimmed().toULongLong(nullptr, 16) >> (signal - 1) & 1;
    }
    return false;
  }
  QList<qint64> processesThatSpoke() const {
    QList<qint64> numbers;
    for (const QString& line : lines()) {
      const qint64 number = line.section(u' ', 0, 0).toLongLong();
      if (number > 0 && !numbers.contains(number)) numbers.append(number);
    }
    return numbers;
  }

  QTemporaryDir folder;
  // The bus starts what its own environment tells it of, and gives that on.
  EnvironmentVariable says{"DESK_SAYS", QFile::encodeName(folder.filePath("says"))};
  EnvironmentVariable dataHome{"XDG_DATA_HOME", QFile::encodeName(folder.filePath("data"))};
  EnvironmentVariable platform{"QT_QPA_PLATFORM", "offscreen"};
  std::unique_ptr<PrivateBus> bus;
  std::vector<std::unique_ptr<Program>> processes;
};

TEST_F(Processes, OfTwoStartsAtOnceOneGoesOnWithTheFilesOfBoth) {
  for (int round = 0; round < 5; ++round) {
    const QString first = QStringLiteral("a%1").arg(round);
    const QString second = QStringLiteral("b%1").arg(round);
    Program& one = start({file(first)});
    Program& other = start({file(second)});
    ASSERT_TRUE(waitFor("opens " + first));
    ASSERT_TRUE(waitFor("opens " + second));
    ASSERT_TRUE(waitUntil(Patience.count(), [&] { return !one.running() || !other.running(); }));
    Program& going = one.running() ? one : other;
    Program& gone = &going == &one ? other : one;
    EXPECT_EQ(gone.finish(), 0);
    EXPECT_EQ(times("opens " + first, &going), 1);
    EXPECT_EQ(times("opens " + second, &going), 1);
    EXPECT_EQ(times("opens " + first), 1) << "nowhere else";
    EXPECT_EQ(times("opens " + second), 1);
    going.tell("quit");
    ASSERT_EQ(going.finish(), 0);
  }
}

TEST_F(Processes, StartedWithoutAFileBringTheRunningOneToTheFront) {
  start({file("a")});
  ASSERT_TRUE(waitFor("launched"));
  EXPECT_EQ(start({}).finish(), 0);
  EXPECT_EQ(start({"--action=new"}).finish(), 0);
  ASSERT_TRUE(waitFor("does new"));
  EXPECT_EQ(times("awake"), 1);
}

TEST_F(Processes, HandFilesToOneThatAsksItsUserSomethingWhichOpensThemAfterwards) {
  Program& asking = start({file("a")}, "and goes on");
  ASSERT_TRUE(waitFor("asks"));
  EXPECT_EQ(start({file("b")}).finish(), 0) << "it is not kept waiting";
  EXPECT_EQ(times("opens b"), 0);
  asking.tell("answer");
  ASSERT_TRUE(waitFor("opens b"));
  const QStringList said = lines();
  EXPECT_LT(said.indexOf(QStringLiteral("%1 answered").arg(asking.processId())),
            said.indexOf(QStringLiteral("%1 opens b").arg(asking.processId())));
  EXPECT_EQ(times("opens b"), 1);
}

TEST_F(Processes, ThatEndBeforeTheyGetRoundToARequestLeaveItToAnother) {
  Program& ending = start({file("a")}, "and ends");
  ASSERT_TRUE(waitFor("asks"));
  EXPECT_EQ(start({file("b")}).finish(), 0);
  ending.tell("answer");
  EXPECT_EQ(ending.finish(), 0);
  ASSERT_TRUE(waitFor("opens b"));
  EXPECT_EQ(times("opens b", &ending), 0);
  EXPECT_EQ(times("opens b"), 1);
}

TEST_F(Processes, ThatEndBeforeTheyComeToTheFrontLeaveThatToAnother) {
  Program& ending = start({file("a")}, "and ends");
  ASSERT_TRUE(waitFor("asks"));
  EXPECT_EQ(start({}).finish(), 0);
  EXPECT_EQ(start({}).finish(), 0);
  ending.tell("answer");
  EXPECT_EQ(ending.finish(), 0);
  ASSERT_TRUE(waitFor("launched", 2));
  EXPECT_EQ(times("blank"), 1) << "one other, without a file";
}

// Ended by the system.

TEST_F(Processes, KeepUnsavedChangesWhenASignalEndsThem) {
  for (const int signal : {SIGTERM, SIGHUP}) {
    const qsizetype kept = rescueCopies().size();
    const qsizetype edited = times("edited");
    const qsizetype terminated = times("terminates");
    Program& process = start({file("a")});
    process.tell("edit");
    ASSERT_TRUE(waitFor("edited", edited + 1));
    ::kill(static_cast<pid_t>(process.processId()), signal);
    EXPECT_EQ(process.finish(), 0) << signal;
    EXPECT_EQ(rescueCopies().size(), kept + 1) << signal;
    EXPECT_EQ(times("terminates"), terminated + 1) << signal;
  }
}

TEST_F(Processes, KeepUnsavedChangesAlsoWhileTheyAskSomething) {
  Program& process = start({file("a")}, "and goes on");
  ASSERT_TRUE(waitFor("asks"));
  process.tell("edit");
  ASSERT_TRUE(waitFor("edited"));
  ::kill(static_cast<pid_t>(process.processId()), SIGTERM);
  EXPECT_EQ(process.finish(), 0);
  EXPECT_EQ(rescueCopies().size(), 1);
}

TEST_F(Processes, EndAtOnceByASecondSignal) {
  Program& process = start({file("a")});
  ASSERT_TRUE(waitFor("launched"));
  process.tell("stall");
  ASSERT_TRUE(waitFor("stalls"));
  const auto number = static_cast<pid_t>(process.processId());
  ::kill(number, SIGTERM);
  // The first is behind it when it is no longer pending and no longer handled.
  ASSERT_TRUE(waitUntil(Patience.count(), [&] { return !catches(number, SIGTERM); }));
  EXPECT_TRUE(process.running());
  ::kill(number, SIGTERM);
  process.finish();
  EXPECT_EQ(process.ending(), QStringLiteral("ended by signal %1").arg(SIGTERM));
  EXPECT_EQ(times("terminates"), 0);
}

TEST_F(Processes, GoOnAloneWhenTheRunningOneDoesNotAnswerAndAreNotHeardTwice) {
  Program& stopped = start({file("a")});
  ASSERT_TRUE(waitFor("launched"));
  ::kill(static_cast<pid_t>(stopped.processId()), SIGSTOP);
  Program& second = start({file("b")});
  ASSERT_TRUE(waitFor("opens b"));
  EXPECT_EQ(times("opens b", &second), 1);
  ::kill(static_cast<pid_t>(stopped.processId()), SIGCONT);
  // What it is asked after that it takes up, so it has had the earlier request too.
  EXPECT_EQ(start({file("c")}).finish(), 0);
  ASSERT_TRUE(waitFor("opens c"));
  EXPECT_EQ(times("opens c", &stopped), 1);
  EXPECT_EQ(times("opens b"), 1);
  second.tell("quit");
  EXPECT_EQ(second.finish(), 0);
  EXPECT_TRUE(second.errors().contains("does not answer"));
}

TEST_F(Processes, WorkEachByItselfWithoutABus) {
  bus->stop();
  start({file("a")});
  start({file("b")});
  ASSERT_TRUE(waitFor("launched", 2));
  EXPECT_EQ(times("opens a"), 1);
  EXPECT_EQ(times("opens b"), 1);
  EXPECT_EQ(processesThatSpoke().size(), 2);
}

TEST_F(Processes, HandFilesToPrintToTheRunningOne) {
  Program& running = start({});
  ASSERT_TRUE(waitFor("launched"));
  EXPECT_EQ(start({"--print", file("a"), file("b")}).finish(), 0);
  ASSERT_TRUE(waitFor("prints b"));
  EXPECT_EQ(times("prints a", &running), 1);
}

TEST_F(Processes, SayThatThereIsNoPrinterAndFail) {
  Program& printing = start({"--print", file("a")});
  EXPECT_EQ(printing.finish(), 1);
  EXPECT_EQ(printing.errors(), "desktop-application: There is no printer.\n");
  EXPECT_TRUE(lines().isEmpty()) << "nothing of a start happens";
}

TEST_F(Processes, RefuseACommandLineThatMakesNoSense) {
  for (const QStringList& arguments :
       {QStringList{"--print"}, QStringList{"--action=new", "a"}, QStringList{"--dance"}}) {
    Program& process = start(arguments);
    EXPECT_EQ(process.finish(), 1) << qPrintable(arguments.join(' '));
    EXPECT_FALSE(process.errors().isEmpty());
  }
  EXPECT_TRUE(lines().isEmpty());
}

TEST_F(Processes, TakeLocationsAsWellAsPaths) {
  start({QUrl::fromLocalFile(file("a b")).toString(QUrl::FullyEncoded)});
  EXPECT_TRUE(waitFor("opens a b"));
}

/// Asks the bus for the application, which starts it.
QDBusMessage askFor(BusPeer& stranger, const QString& member, const QVariantList& arguments) {
  QDBusMessage call =
      QDBusMessage::createMethodCall(Identifier, QStringLiteral("/org/velmora/desktop_application"),
                                     QStringLiteral("org.freedesktop.Application"), member);
  call.setArguments(arguments);
  return stranger.bus.call(call, QDBus::Block, static_cast<int>(1000 * Patience.count()));
}

TEST_F(Processes, AreStartedByTheBusForTheFilesAskedFor) {
  BusPeer stranger(bus->address());
  const QStringList files{QUrl::fromLocalFile(file("a")).toString()};
  EXPECT_EQ(askFor(stranger, "Open", {files, QVariantMap()}).type(), QDBusMessage::ReplyMessage);
  ASSERT_TRUE(waitFor("launched"));
  EXPECT_EQ(times("opens a"), 1);
  EXPECT_EQ(times("blank"), 0) << "no blank document comes first";
}

TEST_F(Processes, AreStartedByTheBusWithABlankDocumentWhenNoFileIsAskedFor) {
  BusPeer stranger(bus->address());
  EXPECT_EQ(askFor(stranger, "Activate", {QVariantMap()}).type(), QDBusMessage::ReplyMessage);
  ASSERT_TRUE(waitFor("launched"));
  EXPECT_EQ(times("blank"), 1);
}

TEST(Growth, SaysThatThereIsNoPrinterAndAsksNothingAtItsFirstStart) {
  const QTemporaryDir home;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert("HOME", home.path());
  environment.insert("XDG_CONFIG_HOME", home.filePath("config"));
  environment.insert("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
  Program growth(GROWTH, environment);
  EXPECT_EQ(growth.run({"--print", "/none.growth"}), 1);
  EXPECT_TRUE(growth.errors().contains("growth: There is no printer.\n"));
  EXPECT_FALSE(QFile::exists(home.filePath("config/org.velmora.growth.conf"))) << "nothing was decided";
}

}  // namespace
