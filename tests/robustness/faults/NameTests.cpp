// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Identifiers that are hard to make file names of.
#include <gtest/gtest.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QTabWidget>

#include "platform/controls/Alert.h"
#include "testing/files/Files.h"
#include "tests/robustness/faults/GrowthDesk.h"
#include "velmora/app/DatabaseFileCache.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;

using faults::GrowthDesk;
using faults::recordIn;

namespace {

struct Name {
  const char* what;
  QString identifier;
};

QList<Name> names() {
  return {
      {"a slash", QStringLiteral("12/345")},
      {"slashes all over", QStringLiteral("//a//b//")},
      {"a way up", QStringLiteral("..")},
      {"a way up and down", QStringLiteral("../../../../escaped")},
      {"a whole path", QStringLiteral("/etc/escaped")},
      {"one dot", QStringLiteral(".")},
      {"many dots", QStringLiteral(".......")},
      {"a leading dot", QStringLiteral(".hidden")},
      {"a dot at the end", QStringLiteral("end.")},
      {"the extension", QStringLiteral("A.growth")},
      {"only the extension", QStringLiteral(".growth")},
      {"the form of a temporary file", QStringLiteral(".0123456789abcdef.growth.unfinished")},
      {"spaces at the ends", QStringLiteral("  12 345 ")},
      {"a space", QStringLiteral(" ")},
      {"a no-break space", QString(QChar(0xA0))},
      {"a tilde", QStringLiteral("~")},
      {"a tilde and a slash", QStringLiteral("~/escaped")},
      {"a line feed", QStringLiteral("a\nb")},
      {"a tab and an escape", QStringLiteral("a\tb\x1b[2J")},
      {"a delete and a bell", QStringLiteral("a\x7f\x07")},
      {"quotation marks", QStringLiteral("\"a\" 'b' `c`")},
      {"a backslash", QStringLiteral("a\\b")},
      {"marks of the shell", QStringLiteral("$(touch escaped); rm * | > <&?")},
      {"a dash in front", QStringLiteral("-rf")},
      {"a percent sign", QStringLiteral("100%")},
      {"a percent code", QStringLiteral("a%41%2Fb%00")},
      {"places for arguments", QStringLiteral("%1 %2 %@ %ld %s %n")},
      {"marks of a URL", QStringLiteral("file:///a?b#c;d=e+f")},
      {"an ampersand", QStringLiteral("a&b<i>")},
      {"a name of Windows", QStringLiteral("CON: <AUX> |?*")},
      {"Hebrew", QStringLiteral("שלום")},
      {"Arabic with a mark of direction", QString(QChar(0x202E)) + QStringLiteral("ملف") + QChar(0x200F)},
      {"a composed letter", QString(QChar(0xE9))},
      {"a decomposed letter", QStringLiteral("e") + QChar(0x0301)},
      {"many combining marks", QStringLiteral("a") + QString(30, QChar(0x0336))},
      {"full-width digits", QStringLiteral("１２３")},
      {"plain digits", QStringLiteral("123")},
      {"a full-width slash", QString(QChar(0xFF0F))},
      {"beyond the basic plane", QStringLiteral("😀𝔸")},
      {"capitals", QStringLiteral("MIXED case")},
      {"the same in lower case", QStringLiteral("mixed CASE")},
      {"a letter that grows in capitals", QStringLiteral("straße ŉ")},
      {"as many letters as a name takes", QString(248, QLatin1Char('n'))},
      {"no character", QString(QChar(0xFFFE))},
      {"an end of line of Unicode", QString(QLatin1Char('a')) + QChar(0x2028) + QLatin1Char('b')},
  };
}

QString fileNameOf(const QString& identifier) {
  return QString(identifier).replace(QLatin1Char('/'), QLatin1Char('-'));
}

/// Save and export folder stand deep in the tree, so that a way out would end in it.
class Names : public testing::Test {
 protected:
  Names() {
    records = desk.home.makeFolder(QStringLiteral("one/two/three/four/Records"));
    charts = desk.home.makeFolder(QStringLiteral("one/two/three/four/Charts"));
    desk.desktop.defaults.setObject(records, velmora::settings::SaveDirectory);
    desk.desktop.defaults.setObject(charts, velmora::settings::ExportDirectory);
  }

