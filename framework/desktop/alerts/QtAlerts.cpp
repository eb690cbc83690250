// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/alerts/QtAlerts.h"

#include <QAbstractButton>
#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QMainWindow>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <array>

#include "base/log/Guard.h"
#include "platform/runloop/RunLoop.h"
#include "platform/text/Localization.h"

namespace velmora::desktop {

namespace {

/// Which answer a button stands for is kept in it as a property.
constexpr const char* AnswerProperty = "velmoraAnswer";

void fill(QMessageBox& box, const platform::Alert& alert) {
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
  // With three buttons the alternate one is the way that loses something (Don't Save); with two it is the way
  // back.
  const QMessageBox::ButtonRole alternateRole =
      alert.otherButton.isEmpty() ? QMessageBox::RejectRole : QMessageBox::DestructiveRole;
  const std::array<Choice, 3> choices{
      {{alert.defaultButton, platform::AlertDefaultReturn, QMessageBox::AcceptRole},
       {alert.alternateButton, platform::AlertAlternateReturn, alternateRole},
       {alert.otherButton, platform::AlertOtherReturn, QMessageBox::RejectRole}}};
  const QString cancel = platform::localizedString("OrvVersion", "Cancel");
  QPushButton* last = nullptr;
  QPushButton* cancelButton = nullptr;
  int shown = 0;
  for (const Choice& choice : choices) {
    if (choice.title.isEmpty()) continue;
    last = box.addButton(choice.title, choice.role);
    last->setProperty(AnswerProperty, choice.answer);
    if (choice.answer == platform::AlertDefaultReturn) box.setDefaultButton(last);
    if (choice.title == cancel) cancelButton = last;
    ++shown;
  }
  // Escape and the close button are Cancel; without one, the only other choice that changes nothing: No,
  // Skip, or the one button of a notice.
  if (!cancelButton && shown <= 2) cancelButton = last;
  if (cancelButton) box.setEscapeButton(cancelButton);
  if (shown == 1) box.setIcon(QMessageBox::Information);
}

int answerOf(const QAbstractButton& button) { return button.property(AnswerProperty).toInt(); }

/// Tells an answer from the end of the program: asked to quit, Qt closes an open box as its close button
/// does, which then looks as if Escape had been pressed.
class EndWatch : public QObject {
 public:
  explicit EndWatch(QMessageBox* box) : QObject(box) { qApp->installEventFilter(this); }
  /// Whether the program was asked to end while the box was open.
  bool closedIt() const { return quitting_; }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched == qApp && event->type() == QEvent::Quit) quitting_ = true;
    return QObject::eventFilter(watched, event);
  }

 private:
  bool quitting_ = false;
};

/// The window that an alert belongs to: the active one or, while another program is in front, a document's,
/// which then asks for attention: what waits for an answer must not lie unseen behind the viewer.
QWidget* windowForAlert() {
  if (QWidget* active = QApplication::activeWindow()) return active;
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (!window->isVisible() || !dynamic_cast<QMainWindow*>(window)) continue;
    QApplication::alert(window);
    return window;
  }
  return nullptr;
}

}  // namespace

int QtAlerts::runModal(const platform::Alert& alert) {
  const platform::RunLoop::ModalSession session(runLoop_);
  QMessageBox box(windowForAlert());
  fill(box, alert);
  box.setWindowModality(Qt::ApplicationModal);
  const auto* end = new EndWatch(&box);
  box.exec();
  // When the loops of the program are left, the box ends without any button.
  const QAbstractButton* answered = box.clickedButton();
  return answered && !end->closedIt() ? answerOf(*answered) : platform::AlertStopped;
}

void QtAlerts::beginSheetModalForWindow(const platform::Alert& alert, QWidget* window, const QObject* owner,
                                        DidEnd didEnd) {
  auto* box = new QMessageBox(window);
  fill(*box, alert);
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->setWindowModality(Qt::WindowModal);
  const QPointer<const QObject> living(owner);
  const auto* end = new EndWatch(box);
  QObject::connect(box, &QMessageBox::finished, box, [box, end, living, didEnd = std::move(didEnd)] {
    if (!living) return;
    // The close button of the window has finished it before it counts as Escape.
    const QAbstractButton* answered = box->clickedButton() ? box->clickedButton() : box->escapeButton();
    const int answer = answered && !end->closedIt() ? answerOf(*answered) : platform::AlertStopped;
    base::guarded("sheet", [&] { didEnd(answer); });
  });
  box->open();
}

}  // namespace velmora::desktop
