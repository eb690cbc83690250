// SPDX-License-Identifier: LGPL-3.0-or-later
#include "platform/documents/Document.h"

#include <QFileInfo>
#include <QScopeGuard>
#include <exception>

#include "base/log/Guard.h"
#include "platform/Services.h"
#include "platform/controls/Alert.h"
#include "platform/controls/Panels.h"
#include "platform/controls/TextFieldEditing.h"
#include "platform/documents/DocumentController.h"
#include "platform/documents/WindowController.h"
#include "platform/runloop/RunLoop.h"
#include "platform/text/Localization.h"

namespace velmora::platform {

namespace {

/// What the call gives; an exception that it throws is a failure.
template <typename Call>
auto attempted(Call call) -> decltype(call()) {
  try {
    return call();
  } catch (const std::exception& failure) {
    return base::Failure{QString::fromUtf8(failure.what())};
  } catch (...) {
    return base::Failure{QString()};
  }
}

}  // namespace

Document::Document(Services& services) : services_(services) {}
Document::~Document() = default;

void Document::setFileURL(const QUrl& url) {
  fileURL_ = url;
  synchronizeWindowTitle();
}

QString Document::displayName() const {
  if (!fileURL_.isEmpty()) return base::deletingPathExtension(QFileInfo(fileURL_.toLocalFile()).fileName());
  const QString untitled = localizedString("Document", "Untitled");
  return untitledNumber_ > 1 ? QStringLiteral("%1 %2").arg(untitled).arg(untitledNumber_) : untitled;
}

base::Result<> Document::readFromURL(const QUrl& url) {
  const QString path = url.toLocalFile();
  const base::Result<QByteArray> data = services_.fileManager.readFile(path, largestFile());
  if (!data.ok()) return data.failure();
  const base::Result<> result = attempted([&] { return readFromData(*data, base::pathExtension(path)); });
  if (!result.ok()) return result;
  fileType_ = base::pathExtension(path);
  setFileURL(url);
  didReadFile(*data);
  updateChangeCount(ChangeType::Cleared);
  return result;
}

void Document::updateChangeCount(ChangeType change) {
  switch (change) {
    case ChangeType::Done:
      ++changeCount_;
      break;
    case ChangeType::Undone:
      --changeCount_;
      break;
    case ChangeType::Cleared:
      changeCount_ = 0;
      break;
  }
  synchronizeWindowTitle();
}

void Document::synchronizeWindowTitle() {
  for (const auto& controller : windowControllers_) {
    if (!controller->isWindowLoaded()) continue;
    controller->window()->setWindowTitle(displayName() + QStringLiteral("[*]"));
    controller->window()->setWindowModified(isDocumentEdited());
  }
}

void Document::makeWindowControllers() {
  if (windowNibName().isEmpty()) return;
  auto controller = std::make_unique<WindowController>(services_, windowNibName());
  controller->setDocument(this);
  windowControllers_.push_back(std::move(controller));
}

void Document::windowControllerDidLoadNib(WindowController& windowController) {
  synchronizeWindowTitle();
  if (services_.documentController) services_.documentController->documentWindowDidLoad(windowController);
}

void Document::showWindows() {
  for (const auto& controller : windowControllers_) controller->showWindow(this);
  if (services_.documentController) services_.documentController->noteDocumentIsFront(this);
}

QWidget* Document::windowForSheet() const {
  if (windowControllers_.empty() || !windowControllers_.front()->isWindowLoaded()) return nullptr;
  return windowControllers_.front()->window();
}

QWidget* Document::window() const {
  return windowControllers_.empty() ? nullptr : windowControllers_.front()->window();
}

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

base::Result<QByteArray> Document::contentToKeep(const QString& typeName) {
  return attempted([&] {
    takeFromWindows();
    return dataOfType(typeName);
  });
}

void Document::saveToURL(const QUrl& url, const QString& typeName, SaveOperation operation, DidSave didSave) {
  const base::Result<QByteArray> content = contentToKeep(typeName);
  const QByteArray data = content.valueOr({});
  base::Result<> result;
  if (content.ok()) {
    result = attempted([&] { return writeToURL(url, data, operation); });
  } else {
    result = content.failure();
  }
  lastSave_ = SaveOutcome::Unsaved;
  lastSave_ = result.ok() ? SaveOutcome::Kept : presentSaveError(url, data, result.error());
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

SaveOutcome Document::presentSaveError(const QUrl& url, const QByteArray&, const QString& reason) {
  services_.alerts.runModal(
      {formatted(localizedString("Document", "The document could not be saved as '%@'."),
                 {QFileInfo(url.toLocalFile()).fileName()}),
       localizedString("OrvVersion", "OK"), QString(), QString(), reason});
  return SaveOutcome::Unsaved;
}

void Document::canCloseDocument(ShouldClose shouldClose) {
  if (!isDocumentEdited()) {
    shouldClose(this, true);
    return;
  }
  const int answer = services_.alerts.runModal(
      {formatted(localizedString("Document", "Do you want to save the changes to '%@'?"), {displayName()}),
       localizedString("Document", "Save"), localizedString("Document", "Don't Save"),
       localizedString("OrvVersion", "Cancel"),
       localizedString("Document", "Your changes will be lost if you don't save them.")});
  if (answer == AlertDefaultReturn) {
    bool saved = false;
    saveDocument([&saved](Document*, bool didSave) { saved = didSave; });
    shouldClose(this, saved);
  } else {
    shouldClose(this, answer == AlertAlternateReturn);
  }
}

void Document::documentShouldClose(Document* document, bool shouldClose) {
  if (shouldClose) document->close();
}

void Document::performClose() {
  // A second click on the close button, while the first is being dealt with, asks nothing new.
  if (askingToClose_ || closed_) return;
  askingToClose_ = true;
  // What is being typed belongs to the record, and leaving the field may itself have consequences (another
  // file is opened in place of this document). So the edit ends first, and the question comes after what that
  // sets going.
  TextFieldEditing::endEditing(windowForSheet());
  services_.runLoop.performAfterDelay(this, 0, [this] {
    closedByUser_ = !closed_;
    // However the question ends, the next click asks again.
    const auto asked = qScopeGuard([this] {
      askingToClose_ = false;
      if (!closed_) closedByUser_ = false;
    });
    if (!closed_) {
      canCloseDocument(
          [this](Document* document, bool shouldClose) { documentShouldClose(document, shouldClose); });
    }
  });
}

void Document::close() {
  if (closed_) return;
  closed_ = true;
  for (const auto& controller : windowControllers_) {
    if (!controller->isWindowLoaded()) continue;
    TextFieldEditing::detach(controller->window());
    controller->close();
  }
  if (services_.documentController) services_.documentController->removeDocument(this);
}

void Document::releaseWindows() { windowControllers_.clear(); }

void Document::printDocument(const QVariantMap&, bool, DidPrint didPrint) {
  if (didPrint) didPrint(this, false);
}

}  // namespace velmora::platform
