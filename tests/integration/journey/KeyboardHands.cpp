// SPDX-License-Identifier: LGPL-3.0-or-later
#include "tests/integration/journey/KeyboardHands.h"

#include <QMap>

#include "testing/waiting/Waiting.h"

using velmora::testkit::Differs;
using velmora::testkit::SeenWindow;

namespace journey {

namespace {

/// More controls than any window has.
constexpr int MostSteps = 60;

/// What hands that know the program do not open a menu for.
const QMap<QString, QString> Shortcuts{{"doNextRecord", "ctrl+Next"},
                                       {"doPreviousRecord", "ctrl+Prior"},
                                       {"doSave", "ctrl+s"},
                                       {"doPrint", "ctrl+p"},
                                       {"doQuit", "ctrl+q"}};

QJsonObject focused(const SeenWindow& window) {
  const QJsonArray widgets = window.description()["widgets"].toArray();
  for (const auto& widget : widgets)
    if (widget.toObject()["focus"].toBool()) return widget.toObject();
  return {};
}

QString letterOfLabel(const SeenWindow& window, const QString& widget) {
  const QJsonArray widgets = window.description()["widgets"].toArray();
  for (const auto& label : widgets)
    if (label.toObject()["buddy"] == widget) return label.toObject()["mnemonic"].toString();
  return {};
}

}  // namespace

void KeyboardHands::choose(const QStringList& path) {
  const SeenWindow document = active("VelmoraDocument");
  if (const QString keys = Shortcuts.value(path.last()); !keys.isEmpty()) return screen().key(keys);
  const QString letter =
      named(document.description()["menus"].toArray(), path.first())["mnemonic"].toString();
  if (letter.isEmpty()) throw Differs("an underlined letter in the menu " + path.first(), "none");
  screen().key("alt+" + letter);
  for (const QString& entry : path.mid(1)) pickFromMenu(entry);
}

// By its letter or, where it has none, with the arrows; then the menu has done what it can.
void KeyboardHands::pickFromMenu(const QString& entry) {
  SeenWindow menu = menuWith(entry);
  const auto item = [&] { return named(menu.description()["items"].toArray(), entry); };
  if (!item()["enabled"].toBool()) throw Differs(entry + " to be enabled", "it is not");
  if (const QString letter = item()["mnemonic"].toString(); !letter.isEmpty()) {
    screen().key(letter);
    return;
  }
  for (int step = 0; !item()["current"].toBool(); ++step) {
    if (step == MostSteps) throw Differs("the arrows to reach " + entry, menu.summary());
    const QJsonArray before = menu.description()["items"].toArray();
    screen().key("Down");
    menu = person().waitFor(
        "another item of the menu",
        [&](const SeenWindow& seen) {
          return seen.id() == menu.id() && seen.description()["items"].toArray() != before;
        },
        Patience);
  }
  screen().key("Return");
}

void KeyboardHands::walkTo(const QString& what, const QString& window,
                           const std::function<bool(const QJsonObject&)>& isIt) {
  QStringList passed;
  while (passed.size() < MostSteps) {
    const QJsonObject now = focused(active(window));
    if (!now.isEmpty() && isIt(now)) return;
    passed.append(now["name"].toString() + '"' + now["text"].toString() + '"');
    screen().key("Tab");
    when("the tab key to lead on from " + passed.last(), window, [&](const SeenWindow& seen) {
      const QJsonObject next = focused(seen);
      return next["name"] != now["name"] || next["geometry"] != now["geometry"];
    });
  }
  throw Differs("the tab key to reach " + what, passed.mid(0, 8).join(", ") + " and so on");
}

void KeyboardHands::reach(const QString& window, const QString& widget) {
  const SeenWindow seen = active(window);
  const QString letter = letterOfLabel(seen, widget);
  if (letter.isEmpty())
    return walkTo(widget, window, [&](const QJsonObject& now) { return now["name"] == widget; });
  screen().key("alt+" + letter);
  when("Alt and the underlined letter to lead to " + widget, window,
       [&](const SeenWindow& now) { return now.widget(widget)["focus"].toBool(); });
}

void KeyboardHands::press(const QString& window, const QString& button) {
  walkTo('"' + button + '"', window, [&](const QJsonObject& now) { return now["text"] == button; });
  screen().key("space");
}

void KeyboardHands::push(const QString& window, const QString& widget) {
  const QString letter = active(window).widget(widget)["mnemonic"].toString();
  if (!letter.isEmpty()) {
    screen().key("alt+" + letter);
  } else {
    reach(window, widget);
    screen().key("space");
  }
}

void KeyboardHands::fill(const QString& window, const QString& field, const QString& text) {
  if (!active(window).widget(field)["focus"].toBool()) reach(window, field);
  typeOver(window, field, text);
  screen().key("Tab");
  when("the tab key to leave " + field, window,
       [&](const SeenWindow& seen) { return !seen.widget(field)["focus"].toBool(); });
}

void KeyboardHands::pick(const QString& window, const QString& list, const QString& entry) {
  reach(window, list);
  const QStringList entries = active(window).widget(list)["items"].toVariant().toStringList();
  const qsizetype place = entries.indexOf(entry);
  if (place < 0) throw Differs(entry + " in " + list, entries.join(", "));
  for (qsizetype at = entries.indexOf(active(window).text(list)); at != place;) {
    screen().key(at < place ? "Down" : "Up");
    at += at < place ? 1 : -1;
    when(list + " to show " + entries[at], window,
         [&](const SeenWindow& seen) { return seen.text(list) == entries[at]; });
  }
}

void KeyboardHands::turnTo(const QString& window, const QString& tabs, const QString& label) {
  const SeenWindow before = active(window);
  const QStringList labels = before.widget(tabs)["tabs"].toVariant().toStringList();
  const qsizetype wanted = labels.indexOf(label);
  if (wanted < 0) throw Differs("a tab " + label, labels.join(", "));
  walkTo("the tabs", window, [&](const QJsonObject& now) { return now["class"] == "QTabBar"; });
  for (qsizetype at = labels.indexOf(before.widget(tabs)["current"].toString()); at != wanted;) {
    screen().key(at < wanted ? "Right" : "Left");
    at += at < wanted ? 1 : -1;
    when("the tab " + labels[at], window,
         [&](const SeenWindow& seen) { return seen.widget(tabs)["current"] == labels[at]; });
  }
}

void KeyboardHands::dismiss(const QString& window) { cancel(window); }

void KeyboardHands::cancel(const QString& window) {
  const SeenWindow seen = active(window);
  screen().key("Escape");
  waitUntilGone(seen);
}

void KeyboardHands::stroke(const QString& window, const QString& keys) {
  active(window);
  screen().key(keys);
}

}  // namespace journey
