// SPDX-License-Identifier: LGPL-3.0-or-later
//
// How the preferences window is loaded and wired.
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

#include "base/log/Guard.h"
#include "platform/text/Localization.h"
#include "platform/notifications/NotificationCenter.h"
#include "platform/Services.h"
#include "platform/controls/EventFilters.h"
#include "velmora/preferences/PreferencesController.h"

using namespace velmora;

using velmora::base::guarded;
using velmora::platform::localizedString;

void PreferencesController::windowDidLoad() {
  findOutlets();
  connectActions();
  fitAndCentre();
  resetDefaults();
  services().notificationCenter.addObserver(
      this, QStringLiteral("VersionCheckSuccessful"),
      [this](const platform::Notification&) { versionCheckSuccessful(); });
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

void PreferencesController::fitAndCentre() {
  const QScreen* screen = window()->screen();
  if (!screen) return;
  const QRect available = screen->availableGeometry();
  window()->resize(window()->size().expandedTo(window()->sizeHint()).boundedTo(available.size()));
  window()->move(available.center() - QRect(QPoint(), window()->frameSize()).center());
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
