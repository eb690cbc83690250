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

/// The error that shfmt reports on its standard error, "<standard input>:LINE:COLUMN: what is wrong"; each
/// number is "?" where it is larger than shfmt counts. Returns nothing when the report is not of that form.
std::optional<platform::ScriptError> errorOfFormatter(const QString& source, const QString& report);

/// The error that `sh -n` reports, "sh: LINE: what is wrong". Usually the report names the token, too; where
/// that occurs once in the line, it is the place.
platform::ScriptError errorOfSyntaxCheck(const QString& source, const QString& report);

/// The error of a script that did not end well: its standard error, or `ending` where that is empty.
/// `name` is the file that the shell was given; where the shell itself speaks, "NAME: LINE: what is wrong",
/// that line is the place, and "sh" stands in the message instead of the name.
platform::ScriptError errorOfRun(const QString& source, const QString& standardError, const QString& name,
                                 const QString& ending);

}  // namespace velmora::desktop
