// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/window/DialogAnswers.h"

#include <QEvent>
#include <QFileDialog>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

#include "testing/standins/Scripted.h"

namespace velmora::testkit {

namespace {

QString textOf(const QDialog& dialog) {
  if (const auto* box = dynamic_cast<const QMessageBox*>(&dialog)) return box->text();
  return dialog.windowTitle();
}
}  // namespace

DialogAnswers::~DialogAnswers() {
  qApp->removeEventFilter(this);
  for (const Expected& expected : expected_) reportFailure(QStringLiteral("never came: ") + expected.text);
}

void DialogAnswers::expect(const QString& text, std::function<void()> act, const QString& button) {
  expected_.push_back({text, std::move(act), button});
}

bool DialogAnswers::eventFilter(QObject* watched, QEvent* event) {
  auto* dialog = event->type() == QEvent::Show ? dynamic_cast<QDialog*>(watched) : nullptr;
  // In the event loop of the dialog itself, which is not yet running.
  if (dialog && (dynamic_cast<QMessageBox*>(dialog) || dynamic_cast<QFileDialog*>(dialog))) {
    const QPointer<QDialog> open(dialog);
    QMetaObject::invokeMethod(
        this,
        [this, open] {
          if (open) attend(open);
        },
        Qt::QueuedConnection);
  }
  return false;
}

void DialogAnswers::attend(QDialog* dialog) {
  ++came_;
  const QPointer<QDialog> open(dialog);
  if (expected_.empty() || expected_.front().text != textOf(*dialog)) {
    reportFailure(QStringLiteral("unexpected: ") + textOf(*dialog));
    dialog->reject();
    return;
  }
  const Expected next = std::move(expected_.front());
  expected_.pop_front();
  if (next.act) next.act();
  if (!next.button.isEmpty()) {
    if (!open) return reportFailure(QStringLiteral("closed before it was answered: ") + next.text);
    press(*open, next.button);
  }
}

void press(QDialog& dialog, const QString& button) {
  for (QAbstractButton* each : dialog.findChildren<QAbstractButton*>()) {
    if (each->text().remove(QLatin1Char('&')) != button) continue;
    each->click();
    return;
  }
  reportFailure(QStringLiteral("no button ") + button);
  dialog.reject();
}

}  // namespace velmora::testkit
