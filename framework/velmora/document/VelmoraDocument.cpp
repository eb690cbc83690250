// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/document/VelmoraDocument.h"

#include <QLabel>
#include <QLineEdit>
#include <QScopeGuard>
#include <QTabWidget>

#include "base/log/AssertionFailure.h"
#include "link/protocol/LinkPayload.h"
#include "platform/Services.h"
#include "platform/controls/Alert.h"
#include "platform/controls/Feedback.h"
#include "platform/controls/Panels.h"
#include "platform/documents/DocumentController.h"
#include "platform/documents/WindowController.h"
#include "platform/printing/Printing.h"
#include "platform/runloop/RunLoop.h"
#include "platform/settings/UserDefaults.h"
#include "platform/text/Localization.h"
#include "velmora/document/ChartExporter.h"
#include "velmora/document/ChartFileName.h"
#include "velmora/document/ChartRenderer.h"
#include "velmora/document/ExaminationNavigator.h"
#include "velmora/document/PatientLookUp.h"
#include "velmora/document/PrintNotice.h"
#include "velmora/document/RecordFolder.h"
#include "velmora/document/RecordSaving.h"
#include "velmora/document/ShortDates.h"
#include "velmora/document/VelmoraApplicationDelegate.h"
#include "velmora/document/VelmoraGraphView.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;

using velmora::platform::localizedString;

struct VelmoraDocument::Collaborators {
  Collaborators(VelmoraDocument& document, platform::Services& services, VelmoraApplicationDelegate& delegate)
      : dates(services.runLoop),
        examinations(document, services.alerts, services.feedback),
        folder(services.defaults, services.fileManager),
        lookUp(folder, delegate, services.fileManager, services.alerts),
        renderer(services.graphics),
        exporter(services),
        saving(services.alerts),
        printNotice(services.alerts, services.runLoop) {}

  ShortDates dates;
  ExaminationNavigator examinations;
  RecordFolder folder;
  PatientLookUp lookUp;
  ChartRenderer renderer;
  ChartExporter exporter;
  RecordSaving saving;
  PrintNotice printNotice;
};

VelmoraDocument::VelmoraDocument(platform::Services& services, VelmoraApplicationDelegate& delegate)
    : OrvAutoNameDocument(services),
      delegate_(delegate),
      with_(std::make_unique<Collaborators>(*this, services, delegate)) {}

VelmoraDocument::~VelmoraDocument() {
  // The window outlives this part of the object by a moment, and must not tell it anything any more.
  if (QWidget* window = windowForSheet()) letGo(*window, this);
}

void VelmoraDocument::windowControllerDidLoadNib(platform::WindowController& windowController) {
  OrvAutoNameDocument::windowControllerDidLoadNib(windowController);
  connectControls(*windowController.window());

  platform::PrintInfo& printInfo = services().sharedPrintInfo;
  printInfo.orientation = platform::PrintInfo::Orientation::Portrait;
  printInfo.horizontalPagination = platform::PrintInfo::Pagination::Fit;
  printInfo.verticalPagination = platform::PrintInfo::Pagination::Fit;

  setDataFileExtension(services().defaults.stringForKey(velmora::settings::DataFileExtension));
  // Empty, not absent: both always travel with an exported chart.
  setName(QStringLiteral(""));
  setOsiriXStudyID(QStringLiteral(""));

  watchTextFields(*windowController.window(), this, with_->dates);

  currentDataPointsVisible_ = true;
  with_->renderer.allowHighlight();
  lookUpRequired_ = false;
}

void VelmoraDocument::windowIsSetUp() {
  if (!fileURL().isEmpty()) with_->saving.setSavedName(preferredFileName(false));
}

void VelmoraDocument::connectControls(QWidget& window) {
  connectWindow(window, this,
                {[this](const QObject* sender) { doPreviousRecord(sender); },
                 [this](const QObject* sender) { doNextRecord(sender); },
                 [this](const QObject* sender) { doNewRecord(sender); },
                 [this](const QObject* sender) { doDeleteRecord(sender); }});
  for (QWidget* widget : window.findChildren<QWidget*>()) {
    if (auto* chart = dynamic_cast<VelmoraGraphView*>(widget)) chart->setOwningDocument(this);
  }
}

void VelmoraDocument::setDataFileExtension(const QString& extension) {
  with_->folder.setExtension(extension);
}

