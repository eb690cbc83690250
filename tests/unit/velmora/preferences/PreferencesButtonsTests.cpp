// SPDX-License-Identifier: LGPL-3.0-or-later
//
// What the buttons of the preferences window do; and a window that lacks some of its controls.
#include <QTest>
#include "testing/files/Files.h"
#include "testing/standins/LogRecorder.h"
#include "tests/unit/velmora/preferences/PreferencesTesting.h"
#include "velmora/osirix/Osirix.h"
#include "velmora/resources/FrameworkResources.h"
#include "velmora/resources/Notifications.h"

using namespace velmora;
using namespace velmora::testkit;

namespace settings = velmora::settings;
using preferences_testing::PreferencesWindow;

namespace {

const platform::Alert FolderMissing{"Folder Missing", "OK", "", "",
                                    "The specified folder is not currently available."};

}  // namespace

// Folders.

TEST_F(PreferencesWindow, TakesTheFolderThatThePanelShowsWhenItCloses) {
  open();
  const QUrl shown = QUrl::fromLocalFile(application.home.path("shown"));
  application.desktop.panels.expectOpen({QUrl::fromLocalFile(application.home.path("selected"))}, shown);
  press("chooseSaveFolderButton");
  EXPECT_EQ(field("defaultSaveFolderField")->text(), "~/shown");
  EXPECT_EQ(field("defaultExportFolderField")->text(), "~/Charts");
  application.desktop.panels.expectOpen({QUrl::fromLocalFile("/srv/charts/selected")},
                                        QUrl::fromLocalFile("/srv/charts"));
  press("chooseExportFolderButton");
  EXPECT_EQ(field("defaultExportFolderField")->text(), "/srv/charts");
  EXPECT_TRUE(stored().isEmpty()) << "the setting follows with OK";
  for (const platform::OpenPanel& panel : application.desktop.panels.openPanels()) {
    EXPECT_TRUE(panel.canChooseDirectories);
    EXPECT_TRUE(panel.canCreateDirectories);
    EXPECT_FALSE(panel.canChooseFiles);
    EXPECT_FALSE(panel.allowsMultipleSelection);
    EXPECT_FALSE(panel.title.isEmpty());
  }
}

TEST_F(PreferencesWindow, StartsThePanelInTheFolderOfTheField) {
  open();
  application.desktop.panels.expectOpen({});
  press("chooseSaveFolderButton");
  EXPECT_EQ(application.desktop.panels.openPanels().last().directoryURL.toLocalFile(),
            application.saveFolder());
  user::type(field("defaultSaveFolderField"), "/no/such/folder");
  application.desktop.panels.expectOpen({});
  press("chooseSaveFolderButton");
  EXPECT_TRUE(application.desktop.panels.openPanels().last().directoryURL.isEmpty());
}

TEST_F(PreferencesWindow, KeepsTheFieldWhenThePanelIsCancelled) {
  open();
  user::type(field("defaultSaveFolderField"), "typed");
  application.desktop.panels.expectOpen({}, QUrl::fromLocalFile("/elsewhere"));
  press("chooseSaveFolderButton");
  EXPECT_EQ(field("defaultSaveFolderField")->text(), "typed");
}

TEST_F(PreferencesWindow, RevealsTheFolderThatTheFieldNamesNow) {
  const QString other = application.home.makeFolder("other");
  open();
  press("showSaveFolderButton");
  EXPECT_EQ(application.desktop.workspace.revealed, QStringList{application.saveFolder()});
  user::type(field("defaultSaveFolderField"), "~/other");
  press("showSaveFolderButton");
  EXPECT_EQ(application.desktop.workspace.revealed.last(), other);
  press("showExportFolderButton");
  EXPECT_EQ(application.desktop.workspace.revealed.last(), application.exportFolder());
  EXPECT_TRUE(stored().isEmpty());
}

TEST_F(PreferencesWindow, TellsThatAFolderIsMissing) {
  writeFile(application.home.path("file"), "x");
  QFile::link(application.home.path("nowhere"), application.home.path("dangling"));
  open();
  for (const char* path : {"~/absent", "~/file", "~/dangling", "", "~nobody"}) {
    user::type(field("defaultExportFolderField"), QString::fromLatin1(path));
    application.desktop.alerts.expect(FolderMissing, platform::AlertDefaultReturn);
    press("showExportFolderButton");
    EXPECT_TRUE(application.desktop.alerts.allCame()) << path;
    EXPECT_EQ(field("defaultExportFolderField")->text(), path);
  }
  EXPECT_TRUE(application.desktop.workspace.revealed.isEmpty());
  EXPECT_TRUE(window()->isVisible());
}

// The plugin.

TEST_F(PreferencesWindow, OffersTheDownloadOfOsirixWhereItIsNotInstalled) {
  open();
  choose("exportToPopUp", 1);
  EXPECT_EQ(the<QPushButton>("installOsirixPluginButton")->text(), "Download");
  EXPECT_EQ(text("osirixExplanationField"), "OsiriX may be downloaded from " + velmora::osirix::DownloadPage);
  int installs = 0;
  application.desktop.notificationCenter.addObserver(window(), velmora::notifications::InstallPlugin,
                                                     [&](const platform::Notification&) { ++installs; });
  press("installOsirixPluginButton");
  EXPECT_EQ(application.desktop.workspace.opened, QList<QUrl>{QUrl(velmora::osirix::DownloadPage)});
  EXPECT_EQ(installs, 0);
}

