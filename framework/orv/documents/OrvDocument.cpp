// SPDX-License-Identifier: LGPL-3.0-or-later
#include "orv/documents/OrvDocument.h"

#include <QFileInfo>
#include <QJsonDocument>
#include <QMainWindow>

#include "base/log/Log.h"
#include "orv/documents/OrvChecksum.h"
#include "platform/Services.h"
#include "platform/bundles/Bundle.h"
#include "platform/controls/Alert.h"
#include "platform/documents/WindowController.h"
#include "platform/printing/Printing.h"
#include "platform/text/Localization.h"

using namespace velmora;

using velmora::base::Failure;
using velmora::base::Result;
using velmora::platform::formatted;
using velmora::platform::localizedString;

namespace {

const QString FormatKey = QStringLiteral("format");
const QString VersionKey = QStringLiteral("version");
const QString ApplicationKey = QStringLiteral("application");
const QString ChecksumKey = QStringLiteral("checksum");
const QString ContentKey = QStringLiteral("content");

}  // namespace

OrvDocument::OrvDocument(platform::Services& services)
    : Document(services),
      privateFolder_(services.fileManager, services.mainBundle.bundleIdentifier()),
      keptCopies_(services.fileManager, services.runLoop, services.mainBundle.bundleIdentifier()),
      writtenFolders_(services.fileManager, services.mainBundle.bundleIdentifier()),
      recordFile_(services.fileManager, keptCopies_, writtenFolders_),
      rescue_(services.alerts, services.panels, keptCopies_, writtenFolders_) {}

Result<> OrvDocument::readFromURL(const QUrl& url) {
  Result<> read = Document::readFromURL(url);
  if (read.ok() && privateFolder_.contains(url.toLocalFile())) {
    // A kept copy. Saved in its place it would stay among the copies, unknown to the look-up, and go with
    // them one day. So it is only where the content comes from.
    setFileURL(QUrl());
    recordFile_.forgetContents();
    updateChangeCount(platform::ChangeType::Done);
  }
  return read;
}

Result<> OrvDocument::readFromData(const QByteArray& data, const QString&) {
  if (data.isEmpty()) return Failure{localizedString("OrvDocument", "The file is empty.")};
  QJsonParseError parseError;
  const QJsonDocument json = QJsonDocument::fromJson(data, &parseError);
  if (json.isNull()) {
    return Failure{formatted(localizedString("OrvDocument", "The file is damaged (%@ at byte %ld)."),
                             {parseError.errorString(), QString::number(parseError.offset)})};
  }
  const QJsonObject file = json.object();
  const QString format = file.value(FormatKey).toString();
  if (format != services().mainBundle.bundleIdentifier()) {
    return Failure{localizedString("OrvDocument", "The file is not a record of this application.")};
  }
  const int version = file.value(VersionKey).toInt(0);
  if (version < 1 || !file.value(ContentKey).isObject()) {
    return Failure{localizedString("OrvDocument", "The file is damaged (its header is incomplete).")};
  }
  if (version > contentVersion()) {
    return Failure{formatted(
        localizedString("OrvDocument", "The file was written by a newer version of the application (%@)."),
        {file.value(ApplicationKey).toString()})};
  }
  if (!orv::checksumHolds(data)) {
    return Failure{localizedString("OrvDocument", "The file is damaged (its checksum does not match).")};
  }
  return contentFromJson(file.value(ContentKey).toObject(), version);
}

Result<QByteArray> OrvDocument::dataOfType(const QString&) {
  const platform::Bundle& bundle = services().mainBundle;
  const QJsonObject file{
      {FormatKey, bundle.bundleIdentifier()},
      {VersionKey, contentVersion()},
      {ApplicationKey, QStringLiteral("%1 %2").arg(
                           bundle.stringForInfoDictionaryKey(QStringLiteral("CFBundleName")),
                           bundle.stringForInfoDictionaryKey(QStringLiteral("CFBundleShortVersionString")))},
      {ChecksumKey, QString::fromLatin1(orv::emptyChecksum())},
      {ContentKey, contentToJson()},
  };
  return orv::withChecksum(QJsonDocument(file).toJson(QJsonDocument::Indented));
}

