// SPDX-License-Identifier: LGPL-3.0-or-later
#include "platform/qt/QtAlerts.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <array>

#include "platform/Guard.h"
#include "platform/Localization.h"
#include "platform/RunLoop.h"

namespace platform::qt {

namespace {

/// Which answer a button stands for is kept in it as a property.
constexpr const char* AnswerProperty = "velmoraAnswer";

void fill(QMessageBox& box, const Alert& alert) {
  box.setIcon(QMessageBox::Question);
  // The texts may hold an identifier or a file name from outside: never read as markup.
  box.setTextFormat(Qt::PlainText);
  box.setText(alert.messageText);
  box.setInformativeText(alert.informativeText);
  // The box passes its text format on to its message alone.
  for (QLabel* label : box.findChildren<QLabel*>()) label->setTextFormat(Qt::PlainText);
  box.setWindowTitle(QApplication::applicationDisplayName());

  struct Choice {
    const QString& title;
    int answer;
    QMessageBox::ButtonRole role;
  };
  const std::array<Choice, 3> choices{{{alert.defaultButton, AlertDefaultReturn, QMessageBox::AcceptRole},
                                       {alert.alternateButton, AlertAlternateReturn, QMessageBox::DestructiveRole},
                                       {alert.otherButton, AlertOtherReturn, QMessageBox::RejectRole}}};
  const QString cancel = localizedString("OrvVersion", "Cancel");
  QPushButton* only = nullptr;
  int shown = 0;
  for (const Choice& choice : choices) {
    if (choice.title.isEmpty()) continue;
    const bool isCancel = choice.title == cancel;
    QPushButton* button = box.addButton(choice.title, isCancel ? QMessageBox::RejectRole : choice.role);
    button->setProperty(AnswerProperty, choice.answer);
    if (choice.answer == AlertDefaultReturn) box.setDefaultButton(button);
    if (isCancel) box.setEscapeButton(button);
    only = button;
    ++shown;
  }
  if (shown == 1) {
    box.setIcon(QMessageBox::Information);
    box.setEscapeButton(only);
  }
}

int answerOf(const QMessageBox& box) {
  const QAbstractButton* clicked = box.clickedButton();
  // Ended without a button, as when the session ends: the answer that changes nothing.
  if (!clicked) return AlertOtherReturn;
  return clicked->property(AnswerProperty).toInt();
}

}  // namespace

int QtAlerts::runModal(const Alert& alert) {
  const RunLoop::ModalSession session(runLoop_);
  QMessageBox box(QApplication::activeWindow());
  fill(box, alert);
  box.setWindowModality(Qt::ApplicationModal);
  box.exec();
  return answerOf(box);
}

void QtAlerts::beginSheetModalForWindow(const Alert& alert, QWidget* window, const QObject* owner, DidEnd didEnd) {
  auto* box = new QMessageBox(window);
  fill(*box, alert);
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->setWindowModality(Qt::WindowModal);
  const QPointer<const QObject> living(owner);
  QObject::connect(box, &QMessageBox::finished, box, [box, living, didEnd = std::move(didEnd)] {
    if (!living) return;
    const int answer = answerOf(*box);
    guarded("sheet", [&] { didEnd(answer); });
  });
  box->open();
}

}  // namespace platform::qt
