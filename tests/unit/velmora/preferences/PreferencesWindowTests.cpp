// SPDX-License-Identifier: LGPL-3.0-or-later
//
// What the preferences window does to the settings, and to nothing before OK.
#include <QTest>
#include "tests/unit/velmora/preferences/PreferencesTesting.h"

using namespace velmora;
using namespace velmora::testkit;

namespace settings = velmora::settings;
using preferences_testing::PreferencesWindow;

// Showing.

TEST_F(PreferencesWindow, ShowsEverySetting) {
  store(settings::SaveDirectory, application.home.path("Records"));
  store(settings::ExportDirectory, "~/Charts/");
  store(settings::AutoSave, true);
  store(settings::ExportToOsiriX, true);
  store(settings::LaunchScript, "echo one\necho two");
  store(settings::AutomaticVersionCheck, true);
  store(settings::VersionCheckInterval, 7);
  open();
  EXPECT_EQ(field("defaultSaveFolderField")->text(), "~/Records");
  EXPECT_EQ(field("defaultExportFolderField")->text(), "~/Charts/");
  EXPECT_TRUE(the<QCheckBox>("autoSaveCheckBox")->isChecked());
  EXPECT_EQ(the<QComboBox>("exportToPopUp")->currentIndex(), 1);
  EXPECT_EQ(the<QStackedWidget>("exportTabView")->currentIndex(), 1);
  EXPECT_EQ(script()->toPlainText(), "echo one\necho two");
  EXPECT_TRUE(the<QCheckBox>("autoCheckVersionCheckBox")->isChecked());
  EXPECT_EQ(the<QComboBox>("checkVersionIntervalPopUp")->currentText(), "Weekly");
}

TEST_F(PreferencesWindow, ShowsTheDefaultsWhereNothingIsStored) {
  open();
  expectDefaultsAndScript("");
  EXPECT_EQ(text("versionLastCheckedField"), "Never");
  EXPECT_TRUE(stored().isEmpty());
}

TEST_F(PreferencesWindow, IsMadeOnceAndShownAgain) {
  open();
  PreferencesController* first = &preferences();
  QWidget* shown = window();
  open();
  user::click(ok());
  open();
  EXPECT_EQ(&preferences(), first);
  EXPECT_EQ(window(), shown);
}

TEST_F(PreferencesWindow, StandsInTheMiddleOfTheScreen) {
  // Loaded, not shown: a window that was never moved is put in the middle by some platforms when it is shown.
  PreferencesController loaded(application.desktop.services, application.controller.orvVersion());
  const QWidget* window = loaded.window();
  EXPECT_TRUE(window->testAttribute(Qt::WA_Moved));
  EXPECT_EQ(QRect(window->pos(), window->frameSize()).center(),
            QGuiApplication::primaryScreen()->availableGeometry().center());
}

TEST_F(PreferencesWindow, OpensWithTheKeyboardInNoFieldEachTime) {
  open();
  EXPECT_EQ(window()->focusWidget(), window());
  user::click(field("defaultSaveFolderField"));
  window()->close();
  open();
  EXPECT_EQ(window()->focusWidget(), window());
}

// The interval.

class PreferencesInterval : public PreferencesWindow,
                            public testing::WithParamInterface<std::tuple<int, const char*, int>> {};

TEST_P(PreferencesInterval, IsShownAsADayAWeekOrAMonthAndStoredAsThat) {
  const auto [before, title, after] = GetParam();
  store(settings::VersionCheckInterval, before);
  open();
  EXPECT_EQ(the<QComboBox>("checkVersionIntervalPopUp")->currentText(), title);
  user::click(ok());
  EXPECT_EQ(application.desktop.defaults.integerForKey(settings::VersionCheckInterval), after);
  EXPECT_TRUE(stored().value(settings::VersionCheckInterval).canConvert<int>());
}

INSTANTIATE_TEST_SUITE_P(Days, PreferencesInterval,
                         testing::Values(std::tuple(1, "Daily", 1), std::tuple(7, "Weekly", 7),
                                         std::tuple(31, "Monthly", 31), std::tuple(30, "Monthly", 31),
                                         std::tuple(0, "Monthly", 31), std::tuple(2, "Monthly", 31),
                                         std::tuple(365, "Monthly", 31), std::tuple(-7, "Monthly", 31)));

