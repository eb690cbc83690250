// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <memory>
#include <optional>

#include "testing/person/InputDevice.h"
#include "testing/person/ProbeClient.h"

namespace velmora::testkit {

/// Someone in front of another program: looks, points, types, and waits for what must follow. Every operation
/// throws Differs, with all that is on the screen, when it cannot be done or what is waited for does not
/// come. What is done with the mouse and what with the keyboard, the classes that derive from this say.
class Person {
 public:
  /// Waits for that many seconds where nothing else is said.
  Person(ProbeClient& probe, std::unique_ptr<InputDevice> device, double patience)
      : probe_(probe), device_(std::move(device)), patience_(patience) {}
  virtual ~Person() = default;
  Person(const Person&) = delete;
  Person& operator=(const Person&) = delete;

  /// Picks a command of a window's menus: the menu, those in it, the entry, by their texts or, whatever the
  /// language, by their object names.
  virtual void choose(const SeenWindow& window, const QStringList& path) = 0;
  /// Presses the button with that text.
  virtual void press(const SeenWindow& window, const QString& button) = 0;
  /// Presses a button or turns a check box, by its object name.
  virtual void push(const SeenWindow& window, const QString& widget) = 0;
  /// Puts a text into a field in place of what is there, and leaves the field in the way of that device.
  virtual void fill(const SeenWindow& window, const QString& field, const QString& text) = 0;
  /// Picks an entry of a pop-up list.
  virtual void pick(const SeenWindow& window, const QString& list, const QString& entry) = 0;
  /// Brings the tab with that label to the front.
  virtual void turnTo(const SeenWindow& window, const QString& tabs, const QString& label) = 0;
  /// Closes a window that has no button for it.
  virtual void dismiss(const SeenWindow& window) = 0;
  /// Says no to a system panel or an alert by its Cancel.
  virtual void cancel(const SeenWindow& window) = 0;

  /// Strokes keys, as QKeySequence names them.
  void key(const QString& keys) { device_->key(keys); }
  /// Presses the button with that text and sees the window go.
  void closeWith(const SeenWindow& window, const QString& button);
  /// Waits for an alert with that message, presses the button and sees it go. Gives the alert as it was.
  SeenWindow answer(const QString& message, const QString& button, std::optional<double> seconds = {});

  QList<SeenWindow> look() { return probe_.look(); }
  /// What is on the screen, in a few words.
  QString screen() { return probe_.screen(); }
  /// Waits until something holds of the whole screen; `what` names it in the message.
  void waitUntilScreen(const QString& what, const std::function<bool(const QList<SeenWindow>&)>& holds,
                       std::optional<double> seconds = {});
  /// Waits for a window of which that holds.
  SeenWindow waitFor(const QString& what, const std::function<bool(const SeenWindow&)>& holds,
                     std::optional<double> seconds = {});
  /// Waits for that window to be so.
  SeenWindow when(const SeenWindow& window, const QString& what,
                  const std::function<bool(const SeenWindow&)>& holds);
  /// Waits for the window of that name to have the keyboard.
  SeenWindow active(const QString& name);
  void waitUntilGone(const SeenWindow& window);
  /// Waits until no window of that name is there.
  void waitUntilGone(const QString& name);

 protected:
  InputDevice& device() { return *device_; }
  /// Waits for that window to have the keyboard.
  SeenWindow active(const SeenWindow& window);
  /// The popped-up menu that has an entry of that name.
  SeenWindow menuWith(const QString& entry);
  /// Replaces what is in the field once it has the keyboard.
  void replaceText(const SeenWindow& window, const QString& field, const QString& text);
  void waitForText(const SeenWindow& window, const QString& widget, const QString& text);
  void waitForTab(const SeenWindow& window, const QString& tabs, const QString& label);

 private:
  ProbeClient& probe_;
  std::unique_ptr<InputDevice> device_;
  double patience_;
};

}  // namespace velmora::testkit