  QStringList namesIn(const QString& folder) const {
    QStringList all =
        QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    all.sort();
    return all;
  }
  /// What stands anywhere but in the save folder, the export folder and the folder of kept copies.
  QStringList elsewhere() const {
    QStringList found = desk.files();
    found.removeIf([](const QString& file) {
      return file.startsWith(QStringLiteral("one/two/three/four/Records/")) ||
             file.startsWith(QStringLiteral("one/two/three/four/Charts/")) ||
             file.startsWith(QStringLiteral(".local/share/org.velmora.growth/"));
    });
    return found;
  }

  GrowthDesk desk;
  QString records;
  QString charts;
  testkit::LogRecorder log;
};

TEST_F(Names, OfRecordsAreTheIdentifiersWithDashesForSlashes) {
  QStringList expected;
  for (const Name& name : names()) {
    SCOPED_TRACE(name.what);
    GrowthDocument& document = desk.newRecord(name.identifier);
    ASSERT_EQ(document.identifier(), name.identifier);
    document.saveDocument();
    desk.desktop.runLoop.settle();
    const QString path = records + QLatin1Char('/') + fileNameOf(name.identifier) + QStringLiteral(".growth");
    EXPECT_EQ(recordIn(desk, path).identifier, name.identifier);
    expected.append(fileNameOf(name.identifier) + QStringLiteral(".growth"));
    desk.closeAll();
  }
  expected.sort();
  EXPECT_EQ(namesIn(records), expected);
  EXPECT_EQ(elsewhere(), QStringList());
  EXPECT_TRUE(desk.alerts.shown.isEmpty());
  std::printf("%d names\n", static_cast<int>(expected.size()));
}

TEST_F(Names, AreFoundAgainByTheLookUpThisSessionAndTheNext) {
  for (const Name& name : names()) {
    desk.newRecord(name.identifier).saveDocument();
    desk.closeAll();
  }
  velmora::DatabaseFileCache nextSession(desk.services.defaults, desk.services.fileManager,
                                         desk.services.runLoop, [](const QString&) {});
  nextSession.cacheDatabaseFiles();
  for (const Name& name : names()) {
    SCOPED_TRACE(name.what);
    EXPECT_TRUE(desk.controller.fileIsInCachedDatabaseFiles(fileNameOf(name.identifier)));
    EXPECT_TRUE(nextSession.contains(fileNameOf(name.identifier)));
  }
  for (const Name& name : names()) {
    SCOPED_TRACE(name.what);
    GrowthDocument& document = desk.newRecord(QStringLiteral("another"));
    ASSERT_TRUE(document.lookUp(fileNameOf(name.identifier), false));
    desk.desktop.runLoop.settle();
    const auto* found = dynamic_cast<GrowthDocument*>(desk.controller.currentDocument());
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->record().identifier, name.identifier);
    desk.closeAll();
  }
}

TEST_F(Names, OfChartsAreTheIdentifiersInCapitals) {
  QStringList expected;
  for (const Name& name : names()) {
    SCOPED_TRACE(name.what);
    GrowthDocument& document = desk.newRecord(name.identifier);
    document.doExport(false);
    const QString file = fileNameOf(name.identifier).toUpper() + QStringLiteral(" Weight.jpg");
    if (file.toUtf8().size() > 255) {
      EXPECT_FALSE(QFile::exists(charts + QLatin1Char('/') + file));  // an export that fails is silent
      continue;
    }
    EXPECT_TRUE(testkit::readFile(charts + QLatin1Char('/') + file).startsWith("\xff\xd8"))
        << qPrintable(file);
    if (!expected.contains(file)) expected.append(file);
    desk.closeAll();
  }
  expected.sort();
  EXPECT_EQ(namesIn(charts), expected);
  EXPECT_EQ(elsewhere(), QStringList());
  // Two identifiers differ in case only, and their charts therefore not at all.
  ASSERT_EQ(desk.alerts.shown.size(), 1);
  EXPECT_EQ(desk.alerts.shown.first().messageText, QStringLiteral("A file with that name already exists"));
}

