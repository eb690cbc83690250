// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The look-up of a returning patient's earlier data file.
#include "platform/Alert.h"
#include "platform/DocumentController.h"
#include "platform/FileManager.h"
#include "platform/Localization.h"
#include "platform/RunLoop.h"
#include "platform/Services.h"
#include "platform/UserDefaults.h"
#include "velmora/document/VelmoraApplicationDelegate.h"
#include "velmora/document/VelmoraDocument.h"
#include "velmora/resources/SettingsKeys.h"

using platform::localizedString;

bool VelmoraDocument::lookUp(const QString& identifier, bool askForConfirmation) {
  const platform::UserDefaults& defaults = services().defaults;
  if (!defaults.boolForKey(velmora::settings::AutoSave)) return false;
  if (!delegate_.fileIsInCachedDatabaseFiles(identifier)) return false;
  const QString path =
      platform::expandingTildeInPath(defaults.stringForKey(velmora::settings::SaveDirectory)) + QLatin1Char('/') +
      platform::appendingPathExtension(identifier, dataFileExtension_);
  if (!services().fileManager.fileExistsAtPath(path)) return false;
  if (askForConfirmation) {
    const int answer = services().alerts.runModal(
        {localizedString("VelmoraDocument", "Patient Data Found"), localizedString("VelmoraDocument", "Open"),
         localizedString("OrvVersion", "Cancel"), QString(),
         platform::formatted(localizedString("VelmoraDocument",
                                             "A previously saved data file is available for patient '%@'.  Would you "
                                             "like to open it?"),
                             {identifier.toUpper()})});
    if (answer != platform::AlertDefaultReturn) return false;
  }
  services().runLoop.performOnMainThread(this, [this, path] { deferredOpenLookedUpFile(path); });
  return true;
}

void VelmoraDocument::deferredOpenLookedUpFile(const QString& path) {
  const QUrl url = QUrl::fromLocalFile(path);
  platform::DocumentController* controller = services().documentController;
  if (!controller) return closeInFavourOf(url);
  // When the file asked for is this document's own, opening would give this very document back, and closing it would
  // leave the patient without a window, and what follows with the wrong one. So then it closes first.
  const bool ownFile = controller->documentForURL(url) == this;
  if (ownFile) closeInFavourOf(url);
  QString error;
  const bool opened = controller->openDocumentWithContentsOfURL(url, true, &error) != nullptr;
  if (!ownFile) closeInFavourOf(url);
  if (!opened) controller->presentOpenError(url, error);
}

void VelmoraDocument::closeInFavourOf(const QUrl& file) {
  // The document in which an identifier was entered is dropped for the file of that identifier: that is the purpose.
  // But unsaved changes to a saved record, or to a record under another identifier, are more than that identifier;
  // they leave a copy behind.
  const QString name = platform::deletingPathExtension(file.fileName());
  const bool anotherPatient =
      !preferredFileName(false).isEmpty() && preferredFileName(false).compare(name, Qt::CaseInsensitive) != 0;
  if (isDocumentEdited() && !isClosed() && (!fileURL().isEmpty() || anotherPatient)) {
    synchronizeToData();
    keepRescueCopy();
  }
  close();
}
