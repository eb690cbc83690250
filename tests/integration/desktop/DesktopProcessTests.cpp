// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The application as the desktop sees it: processes that are started, and find one another on a bus.
#include <gtest/gtest.h>
#include <csignal>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <memory>
#include <vector>

#include "testing/bus/BusPeer.h"
#include "testing/bus/PrivateBus.h"
#include "testing/files/Files.h"

namespace {

constexpr int Patience = 60000;  // milliseconds; reached only when something is broken
const QString Identifier = QStringLiteral("org.velmora.desktop-application");

/// Processes of the application, on one bus, with files to open.
class Processes : public testing::Test {
 protected:
  Processes() {
    QDir(folder.path()).mkpath(QStringLiteral("data/dbus-1/services"));
    QFile service(folder.filePath(QStringLiteral("data/dbus-1/services/%1.service").arg(Identifier)));
    EXPECT_TRUE(service.open(QIODevice::WriteOnly));
    service.write("[D-BUS Service]\nName=" + Identifier.toUtf8() +
                  "\nExec=" + DESKTOP_APPLICATION " --service\n");
    service.close();
    // The bus starts what its own environment tells it of, and gives that on.
    for (const auto& [name, value] : variables()) {
      before.emplace_back(name, qgetenv(name));
      qputenv(name, value);
    }
    bus = std::make_unique<velmora::testkit::PrivateBus>();
  }
  ~Processes() override {
    for (const qint64 process : processesThatSpoke()) ::kill(static_cast<pid_t>(process), SIGKILL);
    for (const auto& process : processes) process->waitForFinished(Patience);
    bus.reset();
    for (const auto& [name, value] : before) qputenv(name, value);
  }

  std::vector<std::pair<const char*, QByteArray>> variables() const {
    return {{"DESK_SAYS", QFile::encodeName(folder.filePath("says"))},
            {"XDG_DATA_HOME", QFile::encodeName(folder.filePath("data"))},
            {"QT_QPA_PLATFORM", "offscreen"}};
  }
  QString file(const QString& name) const {
    QFile made(folder.filePath(name));
    EXPECT_TRUE(made.open(QIODevice::WriteOnly));
    return made.fileName();
  }
  QProcess& start(const QStringList& arguments, const QString& asks = {}) {
    processes.push_back(std::make_unique<QProcess>());
    QProcess& process = *processes.back();
    QProcessEnvironment environment = bus->environment();
    if (!asks.isEmpty()) environment.insert(QStringLiteral("DESK_ASKS"), asks);
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(DESKTOP_APPLICATION), arguments);
    return process;
  }
  /// Ends by itself; its exit status.
  static int statusOf(QProcess& process) {
    if (process.state() != QProcess::NotRunning && !process.waitForFinished(Patience)) return -1;
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
  }
  QStringList lines() const {
    QFile says(folder.filePath(QStringLiteral("says")));
    if (!says.open(QIODevice::ReadOnly)) return {};
    return QString::fromUtf8(says.readAll()).split(u'\n', Qt::SkipEmptyParts);
  }
  /// How often that was said, by whomsoever or by that process.
  qsizetype times(const QString& what, const QProcess* by = nullptr) const {
    return std::ranges::count_if(lines(), [&](const QString& line) {
      return line.section(u' ', 1) == what &&
             (!by || line.section(u' ', 0, 0).toLongLong() == by->processId());
    });
  }
  bool waitFor(const QString& what, qsizetype count = 1) const {
    return QTest::qWaitFor([&] { return times(what) >= count; }, Patience);
  }
  /// What was kept of unsaved changes.
  QStringList rescueCopies() const {
    return velmora::testkit::fileNames(folder.filePath(QStringLiteral("data/%1/Rescued").arg(Identifier)));
  }
  /// Whether a process handles a signal itself (proc(5), SigCgt).
  static bool catches(pid_t process, int signal) {
    QFile status(QStringLiteral("/proc/%1/status").arg(process));
    if (!status.open(QIODevice::ReadOnly)) return false;
    for (const QByteArray& line : status.readAll().split('\n')) {
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
  std::vector<std::pair<const char*, QByteArray>> before;
  std::unique_ptr<velmora::testkit::PrivateBus> bus;
  std::vector<std::unique_ptr<QProcess>> processes;
};

TEST_F(Processes, OfTwoStartsAtOnceOneGoesOnWithTheFilesOfBoth) {
  for (int round = 0; round < 5; ++round) {
    const QString first = QStringLiteral("a%1").arg(round);
    const QString second = QStringLiteral("b%1").arg(round);
    QProcess& one = start({file(first)});
    QProcess& other = start({file(second)});
    ASSERT_TRUE(waitFor("opens " + first));
    ASSERT_TRUE(waitFor("opens " + second));
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return one.state() == QProcess::NotRunning || other.state() == QProcess::NotRunning; },
        Patience));
    QProcess& going = one.state() == QProcess::NotRunning ? other : one;
    QProcess& gone = &going == &one ? other : one;
    EXPECT_EQ(statusOf(gone), 0);
    EXPECT_EQ(times("opens " + first, &going), 1);
    EXPECT_EQ(times("opens " + second, &going), 1);
    EXPECT_EQ(times("opens " + first), 1) << "nowhere else";
    EXPECT_EQ(times("opens " + second), 1);
    going.write("quit\n");
    ASSERT_EQ(statusOf(going), 0);
  }
}