TEST_F(PreferencesWindow, StoresTheIntervalThatWasChosen) {
  open();
  for (const auto& [index, days] : {std::pair(0, 1), std::pair(1, 7), std::pair(2, 31)}) {
    choose("checkVersionIntervalPopUp", index);
    user::click(ok());
    EXPECT_EQ(application.desktop.defaults.integerForKey(settings::VersionCheckInterval), days);
    open();
  }
}

// OK.

TEST_F(PreferencesWindow, ChangesNoSettingBeforeOk) {
  open();
  changeEverything();
  press("checkSyntaxButton");
  EXPECT_TRUE(stored().isEmpty());
  user::click(ok());
  EXPECT_FALSE(window()->isVisible());
  EXPECT_EQ(stored(), (QVariantMap{{settings::SaveDirectory, "/srv/records"},
                                   {settings::ExportDirectory, "/srv/charts"},
                                   {settings::AutoSave, true},
                                   {settings::ExportToOsiriX, true},
                                   {settings::LaunchScript, "date"},
                                   {settings::AutomaticVersionCheck, true},
                                   {settings::VersionCheckInterval, qint64(7)}}));
  EXPECT_EQ(stored().value(settings::AutoSave).typeId(), QMetaType::Bool);
  EXPECT_EQ(stored().value(settings::ExportToOsiriX).typeId(), QMetaType::Bool);
  EXPECT_EQ(stored().value(settings::AutomaticVersionCheck).typeId(), QMetaType::Bool);
}

TEST_F(PreferencesWindow, StoresWhatWasSwitchedOff) {
  for (const QString& key : {settings::AutoSave, settings::ExportToOsiriX, settings::AutomaticVersionCheck})
    store(key, true);
  store(settings::LaunchScript, "date");
  open();
  toggle("autoSaveCheckBox");
  toggle("autoCheckVersionCheckBox");
  choose("exportToPopUp", 0);
  typeScript("");
  user::click(ok());
  for (const QString& key : {settings::AutoSave, settings::ExportToOsiriX, settings::AutomaticVersionCheck})
    EXPECT_EQ(stored().value(key), QVariant(false)) << qPrintable(key);
  EXPECT_EQ(stored().value(settings::LaunchScript), QVariant(QString("")));
}

TEST_F(PreferencesWindow, StoresWhatIsInvalidAsItStands) {
  application.desktop.scripts.behaviours["if then"].compileError = {"line 1: no", "no", {0, 2}};
  open();
  user::type(field("defaultSaveFolderField"), "no such folder");
  user::type(field("defaultExportFolderField"), "");
  typeScript("if then");
  press("checkSyntaxButton");
  EXPECT_EQ(text("scriptErrorField"), "no");
  user::click(ok());
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
  EXPECT_FALSE(window()->isVisible());
  EXPECT_EQ(stored().value(settings::SaveDirectory), QVariant("no such folder"));
  EXPECT_EQ(stored().value(settings::ExportDirectory), QVariant(""));
  EXPECT_EQ(stored().value(settings::LaunchScript), QVariant("if then"));
  EXPECT_EQ(text("scriptErrorField"), "") << "the error is forgotten";
}

TEST_F(PreferencesWindow, StoresTheScriptToTheCharacter) {
  const QString source = QString::fromUtf8("echo \"a\u00a0b\"\n\t# größer \U0001f600\n\n");
  store(settings::LaunchScript, source);
  open();
  user::click(ok());
  EXPECT_EQ(stored().value(settings::LaunchScript).toString(), source);
}

TEST_F(PreferencesWindow, StoresFoldersBelowTheHomeFolderInTildeForm) {
  const QString home = application.home.path();
  const QList<std::pair<QString, QString>> cases{{home + "/Records", "~/Records"},
                                                 {home + "/Records/", "~/Records/"},
                                                 {home, "~"},
                                                 {"~/Records", "~/Records"},
                                                 {home + "2/Records", home + "2/Records"},
                                                 {"/srv/records", "/srv/records"},
                                                 {"/srv" + home, "/srv" + home}};
  for (const auto& [typed, kept] : cases) {
    open();
    user::type(field("defaultSaveFolderField"), typed);
    user::type(field("defaultExportFolderField"), typed);
    user::click(ok());
    EXPECT_EQ(stored().value(settings::SaveDirectory).toString(), kept);
    EXPECT_EQ(stored().value(settings::ExportDirectory).toString(), kept);
  }
}

