// SPDX-License-Identifier: LGPL-3.0-or-later
// The part of the road that goes through the preferences window: where charts go, the plugin, the script.
#include <QFileInfo>
#include <QSettings>

#include "demo/Report.h"
#include "demo/Road.h"
#include "testing/files/Files.h"
#include "testing/waiting/Waiting.h"

namespace demo {

namespace {

/// By what name the viewer is known to the desktop.
constexpr const char* ViewerIdentifier = "com.rossetantoine.osirix";

/// Every file below a folder by its path in it, with its contents.
QMap<QString, QByteArray> contentsBelow(const QString& folder) {
  QMap<QString, QByteArray> files;
  for (const QString& path : filesBelow(folder)) files[path] = readFile(folder + '/' + path);
  return files;
}

}  // namespace

SeenWindow Road::openPreferences() {
  person().choose(application_->document(), {"Edit", "Preferences..."});
  return person().active("Preferences");
}

void Road::endPreferences(const QString& button) {
  person().closeWith(person().active("Preferences"), button);
}

// As it stands in the file, where the application reads it at every use.
QVariant Road::stored(const QString& setting) {
  const QSettings settings(stage_.home() + "/.config/" + cast_.applicationIdentifier + ".conf",
                           QSettings::IniFormat);
  return settings.value(setting);
}

void Road::sendChartsTo(const QString& place) {
  person().pick(openPreferences(), "exportToPopUp", place);
  endPreferences("OK");
}

void Road::sendChartsToTheViewer() {
  SeenWindow preferences = openPreferences();
  expectText(preferences, "defaultSaveFolderField", "~/Documents/Growth Data");
  expect(preferences.widget("autoSaveCheckBox")["checked"].toBool(), "records kept automatically", "not so");
  expectText(preferences, "exportToPopUp", "A folder");
  expectText(preferences, "checkVersionIntervalPopUp", "Monthly");
  expectText(preferences, "versionLastCheckedField", "Never");
  report_.saw("the window shows what the first start has set");

  // What is abandoned is forgotten.
  person().pick(preferences, "exportToPopUp", "OsiriX");
  endPreferences("Cancel");
  preferences = openPreferences();
  expectText(preferences, "exportToPopUp", "A folder");
  expect(!stored("Export to OsiriX").toBool(), "nothing stored after \"Cancel\"", "\"Export to OsiriX\" on");

  person().pick(preferences, "exportToPopUp", "OsiriX");
  person().pick(preferences, "checkVersionIntervalPopUp", "Weekly");
  preferences = person().waitFor("the page of OsiriX", [](const SeenWindow& window) {
    return window.name() == "Preferences" && !window.widget("installOsirixPluginButton").isEmpty();
  });
  expectText(preferences, "installOsirixPluginButton", "Download");
  shots("preferences");
  endPreferences("OK");
  expect(stored("Export to OsiriX").toBool(), "the setting \"Export to OsiriX\" on", "off");
  expect(stored("Version Check Interval").toInt() == 7, "an interval of 7 days",
         stored("Version Check Interval").toString());
  report_.saw("\"Cancel\" forgot the choice, \"OK\" stored OsiriX and Weekly");
}

void Road::installThePlugin() {
  stage_.installDesktopEntry(ViewerIdentifier, "OsiriX");
  const SeenWindow preferences = openPreferences();
  expectText(preferences, "installOsirixPluginButton", "Install OsiriX Plugin");
  report_.saw("with OsiriX on the desktop the button reads \"Install OsiriX Plugin\"");

  const QString installed = stage_.home() + "/Library/Application Support/OsiriX/Plugins";
  // What an earlier version has left goes.
  const QString stray = installed + "/Growth Link.osirixplugin/Contents/stray";
  writeFile(stray, {});

  person().push(preferences, "installOsirixPluginButton");
  person().waitFor("the outcome", [](const SeenWindow& window) {
    return window.isAlert() && window.alertText() == "Installation Succeeded";
  });
  shots("plugin");
  const SeenWindow alert = person().answer("Installation Succeeded", "OK");
  const QString information = "The plugin will be available the next time OsiriX is launched.";
  expect(alert.alertInformation() == information, information, alert.alertInformation());
  endPreferences("Cancel");

  const QString carried = QFileInfo(cast_.application).absolutePath() + "/../share/growth/OsiriX Plugins";
  const QMap<QString, QByteArray> files = contentsBelow(installed);
  expect(files.contains("Growth Link.osirixplugin/Contents/Info.plist") && files == contentsBelow(carried),
         "the plugin's files as the application carries them, and no others",
         QStringList(files.keys()).join(", "));
  report_.saw(QString("the old plugin replaced, %1 files as they are carried").arg(files.size()));
}

void Road::startWithAFailingScript() {
  start();
  application_->document(20);
  person().waitUntilGone("About");
  SeenWindow preferences = openPreferences();
  person().enter(preferences, "launchScriptField", "if true; then echo");
  person().push(preferences, "checkSyntaxButton");
  preferences = person().waitFor("a syntax error", [](const SeenWindow& window) {
    return window.name() == "Preferences" && !window.text("scriptErrorField").isEmpty();
  });
  report_.saw("an unfinished \"if\": " + preferences.text("scriptErrorField").section('\n', 0, 0));
  shots("syntax");
  person().enter(preferences, "launchScriptField", "echo no drive here >&2; exit 3");
  endPreferences("OK");
  expect(stored("Launch Script").toString().contains("no drive here"), "the script in the settings",
         stored("Launch Script").toString());
  quit(false);

  start();
  application_->waitForStatus("Startup script error", 20);
  shots("script-error");
  application_->process().waitForLine("Startup script error: ", 5);
  // The start goes on.
  application_->waitForStatus("Caching database...", 10);
  application_->waitForStatus(QString(), 5);
  for (const ProbeClient::News& news : application_->probe().news())
    expect(news.window["class"] != "QMessageBox", "no alert about the script",
           news.window["title"].toString());
  const QString said = application_->process().waitForLine("Startup script error: ", 1).text;
  expect(said.contains("no drive here"), "what the script said in the log line", said);
  report_.saw("status \"Startup script error\", log line \"" + said.mid(said.indexOf("Startup")) + '"');
  quit(false);
}

}  // namespace demo
