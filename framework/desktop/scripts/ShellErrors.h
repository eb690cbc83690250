// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <optional>

#include "platform/scripts/Script.h"

namespace velmora::desktop {

/// The stretch of a source at which a tool found an error: the token that begins there; where none does, the
/// rest of the line; where nothing is left of it, the whole line. Blanks at both ends are left out. `line`
/// counts from 1; a line that is blank, or behind the end, stands for the last one before it with text.
/// `column` counts bytes of UTF-8 from 1, as shfmt does; 0 when it is not known, which means the whole line.
platform::TextRange rangeOfPlace(const QString& source, qsizetype line, qsizetype column);

/// What shfmt reports of a source on its standard error, "<standard input>:LINE:COLUMN: what is wrong"; each
/// number is "?" where it is larger than shfmt counts. Nothing when the report is not of that form.
std::optional<platform::ScriptError> errorOfFormatter(const QString& source, const QString& report);

/// What `sh -n` reports of a source, "sh: LINE: what is wrong". Most often it names the token, too, which is
/// taken for the place when it occurs once in the line.
platform::ScriptError errorOfSyntaxCheck(const QString& source, const QString& report);

/// What a script that did not end well has to say: its standard error, and `ending` where that is empty.
/// `name` is the file that the shell was given; where the shell itself speaks, "NAME: LINE: what is wrong",
/// that line is the place, and "sh" stands in the message instead of the name.
platform::ScriptError errorOfRun(const QString& source, const QString& standardError, const QString& name,
                                 const QString& ending);

}  // namespace velmora::desktop