TEST_F(PreferencesWindow, IsOkOnReturnInAField) {
  open();
  user::enter(field("defaultSaveFolderField"), "/srv/records");
  EXPECT_FALSE(window()->isVisible());
  EXPECT_EQ(stored().value(settings::SaveDirectory), QVariant("/srv/records"));
}

TEST_F(PreferencesWindow, TakesReturnInTheScriptAsANewLine) {
  open();
  typeScript("one");
  QTest::keyClick(script(), Qt::Key_Return);
  QTest::keyClicks(script(), "two");
  EXPECT_TRUE(window()->isVisible());
  EXPECT_EQ(script()->toPlainText(), "one\ntwo");
}

// Cancel.

TEST_F(PreferencesWindow, ShowsTheStoredSettingsAgainAfterCancel) {
  store(settings::LaunchScript, "echo stored");
  open();
  changeEverything();
  const QVariantMap before = stored();
  user::click(cancel());
  EXPECT_FALSE(window()->isVisible());
  EXPECT_EQ(stored(), before);
  open();
  expectDefaultsAndScript("echo stored");
}

TEST_F(PreferencesWindow, ForgetsTheScriptErrorOnCancel) {
  application.desktop.scripts.behaviours["fi"].compileError = {"all of it", "brief", {0, 2}};
  open();
  typeScript("fi");
  press("checkSyntaxButton");
  user::click(cancel());
  EXPECT_EQ(text("scriptErrorField"), "");
}

TEST_F(PreferencesWindow, IsCancelledByEscapeWhereverTheKeyboardIs) {
  open();
  for (QWidget* place :
       {static_cast<QWidget*>(field("defaultSaveFolderField")), static_cast<QWidget*>(script()),
        static_cast<QWidget*>(the<QComboBox>("exportToPopUp")),
        static_cast<QWidget*>(the<QPushButton>("updateButton")), window()}) {
    field("defaultSaveFolderField")->setText("abandoned");
    place->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    EXPECT_FALSE(window()->isVisible());
    EXPECT_EQ(field("defaultSaveFolderField")->text(), "~/Records/");
    open();
  }
  EXPECT_TRUE(stored().isEmpty());
}