const QString& VelmoraDocument::dataFileExtension() const { return with_->folder.extension(); }

QString VelmoraDocument::shownDate(const QDate& day) { return ShortDates::text(day); }

QDate VelmoraDocument::dayOfShownDate(const QString& text) const { return with_->dates.day(text); }

// Editing.

bool VelmoraDocument::controlTextShouldBeginEditing(QLineEdit* control) {
  return mayEdit(control, services().alerts);
}

void VelmoraDocument::controlTextDidBeginEditing(QLineEdit* control) {
  updateChangeCount(platform::ChangeType::Done);
  if (control != referenceIDField_) with_->saving.noteEntry();
}

void VelmoraDocument::controlTextDidEndEditing(QLineEdit*) {
  const QString name = preferredFileName(false).toUpper();
  if (isBlank()) {
    setIdentifier(name);
    docIsBlank_ = false;
  }
  synchronizeWindowTitle();
  if (!lookUpRequired_ || name.isEmpty()) {
    updateArrayOrder();
    return;
  }
  lookUpRequired_ = false;
  lookUp(name, true);
}

// Examinations.

quint64 VelmoraDocument::currentExam() const { return with_->examinations.current(); }

void VelmoraDocument::setCurrentExam(quint64 index) { with_->examinations.setCurrent(index); }

void VelmoraDocument::markChanged() {
  with_->saving.noteEntry();
  updateChangeCount(platform::ChangeType::Done);
}

void VelmoraDocument::doNewRecord(const QObject*) {
  markChanged();
  with_->examinations.add();
  platform::TextFieldEditing::selectText(examDateField_);
}

void VelmoraDocument::doDeleteRecord(const QObject*) {
  with_->examinations.askToRemove(windowForSheet(), this,
                                  [this](int returnCode) { deleteAlertDidEnd(returnCode); });
}

void VelmoraDocument::deleteAlertDidEnd(int returnCode) {
  if (returnCode != platform::AlertDefaultReturn) return;
  markChanged();
  with_->examinations.removeCurrent();
  services().feedback.showPoof(placeOfExamNumber(windowForSheet()));
}

void VelmoraDocument::doNextRecord(const QObject*) { with_->examinations.next(); }
void VelmoraDocument::doPreviousRecord(const QObject*) { with_->examinations.previous(); }
void VelmoraDocument::setCurrentRecordFromClick(const QPointF&) { with_->examinations.goTo(0); }

void VelmoraDocument::directUpdateDisplayAndSetDirty(const QObject* sender) {
  markChanged();
  directUpdateDisplay(sender);
}

void VelmoraDocument::directUpdateDisplay(const QObject*) { updateDisplay(); }

void VelmoraDocument::updateDisplay() {
  synchronizeToData();
  showExamNumber();
}

void VelmoraDocument::showExamNumber() {
  if (examNumberField_) examNumberField_->setText(with_->examinations.position());
}

// The earlier data file of a returning patient.

QString VelmoraDocument::dataFilePath(const QString& identifier) const {
  return with_->folder.dataFilePath(identifier);
}

bool VelmoraDocument::lookUp(const QString& identifier, bool askForConfirmation) {
  const std::optional<QString> path = with_->lookUp.find(identifier, askForConfirmation);
  if (!path) return false;
  services().runLoop.performOnMainThread(this, [this, path = *path, identifier, askForConfirmation] {
    deferredOpenLookedUpFile(path);
    if (askForConfirmation) tellIfAnothersRecord(path, identifier);
  });
  return true;
}

void VelmoraDocument::deferredOpenLookedUpFile(const QString& path) {
  const QUrl url = QUrl::fromLocalFile(path);
  platform::DocumentController* controller = services().documentController;
  if (!controller) return closeInFavourOf(url);
  PatientLookUp::open(*controller, url, *this, [&] { closeInFavourOf(url); });
}

base::Result<> VelmoraDocument::checkIsRecordOf(const QString& identifier) const {
  if (preferredFileName(false).compare(identifier, Qt::CaseInsensitive) == 0) return {};
  return base::Failure{platform::formatted(
      localizedString("VelmoraDocument",
                      "The file was saved for patient '%@', but the identifier in it reads '%@'."),
      {identifier, this->identifier()})};
}

