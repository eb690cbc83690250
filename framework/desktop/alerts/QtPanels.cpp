// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/alerts/QtPanels.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>

#include "base/files/FileManager.h"
#include "platform/runloop/RunLoop.h"
#include "platform/text/Localization.h"

namespace velmora::desktop {

int QtPanels::runModal(platform::OpenPanel& panel) {
  const platform::RunLoop::ModalSession session(runLoop_);
  QFileDialog dialog(QApplication::activeWindow(), panel.title);
  dialog.setAcceptMode(QFileDialog::AcceptOpen);
  if (panel.canChooseDirectories && !panel.canChooseFiles) {
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    dialog.setOption(QFileDialog::ReadOnly, !panel.canCreateDirectories);
  } else {
    dialog.setFileMode(panel.allowsMultipleSelection ? QFileDialog::ExistingFiles
                                                     : QFileDialog::ExistingFile);
  }
  if (!panel.allowedFileTypes.isEmpty()) {
    QStringList patterns;
    for (const QString& type : panel.allowedFileTypes) patterns += QStringLiteral("*.") + type;
    dialog.setNameFilters(
        {platform::localizedString("Document", "Records") + QStringLiteral(" (%1)").arg(patterns.join(u' ')),
         platform::localizedString("Document", "All files") + QStringLiteral(" (*)")});
  }
  if (!panel.directoryURL.isEmpty()) dialog.setDirectoryUrl(panel.directoryURL);
  const int accepted = dialog.exec();
  panel.directoryURL = dialog.directoryUrl();
  if (accepted != QDialog::Accepted) return platform::PanelCancelButton;
  panel.urls = dialog.selectedUrls();
  // A panel for folders closes on the folder that was chosen: one whose name was typed, or that was marked in
  // the list, counts as gone into. Whoever goes by where the panel was would otherwise get the folder above.
  if (panel.canChooseDirectories && !panel.canChooseFiles) {
    panel.directoryURL = panel.urls.value(0, panel.directoryURL);
  }
  return platform::PanelOKButton;
}

int QtPanels::runModal(platform::SavePanel& panel) {
  const platform::RunLoop::ModalSession session(runLoop_);
  QFileDialog dialog(QApplication::activeWindow(), panel.title);
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setFileMode(QFileDialog::AnyFile);
  // Asked here, below, about the name as it will be: the dialog would ask about the name as typed.
  dialog.setOption(QFileDialog::DontConfirmOverwrite);
  if (!panel.prompt.isEmpty()) dialog.setLabelText(QFileDialog::Accept, panel.prompt);
  if (!panel.directoryURL.isEmpty()) dialog.setDirectoryUrl(panel.directoryURL);
  if (!panel.nameFieldStringValue.isEmpty()) dialog.selectFile(panel.nameFieldStringValue);

  while (dialog.exec() == QDialog::Accepted) {
    QString path = dialog.selectedUrls().value(0).toLocalFile();
    if (path.isEmpty()) continue;
    if (!panel.requiredFileType.isEmpty() && base::pathExtension(path) != panel.requiredFileType) {
      path = base::appendingPathExtension(path, panel.requiredFileType);
    }
    if (QFileInfo::exists(path)) {
      QMessageBox box(QMessageBox::Warning, panel.title, QString(), QMessageBox::NoButton, &dialog);
      box.setTextFormat(Qt::PlainText);
      box.setText(platform::formatted(
          platform::localizedString("Document", "'%@' already exists. Do you want to replace it?"),
          {QFileInfo(path).fileName()}));
      QPushButton* replace =
          box.addButton(platform::localizedString("Document", "Replace"), QMessageBox::DestructiveRole);
      QPushButton* cancel =
          box.addButton(platform::localizedString("OrvVersion", "Cancel"), QMessageBox::RejectRole);
      box.setDefaultButton(cancel);
      box.setEscapeButton(cancel);
      box.exec();
      if (box.clickedButton() != replace) continue;
    }
    panel.url = QUrl::fromLocalFile(path);
    panel.directoryURL = dialog.directoryUrl();
    return platform::PanelOKButton;
  }
  return platform::PanelCancelButton;
}

}  // namespace velmora::desktop