TEST_F(Processes, StartedWithoutAFileBringTheRunningOneToTheFront) {
  start({file("a")});
  ASSERT_TRUE(waitFor("launched"));
  EXPECT_EQ(statusOf(start({})), 0);
  EXPECT_EQ(statusOf(start({"--action=new"})), 0);
  ASSERT_TRUE(waitFor("does new"));
  EXPECT_EQ(times("awake"), 1);
}

TEST_F(Processes, HandFilesToOneThatAsksItsUserSomethingWhichOpensThemAfterwards) {
  QProcess& asking = start({file("a")}, "and goes on");
  ASSERT_TRUE(waitFor("asks"));
  EXPECT_EQ(statusOf(start({file("b")})), 0) << "it is not kept waiting";
  EXPECT_EQ(times("opens b"), 0);
  asking.write("answer\n");
  ASSERT_TRUE(waitFor("opens b"));
  const QStringList said = lines();
  EXPECT_LT(said.indexOf(QStringLiteral("%1 answered").arg(asking.processId())),
            said.indexOf(QStringLiteral("%1 opens b").arg(asking.processId())));
  EXPECT_EQ(times("opens b"), 1);
}

TEST_F(Processes, ThatEndBeforeTheyGetRoundToARequestLeaveItToAnother) {
  QProcess& ending = start({file("a")}, "and ends");
  ASSERT_TRUE(waitFor("asks"));
  EXPECT_EQ(statusOf(start({file("b")})), 0);
  ending.write("answer\n");
  EXPECT_EQ(statusOf(ending), 0);
  ASSERT_TRUE(waitFor("opens b"));
  EXPECT_EQ(times("opens b", &ending), 0);
  EXPECT_EQ(times("opens b"), 1);
}

TEST_F(Processes, ThatEndBeforeTheyComeToTheFrontLeaveThatToAnother) {
  QProcess& ending = start({file("a")}, "and ends");
  ASSERT_TRUE(waitFor("asks"));
  EXPECT_EQ(statusOf(start({})), 0);
  EXPECT_EQ(statusOf(start({})), 0);
  ending.write("answer\n");
  EXPECT_EQ(statusOf(ending), 0);
  ASSERT_TRUE(waitFor("launched", 2));
  EXPECT_EQ(times("blank"), 1) << "one other, without a file";
}

// Ended by the system.

TEST_F(Processes, KeepUnsavedChangesWhenASignalEndsThem) {
  for (const int signal : {SIGTERM, SIGHUP}) {
    const qsizetype kept = rescueCopies().size();
    const qsizetype edited = times("edited");
    const qsizetype terminated = times("terminates");
    QProcess& process = start({file("a")});
    process.write("edit\n");
    ASSERT_TRUE(waitFor("edited", edited + 1));
    ::kill(static_cast<pid_t>(process.processId()), signal);
    EXPECT_EQ(statusOf(process), 0) << signal;
    EXPECT_EQ(rescueCopies().size(), kept + 1) << signal;
    EXPECT_EQ(times("terminates"), terminated + 1) << signal;
  }
}

TEST_F(Processes, KeepUnsavedChangesAlsoWhileTheyAskSomething) {
  QProcess& process = start({file("a")}, "and goes on");
  ASSERT_TRUE(waitFor("asks"));
  process.write("edit\n");
  ASSERT_TRUE(waitFor("edited"));
  ::kill(static_cast<pid_t>(process.processId()), SIGTERM);
  EXPECT_EQ(statusOf(process), 0);
  EXPECT_EQ(rescueCopies().size(), 1);
}

TEST_F(Processes, EndAtOnceByASecondSignal) {
  QProcess& process = start({file("a")});
  ASSERT_TRUE(waitFor("launched"));
  process.write("stall\n");
  ASSERT_TRUE(waitFor("stalls"));
  const auto number = static_cast<pid_t>(process.processId());
  ::kill(number, SIGTERM);
  // The first is behind it when it is no longer pending and no longer handled.
  ASSERT_TRUE(QTest::qWaitFor([&] { return !catches(number, SIGTERM); }, Patience));
  EXPECT_EQ(process.state(), QProcess::Running);
  ::kill(number, SIGTERM);
  ASSERT_TRUE(process.waitForFinished(Patience));
  EXPECT_EQ(process.exitStatus(), QProcess::CrashExit);
  EXPECT_EQ(times("terminates"), 0);
}