TEST_F(PreferencesWindow, BringsNothingBackWithUndoAfterCancel) {
  open();
  typeScript("abandoned");
  user::type(field("defaultSaveFolderField"), "abandoned");
  user::click(cancel());
  open();
  QTest::keyClick(script(), Qt::Key_Z, Qt::ControlModifier);
  QTest::keyClick(field("defaultSaveFolderField"), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(script()->toPlainText(), "");
  EXPECT_EQ(field("defaultSaveFolderField")->text(), "~/Records/");
}

TEST_F(PreferencesWindow, UndoesWhatWasTyped) {
  open();
  user::type(field("defaultSaveFolderField"), "x");
  QTest::keyClick(field("defaultSaveFolderField"), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(field("defaultSaveFolderField")->text(), "~/Records/");
  typeScript("x");
  QTest::keyClick(script(), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(script()->toPlainText(), "");
}

// The close box.

TEST_F(PreferencesWindow, KeepsPendingEditsWhenItIsClosedByItsBox) {
  open();
  changeEverything();
  EXPECT_TRUE(window()->close());
  EXPECT_FALSE(window()->isVisible());
  EXPECT_TRUE(stored().isEmpty());
  open();
  EXPECT_EQ(field("defaultSaveFolderField")->text(), "/srv/records");
  EXPECT_EQ(script()->toPlainText(), "date");
  EXPECT_EQ(the<QComboBox>("exportToPopUp")->currentIndex(), 1);
  EXPECT_TRUE(stored().isEmpty());
  user::click(ok());
  EXPECT_EQ(stored().value(settings::SaveDirectory), QVariant("/srv/records"));
  EXPECT_EQ(stored().value(settings::LaunchScript), QVariant("date"));
}

TEST_F(PreferencesWindow, IsClosedAsByItsBoxWithTheKeyThatClosesWindows) {
  open();
  user::type(field("defaultSaveFolderField"), "pending");
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_W, Qt::ControlModifier);
  EXPECT_FALSE(window()->isVisible());
  EXPECT_EQ(field("defaultSaveFolderField")->text(), "pending");
  open();
  script()->setFocus();
  QTest::keyClick(script(), Qt::Key_W, Qt::ControlModifier);
  EXPECT_FALSE(window()->isVisible());
}

// Where charts go.

TEST_F(PreferencesWindow, TurnsToThePageOfTheDestinationAtOnceAndWritesNothing) {
  store(settings::ExportToOsiriX, true);
  open();
  auto* pages = the<QStackedWidget>("exportTabView");
  EXPECT_TRUE(the<QPushButton>("installOsirixPluginButton")->isVisible());
  choose("exportToPopUp", 0);
  EXPECT_EQ(pages->currentIndex(), 0);
  EXPECT_TRUE(field("defaultExportFolderField")->isVisible());
  EXPECT_EQ(stored().value(settings::ExportToOsiriX), QVariant(true));
  choose("exportToPopUp", 1);
  EXPECT_EQ(pages->currentIndex(), 1);
  choose("exportToPopUp", 0);
  user::click(ok());
  EXPECT_EQ(stored().value(settings::ExportToOsiriX), QVariant(false));
}

TEST_F(PreferencesWindow, HasTagZeroForTheFolderAndOneForOsirix) {
  open();
  auto* popUp = the<QComboBox>("exportToPopUp");
  ASSERT_EQ(popUp->count(), 2);
  EXPECT_EQ(popUp->itemData(0).toInt(), 0);
  EXPECT_EQ(popUp->itemData(1).toInt(), 1);
  EXPECT_EQ(popUp->itemText(1), "OsiriX");
}

// The version check.

TEST_F(PreferencesWindow, ShowsWhenTheLastCheckSucceededInTheLocalesShortStyle) {
  store(settings::LastVersionCheckDate, QDateTime(QDate(2024, 3, 31), QTime(17, 5)));
  open();
  EXPECT_EQ(text("versionLastCheckedField"), "31/03/2024 at 17:05");
}

TEST_F(PreferencesWindow, StoresAndShowsTheTimeOfASuccessfulCheck) {
  open();
  application.desktop.notificationCenter.postNotificationName("VersionCheckSuccessful");
  EXPECT_EQ(stored().value(settings::LastVersionCheckDate).toDateTime(), application.desktop.runLoop.now());
  EXPECT_EQ(text("versionLastCheckedField"), "02/05/2024 at 10:00");
  application.pass(60);
  window()->close();
  application.desktop.notificationCenter.postNotificationName("VersionCheckSuccessful");
  EXPECT_EQ(text("versionLastCheckedField"), "02/05/2024 at 10:01") << "behind the scenes too";
}

TEST_F(PreferencesWindow, ShowsNothingNewForAnUnsuccessfulCheck) {
  open();
  application.desktop.notificationCenter.postNotificationName("VersionCheckUnsuccessful");
  EXPECT_EQ(text("versionLastCheckedField"), "Never");
  EXPECT_TRUE(stored().isEmpty());
}

TEST_F(PreferencesWindow, LooksForANewVersionWhenTheUserAsks) {
  QVariantMap information = recorderInformation();
  information.insert("SUFeedURL", "https://example.org/feed.xml");
  application.desktop.mainBundle = platform::Bundle(information, {});
  open();
  EXPECT_TRUE(application.desktop.web.requests().isEmpty());
  press("updateButton");
  ASSERT_EQ(application.desktop.web.requests().size(), 1);
  EXPECT_EQ(application.desktop.web.requests().first().url, QUrl("https://example.org/feed.xml"));
}

TEST_F(PreferencesWindow, HearsOfNoCheckBeforeItIsLoaded) {
  OrvVersion version(application.desktop.services);
  PreferencesController unopened(application.desktop.services, version);
  unopened.updateVersionLastChecked();
  application.desktop.notificationCenter.postNotificationName("VersionCheckSuccessful");
  EXPECT_TRUE(stored().isEmpty());
  EXPECT_FALSE(unopened.isWindowLoaded());
}
