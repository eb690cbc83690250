// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStackedWidget>
#include <QTest>

#include "testing/application/RecordApplication.h"
#include "velmora/preferences/PreferencesController.h"
#include "velmora/resources/SettingsKeys.h"

namespace preferences_testing {

/// An application whose preferences window the user opens, uses and closes. Save folder and export folder are
/// below its home folder; what a test has not changed has its default.
class PreferencesWindow : public testing::Test {
 protected:
  using Desktop = velmora::testkit::TestServices;

  /// The user chooses Preferences; the window comes to the front.
  void open() {
    application.controller.doPreferences(nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowActive(window()));
  }
  PreferencesController& preferences() { return *application.controller.preferencesController(); }
  QWidget* window() { return preferences().window(); }
  /// Whether the window is on the screen.
  bool shown() { return preferences().isWindowLoaded() && window()->isVisible(); }
  template <typename Widget>
  Widget* the(const char* name) {
    auto* found = window()->findChild<Widget*>(QString::fromLatin1(name));
    if (!found) throw std::runtime_error(std::string("the window has no ") + name);
    return found;
  }
  QLineEdit* field(const char* name) { return the<QLineEdit>(name); }
  QString text(const char* label) { return the<QLabel>(label)->text(); }
  QPlainTextEdit* script() { return the<QPlainTextEdit>("launchScriptField"); }
  QPushButton* ok() { return the<QDialogButtonBox>("buttonBox")->button(QDialogButtonBox::Ok); }
  QPushButton* cancel() { return the<QDialogButtonBox>("buttonBox")->button(QDialogButtonBox::Cancel); }
  void press(const char* button) { velmora::testkit::user::click(the<QAbstractButton>(button)); }
  /// Chooses an item by keyboard, as a person with the pop-up before him.
  void choose(const char* popUp, int index) {
    auto* combo = the<QComboBox>(popUp);
    combo->setFocus();
    QTest::keyClick(combo, Qt::Key_Home);
    for (int i = 0; i < index; ++i) QTest::keyClick(combo, Qt::Key_Down);
  }
  /// Clicks on the box of a check box, which may have a wide place of its own.
  void toggle(const char* checkBox) {
    auto* box = the<QCheckBox>(checkBox);
    QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2));
  }
  void typeScript(const QString& source) {
    velmora::testkit::user::click(script()->viewport());
    QTest::keyClick(script(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(script(), Qt::Key_Delete);
    QTest::keyClicks(script(), source);
  }
  /// Changes every control to something else.
  void changeEverything() {
    velmora::testkit::user::type(field("defaultSaveFolderField"), "/srv/records");
    choose("exportToPopUp", 0);
    velmora::testkit::user::type(field("defaultExportFolderField"), "/srv/charts");
    choose("exportToPopUp", 1);
    toggle("autoSaveCheckBox");
    typeScript("date");
    toggle("autoCheckVersionCheckBox");
    choose("checkVersionIntervalPopUp", 1);
  }
  /// The window shows the defaults, and that script.
  void expectDefaultsAndScript(const QString& shownScript) {
    EXPECT_EQ(field("defaultSaveFolderField")->text(), "~/Records/");
    EXPECT_EQ(field("defaultExportFolderField")->text(), "~/Charts");
    EXPECT_FALSE(the<QCheckBox>("autoSaveCheckBox")->isChecked());
    EXPECT_EQ(the<QComboBox>("exportToPopUp")->currentIndex(), 0);
    EXPECT_EQ(the<QStackedWidget>("exportTabView")->currentIndex(), 0);
    EXPECT_EQ(script()->toPlainText(), shownScript);
    EXPECT_FALSE(the<QCheckBox>("autoCheckVersionCheckBox")->isChecked());
    EXPECT_EQ(the<QComboBox>("checkVersionIntervalPopUp")->currentText(), "Monthly");
  }
  QVariantMap stored() const { return application.desktop.defaults.stored(); }
  void store(const QString& key, const QVariant& value) {
    application.desktop.defaults.setObject(value, key);
  }

  velmora::testkit::RecordApplication application;
};

}  // namespace preferences_testing
