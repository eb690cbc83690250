// SPDX-License-Identifier: LGPL-3.0-or-later
#include "tests/integration/journey/Hands.h"

#include <algorithm>

using velmora::testkit::SeenWindow;

namespace journey {

bool is(const SeenWindow& seen, const QString& window) {
  return seen.name() == window || seen.description()["class"] == window;
}

QJsonObject named(const QJsonArray& descriptions, const QString& name) {
  for (const auto& description : descriptions)
    if (description.toObject()["name"] == name || description.toObject()["text"] == name)
      return description.toObject();
  return {};
}

SeenWindow Hands::when(const QString& what, const QString& window,
                       const std::function<bool(const SeenWindow&)>& holds) {
  return person().waitFor(
      what, [&](const SeenWindow& seen) { return is(seen, window) && holds(seen); }, Patience);
}

SeenWindow Hands::active(const QString& window) {
  return when(window + " with the keyboard", window, [](const SeenWindow& seen) { return seen.active(); });
}

void Hands::waitUntilGone(const SeenWindow& window) {
  person().waitUntilScreen(
      window.summary() + " to go",
      [&](const QList<SeenWindow>& windows) {
        return std::none_of(windows.cbegin(), windows.cend(),
                            [&](const SeenWindow& seen) { return seen.id() == window.id(); });
      },
      Patience);
}

SeenWindow Hands::menuWith(const QString& entry) {
  return person().waitFor(
      "a menu with " + entry,
      [&](const SeenWindow& seen) {
        return seen.isMenu() && !named(seen.description()["items"].toArray(), entry).isEmpty();
      },
      Patience);
}

void Hands::typeOver(const QString& window, const QString& field, const QString& text) {
  const auto shows = [&](const QString& wanted) {
    when(field + " to show \"" + wanted + '"', window, [&](const SeenWindow& seen) {
      return seen.widget(field)["focus"].toBool() && seen.text(field) == wanted;
    });
  };
  screen().key("ctrl+a");
  if (!active(window).text(field).isEmpty()) {
    screen().key("BackSpace");
    shows(QString());
  }
  screen().type(text);
  shows(text);
}

}  // namespace journey
