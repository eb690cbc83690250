// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/person/PersonWithKeyboard.h"

#include <QMap>

#include "testing/waiting/Waiting.h"

namespace velmora::testkit {

namespace {

/// More controls than any window has.
constexpr int MostSteps = 60;

/// What somebody who knows the program does not open a menu for.
const QMap<QString, QString> Shortcuts{{"doNextRecord", "Ctrl+PgDown"},
                                       {"doPreviousRecord", "Ctrl+PgUp"},
                                       {"doSave", "Ctrl+S"},
                                       {"doPrint", "Ctrl+P"},
                                       {"doQuit", "Ctrl+Q"}};

}  // namespace

void PersonWithKeyboard::choose(const SeenWindow& window, const QStringList& path) {
  const SeenWindow document = active(window);
  if (const QString keys = Shortcuts.value(path.last()); !keys.isEmpty()) return key(keys);
  const QString letter = document.menu(path.first())["mnemonic"].toString();
  if (letter.isEmpty()) throw Differs("an underlined letter in the menu " + path.first(), "none");
  key("Alt+" + letter);
  for (const QString& entry : path.mid(1)) pickFromMenu(entry);
}

// By its letter or, where it has none, with the arrows; then the menu has done what it can.
void PersonWithKeyboard::pickFromMenu(const QString& entry) {
  SeenWindow menu = menuWith(entry);
  if (!menu.item(entry)["enabled"].toBool()) throw Differs(entry + " to be enabled", "it is not");
  if (const QString letter = menu.item(entry)["mnemonic"].toString(); !letter.isEmpty()) return key(letter);
  for (int step = 0; !menu.item(entry)["current"].toBool(); ++step) {
    if (step == MostSteps) throw Differs("the arrows to reach " + entry, menu.summary());
    key("Down");
    menu = when(menu, "another item of the menu", [&](const SeenWindow& seen) {
      return seen.description()["items"] != menu.description()["items"];
    });
  }
  key("Return");
}

void PersonWithKeyboard::walkTo(const SeenWindow& window, const QString& what,
                                const std::function<bool(const QJsonObject&)>& isIt) {
  QStringList passed;
  while (passed.size() < MostSteps) {
    const QJsonObject now = active(window).focused();
    if (!now.isEmpty() && isIt(now)) return;
    passed.append(now["name"].toString() + '"' + now["text"].toString() + '"');
    key("Tab");
    when(window, "the tab key to lead on from " + passed.last(), [&](const SeenWindow& seen) {
      const QJsonObject next = seen.focused();
      return next["name"] != now["name"] || next["geometry"] != now["geometry"];
    });
  }
  throw Differs("the tab key to reach " + what, passed.mid(0, 8).join(", ") + " and so on");
}

void PersonWithKeyboard::reach(const SeenWindow& window, const QString& widget) {
  const QString letter = active(window).letterOf(widget);
  if (letter.isEmpty())
    return walkTo(window, widget, [&](const QJsonObject& now) { return now["name"] == widget; });
  key("Alt+" + letter);
  when(window, "Alt and the underlined letter to lead to " + widget,
       [&](const SeenWindow& seen) { return seen.hasFocus(widget); });
}

void PersonWithKeyboard::press(const SeenWindow& window, const QString& button) {
  walkTo(window, '"' + button + '"', [&](const QJsonObject& now) { return now["text"] == button; });
  key("Space");
}

void PersonWithKeyboard::push(const SeenWindow& window, const QString& widget) {
  reach(window, widget);
  key("Space");
}

void PersonWithKeyboard::fill(const SeenWindow& window, const QString& field, const QString& text) {
  if (!active(window).hasFocus(field)) reach(window, field);
  replaceText(window, field, text);
  key("Tab");
  when(window, "the tab key to leave " + field,
       [&](const SeenWindow& seen) { return !seen.hasFocus(field); });
}

void PersonWithKeyboard::pick(const SeenWindow& window, const QString& list, const QString& entry) {
  reach(window, list);
  const SeenWindow before = active(window);
  const QStringList entries = before.entries(list);
  const qsizetype wanted = entries.indexOf(entry);
  if (wanted < 0) throw Differs(entry + " in " + list, entries.join(", "));
  for (qsizetype at = entries.indexOf(before.text(list)); at != wanted;) {
    key(at < wanted ? "Down" : "Up");
    at += at < wanted ? 1 : -1;
    waitForText(window, list, entries[at]);
  }
}

void PersonWithKeyboard::turnTo(const SeenWindow& window, const QString& tabs, const QString& label) {
  const SeenWindow before = active(window);
  const QStringList labels = before.labels(tabs);
  const qsizetype wanted = labels.indexOf(label);
  if (wanted < 0) throw Differs("a tab " + label, labels.join(", "));
  walkTo(window, "the tabs", [](const QJsonObject& now) { return now["class"] == "QTabBar"; });
  for (qsizetype at = labels.indexOf(before.tabInFront(tabs)); at != wanted;) {
    key(at < wanted ? "Right" : "Left");
    at += at < wanted ? 1 : -1;
    waitForTab(window, tabs, labels[at]);
  }
}

void PersonWithKeyboard::cancel(const SeenWindow& window) {
  const SeenWindow seen = active(window);
  key("Escape");
  waitUntilGone(seen);
}

}  // namespace velmora::testkit
