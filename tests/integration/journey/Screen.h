// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QPoint>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

namespace journey {

/// How long anything may take on a loaded machine, in seconds. Nothing waits that long when it works.
constexpr double Patience = 30;

/// The keyboard and the pointer of a virtual screen: what is pressed here reaches the program through the
/// window system, whose focus and stacking decide who gets it. Every operation throws Differs.
class Screen {
 public:
  /// `environment` names the screen.
  explicit Screen(const QProcessEnvironment& environment);

  /// A key with its modifiers, as X names them: "Tab", "ctrl+shift+s".
  void key(const QString& keys);
  /// Types what is on a keyboard of the United States.
  void type(const QString& text);
  /// Moves the pointer there and clicks, in pixels.
  void click(const QPoint& at);

 private:
  void run(const QStringList& arguments);

  QProcessEnvironment environment_;
  QString program_;
};

}  // namespace journey
