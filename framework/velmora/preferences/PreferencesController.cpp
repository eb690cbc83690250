// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/preferences/PreferencesController.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QStackedWidget>
#include <QTextDocument>
#include <QUrl>

#include "base/files/FileManager.h"
#include "base/log/Guard.h"
#include "orv/updates/OrvVersion.h"
#include "platform/Services.h"
#include "platform/controls/Alert.h"
#include "platform/controls/EventFilters.h"
#include "platform/controls/Panels.h"
#include "platform/notifications/NotificationCenter.h"
#include "platform/runloop/RunLoop.h"
#include "platform/settings/UserDefaults.h"
#include "platform/text/Localization.h"
#include "platform/workspace/Workspace.h"
#include "velmora/osirix/Osirix.h"
#include "velmora/preferences/LastCheckedText.h"
#include "velmora/preferences/ScriptCheck.h"
#include "velmora/preferences/ScriptStyles.h"
#include "velmora/resources/Notifications.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;

namespace settings = velmora::settings;
using velmora::base::guarded;
using velmora::platform::localizedString;

namespace {

/// The tag of the export destination OsiriX.
constexpr int OsirixTag = 1;
// Days between checks.
constexpr int Daily = 1;
constexpr int Weekly = 7;
constexpr int Monthly = 31;

/// The title of the pop-up's item for an interval. Whatever is neither a day nor a week counts as a month.
QString titleOf(qint64 interval) {
  switch (interval) {
    case Daily:
      return localizedString("Preferences", "Daily");
    case Weekly:
      return localizedString("Preferences", "Weekly");
    default:
      return localizedString("Preferences", "Monthly");
  }
}

/// A button's title without the mark of its key, which some desktops put in by themselves.
QString titleOf(const QAbstractButton& button) { return button.text().remove(QLatin1Char('&')); }

}  // namespace

PreferencesController::PreferencesController(platform::Services& services, OrvVersion& version)
    : WindowController(services, QStringLiteral("Preferences")), version_(version) {}

void PreferencesController::showWindow(const QObject* sender) { showWindowOutsideAlerts(sender); }

// Loading and wiring the window.

void PreferencesController::windowDidLoad() {
  findOutlets();
  connectActions();
  fitAndCenter();
  resetDefaults();
  services().notificationCenter.addObserver(
      this, OrvVersion::CheckSuccessful, [this](const platform::Notification&) { versionCheckSuccessful(); });
}

void PreferencesController::findOutlets() {
  const auto find = [this]<typename Widget>(QPointer<Widget>& field, const char* name) {
    field = outlet<Widget>(QString::fromLatin1(name));
  };
  find(defaultSaveFolderField_, "defaultSaveFolderField");
  find(defaultExportFolderField_, "defaultExportFolderField");
  find(autoSaveCheckBox_, "autoSaveCheckBox");
  find(installOsirixPluginButton_, "installOsirixPluginButton");
  find(exportToPopUp_, "exportToPopUp");
  find(exportTabView_, "exportTabView");
  find(osirixExplanationField_, "osirixExplanationField");
  find(launchScriptField_, "launchScriptField");
  find(scriptErrorField_, "scriptErrorField");
  find(autoCheckVersionCheckBox_, "autoCheckVersionCheckBox");
  find(checkVersionIntervalPopUp_, "checkVersionIntervalPopUp");
  find(versionLastCheckedField_, "versionLastCheckedField");

  // An interface file cannot give items their tags.
  for (int i = 0; exportToPopUp_ && i < exportToPopUp_->count(); ++i) exportToPopUp_->setItemData(i, i);
  platform::ignoreWheelWithoutFocus(exportToPopUp_);
  platform::ignoreWheelWithoutFocus(checkVersionIntervalPopUp_);
  if (launchScriptField_) launchScriptField_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
}

void PreferencesController::connectButton(const char* name, Action action) {
  auto* button = outlet<QAbstractButton>(QString::fromLatin1(name));
  if (!button) return;
  connect(button, &QAbstractButton::clicked, this,
          [this, button, action] { guarded("button", [&] { (this->*action)(button); }); });
}

void PreferencesController::connectActions() {
  connectButton("chooseSaveFolderButton", &PreferencesController::doChooseSaveFolder);
  connectButton("chooseExportFolderButton", &PreferencesController::doChooseExportFolder);
  connectButton("showSaveFolderButton", &PreferencesController::doShowSaveFolder);
  connectButton("showExportFolderButton", &PreferencesController::doShowExportFolder);
  connectButton("checkSyntaxButton", &PreferencesController::checkSyntax);
  connectButton("updateButton", &PreferencesController::doUpdate);
  if (installOsirixPluginButton_) {
    connect(installOsirixPluginButton_, &QAbstractButton::clicked, this,
            [this] { guarded("button", [&] { doInstallPlugin(installOsirixPluginButton_); }); });
  }
  if (exportToPopUp_) {
    connect(exportToPopUp_, &QComboBox::activated, this,
            [this] { guarded("pop-up", [&] { doChangeExportTo(exportToPopUp_); }); });
  }
  connectButtonBox();
}

