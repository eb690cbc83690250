// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The look-up of a returning patient's earlier data file.
#include <QScopeGuard>

#include "platform/controls/Alert.h"
#include "platform/documents/DocumentController.h"
#include "base/files/FileManager.h"
#include "platform/text/Localization.h"
#include "platform/runloop/RunLoop.h"
#include "platform/Services.h"
#include "platform/settings/UserDefaults.h"
#include "velmora/document/VelmoraApplicationDelegate.h"
#include "velmora/document/VelmoraDocument.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;

using velmora::platform::localizedString;

QString VelmoraDocument::dataFilePath(const QString& identifier) const {
  return base::expandingTildeInPath(services().defaults.stringForKey(velmora::settings::SaveDirectory)) +
         QLatin1Char('/') + base::appendingPathExtension(identifier, dataFileExtension_);
}

bool VelmoraDocument::lookUp(const QString& identifier, bool askForConfirmation) {
  const platform::UserDefaults& defaults = services().defaults;
  if (!defaults.boolForKey(velmora::settings::AutoSave)) return false;
  if (!delegate_.fileIsInCachedDatabaseFiles(identifier)) return false;
  const QString path = dataFilePath(identifier);
  if (!services().fileManager.fileExistsAtPath(path)) return false;
  if (askForConfirmation) {
    const int answer = services().alerts.runModal(
        {localizedString("VelmoraDocument", "Patient Data Found"), localizedString("VelmoraDocument", "Open"),
         localizedString("OrvVersion", "Cancel"), QString(),
         platform::formatted(
             localizedString("VelmoraDocument",
                             "A previously saved data file is available for patient '%@'.  Would you "
                             "like to open it?"),
             {identifier.toUpper()})});
    if (answer != platform::AlertDefaultReturn) return false;
  }
  services().runLoop.performOnMainThread(this, [this, path, identifier, askForConfirmation] {
    deferredOpenLookedUpFile(path);
    if (askForConfirmation) tellIfAnothersRecord(path, identifier);
  });
  return true;
}

void VelmoraDocument::deferredOpenLookedUpFile(const QString& path) {
  const QUrl url = QUrl::fromLocalFile(path);
  platform::DocumentController* controller = services().documentController;
  if (!controller) return closeInFavourOf(url);
  // When the file asked for is this document's own, opening would give this very document back, and closing
  // it would leave the patient without a window. So meanwhile it has no file: it can go once the file is
  // known to be whole, for until then its window may hold the only good copy.
  const bool ownFile = controller->documentForURL(url) == this;
  QString error;
  bool opened = false;
  {
    const auto asBefore = qScopeGuard([this, before = fileURL()] { setFileURL(before); });
    if (ownFile) setFileURL(QUrl());
    opened = controller->openDocumentWithContentsOfURL(url, true, &error) != nullptr;
  }
  if (opened || !ownFile) closeInFavourOf(url);
  // Two windows on one file would each overwrite what the other saves.
  if (opened && ownFile && !isClosed()) setFileURL(QUrl());
  if (!opened) controller->presentOpenError(url, error);
}

QString VelmoraDocument::whyNotTheRecordOf(const QString& identifier) const {
  if (preferredFileName(false).compare(identifier, Qt::CaseInsensitive) == 0) return {};
  return platform::formatted(
      localizedString("VelmoraDocument",
                      "The file was saved for patient '%@', but the identifier in it reads '%@'."),
      {identifier, this->identifier()});
}

void VelmoraDocument::tellIfAnothersRecord(const QString& path, const QString& identifier) {
  platform::DocumentController* controller = services().documentController;
  if (!controller) return;
  const auto* record = dynamic_cast<VelmoraDocument*>(controller->documentForURL(QUrl::fromLocalFile(path)));
  const QString why = record ? record->whyNotTheRecordOf(identifier) : QString();
  if (why.isNull()) return;
  services().alerts.runModal(
      {platform::formatted(localizedString("VelmoraDocument", "'%@' is the record of another patient"),
                           {record->displayName()}),
       localizedString("OrvVersion", "OK"), QString(), QString(), why});
}

void VelmoraDocument::closeInFavourOf(const QUrl& file) {
  // The document in which an identifier was entered is dropped for the file of that identifier: that is the
  // purpose. Where another record was in front when the viewer asked, its user should know what became of the
  // changes.
  const QString name = base::deletingPathExtension(file.fileName());
  const bool another =
      !preferredFileName(false).isEmpty() && preferredFileName(false).compare(name, Qt::CaseInsensitive) != 0;
  const QString shownName = displayName();
  const QString copy = closeKeepingACopy();
  if (another || !fileURL().isEmpty()) tellAboutKeptCopy(shownName, copy);
}

QString VelmoraDocument::closeKeepingACopy() {
  Rescue rescue{platform::Whereabouts::Kept, {}};
  if (!isClosed() && isDocumentEdited() && holdsMoreThanIdentifier_) rescue = keepRescueCopy();
  if (rescue.content != platform::Whereabouts::OnlyHere) close();
  return rescue.copy;
}
