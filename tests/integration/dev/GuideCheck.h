// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

/// Reads the pages of the user guide and says what is wrong with them.
namespace guide {

/// What one page says of itself and of the program.
struct Page {
  QStringList faults;  ///< why it is not well-formed, or breaks a rule that every page keeps
  QString language;    ///< of the html element
  QString title;
  QStringList sections;      ///< the ids of its sections, in order
  QSet<QString> ids;         ///< all of them
  QStringList links;         ///< targets of links and the stylesheet's
  QStringList images;        ///< targets of images
  QStringList programTexts;  ///< what it quotes from the program's windows: the contents of its b elements
  int words = 0;
};

/// Reads a page. It must be written as XML, which browsers read as HTML 5 just the same; have no script, no
/// style of its own and nothing from elsewhere; and describe each of its images.
Page readPage(const QByteArray& html);

/// The targets that do not exist, seen from the page in `folder`: files, and the places "#id" in this page.
QStringList missingTargets(const Page& page, const QString& folder);

/// The texts in a program's sources: string literals of C++ and the strings of interface files, below those
/// folders.
QSet<QString> textsOfSources(const QStringList& folders);
/// The translations in a translation file (.ts) that are finished.
QSet<QString> textsOfTranslation(const QByteArray& ts);

/// The texts that a page quotes and the program does not have. The marks of keyboard shortcuts and the dots
/// after a menu entry do not count; where the program's text has a place holder ("%@"), anything may stand.
QStringList unknownTexts(const Page& page, const QSet<QString>& programTexts);

}  // namespace guide
