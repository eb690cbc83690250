// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Saving under the patient's identifier, and the question before closing.
#include <QScopeGuard>
#include <QTabWidget>

#include "platform/controls/Alert.h"
#include "base/log/AssertionFailure.h"
#include "platform/documents/DocumentController.h"
#include "base/files/FileManager.h"
#include "platform/text/Localization.h"
#include "platform/controls/Panels.h"
#include "platform/Services.h"
#include "platform/settings/UserDefaults.h"
#include "velmora/document/VelmoraApplicationDelegate.h"
#include "velmora/document/VelmoraDocument.h"
#include "link/protocol/LinkPayload.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;

using velmora::platform::localizedString;

namespace {

QString saveFolder(const platform::Services& services) {
  return base::expandingTildeInPath(services.defaults.stringForKey(velmora::settings::SaveDirectory));
}

}  // namespace

QString VelmoraDocument::preferredFileName(bool) const {
  return velmora::link::fileNameIdentifier(identifier());
}

bool VelmoraDocument::savesAutomatically() const {
  return services().defaults.boolForKey(velmora::settings::AutoSave) && !preferredFileName(false).isEmpty();
}

void VelmoraDocument::saveDocument(DidSave didSave) {
  const QString name = preferredFileName(false);
  const bool anotherIdentifier =
      !fileURL().isEmpty() && !name.isEmpty() && !savedName_.isEmpty() && name != savedName_;
  if (!anotherIdentifier) return OrvAutoNameDocument::saveDocument(std::move(didSave));
  const int answer = services().alerts.runModal(
      {localizedString("VelmoraDocument", "The identifier of this record has changed"),
       localizedString("VelmoraDocument", "New File"), localizedString("VelmoraDocument", "Same File"),
       localizedString("OrvVersion", "Cancel"),
       platform::formatted(
           localizedString("VelmoraDocument",
                           "It was '%@' and is now '%@'. With a new file the record of '%@' stays as it "
                           "was last saved."),
           {savedName_, name, savedName_})});
  if (answer == platform::AlertDefaultReturn) {
    saveDocumentAs(std::move(didSave));
  } else if (answer == platform::AlertAlternateReturn) {
    OrvAutoNameDocument::saveDocument(std::move(didSave));
  } else if (didSave) {
    didSave(this, false);
  }
}

bool VelmoraDocument::prepareSavePanel(platform::SavePanel& panel) {
  const QString folder = saveFolder(services());
  panel.directoryURL = QUrl::fromLocalFile(folder);
  base::requireValue(panel.directoryURL.isValid(), "VelmoraDocument");
  const QString name = preferredFileName(false);
  if (fileURL().isEmpty() && !name.isEmpty())
    setFileURL(QUrl::fromLocalFile(folder + QLatin1Char('/') + name));
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
  const QString path =
      folder + QLatin1Char('/') + preferredFileName(false) + QLatin1Char('.') + dataFileExtension_;
  const QUrl url = QUrl::fromLocalFile(path);
  bool saved = false;
  saveToURL(url, base::pathExtension(path), operation,
            [&saved, &didSave](platform::Document* document, bool did) {
              saved = did;
              if (didSave) didSave(document, did);
            });
  if (!mayCloseAfterSave()) return;
  close();
  if (closeRequested_ || !services().documentController) return;
  platform::Document* reopened = services().documentController->openDocumentWithContentsOfURL(url, true);
  // After a failed save that is an earlier record, which knows nothing of this one's study.
  auto* record = dynamic_cast<VelmoraDocument*>(reopened);
  if (record && saved) record->continueFrom(*this);
}

bool VelmoraDocument::mayCloseAfterSave() const {
  const platform::Whereabouts content = sinceLastSave().value_or(platform::Whereabouts::OnlyHere);
  // To give up a save is not to give up the record, unless it was to be closed.
  return content == platform::Whereabouts::Kept ||
         (content == platform::Whereabouts::GivenUp && closeRequested_);
}

void VelmoraDocument::continueFrom(VelmoraDocument& earlier) {
  // To the user it is the same record: the window stays where it is and shows what it showed, and what the
  // viewer told of patient and study still holds.
  setName(earlier.patientName_);
  setOsiriXStudyID(earlier.osiriXStudyID_);
  QWidget* window = windowForSheet();
  const QWidget* earlierWindow = earlier.windowForSheet();
  if (!window || !earlierWindow) return;
  window->setGeometry(earlierWindow->geometry());
  if (tabView_ && earlier.tabView_) tabView_->setCurrentIndex(earlier.tabView_->currentIndex());
  if (earlier.currentExam_ <= lastExam()) currentExam_ = earlier.currentExam_;
  synchronizeFromData();
}

void VelmoraDocument::saveToURL(const QUrl& url, const QString& typeName, platform::SaveOperation operation,
                                DidSave didSave) {
  lookUpRequired_ = false;
  bool saved = false;
  OrvAutoNameDocument::saveToURL(url, typeName, operation,
                                 [&saved, &didSave](platform::Document* document, bool did) {
                                   saved = did;
                                   if (didSave) didSave(document, did);
                                 });
  if (saved && operation != platform::SaveOperation::SaveTo) {
    savedName_ = preferredFileName(false);
    holdsMoreThanIdentifier_ = false;
  }
  if (!url.isEmpty()) delegate_.addToCachedDatabaseFiles(url.path().section(QLatin1Char('/'), -1));
  if (closeAfterSave_ && mayCloseAfterSave()) close();
}

void VelmoraDocument::documentDidSave(platform::Document* document, bool didSave) {
  OrvAutoNameDocument::documentDidSave(document, didSave);
  if (didSave) closeAfterSave_ = true;
}

bool VelmoraDocument::savedForClosing() {
  // Who stays open after all has not agreed to anything.
  auto takeBack = qScopeGuard([this, before = closeRequested_] { closeRequested_ = before; });
  closeRequested_ = true;
  forgetLastSave();
  bool told = false;
  saveDocument([&told](platform::Document*, bool) { told = true; });
  bool mayClose = sinceLastSave() && mayCloseAfterSave();
  if (!sinceLastSave() && !told) {
    // The save folder is gone, and the panel in its place was cancelled. The answer stands, but nothing is
    // lost.
    closeTellingOfACopy();
    mayClose = isClosed();
  }
  if (mayClose) takeBack.dismiss();
  return mayClose;
}

void VelmoraDocument::closeTellingOfACopy() {
  const QString name = displayName();
  const QString copy = closeKeepingACopy();
  tellAboutKeptCopy(name, copy);
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
       automatic ? localizedString("VelmoraDocument", "Save")
                 : localizedString("VelmoraDocument", "Save As..."),
       localizedString("VelmoraDocument", "Don't Save"), localizedString("OrvVersion", "Cancel"), QString()});
  if (answer == platform::AlertAlternateReturn) {
    shouldClose(this, true);
  } else if (answer != platform::AlertDefaultReturn) {
    shouldClose(this, false);
  } else if (automatic) {
    shouldClose(this, savedForClosing());
  } else {
    saveDocumentAs();
    // The user may have cancelled the panel.
    shouldClose(this, !isDocumentEdited());
  }
}