void PreferencesController::connectButtonBox() {
  auto* box = outlet<QDialogButtonBox>(QStringLiteral("buttonBox"));
  if (!box) return;
  // The box makes OK the default button, being the first that accepts.
  if (QPushButton* ok = box->button(QDialogButtonBox::Ok)) ok->setText(localizedString("OrvVersion", "OK"));
  if (QPushButton* cancel = box->button(QDialogButtonBox::Cancel))
    cancel->setText(localizedString("OrvVersion", "Cancel"));
  connect(box, &QDialogButtonBox::accepted, this, [this, box] { guarded("button", [&] { doOK(box); }); });
  connect(box, &QDialogButtonBox::rejected, this, [this, box] { guarded("button", [&] { doCancel(box); }); });
}

void PreferencesController::fitAndCenter() {
  if (const QScreen* screen = window()->screen()) {
    const QSize available = screen->availableGeometry().size();
    window()->resize(window()->size().expandedTo(window()->sizeHint()).boundedTo(available));
  }
  centerWindow();
}

bool PreferencesController::eventFilter(QObject* watched, QEvent* event) {
  // What arrives at the window, no control in it has wanted.
  if (event->type() == QEvent::KeyPress && isWindowLoaded() && watched == window()) {
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->matches(QKeySequence::Cancel)) {
      guarded("key", [this] { doCancel(this); });
      return true;
    }
  }
  return WindowController::eventFilter(watched, event);
}

// The settings and their copy.

void PreferencesController::resetDefaults() {
  const platform::UserDefaults& defaults = services().defaults;
  const auto showFolderOf = [&defaults](QLineEdit* field, const QString& key) {
    if (field) field->setText(base::abbreviatingWithTildeInPath(defaults.stringForKey(key)));
  };
  showFolderOf(defaultSaveFolderField_, settings::SaveDirectory);
  showFolderOf(defaultExportFolderField_, settings::ExportDirectory);
  if (autoSaveCheckBox_) autoSaveCheckBox_->setChecked(defaults.boolForKey(settings::AutoSave));
  if (exportToPopUp_) {
    exportToPopUp_->setCurrentIndex(defaults.boolForKey(settings::ExportToOsiriX) ? 1 : 0);
    doChangeExportTo(exportToPopUp_);
  }
  if (launchScriptField_) launchScriptField_->setPlainText(defaults.stringForKey(settings::LaunchScript));
  checkSyntax(this);
  // What was there before belongs to another showing: Undo does not bring it back.
  if (launchScriptField_) launchScriptField_->document()->clearUndoRedoStacks();
  if (autoCheckVersionCheckBox_)
    autoCheckVersionCheckBox_->setChecked(defaults.boolForKey(settings::AutomaticVersionCheck));
  if (checkVersionIntervalPopUp_) {
    checkVersionIntervalPopUp_->setCurrentIndex(checkVersionIntervalPopUp_->findText(
        titleOf(defaults.integerForKey(settings::VersionCheckInterval))));
  }
  updateVersionLastChecked();
}

void PreferencesController::doOK(const QObject*) {
  platform::UserDefaults& defaults = services().defaults;
  const auto storeFolder = [&defaults](const QLineEdit* field, const QString& key) {
    if (field) defaults.setObject(base::abbreviatingWithTildeInPath(field->text()), key);
  };
  storeFolder(defaultSaveFolderField_, settings::SaveDirectory);
  storeFolder(defaultExportFolderField_, settings::ExportDirectory);
  if (autoSaveCheckBox_) defaults.setObject(autoSaveCheckBox_->isChecked(), settings::AutoSave);
  if (exportToPopUp_)
    defaults.setObject(exportToPopUp_->currentData().toInt() == OsirixTag, settings::ExportToOsiriX);
  if (launchScriptField_)
    defaults.setObject(scriptInDocument(*launchScriptField_->document()), settings::LaunchScript);
  if (autoCheckVersionCheckBox_)
    defaults.setObject(autoCheckVersionCheckBox_->isChecked(), settings::AutomaticVersionCheck);
  if (checkVersionIntervalPopUp_) defaults.setInteger(chosenInterval(), settings::VersionCheckInterval);
  if (scriptErrorField_) scriptErrorField_->clear();
  close();
}

