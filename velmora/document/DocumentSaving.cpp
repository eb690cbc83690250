// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Saving under the patient's identifier, and the question before closing.
#include "platform/Alert.h"
#include "platform/AssertionFailure.h"
#include "platform/DocumentController.h"
#include "platform/FileManager.h"
#include "platform/Localization.h"
#include "platform/Panels.h"
#include "platform/Services.h"
#include "platform/UserDefaults.h"
#include "velmora/document/VelmoraApplicationDelegate.h"
#include "velmora/document/VelmoraDocument.h"
#include "velmora/osirix/LinkPayload.h"
#include "velmora/resources/SettingsKeys.h"

using platform::localizedString;

namespace {

QString saveFolder(const platform::Services& services) {
  return platform::expandingTildeInPath(services.defaults.stringForKey(velmora::settings::SaveDirectory));
}

}  // namespace

QString VelmoraDocument::preferredFileName(bool) const {
  return velmora::link::fileNameIdentifier(identifier());
}

bool VelmoraDocument::savesAutomatically() const {
  return services().defaults.boolForKey(velmora::settings::AutoSave) && !preferredFileName(false).isEmpty();
}

bool VelmoraDocument::prepareSavePanel(platform::SavePanel& panel) {
  const QString folder = saveFolder(services());
  panel.directoryURL = QUrl::fromLocalFile(folder);
  platform::requireValue(panel.directoryURL.isValid(), "VelmoraDocument");
  const QString name = preferredFileName(false);
  if (fileURL().isEmpty() && !name.isEmpty()) setFileURL(QUrl::fromLocalFile(folder + QLatin1Char('/') + name));
  return true;
}

void VelmoraDocument::runModalSavePanelForSaveOperation(platform::SaveOperation operation, DidSave didSave) {
  const QString folder = saveFolder(services());
  if (!savesAutomatically() || !services().fileManager.fileExistsAtPath(folder)) {
    // The caller's own callback is dropped on this path: the document is its own save delegate.
    OrvAutoNameDocument::runModalSavePanelForSaveOperation(
        operation, [this](platform::Document* document, bool saved) { documentDidSave(document, saved); });
    return;
  }
  const QString path = folder + QLatin1Char('/') + preferredFileName(false) + QLatin1Char('.') + dataFileExtension_;
  const QUrl url = QUrl::fromLocalFile(path);
  saveToURL(url, platform::pathExtension(path), operation, std::move(didSave));
  close();
  if (!closeRequested_ && services().documentController) {
    services().documentController->openDocumentWithContentsOfURL(url, true);
  }
}

void VelmoraDocument::saveToURL(const QUrl& url, const QString& typeName, platform::SaveOperation operation,
                                DidSave didSave) {
  synchronizeToData();
  lookUpRequired_ = false;
  OrvAutoNameDocument::saveToURL(url, typeName, operation, std::move(didSave));
  if (!url.isEmpty()) delegate_.addToCachedDatabaseFiles(url.path().section(QLatin1Char('/'), -1));
  if (closeAfterSave_) close();
}

void VelmoraDocument::documentDidSave(platform::Document* document, bool didSave) {
  OrvAutoNameDocument::documentDidSave(document, didSave);
  if (didSave) closeAfterSave_ = true;
}

void VelmoraDocument::canCloseDocument(ShouldClose shouldClose) {
  if (!isDocumentEdited()) {
    closeRequested_ = true;
    shouldClose(this, true);
    return;
  }
  const bool automatic = savesAutomatically();
  const int answer = services().alerts.runModal(
      {localizedString("VelmoraDocument", "Save changes to document?"),
       automatic ? localizedString("VelmoraDocument", "Save") : localizedString("VelmoraDocument", "Save As..."),
       localizedString("VelmoraDocument", "Don't Save"), localizedString("OrvVersion", "Cancel"), QString()});
  if (answer == platform::AlertAlternateReturn) {
    shouldClose(this, true);
  } else if (answer != platform::AlertDefaultReturn) {
    shouldClose(this, false);
  } else if (automatic) {
    closeRequested_ = true;
    saveDocument();
    shouldClose(this, true);
  } else {
    saveDocumentAs();
    // The user may have cancelled the panel.
    shouldClose(this, !isDocumentEdited());
  }
}
