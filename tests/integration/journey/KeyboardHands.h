// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include "tests/integration/journey/Hands.h"

namespace journey {

/// The keyboard alone: underlined letters where there are some, the arrows in menus, lists and tabs, the tab
/// key to everything else, Return, Space and Escape. The pointer is never moved.
class KeyboardHands : public Hands {
 public:
  using Hands::Hands;

  /// By its shortcut, for the commands of every day; by the letters of its menu, for the others.
  void choose(const QStringList& path) override;
  void press(const QString& window, const QString& button) override;
  void push(const QString& window, const QString& widget) override;
  void fill(const QString& window, const QString& field, const QString& text) override;
  void pick(const QString& window, const QString& list, const QString& entry) override;
  void turnTo(const QString& window, const QString& tabs, const QString& label) override;
  void dismiss(const QString& window) override;
  void cancel(const QString& window) override;

  /// Strokes a shortcut in a window that has the keyboard.
  void stroke(const QString& window, const QString& keys);

 private:
  void pickFromMenu(const QString& entry);
  void reach(const QString& window, const QString& widget);
  void walkTo(const QString& what, const QString& window,
              const std::function<bool(const QJsonObject&)>& isIt);
};

}  // namespace journey
