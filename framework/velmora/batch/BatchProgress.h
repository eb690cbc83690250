// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>

#include "platform/documents/WindowController.h"

/// The window that shows the progress of a batch export.
///
/// While files are exported it is application-modal: nothing else can be done, but the export can be stopped.
/// When charts then still wait to be sent to OsiriX it stays, out of the way of work, counts them down, and
/// goes with the last one; if the user closes it, it stays away until the next batch export. Its outlets are
/// statusField, fileField, progressBar and stopButton.
class BatchProgress : public velmora::platform::WindowController {
 public:
  explicit BatchProgress(velmora::platform::Services& services);

  /// Shows the window for the export of `count` files.
  void begin(qsizetype count);
  /// Shows which file comes next; the first has index 0.
  void showFile(qsizetype index, const QString& path);
  /// Whether the user has stopped the export that began last, with the button or by closing the window.
  bool isStopped() const { return stopped_; }
  /// Call it when the export is over or was stopped.
  void end();

  /// Tells how many charts wait to be sent to OsiriX, wherever they come from.
  void setWaitingCharts(qsizetype count);

 protected:
  void windowDidLoad() override;

 private:
  enum class Phase { Hidden, Exporting, Waiting };
  void stop();
  void showModality(Qt::WindowModality modality);
  void showWaitingCharts();
  void setBar(qsizetype value, qsizetype maximum);

  Phase phase_ = Phase::Hidden;
  bool stopped_ = false;
  qsizetype fileCount_ = 0;
  qsizetype waitingCharts_ = 0;
  qsizetype chartCount_ = 0;  // that have waited since the export began
  QPointer<QLabel> statusField_;
  QPointer<QLabel> fileField_;
  QPointer<QProgressBar> progressBar_;
  QPointer<QPushButton> stopButton_;
};
