// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QString>

class QWidget;

namespace velmora::testkit::probe {

/// A place in a window that can be pointed at.
struct Target {
  QPointer<QWidget> widget;
  QPoint point;   ///< in the widget's own coordinates
  QString error;  ///< why there is no such place
};

/// Sees what a person in front of the screen sees, and says it in JSON.
class Eyes {
 public:
  /// Every visible window: "id" (its own for as long as it lives), "name" (its own object name, else that of
  /// the first named thing in it), "class", "title", "active", "modal", "popup", "geometry" [x, y, width,
  /// height], "pixelRatio", "edited". A message box has "alert" {"text", "information"}, a file panel
  /// "panel". "widgets" lists what is in it, visible, and has a name, is a button or has the focus: "name",
  /// "class", "enabled", "focus", "geometry" (in the window) and, where it has them, "text", "readOnly",
  /// "checked", "items", "tabs", "current"; a label the "buddy" that its "mnemonic" leads to. "menus" are the
  /// entries of the menu bar, "items" those of a popped-up menu: "text", "name", "mnemonic", "enabled" and,
  /// where they are so, "checked" and "current".
  QJsonArray windows();
  /// The short form: id, name, class and title.
  QJsonObject identity(QWidget* window);

  /// The place that a request points at. "window" is a window's id; in it, nothing for its middle, or one of
  ///   "widget"           the middle of the widget with that object name
  ///   "widget", "at"     a point [x, y] of it
  ///   "widget", "tab"    the tab of that label
  ///   "button"           the middle of the push button with that text
  ///   "row"              the row with that text of a popped-up list
  ///   "menu"             the menu bar's entry of that text, or whose menu has that object name
  ///   "item"             the entry of that text or object name of a popped-up menu
  Target find(const QJsonObject& request);

  /// Draws every visible window into "folder/prefix<name>.png"; gives {"files": [...]} or {"error"}.
  QJsonObject takePictures(const QString& folder, const QString& prefix);
  /// Takes the whole screen as it is, into a file; gives {} or {"error"}.
  QJsonObject takeScreen(const QString& file);
  /// Draws the widget that the request points at into a file; gives {} or {"error"}.
  QJsonObject takePicture(const QJsonObject& request, const QString& file);

 private:
  int idOf(QWidget* window);

  QHash<QWidget*, int> ids_;
  int lastId_ = 0;
  QObject lifetime_;
};

/// A text as it is seen: without the mark of its keyboard shortcut.
QString withoutMnemonic(const QString& text);

}  // namespace velmora::testkit::probe
