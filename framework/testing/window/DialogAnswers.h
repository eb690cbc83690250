// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QApplication>
#include <QDialog>
#include <QObject>
#include <QString>
#include <deque>
#include <functional>

#include "base/Export.h"

namespace velmora::testkit {

/// Answers the real alerts and panels of this process. Their loops run inside the test's own calls, so every
/// answer is given beforehand, and each that opens must be the next one expected.
class VELMORA_EXPORT DialogAnswers : public QObject {
 public:
  DialogAnswers() { qApp->installEventFilter(this); }
  /// Fails the test when an expected alert never came.
  ~DialogAnswers() override;

  /// The next dialog shows `text` (an alert's message, a panel's title). While it is open `act` is done; then
  /// the button of that title is pressed. No title: something else closes the dialog.
  void expect(const QString& text, std::function<void()> act, const QString& button);
  bool done() const { return expected_.empty(); }
  /// How many dialogs have come.
  int came() const { return came_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct Expected {
    QString text;
    std::function<void()> act;
    QString button;
  };
  void attend(QDialog* dialog);

  std::deque<Expected> expected_;
  int came_ = 0;
};

/// Presses the button of that title in the dialog that is open.
VELMORA_EXPORT void press(QDialog& dialog, const QString& button);

}  // namespace velmora::testkit
