// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QRegularExpressionValidator>

#include "platform/documents/WindowController.h"
#include "velmora/batch/BatchProgress.h"

/// The batch-export window: exports again every data file saved in the last days, optionally after erasing
/// the chart images of earlier exports.
///
/// It opens and exports nothing itself. For each file that it selects it posts the local notification
/// "BatchOpen", within which the file is opened and exported. The window is loaded from the interface file
/// "BatchExport"; its outlets are howManyDaysField, eraseOldFilesCheckBox, destinationField and the
/// buttonBox with OK and Cancel.
class BatchExportController : public velmora::platform::WindowController {
 public:
  /// Registers the defaults of its two settings.
  explicit BatchExportController(velmora::platform::Services& services);
  ~BatchExportController() override;

  /// Shows the window; while an application-modal alert or panel is open, as soon as that has closed.
  void showWindow(const QObject* sender) override;
  /// Closes the window, stores its values, and exports.
  void doOK(const QObject* sender);
  /// Closes the window. Nothing is stored.
  void doCancel(const QObject* sender);

  /// Selects the files and has each exported, in the order in which the save folder gives them, with a window
  /// that shows the progress and can stop it. Where charts go to the export folder, that folder must exist;
  /// the user is told when it does not.
  void doBatchExport();
  /// Removes the JPEG files (".jpg" in any letter case) that stand directly in the export folder, whatever
  /// program made them.
  void doErasePreviouslyExportedFiles();

  /// Tells how many charts wait to be sent to OsiriX, which the progress window shows after a batch export.
  void setWaitingCharts(qsizetype count) { progress_.setWaitingCharts(count); }
  /// The window that shows the progress of the export.
  BatchProgress& progress() { return progress_; }

  /// Erasing is offered only where charts go to the export folder.
  void windowDidBecomeKey() override;

 protected:
  void windowDidLoad() override;

 private:
  QString exportFolder() const;
  qint64 howManyDays() const;
  void connectButtonBox();
  void showDestination();
  QString destination() const;
  void exportFiles(const QStringList& paths);
  bool applicationIsEnding() const;

  QRegularExpressionValidator dayFormatter_;
  QPointer<QLineEdit> howManyDaysField_;
  QPointer<QCheckBox> eraseOldFilesCheckBox_;
  QPointer<QLabel> destinationField_;
  BatchProgress progress_;
};
