// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

#include "platform/scripts/Script.h"

namespace velmora::desktop {

/// What is to be told apart in a script of the POSIX shell, as its grammar has it: reserved words where they
/// are reserved, strings with their quotes, comments. What a string holds of commands and expansions is not
/// part of it, and neither is a here-document. An unfinished string reaches to the end.
QList<platform::ScriptText::Run> styledRuns(const QString& source);

}  // namespace velmora::desktop
