// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/batch/BatchProgress.h"

#include <QDialog>
#include <QShortcut>

#include "base/log/Guard.h"
#include "platform/Services.h"
#include "platform/text/Localization.h"

using namespace velmora;

using velmora::platform::localizedString;

BatchProgress::BatchProgress(platform::Services& services)
    : WindowController(services, QStringLiteral("BatchProgress")) {}

void BatchProgress::windowDidLoad() {
  statusField_ = outlet<QLabel>(QStringLiteral("statusField"));
  fileField_ = outlet<QLabel>(QStringLiteral("fileField"));
  progressBar_ = outlet<QProgressBar>(QStringLiteral("progressBar"));
  stopButton_ = outlet<QPushButton>(QStringLiteral("stopButton"));
  const auto stopIt = [this] { base::guarded("button", [this] { stop(); }); };
  if (stopButton_) QObject::connect(stopButton_, &QPushButton::clicked, this, stopIt);
  // Escape and the close box.
  if (auto* dialog = dynamic_cast<QDialog*>(window()))
    QObject::connect(dialog, &QDialog::rejected, this, stopIt);
  auto* closeKey = new QShortcut(QKeySequence::Close, window());
  QObject::connect(closeKey, &QShortcut::activated, this, stopIt);
}

void BatchProgress::begin(qsizetype count) {
  phase_ = Phase::Exporting;
  stopped_ = false;
  fileCount_ = count;
  chartCount_ = waitingCharts_;
  window();
  if (stopButton_) stopButton_->setText(localizedString("BatchProgress", "Stop"));
  showModality(Qt::ApplicationModal);
}

void BatchProgress::showFile(qsizetype index, const QString& path) {
  if (statusField_) {
    statusField_->setText(platform::formatted(localizedString("BatchProgress", "Exporting %ld of %ld"),
                                              {QString::number(index + 1), QString::number(fileCount_)}));
  }
  if (fileField_) {
    // A name from outside may be of any length and hold line breaks; the window keeps its size.
    const QString name = path.section(QLatin1Char('/'), -1).simplified();
    fileField_->setText(fileField_->fontMetrics().elidedText(name, Qt::ElideMiddle, fileField_->width()));
  }
  setBar(index, fileCount_);
  // The window of the record that was opened last has come before it.
  window()->raise();
  window()->activateWindow();
}

void BatchProgress::end() {
  phase_ = waitingCharts_ > 0 ? Phase::Waiting : Phase::Hidden;
  if (phase_ == Phase::Hidden) {
    close();
    return;
  }
  if (stopButton_) stopButton_->setText(localizedString("BatchProgress", "Close"));
  if (fileField_) fileField_->clear();
  showWaitingCharts();
  showModality(Qt::NonModal);
}

void BatchProgress::setWaitingCharts(qsizetype count) {
  if (count > waitingCharts_) chartCount_ += count - waitingCharts_;
  waitingCharts_ = count;
  if (phase_ != Phase::Waiting) return;
  if (count > 0) {
    showWaitingCharts();
  } else {
    phase_ = Phase::Hidden;
    close();
  }
}

void BatchProgress::showWaitingCharts() {
  if (statusField_) {
    statusField_->setText(
        waitingCharts_ == 1
            ? localizedString("BatchProgress", "One chart waits to be sent to OsiriX")
            : platform::formatted(localizedString("BatchProgress", "%ld charts wait to be sent to OsiriX"),
                                  {QString::number(waitingCharts_)}));
  }
  setBar(chartCount_ - waitingCharts_, chartCount_);
}

void BatchProgress::stop() {
  stopped_ = true;
  if (phase_ != Phase::Waiting) return;
  phase_ = Phase::Hidden;
  close();
}

void BatchProgress::showModality(Qt::WindowModality modality) {
  // A window that is shown keeps the modality it has.
  QWidget* shown = window();
  const bool wasVisible = shown->isVisible();
  const QPoint place = shown->pos();
  shown->hide();
  shown->setWindowModality(modality);
  if (wasVisible) shown->move(place);
  shown->show();
}

void BatchProgress::setBar(qsizetype value, qsizetype maximum) {
  if (!progressBar_) return;
  progressBar_->setRange(0, static_cast<int>(maximum));
  progressBar_->setValue(static_cast<int>(value));
}
