// SPDX-License-Identifier: LGPL-3.0-or-later
//
// A program of its own: a process finds its session bus once and for all.
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <memory>

#include "testing/bus/PrivateBus.h"
#include "testing/main/Shown.h"
#include "tests/unit/desktop/workspace/WorkspaceTesting.h"

using testing_support::ProgramForFiles;

namespace {

/// A file viewer on the session bus, as org.freedesktop.FileManager1 describes it.
class FileViewer : public QDBusVirtualObject {
 public:
  explicit FileViewer(const QDBusConnection& bus) : bus_(bus) {
    EXPECT_TRUE(bus_.registerVirtualObject("/org/freedesktop/FileManager1", this));
    EXPECT_TRUE(bus_.registerService("org.freedesktop.FileManager1"));
  }
  ~FileViewer() override {
    bus_.unregisterService("org.freedesktop.FileManager1");
    bus_.unregisterObject("/org/freedesktop/FileManager1");
  }
  QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    asked.append(message.member());
    shown = message.arguments().value(0).toStringList();
    return connection.send(message.createReply());
  }
  QStringList asked;
  QStringList shown;

 private:
  QDBusConnection bus_;
};

/// With a session bus of the test's own, which Qt finds at its first use.
class RevealingFiles : public testing_support::RealWorkspace {
 protected:
  static void SetUpTestSuite() {
    bus = std::make_unique<velmora::testkit::PrivateBus>();
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus->address().toLocal8Bit());
    ASSERT_TRUE(QDBusConnection::sessionBus().isConnected());
  }
  static void TearDownTestSuite() {
    QDBusConnection::disconnectFromBus("qt_default_session_bus");
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    bus.reset();
  }
  static inline std::unique_ptr<velmora::testkit::PrivateBus> bus;
};

TEST_F(RevealingFiles, AsksTheFileViewerToShowTheItem) {
  install("record 12", "");
  ProgramForFiles program;
  FileViewer viewer(QDBusConnection::sessionBus());
  EXPECT_TRUE(workspace.selectFile(entry("record 12")));
  EXPECT_EQ(viewer.asked, QStringList{"ShowItems"});
  EXPECT_EQ(viewer.shown, QStringList{"file://" + data.path() + "/applications/record%2012.desktop"});
  EXPECT_TRUE(program.opened.isEmpty());
}

TEST_F(RevealingFiles, WritesEveryNameAsAnAddressThatAllFileViewersRead) {
  FileViewer viewer(QDBusConnection::sessionBus());
  EXPECT_TRUE(workspace.selectFile("/records/Größe 100%/#1 患.rec"));
  EXPECT_EQ(viewer.shown, QStringList{"file:///records/Gr%C3%B6%C3%9Fe%20100%25/%231%20%E6%82%A3.rec"});
}

TEST_F(RevealingFiles, OpensTheFolderWhereThereIsNoFileViewer) {
  install("record 12", "");
  ProgramForFiles program;
  EXPECT_TRUE(workspace.selectFile(entry("record 12")));
  EXPECT_TRUE(workspace.selectFile(data.path()));
  EXPECT_EQ(program.opened, (QList<QUrl>{QUrl::fromLocalFile(data.path() + "/applications"),
                                         QUrl::fromLocalFile(data.path())}));
}

}  // namespace
