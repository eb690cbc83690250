// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/Desktop.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <memory>

#include "platform/bundles/Bundle.h"
#include "platform/documents/Application.h"
#include "platform/documents/DocumentController.h"
#include "platform/notifications/NotificationCenter.h"
#include "platform/runloop/RunLoop.h"
#include "platform/settings/UserDefaults.h"
#include "testing/files/EnvironmentVariable.h"
#include "testing/main/Shown.h"
#include "testing/standins/LogRecorder.h"
#include "testing/window/WhenOpen.h"

using namespace velmora;
using namespace velmora::testkit;

using velmora::desktop::Desktop;
using velmora::platform::DocumentController;

namespace {

class EmptyDocument : public platform::Document {
 public:
  using Document::Document;
  base::Result<> readFromData(const QByteArray&, const QString&) override { return {}; }
  base::Result<QByteArray> dataOfType(const QString&) override { return QByteArray(); }
};

/// Keeps what happens at start and end, and quits as soon as the application has started.
class ShortLife : public DocumentController {
 public:
  explicit ShortLife(platform::Services& desktop) : DocumentController(desktop) {
    setDocumentFactory([this] { return std::make_unique<EmptyDocument>(services()); });
  }
  void awakeFromNib() override { said.append(QStringLiteral("awake, %1 documents").arg(documents().size())); }
  void applicationDidFinishLaunching() override {
    said.append(QStringLiteral("launched, %1 documents").arg(documents().size()));
    services().runLoop.performAfterDelay(this, 0, [this] { terminate(); });
  }
  void applicationWillTerminate() override { said.append("ends"); }
  QStringList said;
};

/// There is no session bus.
class DesktopWithoutABus : public testing::Test {
 private:
  EnvironmentVariable bus_{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus"};
};

TEST_F(DesktopWithoutABus, HasEveryPart) {
  const LogRecorder log;
  Desktop desktop("platform-qt-tests");
  platform::Services& services = desktop.services();
  EXPECT_EQ(services.mainBundle.bundleIdentifier(), "org.velmora.platform-qt-tests");
  EXPECT_EQ(services.mainBundle.stringForInfoDictionaryKey("CFBundleShortVersionString"), "1.2");
  EXPECT_EQ(services.documentController, nullptr);

  services.defaults.setObject(true, "Auto Save");
  EXPECT_TRUE(services.defaults.boolForKey("Auto Save"));
  bool heard = false;
  QObject observer;
  services.notificationCenter.addObserver(&observer, "Ready", [&heard](const auto&) { heard = true; });
  services.notificationCenter.postNotificationName("Ready");
  EXPECT_TRUE(heard);
  bool ran = false;
  services.runLoop.performAfterDelay(&observer, 0, [&ran] { ran = true; });
  EXPECT_TRUE(QTest::qWaitFor([&ran] { return ran; }));
}

TEST_F(DesktopWithoutABus, SaysThatTheBundleCarriesNoHelp) {
  const LogRecorder log;
  Desktop desktop("platform-qt-tests");
  QString said;
  whenOpen<QMessageBox>([&said](QMessageBox& box) {
    said = box.text();
    box.defaultButton()->click();
  });
  desktop.services().application.showHelp();
  EXPECT_EQ(said, "The help is not installed.");
}

TEST_F(DesktopWithoutABus, OnlyLosesTheLinkWithOneLogLine) {
  const LogRecorder log;
  QObject observer;
  {
    Desktop desktop("platform-qt-tests");
    auto& center = desktop.services().distributedCenter;
    center.addObserver(&observer, "link", "request", [](const auto&) {});
    center.addObserver(&observer, "link", "other", [](const auto&) {});
    center.postNotificationName("link", "reply", {{"ok", true}});
    center.postNotificationName("link", "reply", {{"ok", true}});
    center.removeObserver(&observer);
  }
  // What the link does, it does on a thread of its own, which ends with the desktop.
  EXPECT_EQ(log.lines().size(), 1) << qPrintable(log.lines().join('\n'));
}

TEST_F(DesktopWithoutABus, StartsWithAnUntitledDocumentAndEndsWhenAsked) {
  const LogRecorder log;
  Desktop desktop("platform-qt-tests");
  ShortLife controller(desktop.services());
  EXPECT_EQ(desktop.run(controller), 0);
  EXPECT_EQ(controller.said, (QStringList{"awake, 0 documents", "launched, 1 documents", "ends"}));
}

TEST(DesktopOfNoBundle, SaysSoAndWorks) {
  const LogRecorder log;
  Desktop desktop("no-such-application");
  EXPECT_EQ(desktop.services().mainBundle.bundleIdentifier(), "");
  EXPECT_FALSE(log.lines().filter("no-such-application/Info.plist").isEmpty());
}

}  // namespace
