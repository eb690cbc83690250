// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>
#include <functional>

#include "testing/person/ProbeClient.h"

namespace velmora::testkit {

/// One visible window, as it was when it was looked at.
class SeenWindow {
 public:
  explicit SeenWindow(const QJsonObject& description = {}) : description_(description) {}

  bool exists() const { return !description_.isEmpty(); }
  int id() const { return description_["id"].toInt(); }
  QString name() const { return description_["name"].toString(); }
  QString title() const { return description_["title"].toString(); }
  bool active() const { return description_["active"].toBool(); }
  /// Where it is on the screen, without its frame.
  QRect place() const;
  /// A popped-up list or menu.
  bool isPopup() const { return description_["popup"].toBool(); }
  bool isMenu() const { return isPopup() && description_.contains("items"); }
  bool isAlert() const { return description_.contains("alert"); }
  QString alertText() const { return description_["alert"]["text"].toString(); }
  QString alertInformation() const { return description_["alert"]["information"].toString(); }
  /// A visible widget's description; empty when there is none of that name.
  QJsonObject widget(const QString& name) const;
  QString text(const QString& widgetName) const { return widget(widgetName)["text"].toString(); }
  /// In pixels of the screen.
  QSize size(const QString& widgetName) const;
  /// Pixels of the screen for one unit of the window's coordinates.
  double pixelRatio() const { return description_["pixelRatio"].toDouble(1); }
  /// The texts of the buttons that can be pressed.
  QStringList buttons() const;
  /// In a few words, for a message.
  QString summary() const;
  /// All of it, as the probe says it.
  const QJsonObject& description() const { return description_; }

 private:
  QJsonObject description_;
};

/// Someone in front of the application: looks, clicks, types, and waits for what must follow. Every operation
/// throws Differs, with all that is on the screen, when it cannot be done or what is waited for does not
/// come.
class Person {
 public:
  explicit Person(ProbeClient& probe) : probe_(probe) {}

  QList<SeenWindow> look();
  /// What is on the screen, in a few words.
  QString screen();
  /// Waits for a window of which that holds; `what` names it in the message.
  SeenWindow waitFor(const QString& what, const std::function<bool(const SeenWindow&)>& holds,
                     double seconds = 5);
  /// Waits until something holds of the whole screen.
  void waitUntilScreen(const QString& what, const std::function<bool(const QList<SeenWindow>&)>& holds,
                       double seconds = 5);

  /// Waits for an alert with that message, presses the button and sees it go. Gives the alert as it was.
  SeenWindow answer(const QString& message, const QString& button, double seconds = 5);
  /// Presses the button with that text.
  void press(const SeenWindow& window, const QString& button);
  /// Opens a menu of the window's menu bar, and gives it.
  SeenWindow open(const SeenWindow& window, const QString& menu);
  /// Opens a menu of the window's menu bar and picks an entry. Menus and entries go by their texts or,
  /// whatever the language, by their object names.
  void choose(const SeenWindow& window, const QString& menu, const QString& entry);
  /// Presses a named button.
  void click(const SeenWindow& window, const QString& widget);
  /// Clicks a point of a widget.
  void clickAt(const SeenWindow& window, const QString& widget, const QPoint& point);
  /// Clicks the tab with that label.
  void chooseTab(const SeenWindow& window, const QString& tabs, const QString& label);
  /// Clicks into a text field, replaces what is in it, and leaves it with the tab key.
  void enter(const SeenWindow& window, const QString& field, const QString& text);
  /// Types over what is in the field that has the keyboard already, and leaves it with the tab key.
  void typeOver(const SeenWindow& window, const QString& field, const QString& text);
  /// Strokes keys, as QKeySequence names them.
  void press(const QString& keys);
  /// Picks an entry of a pop-up list, by its text or its place; the first has place 0.
  void pick(const SeenWindow& window, const QString& list, const QString& entry);
  void pick(const SeenWindow& window, const QString& list, qsizetype place);

  /// Draws a widget, or the whole window, as it is now into a file.
  void picture(const SeenWindow& window, const QString& widget, const QString& file);
  void picture(const SeenWindow& window, const QString& file);

 private:
  void must(const QString& what, QJsonObject command);
  SeenWindow waitForFocus(const SeenWindow& window, const QString& field);

  ProbeClient& probe_;
};

}  // namespace velmora::testkit
