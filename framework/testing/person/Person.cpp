// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/person/Person.h"

#include "testing/waiting/Waiting.h"

namespace velmora::testkit {

QJsonObject SeenWindow::widget(const QString& name) const {
  const QJsonArray widgets = description_["widgets"].toArray();
  for (const auto& widget : widgets)
    if (widget.toObject()["name"] == name) return widget.toObject();
  return {};
}

QSize SeenWindow::size(const QString& widgetName) const {
  const QJsonArray geometry = widget(widgetName)["geometry"].toArray();
  return QSize(qRound(geometry[2].toInt() * pixelRatio()), qRound(geometry[3].toInt() * pixelRatio()));
}

QRect SeenWindow::place() const {
  const QJsonArray geometry = description_["geometry"].toArray();
  return QRect(geometry[0].toInt(), geometry[1].toInt(), geometry[2].toInt(), geometry[3].toInt());
}

QStringList SeenWindow::buttons() const {
  QStringList result;
  const QJsonArray widgets = description_["widgets"].toArray();
  for (const auto& entry : widgets) {
    const QJsonObject widget = entry.toObject();
    if (widget["class"] == "QPushButton" && widget["enabled"].toBool())
      result.append(widget["text"].toString());
  }
  return result;
}

QString SeenWindow::summary() const {
  if (isAlert()) return QString("alert \"%1\" [%2]").arg(alertText(), buttons().join('/'));
  QString result =
      QString("%1 \"%2\"").arg(name().isEmpty() ? description_["class"].toString() : name(), title());
  QStringList texts;
  const QJsonArray widgets = description_["widgets"].toArray();
  for (const auto& entry : widgets) {
    const QJsonObject widget = entry.toObject();
    if (!widget["name"].toString().endsWith("Field") || widget["text"].toString().isEmpty()) continue;
    texts.append(widget["name"].toString() + '=' + widget["text"].toString());
  }
  return texts.isEmpty() ? result : result + " (" + texts.join(", ") + ')';
}

QList<SeenWindow> Person::look() {
  QList<SeenWindow> result;
  const QJsonArray windows = probe_.windows();
  for (const auto& window : windows) result.append(SeenWindow(window.toObject()));
  return result;
}

QString Person::screen() {
  QStringList result;
  const QList<SeenWindow> windows = look();
  for (const SeenWindow& window : windows) result.append(window.summary());
  return result.isEmpty() ? QString("no window") : result.join(", ");
}

void Person::waitUntilScreen(const QString& what, const std::function<bool(const QList<SeenWindow>&)>& holds,
                             double seconds) {
  if (!waitUntil(seconds, [&] { return holds(look()); }))
    throw Differs(QString("%1 within %2 s").arg(what).arg(seconds), screen());
}

SeenWindow Person::waitFor(const QString& what, const std::function<bool(const SeenWindow&)>& holds,
                           double seconds) {
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

void Person::must(const QString& what, QJsonObject command) {
  const QString error = probe_.command(std::move(command));
  if (!error.isEmpty()) throw Differs(what, error + "; on the screen: " + screen());
}

SeenWindow Person::answer(const QString& message, const QString& button, double seconds) {
  const SeenWindow alert = waitFor(
      "the alert \"" + message + '"',
      [&](const SeenWindow& window) { return window.isAlert() && window.alertText() == message; }, seconds);
  press(alert, button);
  waitUntilScreen("the alert to close", [&](const QList<SeenWindow>& windows) {
    for (const SeenWindow& window : windows)
      if (window.id() == alert.id()) return false;
    return true;
  });
  return alert;
}

void Person::press(const SeenWindow& window, const QString& button) {
  must("to press \"" + button + '"', {{"do", "click"}, {"window", window.id()}, {"button", button}});
}

SeenWindow Person::open(const SeenWindow& window, const QString& menu) {
  must("to open the menu " + menu, {{"do", "click"}, {"window", window.id()}, {"menu", menu}});
  return waitFor("the menu " + menu, [](const SeenWindow& seen) { return seen.isMenu(); });
}

void Person::choose(const SeenWindow& window, const QString& menu, const QString& entry) {
  const SeenWindow popup = open(window, menu);
  must("to choose " + menu + " > " + entry, {{"do", "click"}, {"window", popup.id()}, {"item", entry}});
}

void Person::click(const SeenWindow& window, const QString& widget) {
  must("to click " + widget, {{"do", "click"}, {"window", window.id()}, {"widget", widget}});
}

void Person::clickAt(const SeenWindow& window, const QString& widget, const QPoint& point) {
  must("to click into " + widget, {{"do", "click"},
                                   {"window", window.id()},
                                   {"widget", widget},
                                   {"at", QJsonArray{point.x(), point.y()}}});
}

void Person::chooseTab(const SeenWindow& window, const QString& tabs, const QString& label) {
  must("to choose the tab " + label,
       {{"do", "click"}, {"window", window.id()}, {"widget", tabs}, {"tab", label}});
  waitFor("the tab " + label, [&](const SeenWindow& seen) {
    return seen.id() == window.id() && seen.widget(tabs)["current"] == label;
  });
}

SeenWindow Person::waitForFocus(const SeenWindow& window, const QString& field) {
  return waitFor("the keyboard in " + field, [&](const SeenWindow& seen) {
    return seen.id() == window.id() && seen.widget(field)["focus"].toBool();
  });
}

void Person::enter(const SeenWindow& window, const QString& field, const QString& text) {
  click(window, field);
  typeOver(window, field, text);
}

void Person::typeOver(const SeenWindow& window, const QString& field, const QString& text) {
  waitForFocus(window, field);
  must("to select the text", {{"do", "key"}, {"key", "Ctrl+A"}});
  must("to type", {{"do", "type"}, {"text", text}});
  must("to leave the field", {{"do", "key"}, {"key", "Tab"}});
}

void Person::press(const QString& keys) { must("to press " + keys, {{"do", "key"}, {"key", keys}}); }

void Person::pick(const SeenWindow& window, const QString& list, const QString& entry) {
  const qsizetype place = window.widget(list)["items"].toVariant().toStringList().indexOf(entry);
  if (place < 0) throw Differs(entry + " in " + list, window.summary());
  pick(window, list, place);
  waitFor(list + " to show " + entry,
          [&](const SeenWindow& seen) { return seen.id() == window.id() && seen.text(list) == entry; });
}

// With the arrow keys: what is typed would run together with what was typed into the list a moment ago.
void Person::pick(const SeenWindow& window, const QString& list, qsizetype place) {
  click(window, list);
  waitFor("the list of " + list, [](const SeenWindow& seen) { return seen.isPopup(); });
  press("Home");
  for (; place > 0; --place) press("Down");
  press("Return");
}

void Person::picture(const SeenWindow& window, const QString& widget, const QString& file) {
  must("a picture of " + widget,
       {{"do", "picture"}, {"window", window.id()}, {"widget", widget}, {"file", file}});
}

void Person::picture(const SeenWindow& window, const QString& file) {
  must("a picture of " + window.name(), {{"do", "picture"}, {"window", window.id()}, {"file", file}});
}

}  // namespace velmora::testkit
