// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/person/ScreenInput.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QMap>

#include "testing/process/Program.h"
#include "testing/waiting/Waiting.h"

namespace velmora::testkit {

namespace {

// As X names a key: modifiers and letters are small, and a few have names of their own.
QString nameOfKey(const QString& key) {
  static const QMap<QString, QString> others{
      {"Backspace", "BackSpace"}, {"PgDown", "Next"}, {"PgUp", "Prior"}, {"Space", "space"}};
  const bool isSmall = key.size() == 1 || key == "Ctrl" || key == "Alt" || key == "Shift";
  return isSmall ? key.toLower() : others.value(key, key);
}

}  // namespace

void ScreenInput::click(const SeenWindow& window, QJsonObject target) {
  const QString what = QString::fromUtf8(QJsonDocument(target).toJson(QJsonDocument::Compact));
  target["do"] = "where";
  target["window"] = window.id();
  QJsonObject place;
  waitUntil(Patience.count(), [&] {
    const QJsonArray before = place["at"].toArray();
    place = probe_.ask(target);
    // Twice in the same place: what still moves or grows is not clicked.
    return !before.isEmpty() && place["at"].toArray() == before;
  });
  const QJsonArray at = place["at"].toArray();
  if (at.isEmpty())
    throw Differs("to click " + what + " in " + window.summary(),
                  place["error"].toString() + "; on the screen: " + probe_.screen());
  run({"mousemove", QString::number(at[0].toInt()), QString::number(at[1].toInt()), "click", "1"});
}

void ScreenInput::key(const QString& keys) {
  QStringList names;
  for (const QString& key : keys.split('+')) names.append(nameOfKey(key));
  run({"key", names.join('+')});
}

void ScreenInput::type(const QString& text) { run({"type", "--delay", "1", text}); }

void ScreenInput::run(const QStringList& arguments) {
  Program xdotool("xdotool", environment_);
  if (xdotool.run(arguments) != 0)
    throw Differs("xdotool " + arguments.join(' '), xdotool.ending() + ", " + xdotool.errors());
}

}  // namespace velmora::testkit