TEST_F(PreferencesWindow, AsksForThePluginWhereOsirixIsInstalled) {
  application.desktop.workspace.applications.insert(velmora::osirix::BundleIdentifier, "/opt/osirix");
  open();
  choose("exportToPopUp", 1);
  EXPECT_EQ(the<QPushButton>("installOsirixPluginButton")->text(), "Install OsiriX Plugin");
  EXPECT_EQ(text("osirixExplanationField"),
            "Once installed, the plugin will be available the next time OsiriX is launched.");
  application.desktop.notificationCenter.removeObserver(&application.controller);
  QList<QVariant> objects;
  application.desktop.notificationCenter.addObserver(
      window(), velmora::notifications::InstallPlugin,
      [&](const platform::Notification& posted) { objects.append(posted.object); });
  press("installOsirixPluginButton");
  ASSERT_EQ(objects.size(), 1);
  EXPECT_FALSE(objects.first().isValid()) << "no object";
  EXPECT_TRUE(application.desktop.workspace.opened.isEmpty());
}

TEST_F(PreferencesWindow, InstallsThePluginThroughTheController) {
  const LogRecorder log;
  application.desktop.workspace.applications.insert(velmora::osirix::BundleIdentifier, "/opt/osirix");
  open();
  choose("exportToPopUp", 1);
  application.desktop.alerts.expect({"Installation Failed", "OK", "", "", ""}, platform::AlertDefaultReturn);
  press("installOsirixPluginButton");
  EXPECT_TRUE(application.desktop.alerts.allCame()) << "this application carries no plugin, and says so";
}

TEST_F(PreferencesWindow, SeesOsirixEachTimeItGetsTheKeyboard) {
  open();
  choose("exportToPopUp", 1);
  QWidget other;
  other.show();
  other.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
  user::type(field("defaultSaveFolderField"), "pending");
  application.desktop.workspace.applications.insert(velmora::osirix::BundleIdentifier, "/opt/osirix");
  EXPECT_EQ(the<QPushButton>("installOsirixPluginButton")->text(), "Download") << "not yet";
  open();
  EXPECT_EQ(the<QPushButton>("installOsirixPluginButton")->text(), "Install OsiriX Plugin");
  EXPECT_EQ(field("defaultSaveFolderField")->text(), "pending") << "nothing else is refreshed";
}

TEST_F(PreferencesWindow, GoesByTheTitleOfThePluginButtonAlone) {
  open();
  choose("exportToPopUp", 1);
  application.desktop.workspace.applications.insert(velmora::osirix::BundleIdentifier, "/opt/osirix");
  the<QPushButton>("installOsirixPluginButton")->setText("&Download");  // as some desktops mark a key
  press("installOsirixPluginButton");
  EXPECT_EQ(application.desktop.workspace.opened.size(), 1);
}

// The script.

TEST_F(PreferencesWindow, PointsAtTheErrorOfAScript) {
  const QString source = "echo one fi";
  application.desktop.scripts.behaviours[source].compileError = {"line 1: fi", "fi is not expected", {9, 2}};
  open();
  typeScript(source);
  press("checkSyntaxButton");
  EXPECT_EQ(text("scriptErrorField"), "fi is not expected");
  EXPECT_EQ(script()->textCursor().selectionStart(), 9);
  EXPECT_EQ(script()->textCursor().selectionEnd(), 11);
  EXPECT_EQ(QApplication::focusWidget(), script());
  EXPECT_EQ(script()->toPlainText(), source) << "left as typed";
  QTest::keyClicks(script(), "x");
  EXPECT_EQ(script()->toPlainText(), "echo one x") << "typing goes on at the error";
}

TEST_F(PreferencesWindow, ForgetsTheErrorOfTheScriptBeforeWithEachCheck) {
  application.desktop.scripts.behaviours["fi"].compileError = {"all", "brief", {0, 2}};
  open();
  typeScript("fi");
  press("checkSyntaxButton");
  typeScript("date");
  press("checkSyntaxButton");
  EXPECT_EQ(text("scriptErrorField"), "");
  typeScript("fi");
  press("checkSyntaxButton");
  typeScript("");
  press("checkSyntaxButton");
  EXPECT_EQ(text("scriptErrorField"), "") << "an empty script has no error";
}

