// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QLocale>
#include <QString>
#include <QStringList>
#include <memory>
#include <vector>

class QTranslator;

namespace velmora::desktop {

/// The texts of the program in the user's language, for as long as it lives. Make it before any window: texts
/// that have been looked up do not change.
///
/// `folders` hold translations, NAME_LANGUAGE.qm; where two have a text, the later folder's counts. The
/// language is the first of the user's, in the order of their preference, that is English (which the texts
/// are in already) or that the first folder has. The texts of Qt's own windows follow it, so that no window
/// speaks two languages.
class Translations {
 public:
  explicit Translations(const QStringList& folders, const QLocale& locale = QLocale());
  ~Translations();
  Translations(const Translations&) = delete;
  Translations& operator=(const Translations&) = delete;

  /// Two small letters: "de"; "en" when there is nothing to translate.
  const QString& language() const { return language_; }

 private:
  void load(const QString& path);

  QString language_;
  std::vector<std::unique_ptr<QTranslator>> translators_;
};

/// The first of the languages that a user prefers ("de-AT", "fr_FR") that is English or that `folder` has.
/// English where there is none.
QString languageFor(const QStringList& preferred, const QString& folder);

/// The folders in which the application of that bundle keeps translations: the framework's, then its own.
QStringList translationFolders(const QString& bundleResourcePath);

}  // namespace velmora::desktop
