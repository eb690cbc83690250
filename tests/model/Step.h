// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <optional>
#include <random>
#include <vector>

namespace model {

/// What can happen. What the user does, he does in the front window, unless it is said otherwise.
enum class Kind {
  Link,  ///< the viewer tells of patient `text`; number: 1 with birth date, 2 with study date, 4.. day; "-":
         ///< none
  Pass,  ///< `text` seconds go by
  TypeIdentifier,  ///< types `text`; number 1: and presses Return
  TypeBirth,
  TypeDate,
  TypeMeasure,
  TypeOn,  ///< types `text` where the keyboard is, after what stands there; number 1: and presses Return
  NewExam,
  DeleteExam,   ///< asks in a sheet, which stays open
  AnswerSheet,  ///< number 1: Remove, 0: Cancel
  Next,
  Previous,
  Click,  ///< on the point of examination `number` in the chart
  Save,
  SaveAs,
  Close,
  CloseAll,
  Quit,        ///< and starts again, if nothing is in the way
  SessionEnd,  ///< the session ends and nobody can be asked; it starts again
  NewDocument,
  OpenFile,   ///< with the panel
  BatchOpen,  ///< of file `number`
  Export,
  Front,          ///< brings window `number` to the front
  AutoSave,       ///< number 1: on
  ToOsirix,       ///< "Export to OsiriX"; number 1: on
  ForeignChange,  ///< somebody else adds an examination to file `number`
  ForeignRemove,  ///< somebody else removes file `number`
  ForeignDamage,  ///< file `number` is damaged
  ForeignRace,    ///< somebody else saves the file of the next save while that is being written
  OpenKept,       ///< opens kept copy `number`, if there is one that opens
  FailingWrites,  ///< number 1: the disk of the save folder is full from here on
  FailingCopies,  ///< number 1: the disk of the kept copies is full from here on
  KeepsBlank,     ///< number 1: closing the last document makes a blank one, closing that quits
};
constexpr int KindCount = static_cast<int>(Kind::KeepsBlank) + 1;

/// Something that happens.
struct Event {
  Kind kind = Kind::Pass;
  QString text;
  int number = 0;

  bool operator==(const Event&) const = default;
};

/// How a question of the program is answered, and what happens while it waits for the answer.
struct Answer {
  /// Alerts: the button, from the left. Panels: 0 cancels, anything else chooses one of a few files.
  int choice = 0;
  QList<Event> meanwhile;

  bool operator==(const Answer&) const = default;
};

/// One step of a sequence: something happens, and the questions that come up are answered in this order.
/// Questions beyond the answers given get the last button.
struct Step : Event {
  QList<Answer> answers;

  bool operator==(const Step&) const = default;
};

/// A readable line: "type-identifier P1 1 ? 0 2:link=P2=3". Without text it is "-".
QString lineOf(const Step& step);
/// The step of such a line; nothing when it is none.
std::optional<Step> stepOf(const QString& line);

/// A random step, the `serial`th of its sequence.
Step randomStep(std::mt19937& random, int serial);

}  // namespace model
