// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/person/Person.h"

#include <algorithm>

#include "testing/waiting/Waiting.h"

namespace velmora::testkit {

void Person::waitUntilScreen(const QString& what, const std::function<bool(const QList<SeenWindow>&)>& holds,
                             std::optional<double> seconds) {
  const double limit = seconds.value_or(patience_);
  if (!waitUntil(limit, [&] { return holds(look()); }))
    throw Differs(QString("%1 within %2 s").arg(what).arg(limit), screen());
}

SeenWindow Person::waitFor(const QString& what, const std::function<bool(const SeenWindow&)>& holds,
                           std::optional<double> seconds) {
  SeenWindow found;
  waitUntilScreen(
      what,
      [&](const QList<SeenWindow>& windows) {
        for (const SeenWindow& window : windows)
          if (holds(window)) found = window;
        return found.exists();
      },
      seconds);
  return found;
}

SeenWindow Person::when(const SeenWindow& window, const QString& what,
                        const std::function<bool(const SeenWindow&)>& holds) {
  return waitFor(what, [&](const SeenWindow& seen) { return seen.id() == window.id() && holds(seen); });
}

SeenWindow Person::active(const QString& name) {
  return waitFor(name + " with the keyboard",
                 [&](const SeenWindow& seen) { return seen.isCalled(name) && seen.active(); });
}

SeenWindow Person::active(const SeenWindow& window) {
  return when(window, window.summary() + " with the keyboard", &SeenWindow::active);
}

void Person::waitUntilGone(const SeenWindow& window) {
  waitUntilScreen(window.summary() + " to go", [&](const QList<SeenWindow>& windows) {
    return std::none_of(windows.cbegin(), windows.cend(),
                        [&](const SeenWindow& seen) { return seen.id() == window.id(); });
  });
}

void Person::waitUntilGone(const QString& name) {
  waitUntilScreen(name + " to go", [&](const QList<SeenWindow>& windows) {
    return std::none_of(windows.cbegin(), windows.cend(),
                        [&](const SeenWindow& seen) { return seen.isCalled(name); });
  });
}

SeenWindow Person::menuWith(const QString& entry) {
  return waitFor("a menu with " + entry,
                 [&](const SeenWindow& seen) { return seen.isMenu() && !seen.item(entry).isEmpty(); });
}

void Person::closeWith(const SeenWindow& window, const QString& button) {
  press(window, button);
  waitUntilGone(window);
}

SeenWindow Person::answer(const QString& message, const QString& button, std::optional<double> seconds) {
  const SeenWindow alert = waitFor(
      "the alert \"" + message + '"', [&](const SeenWindow& seen) { return seen.alertText() == message; },
      seconds);
  closeWith(alert, button);
  return alert;
}

void Person::replaceText(const SeenWindow& window, const QString& field, const QString& text) {
  when(window, "the keyboard in " + field, [&](const SeenWindow& seen) { return seen.hasFocus(field); });
  key("Ctrl+A");
  if (text.isEmpty()) key("Backspace");
  device().type(text);
  waitForText(window, field, text);
}

void Person::waitForText(const SeenWindow& window, const QString& widget, const QString& text) {
  when(window, widget + " to show \"" + text + '"',
       [&](const SeenWindow& seen) { return seen.text(widget) == text; });
}

void Person::waitForTab(const SeenWindow& window, const QString& tabs, const QString& label) {
  when(window, "the tab " + label, [&](const SeenWindow& seen) { return seen.tabInFront(tabs) == label; });
}

}  // namespace velmora::testkit
