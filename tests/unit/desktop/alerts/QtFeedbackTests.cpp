// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/alerts/QtFeedback.h"

#include <QApplication>
#include <QPointer>
#include <QTest>
#include <QWidget>

#include "testing/main/Shown.h"

using namespace velmora;

namespace {

QWidget* poof() {
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (widget->objectName() == "Poof") return widget;
  }
  return nullptr;
}

TEST(Poof, ShowsAtItsPointTakesNoInputAndGoesByItself) {
  desktop::QtFeedback feedback;
  feedback.showPoof(QPoint(200, 150));
  const QPointer<QWidget> cloud = poof();
  ASSERT_FALSE(cloud.isNull());
  EXPECT_TRUE(cloud->isVisible());
  EXPECT_EQ(cloud->geometry().center(), QPoint(199, 149))
      << "an even width has its centre between two pixels";
  EXPECT_TRUE(cloud->windowFlags() & Qt::WindowTransparentForInput);
  EXPECT_FALSE(cloud->isActiveWindow());
  EXPECT_TRUE(QTest::qWaitFor([&cloud] { return cloud.isNull(); }));
}

TEST(Beep, IsHarmless) { desktop::QtFeedback().beep(); }

}  // namespace
