// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QPointF>
#include <QVariant>
#include <memory>
#include <optional>

#include "base/Export.h"
#include "orv/documents/OrvAutoNameDocument.h"
#include "platform/controls/TextFieldEditing.h"
#include "velmora/document/ExaminationHooks.h"
#include "velmora/document/RecordFields.h"

class QLineEdit;
class VelmoraApplicationDelegate;

/// The document for one patient: identifier, birth date, and one or more examinations of which one is shown.
///
/// The class owns what every application of the family shares: the fields of the window, stepping through
/// examinations, the look-up of an earlier data file, the export of the chart, saving, closing and printing.
/// The examinations themselves belong to the application's subclass, which is driven through ExaminationHooks
/// and the operations under "The subclass contract". By itself the class is a complete document with exactly
/// one, empty examination.
///
/// Each job is done by a class of its own: RecordFields, ExaminationNavigator, PatientLookUp, ChartRenderer,
/// ChartExporter, RecordFolder, RecordSaving, PrintNotice.
///
/// The window is loaded from the interface file "VelmoraDocument"; its outlets are found by object name
/// (referenceIDField, birthDateField, examDateField, ageField, examNumberField, tabView, previousStudyButton,
/// nextStudyButton, newStudyButton, deleteStudyButton). A missing one is tolerated everywhere. The document
/// is the delegate of every text field of the window that the user can edit, except those with the property
/// "ownDelegate".
class VELMORA_EXPORT VelmoraDocument : public OrvAutoNameDocument,
                                       public velmora::ExaminationHooks,
                                       public velmora::platform::TextFieldDelegate,
                                       protected velmora::RecordFields {
 public:
  VelmoraDocument(velmora::platform::Services& services, VelmoraApplicationDelegate& delegate);
  ~VelmoraDocument() override;

  QString windowNibName() const override { return QStringLiteral("VelmoraDocument"); }
  /// Sets the window up. An override calls this first and then fills the window from its data.
  void windowControllerDidLoadNib(velmora::platform::WindowController& windowController) override;
  void windowIsSetUp() override;
  void setDataFileExtension(const QString& extension);
  const QString& dataFileExtension() const;

  // The patient. No setter marks the document changed: callers that want that send
  // directUpdateDisplayAndSetDirty.

  void setName(const QString& name) { patientName_ = name; }
  const QString& patientName() const { return patientName_; }
  using RecordFields::identifier;
  using RecordFields::setBirthDate;
  using RecordFields::setExamDate;
  using RecordFields::setIdentifier;
  /// Kept and given back as received.
  void setOsiriXStudyID(const QVariant& studyID) { osiriXStudyID_ = studyID; }
  const QVariant& osiriXStudyID() const { return osiriXStudyID_; }

  // The subclass contract, with the hooks of ExaminationHooks.

  /// The index of the examination shown, from 0.
  quint64 currentExam() const;
  /// Choose the examination that a click on the chart designates, given in the chart's data coordinates. An
  /// override stores to data before it moves and loads from data afterwards; the base goes to examination 0.
  virtual void setCurrentRecordFromClick(const QPointF& point);
  /// The base stores to data and shows the number of the examination; an override calls it and refreshes its
  /// own.
  virtual void updateDisplay();
  /// Set this when an edit of the identifier is to look for an earlier data file once it has ended.
  void setLookUpRequired(bool required) { lookUpRequired_ = required; }
  bool lookUpRequired() const { return lookUpRequired_; }
  /// Whether the examination shown has data points on the chart; without them no chart is exported.
  void setCurrentDataPointsVisible(bool visible) { currentDataPointsVisible_ = visible; }

  // Examinations.

  void doNewRecord(const QObject* sender);
  /// Asks in a sheet; the only examination is never deleted.
  void doDeleteRecord(const QObject* sender);
  void deleteAlertDidEnd(int returnCode);
  void doNextRecord(const QObject* sender);
  void doPreviousRecord(const QObject* sender);
  void directUpdateDisplayAndSetDirty(const QObject* sender);
  void directUpdateDisplay(const QObject* sender);
  /// Whether the chart may draw its mark on the current examination: on the screen only, never in a picture.
  bool shouldShowGraphHilite() const;

  bool controlTextShouldBeginEditing(QLineEdit* control) override;
  void controlTextDidBeginEditing(QLineEdit* control) override;
  void controlTextDidEndEditing(QLineEdit* control) override;

  // The earlier data file of a returning patient.

  /// Looks for the data file of `identifier` in the save folder. Returns true when there is one and it will
  /// be opened in place of this document, which then closes without a question, after the current event. A
  /// user who was asked is told when the record in it turns out to be another patient's.
  bool lookUp(const QString& identifier, bool askForConfirmation);
  /// Where the data file of `identifier` stands or would stand.
  QString dataFilePath(const QString& identifier) const;
  void deferredOpenLookedUpFile(const QString& path);
  /// Fails, in words for the user, unless this is the record of the patient with that identifier. Upper and
  /// lower case are one, as they are in the names of files.
  velmora::base::Result<> checkIsRecordOf(const QString& identifier) const;

  // The chart as a picture.

  /// The chart area as JPEG, in its size on the screen, without the mark on the current examination. Returns
  /// no bytes when that examination has no data points.
  QByteArray getJPEGData();
  /// Exports the chart: to OsiriX, to the export folder, or (only if `interactive`) where a save panel says.
  void doExport(bool interactive);
  /// Posts the chart with the patient's data as the local notification "BatchExportToOsirix".
  void doExportToOsirix();
  /// Exports without ever showing a save panel.
  void autoExport() { doExport(false); }

  // Saving, closing, printing.

  /// The identifier with every "/" replaced by "-"; empty when there is none.
  QString preferredFileName(bool forExport) const override;
  /// Discards the edits in progress in the window, before the viewer fills its fields: what the user is
  /// typing was meant for what stood there before.
  void abandonEditing() { velmora::platform::TextFieldEditing::abandonEditing(windowForSheet()); }
  /// Saves to the document's file; but when the identifier has changed since that was read or written, asks
  /// whether the record is to have a new file, so that no patient's file turns into another's unseen.
  void saveDocument(DidSave didSave = {}) override;
  bool prepareSavePanel(velmora::platform::SavePanel& panel) override;
  QString fileTypeFromLastRunSavePanel() const override { return dataFileExtension(); }
  /// With "Auto Save" on, an identifier and the save folder present, saves there without a panel, closes and
  /// opens the file again. A record that could not be saved and is safe nowhere else stays open.
  void runModalSavePanelForSaveOperation(velmora::platform::SaveOperation operation,
                                         DidSave didSave) override;
  void saveToURL(const QUrl& url, const QString& typeName, velmora::platform::SaveOperation operation,
                 DidSave didSave) override;
  void documentDidSave(velmora::platform::Document* document, bool didSave) override;
  void canCloseDocument(ShouldClose shouldClose) override;
  /// Closes without a question; what would be lost by that, beyond a typed identifier, leaves a rescue copy,
  /// whose path is returned. Where no copy can be had and the user does not give the changes up, the document
  /// stays open.
  std::optional<QString> closeKeepingACopy();
  /// The same, and tells the user where the copy is.
  void closeTellingOfACopy();
  /// Prints the last examination. Tells the user when the document was printed in the last 30 seconds.
  void printDocument(const QVariantMap& settings, bool showPrintPanel, DidPrint didPrint = {}) override;

 protected:
  void setCurrentExam(quint64 index);
  /// Shows which of how many examinations is shown. A subclass calls it in synchronizeFromData.
  void showExamNumber();
  /// The text of a date as the window shows it, and the day that such a text stands for (invalid when it is
  /// none).
  static QString shownDate(const QDate& day);
  QDate dayOfShownDate(const QString& text) const;

  void takeFromWindows() override { synchronizeToData(); }
  // The base document without data of its own has nothing to write; a subclass overrides both.
  QJsonObject contentToJson() const override { return {}; }
  velmora::base::Result<> contentFromJson(const QJsonObject&, int) override { return {}; }

 private:
  struct Collaborators;

  void connectControls(QWidget& window);
  void markChanged();
  void closeInFavourOf(const QUrl& file);
  void tellIfAnothersRecord(const QString& path, const QString& identifier);
  void continueFrom(VelmoraDocument& earlier);
  bool savesAutomatically() const;
  bool savedForClosing();
  bool mayCloseAfterSave() const;

  VelmoraApplicationDelegate& delegate_;
  std::unique_ptr<Collaborators> with_;
  QString patientName_;
  QVariant osiriXStudyID_;
  bool currentDataPointsVisible_ = false;
  bool lookUpRequired_ = false;
};
