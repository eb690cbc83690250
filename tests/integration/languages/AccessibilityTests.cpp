// SPDX-License-Identifier: LGPL-3.0-or-later
// The windows for those who use the keyboard alone, or hear them.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

#include "platform/text/Localization.h"
#include "tests/integration/languages/TranslationFiles.h"
#include "tests/integration/languages/WindowsInLanguage.h"

using namespace velmora;
using namespace velmora::testkit;

using languages::WindowsInLanguage;

namespace {

QString spoken(QWidget& widget, QAccessible::Text part) {
  QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(&widget);
  return interface ? interface->text(part) : QString();
}

QString nameOf(const QWidget* widget) {
  if (!widget->objectName().isEmpty()) return widget->objectName();
  return widget->property("text").toString();
}

QList<QWidget*> reachedByTab(QWidget& window) {
  QList<QWidget*> controls;
  for (QWidget* widget : window.findChildren<QWidget*>())
    if (widget->isVisible() && widget->isEnabled() && (widget->focusPolicy() & Qt::TabFocus) &&
        !widget->focusProxy())
      controls.append(widget);
  return controls;
}

/// Where the keyboard goes with the Tab key, from where the window begins, until it comes round.
QStringList walk(QWidget& window, Qt::Key key = Qt::Key_Tab) {
  window.setFocus();
  QStringList names;
  for (int i = 0; i < 60; ++i) {
    QTest::keyClick(&window == QApplication::focusWidget() ? &window : QApplication::focusWidget(), key);
    const QWidget* now = QApplication::focusWidget();
    if (!now || now == &window) continue;
    if (!names.isEmpty() && nameOf(now) == names.first()) return names;
    names.append(nameOf(now));
  }
  return names;
}

class Accessibility : public testing::TestWithParam<QString> {};

INSTANTIATE_TEST_SUITE_P(, Accessibility, testing::ValuesIn(languages::all()),
                         [](const auto& language) { return language.param.toStdString(); });

}  // namespace

TEST_P(Accessibility, NamesEveryControl) {
  int controls = 0;
  WindowsInLanguage(GetParam()).each([&](const QString& what, QWidget& window) {
    for (QWidget* control : reachedByTab(window)) {
      ++controls;
      // The strip of tabs names its tabs.
      if (control->inherits("QTabBar")) continue;
      EXPECT_FALSE(spoken(*control, QAccessible::Name).isEmpty())
          << what.toStdString() << ": " << nameOf(control).toStdString();
    }
  });
  EXPECT_GT(controls, 50);
}

TEST_P(Accessibility, ReachesEveryControlByTabAndBack) {
  WindowsInLanguage(GetParam()).each([](const QString& what, QWidget& window) {
    QStringList expected;
    for (const QWidget* control : reachedByTab(window)) expected.append(nameOf(control));
    QStringList forward = walk(window);
    QStringList back = walk(window, Qt::Key_Backtab);
    std::reverse(back.begin(), back.end());
    EXPECT_EQ(forward.size(), QSet<QString>(forward.begin(), forward.end()).size()) << what.toStdString();
    EXPECT_EQ(QSet<QString>(forward.begin(), forward.end()), QSet<QString>(expected.begin(), expected.end()))
        << what.toStdString() << ": " << forward.join(' ').toStdString() << "\ninstead of "
        << expected.join(' ').toStdString();
    if (!forward.isEmpty()) {
      while (back.first() != forward.first()) back.move(0, back.size() - 1);
      EXPECT_EQ(forward, back) << what.toStdString();
    }
  });
}

TEST_P(Accessibility, GivesEveryMnemonicOfALabelAField) {
  WindowsInLanguage(GetParam()).each([](const QString& what, QWidget& window) {
    for (const QLabel* label : window.findChildren<QLabel*>()) {
      if (!label->isVisible() || languages::mnemonicOf(label->text()).isEmpty() ||
          label->textFormat() == Qt::PlainText)
        continue;
      ASSERT_NE(label->buddy(), nullptr) << what.toStdString() << ": " << label->text().toStdString();
      EXPECT_TRUE(label->buddy()->isVisible()) << what.toStdString() << ": " << label->text().toStdString();
    }
  });
}

TEST(AccessibilityOfRecords, LeadsFromThePatientOverTheMeasurementsToTheButtons) {
  WindowsInLanguage windows("en");
  GrowthDocument& document = windows.filledRecord();
  EXPECT_EQ(walk(*document.window()).join(' ').toStdString(),
            "referenceIDField birthDateField sexPopUp examDateField weightField heightField headField "
            "previousStudyButton nextStudyButton newStudyButton deleteStudyButton qt_tabwidget_tabbar");
}

// A label is heard by its own words; what they are about is its description.
TEST(AccessibilityOfRecords, ReadsOutTheResults) {
  WindowsInLanguage windows("en");
  GrowthDocument& document = windows.filledRecord();
  int spokenTexts = 0;
  for (const char* name : {"heightResultField", "weightResultField", "headResultField", "examNumberField"}) {
    auto* label = dynamic_cast<QLabel*>(user::widget(document, name));
    if (!label->text().isEmpty()) {
      ++spokenTexts;
      EXPECT_EQ(spoken(*label, QAccessible::Name), label->text()) << name;
    }
    EXPECT_FALSE(spoken(*label, QAccessible::Description).isEmpty()) << name;
  }
  EXPECT_GE(spokenTexts, 2);
  QWidget* age = user::widget(document, "ageField");
  EXPECT_EQ(spoken(*age, QAccessible::Name), "Age");
  EXPECT_EQ(spoken(*age, QAccessible::Value), "12 y 0 m 0 d");
}

TEST_P(Accessibility, TellsWhatAChartShows) {
  WindowsInLanguage windows(GetParam());
  GrowthDocument& document = windows.filledRecord();
  QWidget* chart = user::widget(document, "weightGraphView");
  EXPECT_TRUE(spoken(*chart, QAccessible::Name)
                  .contains(platform::localizedString("VelmoraDocument", "Weight (kg)")));
  // Two examinations: two points, each with its age and weight.
  EXPECT_EQ(spoken(*chart, QAccessible::Description).count(": "), 2);
  EXPECT_TRUE(spoken(*chart, QAccessible::Description).contains("CDC 2000"));
}

TEST(AccessibilityOfRecords, SaysWhatIsWrongWithADate) {
  WindowsInLanguage windows("en");
  GrowthDocument& document = windows.application.newRecord();
  QLineEdit* date = user::field(document, "examDateField");
  user::enter(date, "some day");
  EXPECT_TRUE(spoken(*date, QAccessible::Description).startsWith("This is not a date."));
  user::enter(date, "01/02/2020");
  EXPECT_FALSE(spoken(*date, QAccessible::Description).startsWith("This is not a date."));
}
