// SPDX-License-Identifier: LGPL-3.0-or-later
#include "platform/documents/WindowController.h"

#include <QCloseEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QScreen>

#include "base/log/Guard.h"
#include "platform/Services.h"
#include "platform/controls/InterfaceFiles.h"
#include "platform/controls/TextFieldEditing.h"
#include "platform/documents/Document.h"
#include "platform/documents/DocumentController.h"
#include "platform/runloop/RunLoop.h"

namespace velmora::platform {

WindowController::WindowController(Services& services, QString windowNibName)
    : services_(services), windowNibName_(std::move(windowNibName)) {}

WindowController::~WindowController() {
  if (!window_) return;
  window_->removeEventFilter(this);
  TextFieldEditing::detach(window_.get());
  // Nobody is told of what the dying window still has to say.
  window_->hide();
}

QWidget* WindowController::window() {
  if (!window_) loadWindow();
  return window_.get();
}

void WindowController::loadWindow() {
  window_ = services_.interfaceFiles.load(windowNibName_);
  if (!window_) window_ = std::make_unique<QWidget>();
  // The window itself can have the keyboard, so opening it gives it to no field and starts no edit.
  window_->setFocusPolicy(Qt::ClickFocus);
  window_->setFocus();
  window_->installEventFilter(this);
  windowDidLoad();
  if (!document_) return;
  document_->windowControllerDidLoadNib(*this);
  document_->windowIsSetUp();
}

void WindowController::showWindow(const QObject*) {
  QWidget* shown = window();
  if (shown->isMinimized()) shown->setWindowState(shown->windowState() & ~Qt::WindowMinimized);
  shown->show();
  shown->raise();
  shown->activateWindow();
}

void WindowController::showWindowOutsideAlerts(const QObject* sender) {
  if (services_.runLoop.inModalSession()) {
    services_.runLoop.performAfterDelay(this, 0, [this] { showWindowOutsideAlerts(this); });
    return;
  }
  if (!window()->isVisible()) window()->setFocus();
  WindowController::showWindow(sender);
}

void WindowController::centerWindow() {
  const QScreen* screen = window()->screen();
  if (!screen) return;
  window()->move(screen->availableGeometry().center() - QRect(QPoint(), window()->frameSize()).center());
}

void WindowController::close() {
  if (window_) window_->hide();
}

bool WindowController::eventFilter(QObject* watched, QEvent* event) {
  if (watched != window_.get()) return false;
  const auto mouse = [event] {
    const auto* source = static_cast<QMouseEvent*>(event);
    return MouseEvent{static_cast<double>(source->timestamp()) / 1000.0, source->globalPosition()};
  };
  switch (event->type()) {
    case QEvent::Close:
      if (!document_) return false;
      event->ignore();
      base::guarded("window close", [this] { document_->performClose(); });
      return true;
    case QEvent::WindowActivate:
      base::guarded("window activation", [this] {
        if (document_ && services_.documentController)
          services_.documentController->noteDocumentIsFront(document_);
      });
      base::guarded("window activation", [this] { windowDidBecomeKey(); });
      return false;
    case QEvent::MouseButtonPress:
      base::guarded("mouse", [&] { mouseDown(mouse()); });
      return false;
    case QEvent::MouseMove:
      base::guarded("mouse", [&] { mouseDragged(mouse()); });
      return false;
    case QEvent::MouseButtonRelease:
      base::guarded("mouse", [&] {
        const MouseEvent up = mouse();
        mouseUp(&up);
      });
      return false;
    default:
      return false;
  }
}

}  // namespace velmora::platform
