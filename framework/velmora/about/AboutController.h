// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QLabel>
#include <QPointer>

#include "platform/documents/WindowController.h"

/// The about window. At the start it is the splash, which closes itself after three seconds; later showings
/// stay until a click. Its status line shows the progress of the start-up.
class AboutController : public velmora::platform::WindowController {
 public:
  explicit AboutController(velmora::platform::Services& services);

  /// Puts a text into the status line, whether or not the window is on the screen, once it has been loaded.
  void showStatusString(const QString& status);
  /// Shows the application's help.
  void doHelp(const QObject* sender);

  // A click, unless it is the button's, closes the window; a drag that lasted longer than a tenth of a second
  // does not.

  void mouseDown(const velmora::platform::MouseEvent& event) override;
  void mouseDragged(const velmora::platform::MouseEvent& event) override;
  /// Called without an event when the splash closes itself.
  void mouseUp(const velmora::platform::MouseEvent* event) override;
  /// Empties the status line.
  void windowDidBecomeKey() override;

 protected:
  void windowDidLoad() override;

 private:
  void setBackgroundGradient();

  QPointer<QLabel> nameField_;
  QPointer<QLabel> versionField_;
  QPointer<QLabel> copyrightField_;
  QPointer<QLabel> statusField_;
  bool dragging_ = false;
  double mouseDownTime_ = 0;  // seconds since the system started
  QPointF dragFrom_;
};
