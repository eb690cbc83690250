// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include "testing/person/Person.h"

namespace velmora::testkit {

/// The keyboard alone: underlined letters where there are some, the arrows in menus, lists and tabs, the tab
/// key to everything else, Return, Space and Escape. The pointer is never moved.
class PersonWithKeyboard : public Person {
 public:
  using Person::Person;

  /// By its shortcut, for the commands of every day; by the letters of its menu, for the others.
  void choose(const SeenWindow& window, const QStringList& path) override;
  void press(const SeenWindow& window, const QString& button) override;
  void push(const SeenWindow& window, const QString& widget) override;
  void fill(const SeenWindow& window, const QString& field, const QString& text) override;
  void pick(const SeenWindow& window, const QString& list, const QString& entry) override;
  void turnTo(const SeenWindow& window, const QString& tabs, const QString& label) override;
  void dismiss(const SeenWindow& window) override { cancel(window); }
  void cancel(const SeenWindow& window) override;

 private:
  void pickFromMenu(const QString& entry);
  void reach(const SeenWindow& window, const QString& widget);
  void walkTo(const SeenWindow& window, const QString& what,
              const std::function<bool(const QJsonObject&)>& isIt);
};

}  // namespace velmora::testkit
