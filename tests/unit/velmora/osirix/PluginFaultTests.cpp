// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The plugin is installed while the disk fails or the process is killed.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "testing/files/Files.h"
#include "testing/files/TemporaryHome.h"
#include "testing/standins/LogRecorder.h"
#include "testing/standins/TestServices.h"
#include "tests/robustness/shim/SystemCalls.h"
#include "tests/unit/velmora/osirix/PluginTesting.h"
#include "velmora/osirix/PluginInstaller.h"

using namespace velmora;

using faults::Fault;
using faults::SystemCalls;
using namespace plugin_testing;
using testkit::readFile;

namespace {

const QString Name = QStringLiteral("Recorder Link.osirixplugin");

/// Reads every alert and keeps it.
class NotingAlerts : public platform::Alerts {
 public:
  QList<platform::Alert> shown;
  int runModal(const platform::Alert& alert) override {
    shown.append(alert);
    return platform::AlertDefaultReturn;
  }
  void beginSheetModalForWindow(const platform::Alert&, QWidget*, const QObject*, DidEnd) override {}
};

/// Version 2 is installed over version 1 on a machine of its own.
class Machine {
 public:
  Machine() {
    makePlugin(home.path("resources/OsiriX Plugins/") + Name, "2");
    makePlugin(place(), "1");
  }
  QString viewersFolder() const { return home.path(ViewersFolder); }
  QString place() const { return viewersFolder() + '/' + Name; }

  /// 0 nothing, 1 or 2 that version, whole; -1 anything else.
  int standing() const {
    if (!QFileInfo::exists(place()) && !QFileInfo(place()).isSymLink()) return 0;
    for (const int version : {1, 2}) {
      const QByteArray text = QByteArray::number(version);
      if (readFile(place() + "/Contents/Info.plist") == dictionary(text) &&
          readFile(place() + "/Contents/MacOS/Link") == "the program of version " + text) {
        return version;
      }
    }
    return -1;
  }
  /// Installs and gives the message of the alert.
  QString install() {
    plugin.doInstallOsirixPlugin();
    return alerts.shown.last().messageText;
  }
  QStringList inViewersFolder() const {
    return base::FileManager().contentsOfDirectoryAtPath(viewersFolder());
  }

  testkit::TemporaryHome home;
  testkit::LogRecorder log;
  testkit::TestServices desktop{{}, home.path("resources")};
  NotingAlerts alerts;
  velmora::PluginInstaller plugin{desktop.fileManager, alerts, desktop.runLoop, desktop.mainBundle};
};

/// How many calls an installation makes below the viewer's folder.
int callsOfAnInstallation() {
  Machine machine;
  const SystemCalls calls(machine.viewersFolder());
  machine.install();
  return calls.count();
}

}  // namespace

TEST(PluginUnderFaults, IsWholeOrNotThereAndCurrentOnlyWhenWhole) {
  const int all = callsOfAnInstallation();
  ASSERT_GT(all, 10);
  for (const int error : {EIO, EROFS}) {
    for (int number = 1; number <= all; ++number) {
      Machine machine;
      QString message;
      QByteArray met;
      {
        const SystemCalls calls(machine.viewersFolder(), number, Fault::Error, error);
        message = machine.install();
        met = calls.met();
      }
      const int standing = machine.standing();
      SCOPED_TRACE(testing::Message() << "call " << number << ' ' << met.toStdString() << " error " << error);
      EXPECT_GE(standing, 0);
      EXPECT_EQ(machine.plugin.osirixPluginVersionCurrent(), standing == 2);
      EXPECT_EQ(message == Succeeded.messageText, standing == 2);
    }
  }
}

TEST(PluginUnderFaults, IsNotThereAndNothingElseWhenTheDiskIsFull) {
  const qint64 whole = dictionary("2").size() + QByteArray("the program of version 2").size();
  for (const qint64 room : {qint64(0), qint64(1), whole / 2, whole - 1}) {
    Machine machine;
    QString message;
    {
      const SystemCalls calls = SystemCalls::onDiskWithRoomFor(machine.viewersFolder(), room);
      message = machine.install();
    }
    SCOPED_TRACE(room);
    EXPECT_EQ(message, Failed.messageText);
    EXPECT_EQ(machine.inViewersFolder(), QStringList());
    EXPECT_FALSE(machine.plugin.osirixPluginVersionCurrent());
    ASSERT_EQ(machine.log.lines().size(), 1);
    EXPECT_EQ(machine.log.lines().first(), "Copy plugin failed: No space left on device");
  }
}

TEST(PluginUnderFaults, ThatIsASingleFileIsNotHalfThereEither) {
  Machine machine;
  const QString carried = machine.home.path("resources/OsiriX Plugins");
  ASSERT_TRUE(base::FileManager().removeItem(carried).ok());
  testkit::writeFile(carried + "/stray", QByteArray(1000, 'x'));
  {
    const SystemCalls calls = SystemCalls::onDiskWithRoomFor(machine.viewersFolder(), 500);
    EXPECT_EQ(machine.install(), Failed.messageText);
  }
  EXPECT_EQ(machine.inViewersFolder(), QStringList{Name});
}

TEST(PluginUnderFaults, IsWholeOrNotThereWhenTheProcessIsKilled) {
  const int all = callsOfAnInstallation();
  for (const Fault fault : {Fault::Kill, Fault::KillHalfway}) {
    for (int number = 1; number <= all; ++number) {
      Machine machine;
      const pid_t child = ::fork();
      ASSERT_GE(child, 0);
      if (child == 0) {
        const SystemCalls calls(machine.viewersFolder(), number, fault);
        machine.install();
        ::_exit(0);
      }
      int status = 0;
      ASSERT_EQ(::waitpid(child, &status, 0), child);
      const int standing = machine.standing();
      SCOPED_TRACE(testing::Message() << "call " << number);
      EXPECT_GE(standing, 0);
      EXPECT_EQ(machine.plugin.osirixPluginVersionCurrent(), standing == 2);
      machine.install();
      EXPECT_EQ(machine.standing(), 2) << "what the last attempt left is no obstacle";
    }
  }
}
