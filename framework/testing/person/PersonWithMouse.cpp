// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/person/PersonWithMouse.h"

#include <QJsonArray>

#include "testing/waiting/Waiting.h"

namespace velmora::testkit {

SeenWindow PersonWithMouse::open(const SeenWindow& window, const QString& menu) {
  device().click(window, {{"menu", menu}});
  return waitFor("the menu " + menu, &SeenWindow::isMenu);
}

void PersonWithMouse::choose(const SeenWindow& window, const QStringList& path) {
  device().click(window, {{"menu", path.first()}});
  for (const QString& entry : path.mid(1)) device().click(menuWith(entry), {{"item", entry}});
}

void PersonWithMouse::press(const SeenWindow& window, const QString& button) {
  device().click(window, {{"button", button}});
}

void PersonWithMouse::push(const SeenWindow& window, const QString& widget) {
  const QJsonObject seen = window.widget(widget);
  // A check box is turned where its box or its text is, which a wide one has at its left end.
  if (seen["class"] == "QCheckBox") return clickAt(window, widget, {8, seen["geometry"][3].toInt() / 2});
  device().click(window, {{"widget", widget}});
}

void PersonWithMouse::clickAt(const SeenWindow& window, const QString& widget, const QPoint& point) {
  device().click(window, {{"widget", widget}, {"at", QJsonArray{point.x(), point.y()}}});
}

void PersonWithMouse::fill(const SeenWindow& window, const QString& field, const QString& text) {
  device().click(window, {{"widget", field}});
  replaceText(window, field, text);
}

void PersonWithMouse::enter(const SeenWindow& window, const QString& field, const QString& text) {
  fill(window, field, text);
  key("Tab");
}

void PersonWithMouse::typeOver(const SeenWindow& window, const QString& field, const QString& text) {
  replaceText(window, field, text);
  key("Tab");
}

void PersonWithMouse::pick(const SeenWindow& window, const QString& list, const QString& entry) {
  if (!window.entries(list).contains(entry)) throw Differs(entry + " in " + list, window.summary());
  device().click(window, {{"widget", list}});
  const SeenWindow popup =
      waitFor("the list of " + list, [](const SeenWindow& seen) { return seen.isPopup() && !seen.isMenu(); });
  device().click(popup, {{"row", entry}});
  waitUntilGone(popup);
  waitForText(window, list, entry);
}

void PersonWithMouse::turnTo(const SeenWindow& window, const QString& tabs, const QString& label) {
  device().click(window, {{"widget", tabs}, {"tab", label}});
  waitForTab(window, tabs, label);
}

void PersonWithMouse::dismiss(const SeenWindow& window) {
  device().click(window, {});
  waitUntilGone(window);
}

void PersonWithMouse::cancel(const SeenWindow& window) { closeWith(window, "Cancel"); }

}  // namespace velmora::testkit
