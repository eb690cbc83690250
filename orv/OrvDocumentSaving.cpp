// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Writing the data file, and what happens to what stood there and to what could not be written.
#include <QCryptographicHash>
#include <QFileInfo>

#include "orv/OrvDocument.h"
#include "platform/Alert.h"
#include "platform/Localization.h"
#include "platform/Log.h"
#include "platform/Panels.h"
#include "platform/Services.h"

using platform::FileResult;
using platform::formatted;
using platform::localizedString;

namespace {

QByteArray fingerprint(const QByteArray& contents) {
  return QCryptographicHash::hash(contents, QCryptographicHash::Sha256);
}

QString nameOf(const QString& path) { return QFileInfo(path).fileName(); }

}  // namespace

void OrvDocument::didReadFile(const QByteArray& data) { knownContents_ = fingerprint(data); }

FileResult OrvDocument::writeToURL(const QUrl& url, const QByteArray& data,
                                   platform::SaveOperation operation) {
  const QString path = url.toLocalFile();
  const bool ownFile = !fileURL().isEmpty() && fileURL().toLocalFile() == path;
  const bool removedByAnother =
      ownFile && !knownContents_.isEmpty() && !services().fileManager.fileExistsAtPath(path);
  QString copyOfAnother;
  FileResult result = keepWhatStandsAt(path, &copyOfAnother);
  if (result.ok()) {
    attemptedContents_ = fingerprint(data);
    result = Document::writeToURL(url, data, operation);
  }
  if (!result.ok()) return result;

  if (operation != platform::SaveOperation::SaveTo) knownContents_ = attemptedContents_;
  if (removedByAnother || !copyOfAnother.isEmpty()) tellAboutAnother(path, copyOfAnother);
  return result;
}

FileResult OrvDocument::keepWhatStandsAt(const QString& path, QString* copyOfAnother) {
  // Nothing to keep of a folder; the write itself says why it cannot be.
  if (!services().fileManager.fileExistsAtPath(path) || services().fileManager.isDirectory(path)) {
    return FileResult::success();
  }
  QByteArray standing;
  const FileResult read = services().fileManager.readFile(path, standing);
  QString copy;
  if (read.ok()) copy = keptCopies_.keepEarlierVersion(path, standing);
  const QByteArray found = fingerprint(standing);
  const bool ownFile = !fileURL().isEmpty() && fileURL().toLocalFile() == path;
  const bool own = read.ok() && ((ownFile && found == knownContents_) || found == attemptedContents_);
  if (own || replacementConfirmed()) {
    // The user's own earlier version, or one that the user chose to replace: worth a copy, but not worth a
    // failed save.
    if (copy.isEmpty()) platform::logLine(QStringLiteral("No earlier version was kept of %1").arg(path));
    return FileResult::success();
  }
  if (copy.isEmpty()) {
    return FileResult::failure(localizedString(
        "OrvDocument", "Another record stands there under this name, and no copy of it could be kept."));
  }
  *copyOfAnother = copy;
  return FileResult::success();
}

void OrvDocument::tellAboutAnother(const QString& path, const QString& copy) {
  if (copy.isEmpty()) {
    services().alerts.runModal(
        {formatted(localizedString("OrvDocument", "The record '%@' had been removed by somebody else."),
                   {nameOf(path)}),
         localizedString("OrvVersion", "OK"), QString(), QString(),
         localizedString("OrvDocument", "It has been saved again.")});
    return;
  }
  services().alerts.runModal(
      {formatted(localizedString("OrvDocument", "Another version of the record '%@' was in its place."),
                 {nameOf(path)}),
       localizedString("OrvVersion", "OK"), QString(), QString(),
       formatted(localizedString(
                     "OrvDocument",
                     "Yours has been saved. The other one, which somebody else may have written, was kept "
                     "as '%@'."),
                 {copy})});
}

QString OrvDocument::fileNameForCopies() const {
  return platform::appendingPathExtension(displayName(), fileTypeFromLastRunSavePanel());
}

QString OrvDocument::keepRescueCopy() {
  QByteArray data;
  if (!dataOfType(fileTypeFromLastRunSavePanel(), data).ok()) return {};
  const QString copy = keptCopies_.keepRescueCopy(fileNameForCopies(), data);
  if (!copy.isEmpty()) {
    platform::logLine(QStringLiteral("Unsaved changes were kept as %1").arg(copy));
    return copy;
  }
  const int answer = services().alerts.runModal(
      {formatted(localizedString("OrvDocument", "Unsaved changes to '%@' are about to be dropped."),
                 {displayName()}),
       localizedString("OrvDocument", "Save Elsewhere..."), localizedString("OrvDocument", "Don't Save"),
       QString(), localizedString("OrvDocument", "No copy of them could be kept.")});
  if (answer == platform::AlertDefaultReturn) saveElsewhere(data);
  return {};
}

void OrvDocument::keepUnsavedChanges() {
  QByteArray data;
  if (isDocumentEdited() && dataOfType(fileTypeFromLastRunSavePanel(), data).ok()) {
    keptCopies_.keepRescueCopy(fileNameForCopies(), data);
  }
}

void OrvDocument::fileWasReplaced() {
  if (isDocumentEdited()) keepRescueCopy();
  close();
}

void OrvDocument::presentSaveError(const QUrl& url, const QByteArray& data, const QString& reason) {
  const QString name = nameOf(url.toLocalFile());
  const QString message =
      formatted(localizedString("OrvDocument", "The record '%@' could not be saved."), {name});
  const QString copy = keptCopies_.keepRescueCopy(name, data);
  if (!copy.isEmpty()) {
    services().alerts.runModal(
        {message, localizedString("OrvVersion", "OK"), QString(), QString(),
         reason + QStringLiteral("\n\n") +
             formatted(localizedString("OrvDocument", "A copy was kept as '%@'."), {copy})});
    return;
  }
  // Neither here nor there: the record exists in memory only, and what comes next may be its closing.
  const int answer = services().alerts.runModal(
      {message, localizedString("OrvDocument", "Save Elsewhere..."),
       localizedString("OrvDocument", "Don't Save"), QString(),
       reason + QStringLiteral("\n\n") + localizedString("OrvDocument", "No copy could be kept either.")});
  if (answer == platform::AlertDefaultReturn) saveElsewhere(data);
}

void OrvDocument::saveElsewhere(const QByteArray& data) {
  for (;;) {
    platform::SavePanel panel;
    panel.title = localizedString("OrvDocument", "Save Elsewhere");
    panel.nameFieldStringValue = displayName();
    panel.requiredFileType = fileTypeFromLastRunSavePanel();
    if (services().panels.runModal(panel) != platform::PanelOKButton) return;
    const FileResult written = services().fileManager.writeDurably(panel.url.toLocalFile(), data);
    if (written.ok()) return;
    services().alerts.runModal(
        {formatted(localizedString("OrvDocument", "The record '%@' could not be saved."),
                   {panel.url.fileName()}),
         localizedString("OrvVersion", "OK"), QString(), QString(), written.error});
  }
}
