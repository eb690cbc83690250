// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/settings/Translations.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QTranslator>

#include "base/log/Log.h"

namespace velmora::desktop {

namespace {

QStringList translationsIn(const QString& folder, const QString& language) {
  if (folder.isEmpty()) return {};
  QStringList paths;
  const QDir dir(folder);
  for (const QString& name :
       dir.entryList({QStringLiteral("*_%1.qm").arg(language)}, QDir::Files, QDir::Name))
    paths.append(dir.filePath(name));
  return paths;
}

/// "de" of "de-AT" or "de_AT".
QString languageOf(const QString& locale) {
  return locale.section(QLatin1Char('-'), 0, 0).section(QLatin1Char('_'), 0, 0).toLower();
}

}  // namespace

Translations::Translations(const QStringList& folders, const QLocale& locale)
    : language_(languageFor(locale.uiLanguages(), folders.value(0))) {
  if (language_ == QLatin1String("en")) return;
  load(QLibraryInfo::path(QLibraryInfo::TranslationsPath) + QStringLiteral("/qtbase_%1.qm").arg(language_));
  for (const QString& folder : folders) {
    for (const QString& path : translationsIn(folder, language_)) load(path);
  }
}

Translations::~Translations() = default;

void Translations::load(const QString& path) {
  auto translator = std::make_unique<QTranslator>();
  // Where a desktop has Qt without its translations, a few buttons speak English; that is no reason to stop.
  if (!translator->load(path)) return base::logLine(QStringLiteral("No translation in %1").arg(path));
  QCoreApplication::installTranslator(translator.get());
  translators_.push_back(std::move(translator));
}

QString languageFor(const QStringList& preferred, const QString& folder) {
  const QString english = QStringLiteral("en");
  for (const QString& wanted : preferred) {
    const QString language = languageOf(wanted);
    if (language == english || !translationsIn(folder, language).isEmpty()) return language;
  }
  return english;
}

QStringList translationFolders(const QString& bundleResourcePath) {
  const QString share = QFileInfo(bundleResourcePath).path();
  return {share + QStringLiteral("/velmora/translations"),
          bundleResourcePath + QStringLiteral("/translations")};
}

}  // namespace velmora::desktop