Result<> OrvDocument::writeToURL(const QUrl& url, const QByteArray& data, platform::SaveOperation operation) {
  const QString path = url.toLocalFile();
  const bool isOwn = !fileURL().isEmpty() && fileURL().toLocalFile() == path;
  const auto found = recordFile_.write({path, isOwn, replacementConfirmed()}, data);
  if (!found.ok()) return found.failure();
  if (operation != platform::SaveOperation::SaveTo) recordFile_.setKnownContents(data);
  if (found->removedByAnother) tellAboutRemovalByAnother(path);
  for (const QString& copy : found->copiesOfAnother) tellAboutAnother(path, copy);
  return {};
}

void OrvDocument::tellAboutRemovalByAnother(const QString& path) {
  services().alerts.runModal(
      {formatted(localizedString("OrvDocument", "The record '%@' had been removed by somebody else."),
                 {QFileInfo(path).fileName()}),
       localizedString("OrvVersion", "OK"), QString(), QString(),
       localizedString("OrvDocument", "It has been saved again.")});
}

void OrvDocument::tellAboutAnother(const QString& path, const QString& copy) {
  services().alerts.runModal(
      {formatted(localizedString("OrvDocument", "Another version of the record '%@' was in its place."),
                 {QFileInfo(path).fileName()}),
       localizedString("OrvVersion", "OK"), QString(), QString(),
       formatted(localizedString(
                     "OrvDocument",
                     "Yours has been saved. The other one, which somebody else may have written, was kept "
                     "as '%@'."),
                 {copy})});
}

platform::SaveOutcome OrvDocument::presentSaveError(const QUrl& url, const QByteArray& data,
                                                    const QString& reason) {
  return rescue_.keepUnsaved(QFileInfo(url.toLocalFile()).fileName(), rescuable(data), reason);
}

OrvRescue::Content OrvDocument::rescuable(const QByteArray& data) const {
  return {data, displayName(), fileTypeFromLastRunSavePanel()};
}

OrvDocument::Rescue OrvDocument::keepRescueCopy() {
  const Result<QByteArray> content = contentToKeep(fileTypeFromLastRunSavePanel());
  if (content.ok()) return rescue_.keepDropped(rescuable(*content));
  services().alerts.runModal(
      {formatted(localizedString("OrvDocument", "Unsaved changes to '%@' could not be kept."),
                 {displayName()}),
       localizedString("OrvVersion", "OK"), QString(), QString(), content.error()});
  return {platform::SaveOutcome::Unsaved, {}};
}

void OrvDocument::keepUnsavedChanges() {
  if (!isDocumentEdited()) return;
  const Result<QByteArray> content = contentToKeep(fileTypeFromLastRunSavePanel());
  if (content.ok()) return rescue_.keepQuietly(rescuable(*content));
  base::logLine(QStringLiteral("Unsaved changes were not kept: ") + content.error());
}

void OrvDocument::fileWasReplaced() {
  const QString name = displayName();
  const Rescue rescue = isDocumentEdited() ? keepRescueCopy() : Rescue{platform::SaveOutcome::Kept, {}};
  if (rescue.outcome == platform::SaveOutcome::Unsaved) return setFileURL(QUrl());
  close();
  tellAboutKeptCopy(name, rescue.copy);
}

QWidget* OrvDocument::printableView() const {
  QWidget* whole = window();
  const auto* mainWindow = dynamic_cast<QMainWindow*>(whole);
  return mainWindow && mainWindow->centralWidget() ? mainWindow->centralWidget() : whole;
}

void OrvDocument::printDocument(const QVariantMap& settings, bool showPrintPanel, DidPrint didPrint) {
  const base::Result<bool> printed =
      services().printer.printView(printableView(), services().sharedPrintInfo, settings, showPrintPanel);
  if (!printed.ok()) {
    services().alerts.runModal({localizedString("OrvDocument", "The document could not be printed."),
                                localizedString("OrvVersion", "OK"), QString(), QString(), printed.error()});
  }
  if (didPrint) didPrint(this, printed.valueOr(false));
}
