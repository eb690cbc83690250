// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/settings/Translations.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "platform/text/Localization.h"
#include "testing/standins/LogRecorder.h"
#include "testing/window/UserActions.h"

using namespace velmora;

using velmora::desktop::Translations;
using velmora::platform::localizedString;

namespace {

const QString Share = QStringLiteral(VELMORA_SHARE);
const QStringList Folders = desktop::translationFolders(Share + "/growth");

QString ofQt() { return QCoreApplication::translate("QPlatformTheme", "Cancel"); }

}  // namespace

TEST(Translations, StandBesideTheApplication) {
  EXPECT_EQ(Folders, (QStringList{Share + "/velmora/translations", Share + "/growth/translations"}));
  for (const QString& folder : Folders)
    for (const char* language : {"de", "es", "fr"})
      EXPECT_EQ(QDir(folder).entryList({QString("*_%1.qm").arg(language)}).size(), 1) << language;
}

TEST(Translations, HoldAsLongAsTheyLive) {
  {
    const Translations german(Folders, QLocale("de_DE"));
    EXPECT_EQ(german.language(), "de");
    EXPECT_EQ(localizedString("Document", "Untitled"), "Ohne Titel");
    EXPECT_EQ(localizedString("VelmoraDocument", "Needs the sex."), "Das Geschlecht fehlt.");
    EXPECT_EQ(ofQt(), "Abbrechen");
  }
  EXPECT_EQ(localizedString("Document", "Untitled"), "Untitled");
  EXPECT_EQ(ofQt(), "Cancel");
}

TEST(Translations, ServeEveryCountryOfALanguage) {
  for (const char* locale : {"de_AT", "de_CH", "fr_CA", "es_MX", "es_419"}) {
    const Translations translations(Folders, QLocale(locale));
    EXPECT_EQ(translations.language(), QString(locale).left(2));
    EXPECT_NE(localizedString("Document", "Untitled"), "Untitled") << locale;
  }
}

TEST(Translations, LeaveEnglishWhereTheLanguageIsNotKnown) {
  for (const QLocale& locale : {QLocale("it_IT"), QLocale::c(), QLocale("en_GB")}) {
    const Translations translations(Folders, locale);
    EXPECT_EQ(translations.language(), "en");
    EXPECT_EQ(localizedString("Document", "Untitled"), "Untitled");
    EXPECT_EQ(ofQt(), "Cancel") << "two languages in one window";
  }
}

TEST(Translations, FollowTheUsersOrderOfLanguages) {
  const auto chosen = [](const QStringList& preferred) {
    return desktop::languageFor(preferred, Folders.first());
  };
  EXPECT_EQ(chosen({"fr-FR", "fr", "de"}), "fr");
  EXPECT_EQ(chosen({"it-IT", "es_MX", "de"}), "es");
  EXPECT_EQ(chosen({"en", "de"}), "en");
  EXPECT_EQ(chosen({"it", "en-US", "de"}), "en");
  EXPECT_EQ(chosen({"DE-Latn-AT"}), "de");
  EXPECT_EQ(chosen({"C"}), "en");
  EXPECT_EQ(chosen({}), "en");
  EXPECT_EQ(desktop::languageFor({"de"}, Share + "/no such folder"), "en");
}

TEST(Translations, LetTheLaterFolderSpeakLast) {
  const QTemporaryDir folder;
  ASSERT_TRUE(QFile::copy(Share + "/velmora/translations/velmora_fr.qm", folder.filePath("own_de.qm")));
  const Translations translations(Folders + QStringList{folder.path()}, QLocale("de"));
  EXPECT_EQ(localizedString("Document", "Untitled"), "Sans titre");
}

TEST(Translations, GoOnWithoutAFileThatIsDamagedOrMissing) {
  const QTemporaryDir folder;
  QFile damaged(folder.filePath("velmora_de.qm"));
  ASSERT_TRUE(damaged.open(QIODevice::WriteOnly) && damaged.write("no translation") > 0);
  damaged.close();
  testkit::LogRecorder log;
  const Translations translations({folder.path(), folder.filePath("none")}, QLocale("de"));
  EXPECT_EQ(translations.language(), "de");
  EXPECT_EQ(localizedString("Document", "Untitled"), "Untitled");
  EXPECT_EQ(log.lines().filter("No translation in").size(), 1);
  EXPECT_EQ(Translations({}, QLocale("de")).language(), "en");
}
