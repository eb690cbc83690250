// SPDX-License-Identifier: LGPL-3.0-or-later
// Menus and the texts that code compares, in each language.
#include <gtest/gtest.h>

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTest>

#include "platform/text/Localization.h"
#include "tests/integration/languages/TranslationFiles.h"
#include "tests/integration/languages/WindowsInLanguage.h"
#include "velmora/app/MainMenu.h"
#include "velmora/preferences/PreferencesController.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;

namespace settings = velmora::settings;
using velmora::titleWithoutMnemonic;
using velmora::platform::localizedString;

namespace {

class Menus : public testing::TestWithParam<QString> {
 protected:
  QWidget* preferences() {
    windows_.application.controller.doPreferences(nullptr);
    return windows_.application.controller.preferencesController()->window();
  }
  platform::UserDefaults& defaults() { return windows_.application.desktop.defaults; }

  languages::WindowsInLanguage windows_{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(, Menus, testing::ValuesIn(languages::all()),
                         [](const auto& language) { return language.param.toStdString(); });

}  // namespace

TEST_P(Menus, DisableExportAloneWithoutARecord) {
  GrowthDocument& document = windows_.application.newRecord();
  const VelmoraAppController& controller = windows_.application.controller;
  QMap<QString, QString> titles;
  for (const QMenu* menu : document.window()->findChildren<QMenu*>())
    for (const QAction* action : menu->actions())
      if (!action->isSeparator()) titles.insert(action->objectName(), titleWithoutMnemonic(action->text()));
  EXPECT_GT(titles.size(), 30);
  for (const QString& title : titles) EXPECT_TRUE(controller.validateMenuItem(title)) << title.toStdString();
  document.close();
  windows_.application.desktop.runLoop.settle();
  for (auto title = titles.cbegin(); title != titles.cend(); ++title)
    EXPECT_EQ(controller.validateMenuItem(*title), title.key() != "doExport") << title->toStdString();
}

TEST_P(Menus, GiveNoMnemonicTwiceAndLeaveNoItemWithout) {
  GrowthDocument& document = windows_.application.newRecord();
  for (const QMenu* menu : document.window()->findChildren<QMenu*>()) {
    QMap<QString, QString> claimed;
    for (const QAction* action : menu->actions()) {
      if (action->isSeparator()) continue;
      const QString letter = languages::mnemonicOf(action->text());
      EXPECT_FALSE(letter.isEmpty()) << action->text().toStdString();
      EXPECT_FALSE(claimed.contains(letter))
          << action->text().toStdString() << " and " << claimed.value(letter).toStdString();
      claimed.insert(letter, action->text());
    }
  }
}

TEST_P(Menus, KeepTheIntervalOfVersionChecks) {
  int index = 0;
  for (const int days : {1, 7, 31}) {
    defaults().setInteger(days, settings::VersionCheckInterval);
    auto* interval = preferences()->findChild<QComboBox*>("checkVersionIntervalPopUp");
    windows_.application.controller.preferencesController()->resetDefaults();
    EXPECT_EQ(interval->currentIndex(), index++);
    defaults().setInteger(0, settings::VersionCheckInterval);
    windows_.application.controller.preferencesController()->doOK(nullptr);
    EXPECT_EQ(defaults().integerForKey(settings::VersionCheckInterval), days);
  }
}

TEST_P(Menus, SayWhenTheLastCheckWas) {
  auto* field = preferences()->findChild<QLabel*>("versionLastCheckedField");
  EXPECT_EQ(field->text(), localizedString("Preferences", "Never"));
  windows_.application.controller.preferencesController()->versionCheckSuccessful();
  EXPECT_FALSE(field->text().contains('%'));
  EXPECT_GT(field->text().size(), 12);
}

TEST_P(Menus, DownloadOsirixWhereItIsNotInstalled) {
  QWidget* window = preferences();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window));
  auto* button = window->findChild<QPushButton*>("installOsirixPluginButton");
  ASSERT_EQ(button->text(), localizedString("OrvVersion", "Download"));
  windows_.application.controller.preferencesController()->doInstallPlugin(button);
  EXPECT_EQ(windows_.application.desktop.workspace.opened.size(), 1);
}
