// SPDX-License-Identifier: LGPL-3.0-or-later
#include <QFileInfo>
#include <QScopeGuard>
#include <exception>

#include "platform/controls/Alert.h"
#include "platform/documents/Document.h"
#include "platform/documents/DocumentController.h"
#include "base/log/Guard.h"
#include "platform/text/Localization.h"
#include "platform/controls/Panels.h"
#include "platform/Services.h"

namespace velmora::platform {

namespace {

/// What the call answers; what it throws is a failure too.
base::Result<> attempted(const std::function<base::Result<>()>& call) {
  try {
    return call();
  } catch (const std::exception& failure) {
    return base::Failure{QString::fromUtf8(failure.what())};
  } catch (...) {
    return base::Failure{QString()};
  }
}

}  // namespace

void Document::saveDocument(DidSave didSave) {
  if (fileURL_.isEmpty()) {
    runModalSavePanelForSaveOperation(SaveOperation::SaveAs, std::move(didSave));
  } else {
    saveToURL(fileURL_, fileType_, SaveOperation::Save, std::move(didSave));
  }
}

void Document::saveDocumentAs(DidSave didSave) {
  runModalSavePanelForSaveOperation(SaveOperation::SaveAs, std::move(didSave));
}

bool Document::prepareSavePanel(SavePanel&) { return true; }

void Document::runModalSavePanelForSaveOperation(SaveOperation operation, DidSave didSave) {
  SavePanel panel;
  panel.title = localizedString("Document", "Save");
  panel.prompt = localizedString("Document", "Save");
  const QUrl fileBefore = fileURL_;
  bool chosen = false;
  // A panel that could not be set up, for want of a folder that can be named, still lets the record be saved.
  if (!base::guarded("save panel", [&] { chosen = prepareSavePanel(panel); })) chosen = true;
  if (chosen) {
    panel.requiredFileType = fileTypeFromLastRunSavePanel();
    panel.nameFieldStringValue = QFileInfo(fileURL_.toLocalFile()).fileName();
    if (fileURL_.isEmpty()) panel.nameFieldStringValue = displayName();
    chosen = services_.panels.runModal(panel) == PanelOKButton;
  }
  setFileURL(fileBefore);
  if (!chosen) {
    if (didSave) didSave(this, false);
    return;
  }
  replacementConfirmed_ = true;
  const auto saved = qScopeGuard([this] { replacementConfirmed_ = false; });
  saveToURL(panel.url, fileTypeFromLastRunSavePanel(), operation, std::move(didSave));
}

base::Result<> Document::contentToKeep(const QString& typeName, QByteArray& data) {
  const base::Result<> result = attempted([&] {
    takeFromWindows();
    return dataOfType(typeName, data);
  });
  if (!result.ok()) data.clear();
  return result;
}

void Document::saveToURL(const QUrl& url, const QString& typeName, SaveOperation operation, DidSave didSave) {
  QByteArray data;
  base::Result<> result = contentToKeep(typeName, data);
  if (result.ok()) result = attempted([&] { return writeToURL(url, data, operation); });
  sinceLastSave_ = Whereabouts::OnlyHere;
  sinceLastSave_ = result.ok() ? Whereabouts::Kept : presentSaveError(url, data, result.error());
  if (result.ok() && operation != SaveOperation::SaveTo) {
    fileType_ = typeName;
    setFileURL(url);
    updateChangeCount(ChangeType::Cleared);
    replaceOtherDocumentsOf(url);
    if (services_.documentController) services_.documentController->noteNewRecentDocumentURL(url);
  }
  if (didSave) didSave(this, result.ok());
}

void Document::replaceOtherDocumentsOf(const QUrl& url) {
  // Two windows on one file would each overwrite what the other saves.
  if (!services_.documentController) return;
  for (Document* other : services_.documentController->documentsForURL(url)) {
    if (other != this) other->fileWasReplaced();
  }
}

void Document::documentDidSave(Document*, bool) {}

base::Result<> Document::writeToURL(const QUrl& url, const QByteArray& data, SaveOperation) {
  return services_.fileManager.writeDurably(url.toLocalFile(), data);
}

Whereabouts Document::presentSaveError(const QUrl& url, const QByteArray&, const QString& reason) {
  services_.alerts.runModal(
      {formatted(localizedString("Document", "The document could not be saved as '%@'."),
                 {QFileInfo(url.toLocalFile()).fileName()}),
       localizedString("OrvVersion", "OK"), QString(), QString(), reason});
  return Whereabouts::OnlyHere;
}

}  // namespace velmora::platform
