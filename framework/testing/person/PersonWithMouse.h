// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QPoint>

#include "testing/person/Person.h"

namespace velmora::testkit {

/// Clicks every window, menu, button, list, tab and field. The keyboard does little but put a text into the
/// field that was clicked, which the next click leaves.
class PersonWithMouse : public Person {
 public:
  using Person::Person;

  void choose(const SeenWindow& window, const QStringList& path) override;
  void press(const SeenWindow& window, const QString& button) override;
  void push(const SeenWindow& window, const QString& widget) override;
  void fill(const SeenWindow& window, const QString& field, const QString& text) override;
  void pick(const SeenWindow& window, const QString& list, const QString& entry) override;
  void turnTo(const SeenWindow& window, const QString& tabs, const QString& label) override;
  void dismiss(const SeenWindow& window) override;
  void cancel(const SeenWindow& window) override;

  /// Opens a menu of the window's menu bar, and gives it.
  SeenWindow open(const SeenWindow& window, const QString& menu);
  /// Clicks a point of a widget.
  void clickAt(const SeenWindow& window, const QString& widget, const QPoint& point);
  /// Fills a field, and leaves it with the tab key.
  void enter(const SeenWindow& window, const QString& field, const QString& text);
  /// The same with the field that has the keyboard already, or will have it.
  void typeOver(const SeenWindow& window, const QString& field, const QString& text);
};

}  // namespace velmora::testkit
