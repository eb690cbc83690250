// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

/// Text from a feed, which anybody may have written, made fit for the XML reader and for people.
namespace velmora::orv {

/// The feed as text. Returns nothing when it is not valid in the encoding that it names (UTF-8 where it names
/// none), or has a document type declaration or a tag of more than 4096 characters. Checked by hand, because
/// Qt's reader compares every attribute of a tag with every other: a feed of 1 MiB that is one tag kept it
/// busy for 56 seconds, one that is a document type declaration for 15 (measured, Qt 6.4.2).
std::optional<QString> feedText(const QByteArray& feed);

/// The text on one line, without what cannot be seen, cut to `longest` characters.
QString oneLine(const QString& text, qsizetype longest);

/// HTML as plain text, a screenful at most: 20 lines, 1200 characters.
QString plainText(const QString& html);

}  // namespace velmora::orv