void VelmoraDocument::tellIfAnothersRecord(const QString& path, const QString& identifier) {
  platform::DocumentController* controller = services().documentController;
  if (!controller) return;
  const auto* record = dynamic_cast<VelmoraDocument*>(controller->documentForURL(QUrl::fromLocalFile(path)));
  if (!record) return;
  const base::Result<> checked = record->checkIsRecordOf(identifier);
  if (checked.ok()) return;
  services().alerts.runModal(
      {platform::formatted(localizedString("VelmoraDocument", "'%@' is the record of another patient"),
                           {record->displayName()}),
       localizedString("OrvVersion", "OK"), QString(), QString(), checked.error()});
}

// The chart as a picture.

bool VelmoraDocument::shouldShowGraphHilite() const { return with_->renderer.mayShowHighlight(); }

QByteArray VelmoraDocument::getJPEGData() {
  return currentDataPointsVisible_ ? with_->renderer.jpegOf(tabView_) : QByteArray();
}

void VelmoraDocument::doExport(bool interactive) {
  if (with_->exporter.exportsToOsirix()) return doExportToOsirix();
  const QByteArray picture = getJPEGData();
  if (picture.isEmpty()) return;
  if (interactive && !savesAutomatically()) return with_->exporter.exportThroughPanel(picture);
  with_->exporter.exportToFolder(picture, chartFileName(preferredFileName(true), tabLabels(tabView_),
                                                        tabView_ ? tabView_->currentIndex() : -1));
}

void VelmoraDocument::doExportToOsirix() {
  link::ChartExport chart;
  chart.jpeg = getJPEGData();
  if (chart.jpeg.isEmpty()) return;
  chart.name = patientName_;
  chart.studyID = osiriXStudyID_;
  chart.identifier = identifier();
  const auto dateIn = [this](const QLineEdit* field) {
    return field ? with_->dates.date(field->text()) : QDateTime();
  };
  chart.birthDate = dateIn(birthDateField_);
  chart.examDate = dateIn(examDateField_);
  with_->exporter.exportToOsirix(chart);
}

// Saving.

QString VelmoraDocument::preferredFileName(bool) const { return link::fileNameIdentifier(identifier()); }

bool VelmoraDocument::savesAutomatically() const {
  return with_->folder.savesAutomatically(preferredFileName(false));
}

void VelmoraDocument::saveDocument(DidSave didSave) {
  auto target = RecordSaving::Target::SameFile;
  if (!fileURL().isEmpty()) target = with_->saving.askForTarget(preferredFileName(false));
  if (target == RecordSaving::Target::SameFile) return OrvAutoNameDocument::saveDocument(std::move(didSave));
  if (target == RecordSaving::Target::NewFile) return saveDocumentAs(std::move(didSave));
  if (didSave) didSave(this, false);
}

bool VelmoraDocument::prepareSavePanel(platform::SavePanel& panel) {
  const QString folder = with_->folder.path();
  panel.directoryURL = QUrl::fromLocalFile(folder);
  base::requireValue(panel.directoryURL.isValid(), "VelmoraDocument");
  const QString name = preferredFileName(false);
  if (fileURL().isEmpty() && !name.isEmpty())
    setFileURL(QUrl::fromLocalFile(folder + QLatin1Char('/') + name));
  return true;
}

void VelmoraDocument::runModalSavePanelForSaveOperation(platform::SaveOperation operation, DidSave didSave) {
  const std::optional<QString> path = with_->folder.automaticPath(preferredFileName(false));
  if (!path) {
    // The caller's own callback is dropped on this path: the document is its own save delegate.
    OrvAutoNameDocument::runModalSavePanelForSaveOperation(
        operation, [this](platform::Document* document, bool saved) { documentDidSave(document, saved); });
    return;
  }
  const QUrl url = QUrl::fromLocalFile(*path);
  bool saved = false;
  saveToURL(url, base::pathExtension(*path), operation,
            [&saved, &didSave](platform::Document* document, bool did) {
              saved = did;
              if (didSave) didSave(document, did);
            });
  if (!mayCloseAfterSave()) return;
  close();
  if (with_->saving.closeRequested() || !services().documentController) return;
  const auto reopened = services().documentController->openDocumentWithContentsOfURL(url, true);
  // After a failed save that is an earlier record, which knows nothing of this one's study.
  auto* record = dynamic_cast<VelmoraDocument*>(reopened.valueOr(nullptr));
  if (record && saved) record->continueFrom(*this);
}

