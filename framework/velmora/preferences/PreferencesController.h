// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QPointer>

#include "platform/documents/WindowController.h"

class OrvVersion;
class QAbstractButton;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QStackedWidget;

/// The preferences window: the settings of the application, edited as a copy.
///
/// The controls hold what the user is about to change, the settings what holds. They are made equal when the
/// window is loaded, by OK (which writes whatever the controls say) and by Cancel (which forgets it). The
/// close box does neither: what was typed is there again at the next showing.
///
/// The window is loaded from the interface file "Preferences"; its outlets are found by object name
/// (defaultSaveFolderField, defaultExportFolderField, chooseSaveFolderButton, chooseExportFolderButton,
/// showSaveFolderButton, showExportFolderButton, autoSaveCheckBox, installOsirixPluginButton, exportToPopUp,
/// exportTabView, osirixExplanationField, launchScriptField, checkSyntaxButton, scriptErrorField,
/// autoCheckVersionCheckBox, checkVersionIntervalPopUp, versionLastCheckedField, updateButton, buttonBox). A
/// missing one is tolerated; OK then leaves its setting alone.
class PreferencesController : public velmora::platform::WindowController {
 public:
  PreferencesController(velmora::platform::Services& services, OrvVersion& version);

  /// Shows the window; while an application-modal alert or panel is open, as soon as that has closed, for a
  /// window that came up now could not be used.
  void showWindow(const QObject* sender) override;

  // The settings and their copy.

  /// Fills every control from the settings.
  void resetDefaults();
  /// Writes every setting as its control says, without judging any of it, and closes the window.
  void doOK(const QObject* sender);
  /// Closes the window and forgets what was changed in it.
  void doCancel(const QObject* sender);

  // Where charts go.

  /// Turns to the page of the destination that the pop-up has selected: page 0 the export folder, page 1
  /// OsiriX.
  void doChangeExportTo(const QComboBox* sender);
  /// Lets the user choose a folder for the field: the one that the panel shows when it closes.
  void doChooseSaveFolder(const QObject* sender);
  void doChooseExportFolder(const QObject* sender);
  /// Reveals the folder that the field names.
  void doShowSaveFolder(const QObject* sender);
  void doShowExportFolder(const QObject* sender);
  /// Reveals a folder, given with or without tilde, in the file viewer; tells the user when it does not
  /// exist.
  void showFolder(const QString& path);

  // The plugin inside OsiriX.

  /// Whether OsiriX is on this machine.
  bool osirixIsInstalled() const;
  /// Opens the page from which OsiriX can be had when the button says so; asks for the plugin's installation
  /// otherwise.
  void doInstallPlugin(const QAbstractButton* sender);

  // The start-up script.

  /// Compiles the script, without running it, and shows it as the script runner formats it. An error is shown
  /// and selected, unless the controller itself is the sender.
  void checkSyntax(const QObject* sender);

  // The version check.

  /// Looks for a newer version and tells the user the result.
  void doUpdate(const QObject* sender);
  /// Shows when the last successful check was; before the window is loaded there is nowhere to show it.
  void updateVersionLastChecked();
  /// Called when a check has just ended well.
  void versionCheckSuccessful();

 protected:
  void windowDidLoad() override;
  void windowDidBecomeKey() override;
  /// Hears Escape, which is Cancel.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  using Action = void (PreferencesController::*)(const QObject*);

  void findOutlets();
  void connectActions();
  void connectButton(const char* name, Action action);
  void connectButtonBox();
  void fitAndCenter();
  void chooseFolder(QLineEdit* field, const QString& title);
  /// The days that the interval pop-up stands for.
  int chosenInterval() const;

  OrvVersion& version_;
  QPointer<QLineEdit> defaultSaveFolderField_;
  QPointer<QLineEdit> defaultExportFolderField_;
  QPointer<QCheckBox> autoSaveCheckBox_;
  QPointer<QAbstractButton> installOsirixPluginButton_;
  QPointer<QComboBox> exportToPopUp_;
  QPointer<QStackedWidget> exportTabView_;
  QPointer<QLabel> osirixExplanationField_;
  QPointer<QPlainTextEdit> launchScriptField_;
  QPointer<QLabel> scriptErrorField_;
  QPointer<QCheckBox> autoCheckVersionCheckBox_;
  QPointer<QComboBox> checkVersionIntervalPopUp_;
  QPointer<QLabel> versionLastCheckedField_;
};
