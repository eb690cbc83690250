// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

#include "platform/scripts/Script.h"

namespace velmora::desktop {

/// The parts of a POSIX shell script that are styled, as its grammar has them: reserved words where they
/// are reserved, strings with their quotes, comments. Commands and expansions inside a string are not styled,
/// nor is a here-document. An unfinished string reaches to the end.
QList<platform::ScriptText::Run> styledRuns(const QString& source);

}  // namespace velmora::desktop