void PreferencesController::doCancel(const QObject*) {
  close();
  resetDefaults();
}

int PreferencesController::chosenInterval() const {
  const QString title = checkVersionIntervalPopUp_->currentText();
  if (title == titleOf(Daily)) return Daily;
  if (title == titleOf(Weekly)) return Weekly;
  return Monthly;
}

void PreferencesController::doChangeExportTo(const QComboBox* sender) {
  if (sender && exportTabView_) exportTabView_->setCurrentIndex(sender->currentData().toInt());
}

void PreferencesController::doChooseSaveFolder(const QObject*) {
  chooseFolder(defaultSaveFolderField_, localizedString("Preferences", "Choose the save folder"));
}

void PreferencesController::doChooseExportFolder(const QObject*) {
  chooseFolder(defaultExportFolderField_, localizedString("Preferences", "Choose the export folder"));
}

void PreferencesController::chooseFolder(QLineEdit* field, const QString& title) {
  const QPointer<QLineEdit> shown(field);
  platform::OpenPanel panel;
  panel.title = title;
  panel.canChooseFiles = false;
  panel.canChooseDirectories = true;
  panel.canCreateDirectories = true;
  const QString current = field ? base::expandingTildeInPath(field->text()) : QString();
  if (services().fileManager.isDirectory(current)) panel.directoryURL = QUrl::fromLocalFile(current);
  if (services().panels.runModal(panel) == platform::PanelCancelButton || !shown) return;
  shown->setText(base::abbreviatingWithTildeInPath(panel.directoryURL.toLocalFile()));
}

void PreferencesController::doShowSaveFolder(const QObject*) {
  if (defaultSaveFolderField_) showFolder(defaultSaveFolderField_->text());
}

void PreferencesController::doShowExportFolder(const QObject*) {
  if (defaultExportFolderField_) showFolder(defaultExportFolderField_->text());
}

void PreferencesController::showFolder(const QString& path) {
  const QString folder = base::expandingTildeInPath(path);
  if (services().fileManager.isDirectory(folder)) {
    services().workspace.selectFile(folder);
    return;
  }
  services().alerts.runModal(
      {localizedString("Preferences", "Folder Missing"), localizedString("OrvVersion", "OK"), QString(),
       QString(), localizedString("Preferences", "The specified folder is not currently available.")});
}

bool PreferencesController::osirixIsInstalled() const { return osirix::isInstalled(services().workspace); }

void PreferencesController::doInstallPlugin(const QAbstractButton* sender) {
  if (sender && titleOf(*sender) == localizedString("OrvVersion", "Download"))
    services().workspace.openURL(QUrl(osirix::DownloadPage));
  else
    services().notificationCenter.postNotificationName(notifications::InstallPlugin);
}

void PreferencesController::windowDidBecomeKey() {
  // Every time, because OsiriX may have been installed meanwhile.
  const bool installed = osirixIsInstalled();
  if (installOsirixPluginButton_) {
    installOsirixPluginButton_->setText(installed ? localizedString("Preferences", "Install OsiriX Plugin")
                                                  : localizedString("OrvVersion", "Download"));
  }
  if (osirixExplanationField_) {
    osirixExplanationField_->setText(
        installed ? localizedString(
                        "Preferences",
                        "Once installed, the plugin will be available the next time OsiriX is launched.")
                  : localizedString("Preferences", "OsiriX may be downloaded from ") + osirix::DownloadPage);
  }
}

void PreferencesController::checkSyntax(const QObject* sender) {
  if (scriptErrorField_) scriptErrorField_->clear();
  if (!launchScriptField_) return;
  const ScriptCheck check =
      checkScript(services().scripts, scriptInDocument(*launchScriptField_->document()));
  if (!launchScriptField_) return;  // the script runner takes its time, and the window may go meanwhile
  QTextDocument& document = *launchScriptField_->document();
  if (check.formatted) setScriptText(document, *check.formatted, launchScriptField_->palette());
  if (sender == this || !check.error) return;
  launchScriptField_->setTextCursor(cursorSelecting(document, check.error->range));
  if (scriptErrorField_) scriptErrorField_->setText(check.error->briefMessage);
  launchScriptField_->setFocus();
}

void PreferencesController::doUpdate(const QObject*) { version_.checkVersion(true); }

void PreferencesController::versionCheckSuccessful() {
  services().defaults.setObject(services().runLoop.now(), settings::LastVersionCheckDate);
  updateVersionLastChecked();
}

void PreferencesController::updateVersionLastChecked() {
  if (!versionLastCheckedField_) return;
  versionLastCheckedField_->setText(
      lastCheckedText(services().defaults.dateForKey(settings::LastVersionCheckDate)));
}
