// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/about/AboutController.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QMouseEvent>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QTest>
#include <algorithm>
#include <cmath>

#include "testing/application/RecordApplication.h"

using namespace velmora::testkit;

namespace {

/// The about window of an application, shown for the first time.
class AboutWindow : public testing::Test {
 protected:
  AboutWindow() {
    application.controller.doSplashAboutBox(nullptr);
    about = application.controller.aboutController();
    window = about->window();
  }
  QString text(const char* field) { return about->outlet<QLabel>(QString::fromLatin1(field))->text(); }
  /// A mouse event in the middle of the window, or of a widget in it, at a moment in milliseconds.
  void mouse(QEvent::Type type, quint64 timestamp, QPoint away = {}, QWidget* target = nullptr) {
    if (!target) target = window;
    const QPointF place = target->rect().center() + away;
    QMouseEvent event(type, place, target->mapToGlobal(place),
                      type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
    event.setTimestamp(timestamp);
    QApplication::sendEvent(target, &event);
  }
  RecordApplication application;
  AboutController* about;
  QWidget* window;
};

}  // namespace

TEST_F(AboutWindow, ShowsNameVersionBuildAndCopyright) {
  EXPECT_EQ(text("nameField"), "Recorder 2.1");
  EXPECT_EQ(text("copyrightField"), "Copyright 2024 the makers");
  const QRegularExpression build("^Build 345 \\([A-Z][a-z]{2} \\d{1,2} \\d{4}\\)$");
  EXPECT_TRUE(build.match(text("versionField")).hasMatch()) << qPrintable(text("versionField"));
  EXPECT_EQ(text("statusField"), "");
}

TEST_F(AboutWindow, StandsInTheMiddleOfTheScreen) {
  // Loaded, not shown: a window that was never moved is put in the middle by some platforms when it is shown.
  AboutController loaded(application.desktop.services);
  const QWidget* unshown = loaded.window();
  EXPECT_TRUE(unshown->testAttribute(Qt::WA_Moved));
  EXPECT_EQ(QRect(unshown->pos(), unshown->frameSize()).center(),
            QGuiApplication::primaryScreen()->availableGeometry().center());
}

TEST_F(AboutWindow, IsLightGreyAtTheTopAndDarkAtTheBottom) {
  const QImage picture = window->grab().toImage();
  const int bottom = picture.height() - 1;
  const auto grey = [&](int y) {
    const QColor colour = picture.pixelColor(1, y);
    EXPECT_EQ(colour.red(), colour.green());
    EXPECT_EQ(colour.red(), colour.blue());
    return colour.redF();
  };
  EXPECT_NEAR(grey(0), 0.8, 0.01);
  EXPECT_NEAR(grey(qRound(bottom * 0.1)), 0.7, 0.01);
  EXPECT_NEAR(grey(qRound(bottom * 0.55)), 0.6, 0.01);
  EXPECT_NEAR(grey(bottom), 0.5, 0.01);
}

TEST_F(AboutWindow, ClosesThreeSecondsAfterItsFirstShowing) {
  application.pass(2.9);
  EXPECT_TRUE(window->isVisible());
  application.pass(0.1);
  EXPECT_FALSE(window->isVisible());
}

TEST_F(AboutWindow, ClosesAfterThreeSecondsEvenWhenDragged) {
  mouse(QEvent::MouseButtonPress, 5000);
  mouse(QEvent::MouseMove, 5200, {10, 0});
  mouse(QEvent::MouseButtonRelease, 5300);
  ASSERT_TRUE(window->isVisible());
  application.pass(3);
  EXPECT_FALSE(window->isVisible());
}

TEST_F(AboutWindow, ClosesAtAClick) {
  user::click(window);
  EXPECT_FALSE(window->isVisible());
}

TEST_F(AboutWindow, ClosesAtAClickOnAText) {
  user::click(about->outlet<QLabel>("nameField"));
  EXPECT_FALSE(window->isVisible());
}

TEST_F(AboutWindow, StaysAfterADragOfMoreThanATenthOfASecond) {
  const QPoint before = window->pos();
  mouse(QEvent::MouseButtonPress, 5000);
  mouse(QEvent::MouseMove, 5050, {10, 20});
  mouse(QEvent::MouseButtonRelease, 5101);
  EXPECT_TRUE(window->isVisible());
  EXPECT_EQ(window->pos() - before, QPoint(10, 20));
}

TEST_F(AboutWindow, ClosesAfterADragThatEndsWithinATenthOfASecond) {
  // From moment 0 on, so that the tenth is exactly a tenth.
  mouse(QEvent::MouseButtonPress, 0);
  mouse(QEvent::MouseMove, 20, {1, 0});
  mouse(QEvent::MouseButtonRelease, 100);
  EXPECT_FALSE(window->isVisible());
}

TEST_F(AboutWindow, ClosesAfterALongPressWithoutADrag) {
  mouse(QEvent::MouseButtonPress, 5000);
  mouse(QEvent::MouseButtonRelease, 9000);
  EXPECT_FALSE(window->isVisible());
}

TEST_F(AboutWindow, ForgetsAnEarlierDragAtTheNextPress) {
  mouse(QEvent::MouseButtonPress, 5000);
  mouse(QEvent::MouseMove, 5200, {5, 5});
  mouse(QEvent::MouseButtonRelease, 5300);
  ASSERT_TRUE(window->isVisible());
  mouse(QEvent::MouseButtonPress, 6000);
  mouse(QEvent::MouseButtonRelease, 6500);
  EXPECT_FALSE(window->isVisible());
}

TEST_F(AboutWindow, StaysWhenShownAgainUntilAClick) {
  application.pass(3);
  ASSERT_FALSE(window->isVisible());
  application.controller.doSplashAboutBox(nullptr);
  EXPECT_EQ(application.controller.aboutController(), about);
  EXPECT_EQ(about->window(), window);
  application.pass(600);
  EXPECT_TRUE(window->isVisible());
  user::click(window);
  EXPECT_FALSE(window->isVisible());
}

TEST_F(AboutWindow, EmptiesItsStatusEachTimeItBecomesKey) {
  ASSERT_TRUE(QTest::qWaitForWindowActive(window));
  about->showStatusString("Working...");
  EXPECT_EQ(text("statusField"), "Working...");
  application.newRecord();  // waits until its own window has the keyboard
  EXPECT_EQ(text("statusField"), "Working...");
  application.controller.doSplashAboutBox(nullptr);
  ASSERT_TRUE(QTest::qWaitForWindowActive(window));
  EXPECT_EQ(text("statusField"), "");
}

TEST_F(AboutWindow, KeepsAStatusThatComesWhileItIsClosed) {
  application.pass(3);
  about->showStatusString("Working...");
  EXPECT_FALSE(window->isVisible());
  EXPECT_EQ(text("statusField"), "Working...");
  application.controller.doSplashAboutBox(nullptr);
  EXPECT_EQ(text("statusField"), "Working...") << "until the window becomes key";
}

TEST_F(AboutWindow, ShowsTheHelpOfTheApplication) {
  about->doHelp(nullptr);
  EXPECT_EQ(application.desktop.application.helps, 1);
}

TEST_F(AboutWindow, ShowsTheHelpAtAClickOnItsButtonAndStays) {
  auto* help = about->outlet<QPushButton>("helpButton");
  ASSERT_TRUE(help);
  user::click(help);
  EXPECT_EQ(application.desktop.application.helps, 1);
  EXPECT_TRUE(window->isVisible()) << "the click is the button's, and not the window's too";
  user::click(window);
  EXPECT_FALSE(window->isVisible());
  EXPECT_EQ(application.desktop.application.helps, 1);
}

TEST_F(AboutWindow, ClosesByItselfBesideAClickOnTheButton) {
  auto* help = about->outlet<QPushButton>("helpButton");
  ASSERT_TRUE(help);
  user::click(help);
  application.pass(3);
  EXPECT_FALSE(window->isVisible());
}

TEST_F(AboutWindow, HasAButtonThatCanBeReadOnItsGrey) {
  auto* button = about->outlet<QPushButton>("helpButton");
  ASSERT_TRUE(button);
  // As WCAG 2.1 defines it, for the darkest and the lightest spot inside the button's edge.
  const auto luminance = [](QRgb pixel) {
    const auto linear = [](int part) {
      const double value = part / 255.0;
      return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(pixel)) + 0.7152 * linear(qGreen(pixel)) + 0.0722 * linear(qBlue(pixel));
  };
  const QImage picture = window->grab(QRect(button->pos(), button->size()).adjusted(6, 4, -6, -4)).toImage();
  double darkest = 1;
  double lightest = 0;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      darkest = std::min(darkest, luminance(picture.pixel(x, y)));
      lightest = std::max(lightest, luminance(picture.pixel(x, y)));
    }
  }
  EXPECT_GE((lightest + 0.05) / (darkest + 0.05), 4.5);
}
