// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QJsonObject>
#include <QKeySequence>
#include <QObject>
#include <QString>
#include <deque>
#include <functional>

#include "testing/probe/Eyes.h"

namespace velmora::testkit::probe {

/// Clicks and types as a person does: events enter where the window system's enter, so that focus, shortcuts,
/// popups and modality decide what becomes of them. What a person could not reach is refused: something
/// hidden, disabled, covered, behind a modal dialog or outside an open menu.
///
/// One event a turn of the event loop. An event that opens a dialog does not return before the dialog closes;
/// the events after it are then worked off from inside the dialog's loop.
class Hands : public QObject {
 public:
  /// Called once when the last event has been dealt with, or a dialog's loop has taken over; the error is
  /// empty when all went well.
  using Done = std::function<void(const QString& error)>;

  explicit Hands(Eyes& eyes) : eyes_(eyes) {}

  /// Brings the target's window to the front, as the click of a person does, and clicks.
  void click(const QJsonObject& target, Done done);
  void type(const QString& text, Done done);
  void press(const QKeySequence& keys, Done done);

 private:
  enum class Outcome { Done, Wait, Failed };
  struct Step {
    std::function<Outcome(QString& error)> check;  // does not run the event loop
    std::function<void()> act;                     // may
  };
  struct Job {
    std::deque<Step> steps;
    Done done;
    qint64 deadline = 0;
  };

  void begin(Job job);
  void schedule(int milliseconds);
  void turn();
  void finish(const QString& error);
  void addKey(Job& job, int key, Qt::KeyboardModifiers modifiers, const QString& text);

  Eyes& eyes_;
  std::deque<Job> jobs_;
};

/// Why a person could not click there now; empty when one could.
QString obstacle(const Target& target);

/// For a pointer that is moved from outside: {"at": [x, y]}, the target's place on the screen in its pixels,
/// or
/// {"error"} when a click there would go elsewhere, to another window too.
QJsonObject placeOnScreen(const Target& target);

}  // namespace velmora::testkit::probe