TEST_F(Names, ThatNoFileCanHaveEndInAMessageAndARescueCopy) {
  struct Impossible {
    QString identifier;
    QString reason;
  };
  const QString tooLong = QStringLiteral("File name too long");
  for (const Impossible& each :
       {Impossible{QString(249, QLatin1Char('n')), tooLong},
        Impossible{QString(300, QLatin1Char('n')), tooLong}, Impossible{QString(100, QChar(0x5B57)), tooLong},
        Impossible{QStringLiteral("😀").repeated(70), tooLong},
        Impossible{QString(QLatin1Char('a')) + QChar(QChar::Null) + QLatin1Char('b'),
                   QStringLiteral("No file can have this name.")}}) {
    SCOPED_TRACE(qPrintable(each.identifier));
    desk.alerts.shown.clear();
    const auto rescuedBefore = desk.rescued().size();
    GrowthDocument& document = desk.newRecord(each.identifier);
    document.saveDocument();
    EXPECT_TRUE(document.isDocumentEdited());
    ASSERT_EQ(desk.alerts.shown.size(), 1);
    EXPECT_TRUE(desk.alerts.shown.first().messageText.endsWith(QStringLiteral("could not be saved.")));
    EXPECT_TRUE(desk.alerts.shown.first().informativeText.startsWith(each.reason))
        << qPrintable(desk.alerts.shown.first().informativeText);
    EXPECT_EQ(desk.rescued().size(), rescuedBefore + 1);
    document.doExport(false);
    desk.closeAll();
  }
  EXPECT_EQ(namesIn(records), QStringList());
  EXPECT_EQ(namesIn(charts), QStringList());
  EXPECT_EQ(elsewhere(), QStringList());
  for (const QString& copy : desk.rescued()) {
    EXPECT_NO_THROW(recordIn(desk, desk.rescueFolder() + QLatin1Char('/') + copy)) << qPrintable(copy);
  }
}

/// "a/b" and "a-b" have one file name between them, as the rule has it: then the later one tells what it
/// found.
TEST_F(Names, ThatAreOneToTheFolderLoseNeitherRecord) {
  desk.newRecord(QStringLiteral("a/b")).saveDocument();
  desk.closeAll();
  desk.newRecord(QStringLiteral("a-b")).saveDocument();
  desk.closeAll();
  EXPECT_EQ(namesIn(records), QStringList{QStringLiteral("a-b.growth")});
  EXPECT_EQ(recordIn(desk, records + QStringLiteral("/a-b.growth")).identifier, QStringLiteral("a-b"));
  ASSERT_EQ(desk.alerts.shown.size(), 1);
  EXPECT_EQ(desk.alerts.shown.first().messageText,
            QStringLiteral("Another version of the record 'a-b.growth' was in its place."));
  int kept = 0;
  for (const QString& file : desk.files()) {
    if (!file.contains(QStringLiteral("Earlier Versions"))) continue;
    EXPECT_EQ(recordIn(desk, desk.home.path(file)).identifier, QStringLiteral("a/b"));
    ++kept;
  }
  EXPECT_EQ(kept, 1);
}

/// On a folder that ignores case two names lead to one file, as two hard links do here.
TEST_F(Names, ThatDifferInCaseAreOneDocumentWhereTheyAreOneFile) {
  desk.newRecord(QStringLiteral("a1")).saveDocument();
  desk.desktop.runLoop.settle();
  const QString lower = records + QStringLiteral("/a1.growth");
  const QString upper = records + QStringLiteral("/A1.growth");
  ASSERT_EQ(::link(QFile::encodeName(lower).constData(), QFile::encodeName(upper).constData()), 0);
  EXPECT_EQ(&desk.opened(upper), &desk.opened(lower));
  EXPECT_EQ(desk.controller.documents().size(), 1);
}

TEST_F(Names, ThatDifferInCaseAreTwoDocumentsWhereTheyAreTwoFiles) {
  for (const char* name : {"a1", "A1"}) {
    desk.newRecord(QString::fromLatin1(name)).saveDocument();
    desk.desktop.runLoop.settle();
  }
  EXPECT_NE(&desk.opened(records + QStringLiteral("/a1.growth")),
            &desk.opened(records + QStringLiteral("/A1.growth")));
  EXPECT_EQ(desk.controller.documents().size(), 2);
}

}  // namespace
