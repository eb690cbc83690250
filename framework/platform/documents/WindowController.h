// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointF>
#include <QString>
#include <memory>

#include "base/Export.h"

class QWidget;

namespace velmora::platform {

class Document;
struct Services;

/// A mouse event that no control of the window took.
struct MouseEvent {
  double timestamp = 0;  ///< seconds since the system started
  QPointF screenLocation;
};

/// Owns one window, loaded from an interface file when it is first needed. Closing the window only hides it.
class VELMORA_EXPORT WindowController : public QObject {
 public:
  WindowController(Services& services, QString windowNibName);
  ~WindowController() override;

  /// The window, loaded if need be.
  QWidget* window();
  bool isWindowLoaded() const { return window_ != nullptr; }
  /// Shows the window in front of the others and gives it the keyboard.
  virtual void showWindow(const QObject* sender);
  /// The same as soon as no alert or panel waits for an answer. A window that comes back begins as a new one
  /// does, with the keyboard in no field.
  void showWindowOutsideAlerts(const QObject* sender);
  /// Moves the window, loaded if need be, into the middle of its screen.
  void centerWindow();
  /// Hides the window.
  void close();

  /// The document whose window this is; none for the windows of the application.
  void setDocument(Document* document) { document_ = document; }
  Document* document() const { return document_; }

  /// An outlet: the widget of that class and object name. Returns null when the interface file has none.
  template <typename Widget>
  Widget* outlet(const QString& objectName);

 protected:
  /// Called once, when the window has been loaded.
  virtual void windowDidLoad() {}
  /// Called each time the window gets the keyboard.
  virtual void windowDidBecomeKey() {}
  /// Called for mouse events that no control of the window takes.
  virtual void mouseDown(const MouseEvent&) {}
  virtual void mouseDragged(const MouseEvent&) {}
  /// `event` is null when there was no real event.
  virtual void mouseUp(const MouseEvent* /*event*/) {}

  Services& services() const { return services_; }
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void loadWindow();

  Services& services_;
  QString windowNibName_;
  std::unique_ptr<QWidget> window_;
  Document* document_ = nullptr;
};

}  // namespace velmora::platform

#include <QWidget>

template <typename Widget>
Widget* velmora::platform::WindowController::outlet(const QString& objectName) {
  return window()->findChild<Widget*>(objectName);
}