TEST_F(Processes, GoOnAloneWhenTheRunningOneDoesNotAnswerAndAreNotHeardTwice) {
  QProcess& stopped = start({file("a")});
  ASSERT_TRUE(waitFor("launched"));
  ::kill(static_cast<pid_t>(stopped.processId()), SIGSTOP);
  QProcess& second = start({file("b")});
  ASSERT_TRUE(waitFor("opens b"));
  EXPECT_EQ(times("opens b", &second), 1);
  ::kill(static_cast<pid_t>(stopped.processId()), SIGCONT);
  // What it is asked after that it takes up, so it has had the earlier request too.
  EXPECT_EQ(statusOf(start({file("c")})), 0);
  ASSERT_TRUE(waitFor("opens c"));
  EXPECT_EQ(times("opens c", &stopped), 1);
  EXPECT_EQ(times("opens b"), 1);
  second.write("quit\n");
  EXPECT_EQ(statusOf(second), 0);
  EXPECT_TRUE(second.readAllStandardError().contains("does not answer"));
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
  QProcess& running = start({});
  ASSERT_TRUE(waitFor("launched"));
  EXPECT_EQ(statusOf(start({"--print", file("a"), file("b")})), 0);
  ASSERT_TRUE(waitFor("prints b"));
  EXPECT_EQ(times("prints a", &running), 1);
}

TEST_F(Processes, SayThatThereIsNoPrinterAndFail) {
  QProcess& printing = start({"--print", file("a")});
  EXPECT_EQ(statusOf(printing), 1);
  EXPECT_EQ(printing.readAllStandardError(), "desktop-application: There is no printer.\n");
  EXPECT_TRUE(lines().isEmpty()) << "nothing of a start happens";
}

TEST_F(Processes, RefuseACommandLineThatMakesNoSense) {
  for (const QStringList& arguments :
       {QStringList{"--print"}, QStringList{"--action=new", "a"}, QStringList{"--dance"}}) {
    QProcess& process = start(arguments);
    EXPECT_EQ(statusOf(process), 1) << qPrintable(arguments.join(' '));
    EXPECT_FALSE(process.readAllStandardError().isEmpty());
  }
  EXPECT_TRUE(lines().isEmpty());
}

TEST_F(Processes, TakeLocationsAsWellAsPaths) {
  start({QUrl::fromLocalFile(file("a b")).toString(QUrl::FullyEncoded)});
  EXPECT_TRUE(waitFor("opens a b"));
}

/// Asks the bus for the application, which starts it.
QDBusMessage askFor(velmora::testkit::BusPeer& stranger, const QString& member,
                    const QVariantList& arguments) {
  QDBusMessage call =
      QDBusMessage::createMethodCall(Identifier, QStringLiteral("/org/velmora/desktop_application"),
                                     QStringLiteral("org.freedesktop.Application"), member);
  call.setArguments(arguments);
  return stranger.bus.call(call, QDBus::Block, Patience);
}

TEST_F(Processes, AreStartedByTheBusForTheFilesAskedFor) {
  velmora::testkit::BusPeer stranger(bus->address());
  const QStringList files{QUrl::fromLocalFile(file("a")).toString()};
  EXPECT_EQ(askFor(stranger, "Open", {files, QVariantMap()}).type(), QDBusMessage::ReplyMessage);
  ASSERT_TRUE(waitFor("launched"));
  EXPECT_EQ(times("opens a"), 1);
  EXPECT_EQ(times("blank"), 0) << "no blank document comes first";
}

TEST_F(Processes, AreStartedByTheBusWithABlankDocumentWhenNoFileIsAskedFor) {
  velmora::testkit::BusPeer stranger(bus->address());
  EXPECT_EQ(askFor(stranger, "Activate", {QVariantMap()}).type(), QDBusMessage::ReplyMessage);
  ASSERT_TRUE(waitFor("launched"));
  EXPECT_EQ(times("blank"), 1);
}

TEST(Growth, SaysThatThereIsNoPrinterAndAsksNothingAtItsFirstStart) {
  const QTemporaryDir home;
  QProcess growth;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert("HOME", home.path());
  environment.insert("XDG_CONFIG_HOME", home.filePath("config"));
  environment.insert("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
  growth.setProcessEnvironment(environment);
  growth.start(GROWTH, {"--print", "/none.growth"});
  ASSERT_TRUE(growth.waitForFinished(Patience));
  EXPECT_EQ(growth.exitCode(), 1);
  EXPECT_TRUE(growth.readAllStandardError().contains("growth: There is no printer.\n"));
  EXPECT_FALSE(QFile::exists(home.filePath("config/org.velmora.growth.conf"))) << "nothing was decided";
}

}  // namespace
