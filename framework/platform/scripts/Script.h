// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <memory>
#include <optional>

#include "base/Export.h"
#include "base/Result.h"

namespace velmora::platform {

/// A stretch of a text, in UTF-16 code units as QString counts them.
struct TextRange {
  qsizetype location = 0;
  qsizetype length = 0;
  bool operator==(const TextRange&) const = default;
};

/// Why a script could not be compiled or run.
struct ScriptError {
  QString message;       ///< the whole message
  QString briefMessage;  ///< its first words, on one line
  TextRange range;       ///< where in the source; empty, at its end, when that is not known
  bool operator==(const ScriptError&) const = default;
};

/// Success, or what is wrong with the script.
using ScriptResult = base::Result<void, ScriptError>;

/// A script's source as the script runner formats it, with the parts that are to be styled.
struct ScriptText {
  enum class Style { Keyword, String, Comment };
  struct Run {
    TextRange range;
    Style style;
    bool operator==(const Run&) const = default;
  };
  QString text;
  QList<Run> runs;  ///< in the order of the text, not overlapping
};

/// A script of the user's.
class VELMORA_EXPORT Script {
 public:
  virtual ~Script() = default;

  /// Looks for errors without running anything.
  virtual ScriptResult compileAndReturnError() = 0;
  /// The formatted source of a script that has been compiled. Returns nothing when it is formatted
  /// already.
  virtual std::optional<ScriptText> richTextSource() const = 0;
  /// Runs the script and waits for its end; fails unless that is a good one. Does not begin when its runner
  /// would refuse it as it stands. An error that compiling finds and its runner may never come to keeps
  /// nothing from running.
  virtual ScriptResult executeAndReturnError() = 0;
};

/// Makes scripts from their source.
class VELMORA_EXPORT Scripts {
 public:
  virtual ~Scripts() = default;
  /// Returns null when the text cannot be a script at all.
  virtual std::unique_ptr<Script> initWithSource(const QString& source) = 0;
  /// Asks a running script to end, so that whoever waits for it can go on soon. The base does nothing: a
  /// script that nobody can wait for needs no stopping.
  virtual void stopRunning() {}
};

}  // namespace velmora::platform