TEST_F(PreferencesWindow, ShowsAScriptThatCompilesInItsFormattedForm) {
  application.desktop.scripts.behaviours["if a;then b;fi"].formatted =
      platform::ScriptText{"if a; then b; fi", {{{0, 2}, platform::ScriptText::Style::Keyword}}};
  store(settings::LaunchScript, "if a;then b;fi");
  open();
  EXPECT_EQ(script()->toPlainText(), "if a; then b; fi");
  EXPECT_EQ(stored().value(settings::LaunchScript), QVariant("if a;then b;fi"));
  QTest::keyClick(script(), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(script()->toPlainText(), "if a; then b; fi") << "what was shown first is not undone";
  QTextCursor keyword(script()->document());
  keyword.setPosition(1);
  EXPECT_GT(keyword.charFormat().fontWeight(), QFont::Normal);
  typeScript("if a;then b;fi");
  press("checkSyntaxButton");
  EXPECT_EQ(script()->toPlainText(), "if a; then b; fi");
  EXPECT_EQ(text("scriptErrorField"), "");
}

TEST_F(PreferencesWindow, ShowsAStoredScriptThatIsBrokenAsItIsAndNoError) {
  application.desktop.scripts.behaviours["fi"].compileError = {"all", "brief", {0, 2}};
  store(settings::LaunchScript, "fi");
  open();
  EXPECT_EQ(script()->toPlainText(), "fi");
  EXPECT_EQ(text("scriptErrorField"), "");
  EXPECT_FALSE(script()->textCursor().hasSelection());
}

TEST_F(PreferencesWindow, NeverRunsTheScript) {
  store(settings::LaunchScript, "rm -r important");
  open();
  press("checkSyntaxButton");
  user::click(ok());
  EXPECT_TRUE(application.desktop.scripts.executed.isEmpty());
  EXPECT_FALSE(application.desktop.scripts.compiled.isEmpty());
}

// A window without some of its controls.

namespace {

/// The preferences window of an application whose own interface file calls one control differently.
class PreferencesWithout : public PreferencesWindow, public testing::WithParamInterface<const char*> {
 protected:
  PreferencesWithout() {
    QFile file(velmora::frameworkInterfaceFolder() + "/Preferences.ui");
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QByteArray interface = file.readAll();
    const QByteArray name = QByteArray("name=\"") + GetParam() + '"';
    EXPECT_TRUE(interface.contains(name)) << GetParam();
    interface.replace(name, QByteArray("name=\"gone\""));
    interface.replace(QByteArray("<cstring>") + GetParam(), "<cstring>gone");
    interface.replace(QByteArray("<tabstop>") + GetParam(), "<tabstop>gone");
    writeFile(application.home.path("interface/Preferences.ui"), interface);
    application.desktop.interfaceFiles.addSearchPath(application.home.path("interface"));
  }
};

}  // namespace

TEST_P(PreferencesWithout, ThatControlDoesEverythingElse) {
  open();
  PreferencesController& controller = preferences();
  const auto holds = [&](const char* name) { return window()->findChild<QWidget*>(name) != nullptr; };
  application.desktop.scripts.behaviours["fi"].compileError = {"all", "brief", {0, 2}};
  if (holds("launchScriptField")) script()->setPlainText("fi");
  controller.checkSyntax(nullptr);
  controller.doChangeExportTo(nullptr);
  application.desktop.notificationCenter.removeObserver(&application.controller);
  controller.doInstallPlugin(nullptr);
  for (int i = 0; i < 2; ++i)
    application.desktop.panels.expectOpen({QUrl("file:///srv")}, QUrl("file:///srv"));
  controller.doChooseSaveFolder(nullptr);
  controller.doChooseExportFolder(nullptr);
  controller.updateVersionLastChecked();
  controller.versionCheckSuccessful();
  controller.doOK(nullptr);
  const QVariantMap after = stored();
  EXPECT_EQ(after.contains(settings::SaveDirectory), holds("defaultSaveFolderField"));
  EXPECT_EQ(after.contains(settings::ExportDirectory), holds("defaultExportFolderField"));
  EXPECT_EQ(after.contains(settings::AutoSave), holds("autoSaveCheckBox"));
  EXPECT_EQ(after.contains(settings::ExportToOsiriX), holds("exportToPopUp"));
  EXPECT_EQ(after.contains(settings::LaunchScript), holds("launchScriptField"));
  EXPECT_EQ(after.contains(settings::AutomaticVersionCheck), holds("autoCheckVersionCheckBox"));
  EXPECT_EQ(after.contains(settings::VersionCheckInterval), holds("checkVersionIntervalPopUp"));
  EXPECT_TRUE(after.contains(settings::LastVersionCheckDate));
  EXPECT_FALSE(window()->isVisible());
  open();
  controller.doCancel(nullptr);
  EXPECT_FALSE(window()->isVisible());
}

INSTANTIATE_TEST_SUITE_P(EachOutlet, PreferencesWithout,
                         testing::Values("defaultSaveFolderField", "defaultExportFolderField",
                                         "chooseSaveFolderButton", "chooseExportFolderButton",
                                         "showSaveFolderButton", "showExportFolderButton", "autoSaveCheckBox",
                                         "installOsirixPluginButton", "exportToPopUp", "exportTabView",
                                         "osirixExplanationField", "launchScriptField", "checkSyntaxButton",
                                         "scriptErrorField", "autoCheckVersionCheckBox",
                                         "checkVersionIntervalPopUp", "versionLastCheckedField",
                                         "updateButton", "buttonBox"),
                         [](const auto& each) { return std::string(each.param); });
