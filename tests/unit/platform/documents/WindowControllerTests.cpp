// SPDX-License-Identifier: LGPL-3.0-or-later
#include "platform/documents/WindowController.h"

#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <memory>
#include <stdexcept>

#include "testing/files/Files.h"
#include "testing/main/Shown.h"
#include "testing/standins/LogRecorder.h"
#include "testing/standins/TestServices.h"

using namespace velmora;

using velmora::platform::MouseEvent;
using velmora::platform::WindowController;
using velmora::testkit::LogRecorder;

namespace {

/// Counts what its window tells it.
class CountingController : public WindowController {
 public:
  using WindowController::WindowController;
  int loaded = 0;
  int becameKey = 0;
  QStringList mouse;
  QPointF lastLocation;
  std::function<void()> whenKey;

 protected:
  void windowDidLoad() override { ++loaded; }
  void windowDidBecomeKey() override {
    ++becameKey;
    if (whenKey) whenKey();
  }
  void mouseDown(const MouseEvent& event) override {
    mouse.append("down");
    lastLocation = event.screenLocation;
  }
  void mouseDragged(const MouseEvent& event) override {
    mouse.append("dragged");
    lastLocation = event.screenLocation;
  }
  void mouseUp(const MouseEvent* event) override { mouse.append(event ? "up" : "up without an event"); }
};

class Windows : public testing::Test {
 protected:
  Windows() {
    testkit::writeFile(folder.path() + "/Preferences.ui",
                       R"(<?xml version="1.0" encoding="UTF-8"?><ui version="4.0"><class>W</class>
      <widget class="QWidget" name="W">
        <property name="geometry"><rect><x>0</x><y>0</y><width>300</width><height>200</height></rect></property>
        <property name="windowTitle"><string>Preferences</string></property>
        <widget class="QLineEdit" name="folderField">
          <property name="geometry"><rect><x>100</x><y>100</y><width>150</width><height>30</height></rect></property>
        </widget>
        <widget class="QPushButton" name="okButton">
          <property name="geometry"><rect><x>100</x><y>150</y><width>100</width><height>30</height></rect></property>
        </widget>
      </widget></ui>)");
    desktop.interfaceFiles.addSearchPath(folder.path());
  }
  static void show(WindowController& shown) {
    shown.showWindow(nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowActive(shown.window()));
  }

  QTemporaryDir folder;
  testkit::TestServices desktop{{}};
  CountingController controller{desktop.services, "Preferences"};
};

TEST_F(Windows, AreLoadedOnceAndOnlyWhenNeeded) {
  EXPECT_FALSE(controller.isWindowLoaded());
  EXPECT_EQ(controller.loaded, 0);
  QWidget* window = controller.window();
  ASSERT_NE(window, nullptr);
  EXPECT_EQ(window->windowTitle(), "Preferences");
  EXPECT_FALSE(window->isVisible());
  EXPECT_EQ(controller.window(), window);
  EXPECT_EQ(controller.loaded, 1);
}

TEST_F(Windows, AreEmptyWhereTheInterfaceFileIsMissing) {
  const LogRecorder log;
  CountingController absent(desktop.services, "Absent");
  ASSERT_NE(absent.window(), nullptr);
  EXPECT_EQ(absent.loaded, 1);
  EXPECT_EQ(absent.outlet<QLineEdit>("folderField"), nullptr);
  EXPECT_EQ(log.lines(), QStringList{"Interface file Absent not found"});
}

TEST_F(Windows, GiveTheirOutletsByNameAndClass) {
  EXPECT_NE(controller.outlet<QLineEdit>("folderField"), nullptr);
  EXPECT_EQ(controller.outlet<QPushButton>("folderField"), nullptr);
  EXPECT_EQ(controller.outlet<QLineEdit>("absentField"), nullptr);
}

TEST_F(Windows, OpenWithTheKeyboardInNoField) {
  show(controller);
  EXPECT_EQ(controller.window()->focusWidget(), controller.window());
  EXPECT_FALSE(controller.outlet<QLineEdit>("folderField")->hasFocus());
}

TEST_F(Windows, TellEachTimeThatTheyGetTheKeyboard) {
  show(controller);
  EXPECT_EQ(controller.becameKey, 1);
  QWidget other;
  other.show();
  other.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
  EXPECT_EQ(controller.becameKey, 1);
  show(controller);
  EXPECT_EQ(controller.becameKey, 2);
}

TEST_F(Windows, SurviveAControllerThatThrows) {
  const LogRecorder log;
  controller.whenKey = [] { throw std::runtime_error("no settings"); };
  show(controller);
  EXPECT_EQ(log.lines(), QStringList{"window activation: no settings"});
  EXPECT_TRUE(controller.window()->isVisible());
}

TEST_F(Windows, AreOnlyHiddenWhenTheyAreClosed) {
  show(controller);
  QWidget* window = controller.window();
  EXPECT_TRUE(window->close()) << "as with the window's close button";
  EXPECT_FALSE(window->isVisible());
  show(controller);
  EXPECT_EQ(controller.window(), window);
  controller.close();
  EXPECT_FALSE(window->isVisible());
  EXPECT_EQ(controller.loaded, 1);
}

TEST_F(Windows, ComeBackFromBeingMinimized) {
  show(controller);
  controller.window()->showMinimized();
  show(controller);
  EXPECT_FALSE(controller.window()->isMinimized());
}

TEST_F(Windows, HearTheMouseWhereNoControlTookIt) {
  show(controller);
  QWidget* window = controller.window();
  const QPoint bare(10, 10);
  QTest::mousePress(window, Qt::LeftButton, {}, bare);
  QMouseEvent move(QEvent::MouseMove, bare + QPoint(5, 0), window->mapToGlobal(bare + QPoint(5, 0)),
                   Qt::NoButton, Qt::LeftButton, {});
  QApplication::sendEvent(window, &move);
  EXPECT_EQ(controller.lastLocation, QPointF(window->mapToGlobal(bare + QPoint(5, 0))));
  QTest::mouseRelease(window, Qt::LeftButton, {}, bare);
  EXPECT_EQ(controller.mouse, (QStringList{"down", "dragged", "up"}));

  controller.mouse.clear();
  QTest::mouseClick(controller.outlet<QPushButton>("okButton"), Qt::LeftButton);
  EXPECT_EQ(controller.mouse, QStringList()) << "the button took it";
}

TEST_F(Windows, GoWithTheirControllerWithoutAWord) {
  auto shortLived = std::make_unique<CountingController>(desktop.services, "Preferences");
  show(*shortLived);
  const QPointer<QWidget> window = shortLived->window();
  shortLived.reset();
  EXPECT_TRUE(window.isNull());
}

}  // namespace
