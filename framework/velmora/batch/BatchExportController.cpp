// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/batch/BatchExportController.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QScopeGuard>
#include <tuple>

#include "base/files/FileManager.h"
#include "base/log/Guard.h"
#include "platform/Services.h"
#include "platform/controls/Alert.h"
#include "platform/documents/DocumentController.h"
#include "platform/notifications/NotificationCenter.h"
#include "platform/runloop/RunLoop.h"
#include "platform/settings/UserDefaults.h"
#include "platform/text/Localization.h"
#include "velmora/batch/RecentFiles.h"
#include "velmora/resources/Notifications.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;

namespace settings = velmora::settings;
using velmora::platform::localizedString;

namespace {
/// A text, so that the default differs in kind from what is stored: both are read as an integer.
const QString DefaultDays = QStringLiteral("7");
const QString ChartExtension = QStringLiteral("JPG");
}  // namespace

BatchExportController::BatchExportController(platform::Services& services)
    : WindowController(services, QStringLiteral("BatchExport")),
      dayFormatter_(QRegularExpression(QStringLiteral("-?[0-9]+"))),
      progress_(services) {
  services.defaults.registerDefaults(
      {{settings::BatchExportDays, DefaultDays}, {settings::AutoDelete, false}});
}

BatchExportController::~BatchExportController() {
  if (howManyDaysField_) howManyDaysField_->setValidator(nullptr);
}

void BatchExportController::showWindow(const QObject* sender) { showWindowOutsideAlerts(sender); }

void BatchExportController::windowDidLoad() {
  howManyDaysField_ = outlet<QLineEdit>(QStringLiteral("howManyDaysField"));
  eraseOldFilesCheckBox_ = outlet<QCheckBox>(QStringLiteral("eraseOldFilesCheckBox"));
  destinationField_ = outlet<QLabel>(QStringLiteral("destinationField"));

  const platform::UserDefaults& defaults = services().defaults;
  if (howManyDaysField_) {
    howManyDaysField_->setValidator(&dayFormatter_);
    howManyDaysField_->setText(QString::number(defaults.integerForKey(settings::BatchExportDays)));
  }
  if (eraseOldFilesCheckBox_) eraseOldFilesCheckBox_->setChecked(defaults.boolForKey(settings::AutoDelete));
  connectButtonBox();
  showDestination();
  centerWindow();
}

void BatchExportController::connectButtonBox() {
  const auto cancel = [this] { base::guarded("button", [this] { doCancel(this); }); };
  // Escape and the close box.
  if (auto* dialog = dynamic_cast<QDialog*>(window())) connect(dialog, &QDialog::rejected, this, cancel);
  auto* box = outlet<QDialogButtonBox>(QStringLiteral("buttonBox"));
  if (!box) return;
  connect(box, &QDialogButtonBox::accepted, this,
          [this, box] { base::guarded("button", [&] { doOK(box); }); });
  connect(box, &QDialogButtonBox::rejected, this, cancel);
  if (QPushButton* button = box->button(QDialogButtonBox::Cancel))
    button->setText(localizedString("OrvVersion", "Cancel"));
  QPushButton* ok = box->button(QDialogButtonBox::Ok);
  if (!ok) return;
  ok->setText(localizedString("BatchExportController", "Export"));
  ok->setDefault(true);
  if (!howManyDaysField_) return;
  connect(howManyDaysField_, &QLineEdit::textChanged, ok, [this, ok] {
    base::guarded("days", [&] { ok->setEnabled(howManyDaysField_->hasAcceptableInput()); });
  });
}

void BatchExportController::windowDidBecomeKey() {
  const bool toOsirix = services().defaults.boolForKey(settings::ExportToOsiriX);
  if (eraseOldFilesCheckBox_) eraseOldFilesCheckBox_->setEnabled(!toOsirix);
  showDestination();
}

