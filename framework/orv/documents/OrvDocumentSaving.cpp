// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Writing the data file, and what happens to what stood there and to what could not be written.
#include <QCryptographicHash>
#include <QFileInfo>
#include <utility>

#include "orv/documents/OrvDocument.h"
#include "platform/controls/Alert.h"
#include "platform/text/Localization.h"
#include "base/log/Log.h"
#include "platform/controls/Panels.h"
#include "platform/Services.h"

using namespace velmora;

using velmora::base::Failure;
using velmora::base::Result;
using velmora::platform::formatted;
using velmora::platform::localizedString;
using velmora::platform::Whereabouts;

namespace {

QByteArray fingerprint(const QByteArray& contents) {
  return QCryptographicHash::hash(contents, QCryptographicHash::Sha256);
}

QString nameOf(const QString& path) { return QFileInfo(path).fileName(); }

}  // namespace

void OrvDocument::didReadFile(const QByteArray& data) { knownContents_ = fingerprint(data); }

Result<> OrvDocument::readFromURL(const QUrl& url) {
  const Result<> read = Document::readFromURL(url);
  if (read.ok() && privateFolder_.contains(url.toLocalFile())) {
    // A kept copy. Saved in its place it would stay among the copies, unknown to the look-up, and go with
    // them one day. So it is only where the content comes from.
    setFileURL(QUrl());
    knownContents_.clear();
    updateChangeCount(platform::ChangeType::Done);
  }
  return read;
}

Result<> OrvDocument::writeToURL(const QUrl& url, const QByteArray& data, platform::SaveOperation operation) {
  const QString path = url.toLocalFile();
  const bool removedByAnother =
      isOwnFile(path) && !knownContents_.isEmpty() && !services().fileManager.fileExistsAtPath(path);
  Replaced replaced;
  Result<> result = keepWhatStandsAt(path, replaced);
  if (result.ok()) {
    attemptedContents_ = fingerprint(data);
    // Somebody else may save while the new file is being written, which can take long on a network.
    result = writeFile(path, data, [&] { return keepWhatStandsAt(path, replaced); });
  }
  if (!result.ok()) return result;

  if (operation != platform::SaveOperation::SaveTo) knownContents_ = attemptedContents_;
  if (removedByAnother) tellAboutRemovalByAnother(path);
  for (const QString& copy : std::as_const(replaced.copiesOfAnother)) tellAboutAnother(path, copy);
  return result;
}

Result<> OrvDocument::writeFile(const QString& path, const QByteArray& contents,
                                const base::FileManager::FinalCheck& lastLook) {
  writtenFolders_.add(path);
  return services().fileManager.writeDurably(path, contents, lastLook);
}

bool OrvDocument::isOwnFile(const QString& path) const {
  return !fileURL().isEmpty() && fileURL().toLocalFile() == path;
}

Result<> OrvDocument::keepWhatStandsAt(const QString& path, Replaced& replaced) {
  const bool firstLook = !std::exchange(replaced.looked, true);
  // Nothing to keep of a folder; the write itself says why it cannot be.
  if (!services().fileManager.fileExistsAtPath(path) || services().fileManager.isDirectory(path)) {
    return {};
  }
  const Result<QByteArray> read = services().fileManager.readFile(path);
  const QByteArray found = read.ok() ? fingerprint(*read) : QByteArray("unreadable");
  if (std::exchange(replaced.seen, found) == found) return {};

  const bool own = read.ok() && ((isOwnFile(path) && found == knownContents_) || found == attemptedContents_);
  const auto origin = own ? OrvKeptCopies::Origin::Own : OrvKeptCopies::Origin::Another;
  QString copy;
  if (read.ok()) copy = keptCopies_.keepEarlierVersion(path, *read, origin);
  if (own || (firstLook && replacementConfirmed())) {
    // The user's own earlier version, or one that the user chose to replace: worth a copy, but not worth a
    // failed save.
    if (copy.isEmpty()) {
      // Never the name: that is the patient's identifier, and logs are read by others.
      base::logLine(
          QStringLiteral("No earlier version was kept of a record in %1").arg(QFileInfo(path).path()));
    }
    return {};
  }
  if (copy.isEmpty()) {
    return Failure{localizedString(
        "OrvDocument", "Another record stands there under this name, and no copy of it could be kept.")};
  }
  replaced.copiesOfAnother.append(copy);
  return {};
}

void OrvDocument::tellAboutRemovalByAnother(const QString& path) {
  services().alerts.runModal(
      {formatted(localizedString("OrvDocument", "The record '%@' had been removed by somebody else."),
                 {nameOf(path)}),
       localizedString("OrvVersion", "OK"), QString(), QString(),
       localizedString("OrvDocument", "It has been saved again.")});
}

void OrvDocument::tellAboutAnother(const QString& path, const QString& copy) {
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
  return base::appendingPathExtension(displayName(), fileTypeFromLastRunSavePanel());
}

