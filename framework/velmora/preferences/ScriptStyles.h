// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QPalette>
#include <QString>
#include <QTextCharFormat>
#include <QTextCursor>

#include "platform/scripts/Script.h"

class QTextDocument;

namespace velmora {

/// How a part of a script looks. Its colour stands out from the palette's Base by 4.5 to 1 at least, which is
/// what text needs (WCAG 2.1, success criterion 1.4.3); keywords are bold and comments slanted as well, for
/// whoever does not see the colours.
QTextCharFormat formatOfScriptStyle(platform::ScriptText::Style style, const QPalette& palette);

/// Replaces the whole content of a document by a script in its look, in one step that can be undone.
void setScriptText(QTextDocument& document, const platform::ScriptText& script, const QPalette& palette);

/// The script in a document, to the character: QTextDocument's own plain text has spaces for no-break spaces.
QString scriptInDocument(const QTextDocument& document);

/// A cursor that selects a stretch of the script in a document, as far as the document reaches.
QTextCursor cursorSelecting(QTextDocument& document, platform::TextRange range);

}  // namespace velmora