void BatchExportController::showDestination() {
  if (!destinationField_) return;
  const QString before = destinationField_->text();
  destinationField_->setText(destination());
  // A text of more lines needs a higher window.
  if (destinationField_->text() != before) window()->adjustSize();
}

QString BatchExportController::destination() const {
  if (services().defaults.boolForKey(settings::ExportToOsiriX))
    return localizedString("BatchExportController", "The charts are sent to OsiriX.");
  // A long path may be broken after each of its folders.
  QString folder = base::abbreviatingWithTildeInPath(exportFolder());
  folder.replace(QLatin1Char('/'), QStringLiteral("/\u200b"));
  return platform::formatted(
      localizedString(
          "BatchExportController",
          "The charts go to the folder '%@'. Erasing removes every JPEG picture in it, whatever program "
          "made it."),
      {folder});
}

void BatchExportController::doOK(const QObject* sender) {
  doCancel(sender);
  services().defaults.setInteger(howManyDays(), settings::BatchExportDays);
  services().defaults.setObject(eraseOldFilesCheckBox_ && eraseOldFilesCheckBox_->isChecked(),
                                settings::AutoDelete);
  doBatchExport();
}

void BatchExportController::doCancel(const QObject*) { close(); }

void BatchExportController::doBatchExport() {
  const platform::UserDefaults& defaults = services().defaults;
  if (eraseOldFilesCheckBox_ && eraseOldFilesCheckBox_->isEnabled()) {
    if (!services().fileManager.fileExistsAtPath(exportFolder())) {
      services().alerts.runModal(
          {localizedString("BatchExportController", "The export folder is not available"),
           localizedString("OrvVersion", "OK"), QString(), QString(),
           localizedString("BatchExportController",
                           "You can select a new export folder by choosing the Preferences menu item.")});
      return;
    }
    if (eraseOldFilesCheckBox_->isChecked()) doErasePreviouslyExportedFiles();
  }
  const QString saveFolder = base::expandingTildeInPath(defaults.stringForKey(settings::SaveDirectory));
  exportFiles(velmora::recentFiles(services().fileManager, saveFolder,
                                   defaults.stringForKey(settings::DataFileExtension),
                                   services().runLoop.now(), howManyDays()));
}

void BatchExportController::exportFiles(const QStringList& paths) {
  if (paths.isEmpty()) return;
  // However long it takes: to everything that waits for its time this is one event.
  platform::RunLoop::ModalSession session(services().runLoop);
  progress_.begin(paths.size());
  const auto end = qScopeGuard([this] { progress_.end(); });
  for (qsizetype i = 0; i < paths.size(); ++i) {
    progress_.showFile(i, paths.at(i));
    session.processEvents();
    if (progress_.isStopped() || applicationIsEnding()) return;
    // What goes wrong with one record must not keep the others from being exported.
    base::guarded("batch export", [&] {
      services().notificationCenter.postNotificationName(velmora::notifications::BatchOpen, paths.at(i));
    });
  }
}

bool BatchExportController::applicationIsEnding() const {
  return services().documentController && services().documentController->isTerminating();
}

void BatchExportController::doErasePreviouslyExportedFiles() {
  base::FileManager& files = services().fileManager;
  const QString folder = exportFolder();
  if (!files.fileExistsAtPath(folder) || !files.isDirectory(folder)) return;
  for (const QString& name : files.contentsOfDirectoryAtPath(folder)) {
    const QString path = folder + QLatin1Char('/') + name;
    if (!files.fileExistsAtPath(path) || files.isDirectory(path)) continue;
    if (base::pathExtension(name).toUpper() == ChartExtension) std::ignore = files.removeItem(path);
  }
}

QString BatchExportController::exportFolder() const {
  return base::expandingTildeInPath(services().defaults.stringForKey(settings::ExportDirectory));
}

qint64 BatchExportController::howManyDays() const {
  return howManyDaysField_ ? velmora::integerValue(howManyDaysField_->text()) : 0;
}