bool VelmoraDocument::mayCloseAfterSave() const {
  return with_->saving.mayCloseAfter(lastSave().value_or(platform::SaveOutcome::Unsaved));
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
  if (earlier.currentExam() <= lastExam()) setCurrentExam(earlier.currentExam());
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
  if (saved && operation != platform::SaveOperation::SaveTo)
    with_->saving.noteSaved(preferredFileName(false));
  if (!url.isEmpty()) delegate_.addToCachedDatabaseFiles(url.path().section(QLatin1Char('/'), -1));
  if (with_->saving.closesAfter(lastSave().value_or(platform::SaveOutcome::Unsaved))) close();
}

void VelmoraDocument::documentDidSave(platform::Document* document, bool didSave) {
  OrvAutoNameDocument::documentDidSave(document, didSave);
  if (didSave) with_->saving.closeAfterSaving();
}

// Closing.

void VelmoraDocument::canCloseDocument(ShouldClose shouldClose) {
  if (!isDocumentEdited()) {
    with_->saving.setCloseRequested(true);
    return shouldClose(this, true);
  }
  const bool automatic = savesAutomatically();
  switch (with_->saving.askBeforeClosing(automatic)) {
    case RecordSaving::CloseAnswer::Close:
      return shouldClose(this, true);
    case RecordSaving::CloseAnswer::Stay:
      return shouldClose(this, false);
    case RecordSaving::CloseAnswer::SaveFirst:
      break;
  }
  if (automatic) return shouldClose(this, savedForClosing());
  saveDocumentAs();
  // The user may have cancelled the panel.
  shouldClose(this, !isDocumentEdited());
}

bool VelmoraDocument::savedForClosing() {
  // A document that stays open after all has not been agreed to close.
  auto takeBack = qScopeGuard(
      [this, before = with_->saving.closeRequested()] { with_->saving.setCloseRequested(before); });
  with_->saving.setCloseRequested(true);
  forgetLastSave();
  bool told = false;
  saveDocument([&told](platform::Document*, bool) { told = true; });
  bool mayClose = lastSave() && mayCloseAfterSave();
  if (!lastSave() && !told) {
    // The save folder is gone, and the panel in its place was cancelled. The answer stands, but nothing is
    // lost.
    closeTellingOfACopy();
    mayClose = isClosed();
  }
  if (mayClose) takeBack.dismiss();
  return mayClose;
}

void VelmoraDocument::closeInFavourOf(const QUrl& file) {
  // The document in which an identifier was entered is dropped for the file of that identifier: that is the
  // purpose. Where another record was in front when the viewer asked, its user should know what became of the
  // changes.
  const QString name = base::deletingPathExtension(file.fileName());
  const QString ownName = preferredFileName(false);
  const bool another = !ownName.isEmpty() && ownName.compare(name, Qt::CaseInsensitive) != 0;
  const QString shownName = displayName();
  const auto copy = closeKeepingACopy();
  if (another || !fileURL().isEmpty()) tellAboutKeptCopy(shownName, copy);
}

std::optional<QString> VelmoraDocument::closeKeepingACopy() {
  Rescue rescue{platform::SaveOutcome::Kept, {}};
  if (!isClosed() && isDocumentEdited() && with_->saving.holdsMoreThanIdentifier()) rescue = keepRescueCopy();
  if (rescue.outcome != platform::SaveOutcome::Unsaved) close();
  return rescue.copy;
}

void VelmoraDocument::closeTellingOfACopy() {
  const QString name = displayName();
  const auto copy = closeKeepingACopy();
  tellAboutKeptCopy(name, copy);
}

// Printing.

void VelmoraDocument::printDocument(const QVariantMap& settings, bool showPrintPanel, DidPrint didPrint) {
  with_->printNotice.tellIfRecentlyPrinted();
  synchronizeToData();
  setCurrentExam(lastExam());
  synchronizeFromData();
  if (QWidget* view = printableView())
    view->window()->setWindowTitle(preferredFileName(false) + QStringLiteral("[*]"));
  with_->printNotice.notePrinted();
  OrvAutoNameDocument::printDocument(settings, showPrintPanel, std::move(didPrint));
  synchronizeWindowTitle();
}
