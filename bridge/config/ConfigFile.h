// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

namespace bridge {

/// One "key = value" of a configuration file.
struct ConfigEntry {
  QString section;
  QString key;
  QString value;
  int line = 0;  ///< from 1
};

struct ConfigEntries {
  QList<ConfigEntry> entries;
  QStringList errors;  ///< "12: ...", beginning with the line number
};

/// Parses the syntax of a configuration file, not its meaning: "[section]" lines, "key = value" lines, empty
/// lines, and lines that begin with "#" or ";". A value is what follows the "=", without surrounding blanks:
/// there are no quotes, escapes or trailing comments, so that a password or a folder is written as it is. The
/// text is UTF-8.
ConfigEntries parseConfig(const QByteArray& text);

}  // namespace bridge
