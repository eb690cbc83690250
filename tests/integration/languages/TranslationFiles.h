// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace languages {

/// One text of a .ts file.
struct Text {
  QString context;
  QString source;
  QString translation;
  QString state;  ///< "unfinished", "obsolete", "vanished"; empty for a translation that holds
};

/// The languages that the program speaks besides English.
QStringList translated();
/// English and these.
QStringList all();

/// The .ts files of a language, or of every one, relative to the source tree.
QStringList translationFiles(const QString& language = QStringLiteral("*"));
/// The texts of a .ts file; throws when it cannot be read.
QList<Text> textsOf(const QString& path);
/// All texts of a language: the framework's and the sample application's.
QList<Text> textsIn(const QString& language);

/// The letter that follows the mark of a mnemonic, small; empty for a text without one.
QString mnemonicOf(const QString& text);
/// The places for what varies ("%@", "%ld", "%s", "%1"), in order.
QStringList placeholdersOf(const QString& text);

}  // namespace languages
