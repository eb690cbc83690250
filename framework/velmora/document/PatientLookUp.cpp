// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/document/PatientLookUp.h"

#include <QScopeGuard>

#include "base/files/FileManager.h"
#include "platform/controls/Alert.h"
#include "platform/documents/DocumentController.h"
#include "platform/text/Localization.h"
#include "velmora/document/RecordFolder.h"
#include "velmora/document/VelmoraApplicationDelegate.h"

using velmora::platform::localizedString;

namespace velmora {

std::optional<QString> PatientLookUp::find(const QString& identifier, bool askForConfirmation) const {
  if (!folder_.isAutomatic()) return std::nullopt;
  if (!knownFiles_.fileIsInCachedDatabaseFiles(identifier)) return std::nullopt;
  const QString path = folder_.dataFilePath(identifier);
  if (!files_.fileExistsAtPath(path)) return std::nullopt;
  if (!askForConfirmation) return path;
  const int answer = alerts_.runModal(
      {localizedString("VelmoraDocument", "Patient Data Found"), localizedString("VelmoraDocument", "Open"),
       localizedString("OrvVersion", "Cancel"), QString(),
       platform::formatted(
           localizedString("VelmoraDocument",
                           "A previously saved data file is available for patient '%@'.  Would you "
                           "like to open it?"),
           {identifier.toUpper()})});
  return answer == platform::AlertDefaultReturn ? std::optional(path) : std::nullopt;
}

void PatientLookUp::open(platform::DocumentController& controller, const QUrl& file,
                         platform::Document& document, const std::function<void()>& closeInFavourOf) {
  // When the file asked for is this document's own, opening would give this very document back, and closing
  // it would leave the patient without a window. So meanwhile it has no file: it can go once the file is
  // known to be whole, for until then its window may hold the only good copy.
  const bool ownFile = controller.documentForURL(file) == &document;
  const auto opened = [&] {
    const auto asBefore =
        qScopeGuard([&document, before = document.fileURL()] { document.setFileURL(before); });
    if (ownFile) document.setFileURL(QUrl());
    return controller.openDocumentWithContentsOfURL(file, true);
  }();
  if (opened.ok() || !ownFile) closeInFavourOf();
  // Two windows on one file would each overwrite what the other saves.
  if (opened.ok() && ownFile && !document.isClosed()) document.setFileURL(QUrl());
  if (!opened.ok()) controller.presentOpenError(file, opened.error());
}

}  // namespace velmora
