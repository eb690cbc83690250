// SPDX-License-Identifier: LGPL-3.0-or-later
#include "tests/integration/journey/MouseHands.h"

#include <QJsonDocument>

#include "testing/waiting/Waiting.h"

using velmora::testkit::Differs;
using velmora::testkit::SeenWindow;

namespace journey {

// Waits for the target to be where a click reaches it: a window that has just come may lie under another yet.
void MouseHands::click(const SeenWindow& window, QJsonObject target) {
  const QString what = QString::fromUtf8(QJsonDocument(target).toJson(QJsonDocument::Compact));
  target["do"] = "where";
  target["window"] = window.id();
  QJsonObject place;
  velmora::testkit::waitUntil(Patience, [&] {
    const QJsonArray before = place["at"].toArray();
    place = probe().ask(target);
    // Twice in the same place: what still moves or grows is not clicked.
    return !before.isEmpty() && place["at"].toArray() == before;
  });
  const QJsonArray at = place["at"].toArray();
  if (at.isEmpty())
    throw Differs("to click " + what + " in " + window.summary(),
                  place["error"].toString() + "; on the screen: " + person().screen());
  screen().click({at[0].toInt(), at[1].toInt()});
}

void MouseHands::choose(const QStringList& path) {
  click(active("VelmoraDocument"), {{"menu", path.first()}});
  for (const QString& entry : path.mid(1)) click(menuWith(entry), {{"item", entry}});
}

void MouseHands::press(const QString& window, const QString& button) {
  click(active(window), {{"button", button}});
}

void MouseHands::push(const QString& window, const QString& widget) {
  QJsonObject target{{"widget", widget}};
  // A check box is turned where its box or its text is, which a wide one has at its left end.
  const QJsonObject seen = active(window).widget(widget);
  if (seen["class"] == "QCheckBox") target["at"] = QJsonArray{8, seen["geometry"][3].toInt() / 2};
  click(active(window), target);
}

void MouseHands::fill(const QString& window, const QString& field, const QString& text) {
  click(active(window), {{"widget", field}});
  when("the keyboard in " + field, window,
       [&](const SeenWindow& seen) { return seen.widget(field)["focus"].toBool(); });
  typeOver(window, field, text);
}

void MouseHands::pick(const QString& window, const QString& list, const QString& entry) {
  click(active(window), {{"widget", list}});
  const SeenWindow popup = person().waitFor(
      "the list of " + list, [](const SeenWindow& seen) { return seen.isPopup() && !seen.isMenu(); },
      Patience);
  click(popup, {{"row", entry}});
  waitUntilGone(popup);
  when(list + " to show " + entry, window, [&](const SeenWindow& seen) { return seen.text(list) == entry; });
}

void MouseHands::turnTo(const QString& window, const QString& tabs, const QString& label) {
  click(active(window), {{"widget", tabs}, {"tab", label}});
  when("the tab " + label, window,
       [&](const SeenWindow& seen) { return seen.widget(tabs)["current"] == label; });
}

void MouseHands::dismiss(const QString& window) {
  const SeenWindow seen = active(window);
  click(seen, {});
  waitUntilGone(seen);
}

void MouseHands::cancel(const QString& window) {
  const SeenWindow seen = active(window);
  click(seen, {{"button", "Cancel"}});
  waitUntilGone(seen);
}

}  // namespace journey
