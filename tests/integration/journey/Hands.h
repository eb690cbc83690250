// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <functional>

#include "testing/person/ProbedApplication.h"
#include "tests/integration/journey/Screen.h"

namespace journey {

/// What a journey is made with: one kind of hands. Each operation waits until it can begin, and until what it
/// was to bring about can be seen. A window is looked at anew in every operation.
class Hands {
 public:
  Hands(velmora::testkit::ProbedApplication& application, Screen& screen)
      : application_(application), screen_(screen) {}
  virtual ~Hands() = default;

  /// Picks a command of the document window's menus: object names of the menu, of a menu in it, of the item.
  virtual void choose(const QStringList& path) = 0;
  /// Presses a button of a window, by its text.
  virtual void press(const QString& window, const QString& button) = 0;
  /// Presses a button or turns a check box, by its object name.
  virtual void push(const QString& window, const QString& widget) = 0;
  /// Puts a text into a field in place of what is there. The mouse leaves it with its next click, the tab key
  /// now.
  virtual void fill(const QString& window, const QString& field, const QString& text) = 0;
  /// Picks an entry of a pop-up list.
  virtual void pick(const QString& window, const QString& list, const QString& entry) = 0;
  /// Brings a tab to the front.
  virtual void turnTo(const QString& window, const QString& tabs, const QString& label) = 0;
  /// Closes a window that has no button for it.
  virtual void dismiss(const QString& window) = 0;
  /// Says no to a system panel or an alert by its Cancel.
  virtual void cancel(const QString& window) = 0;

  /// The window of that name that has the keyboard; an alert and a system panel go by their classes.
  velmora::testkit::SeenWindow active(const QString& window);
  /// The window of that name of which that holds; `what` names it in the message.
  velmora::testkit::SeenWindow when(const QString& what, const QString& window,
                                    const std::function<bool(const velmora::testkit::SeenWindow&)>& holds);
  void waitUntilGone(const velmora::testkit::SeenWindow& window);

 protected:
  velmora::testkit::Person& person() { return application_.person(); }
  Screen& screen() { return screen_; }
  velmora::testkit::ProbeClient& probe() { return application_.probe(); }
  /// The popped-up menu that has an entry of that name.
  velmora::testkit::SeenWindow menuWith(const QString& entry);
  /// Replaces what is in the field that has the keyboard.
  void typeOver(const QString& window, const QString& field, const QString& text);

 private:
  velmora::testkit::ProbedApplication& application_;
  Screen& screen_;
};

/// Whether it is the window of that name; an alert and a system panel go by their classes.
bool is(const velmora::testkit::SeenWindow& seen, const QString& window);

/// The member of a list of descriptions whose "name" or "text" that is; empty when there is none.
QJsonObject named(const QJsonArray& descriptions, const QString& name);

}  // namespace journey