OrvDocument::Rescue OrvDocument::keepRescueCopy() {
  QByteArray data;
  const Result<> content = contentToKeep(fileTypeFromLastRunSavePanel(), data);
  if (!content.ok()) {
    services().alerts.runModal(
        {formatted(localizedString("OrvDocument", "Unsaved changes to '%@' could not be kept."),
                   {displayName()}),
         localizedString("OrvVersion", "OK"), QString(), QString(), content.error()});
    return {Whereabouts::OnlyHere, {}};
  }
  const QString copy = keptCopies_.keepRescueCopy(fileNameForCopies(), data);
  if (!copy.isEmpty()) {
    base::logLine(QStringLiteral("Unsaved changes were kept in %1").arg(QFileInfo(copy).path()));
    return {Whereabouts::Kept, copy};
  }
  const QString message = formatted(
      localizedString("OrvDocument", "Unsaved changes to '%@' are about to be dropped."), {displayName()});
  return {askWhereToSave(data, message, localizedString("OrvDocument", "No copy of them could be kept.")),
          {}};
}

void OrvDocument::keepUnsavedChanges() {
  QByteArray data;
  if (!isDocumentEdited()) return;
  const Result<> content = contentToKeep(fileTypeFromLastRunSavePanel(), data);
  if (!content.ok()) {
    base::logLine(QStringLiteral("Unsaved changes were not kept: ") + content.error());
    return;
  }
  keptCopies_.keepRescueCopy(fileNameForCopies(), data);
}

void OrvDocument::fileWasReplaced() {
  const QString name = displayName();
  const Rescue rescue = isDocumentEdited() ? keepRescueCopy() : Rescue{Whereabouts::Kept, {}};
  if (rescue.content == Whereabouts::OnlyHere) return setFileURL(QUrl());
  close();
  tellAboutKeptCopy(name, rescue.copy);
}

void OrvDocument::tellAboutKeptCopy(const QString& name, const QString& copy) {
  if (copy.isEmpty()) return;
  services().alerts.runModal(
      {formatted(localizedString("OrvDocument", "'%@' was closed with unsaved changes"), {name}),
       localizedString("OrvVersion", "OK"), QString(), QString(),
       formatted(localizedString("OrvDocument", "A copy with the changes was kept as '%@'."), {copy})});
}

Whereabouts OrvDocument::presentSaveError(const QUrl& url, const QByteArray& data, const QString& reason) {
  const QString name = nameOf(url.toLocalFile());
  const QString message =
      formatted(localizedString("OrvDocument", "The record '%@' could not be saved."), {name});
  const QString ok = localizedString("OrvVersion", "OK");
  if (data.isEmpty()) {
    // The content itself could not be had: nothing can be put anywhere.
    services().alerts.runModal({message, ok, QString(), QString(), reason});
    return Whereabouts::OnlyHere;
  }
  const QString copy = keptCopies_.keepRescueCopy(name, data);
  if (!copy.isEmpty()) {
    services().alerts.runModal(
        {message, ok, QString(), QString(),
         reason + QStringLiteral("\n\n") +
             formatted(localizedString("OrvDocument", "A copy was kept as '%@'."), {copy})});
    return Whereabouts::Kept;
  }
  // Neither here nor there: the record exists in memory only, and what comes next may be its closing.
  return askWhereToSave(
      data, message,
      reason + QStringLiteral("\n\n") + localizedString("OrvDocument", "No copy could be kept either."));
}

Whereabouts OrvDocument::askWhereToSave(const QByteArray& data, const QString& message,
                                        const QString& information) {
  const int answer = services().alerts.runModal({message, localizedString("OrvDocument", "Save Elsewhere..."),
                                                 localizedString("OrvDocument", "Don't Save"),
                                                 localizedString("OrvVersion", "Cancel"), information});
  if (answer == platform::AlertAlternateReturn) return Whereabouts::GivenUp;
  const bool saved = answer == platform::AlertDefaultReturn && saveElsewhere(data);
  return saved ? Whereabouts::Kept : Whereabouts::OnlyHere;
}

bool OrvDocument::saveElsewhere(const QByteArray& data) {
  for (;;) {
    platform::SavePanel panel;
    panel.title = localizedString("OrvDocument", "Save Elsewhere");
    panel.nameFieldStringValue = displayName();
    panel.requiredFileType = fileTypeFromLastRunSavePanel();
    if (services().panels.runModal(panel) != platform::PanelOKButton) return false;
    const Result<> written = writeFile(panel.url.toLocalFile(), data);
    if (written.ok()) return true;
    services().alerts.runModal(
        {formatted(localizedString("OrvDocument", "The record '%@' could not be saved."),
                   {panel.url.fileName()}),
         localizedString("OrvVersion", "OK"), QString(), QString(), written.error()});
  }
}
