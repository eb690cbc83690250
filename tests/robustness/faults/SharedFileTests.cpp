// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Two people use one save folder: each with an application, settings and kept copies of his own.
#include <gtest/gtest.h>

#include <QDir>

#include "orv/documents/OrvKeptCopies.h"
#include "platform/controls/Alert.h"
#include "testing/files/Files.h"
#include "tests/robustness/faults/GrowthDesk.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;

using faults::firstWeight;
using faults::GrowthDesk;
using faults::recordIn;

namespace {

class SharedFile : public testing::Test {
 protected:
  SharedFile() {
    other.desktop.defaults.setObject(mine.saveFolder(), velmora::settings::SaveDirectory);
    mine.savedRecord(QStringLiteral("A1"));
    mine.desktop.runLoop.settle();
  }

  QString file() const { return mine.pathOfRecord(QStringLiteral("A1")); }
  void saveWith(GrowthDesk& desk, const QString& weight) {
    GrowthDocument& document = desk.opened(file());
    desk.enterWeight(document, weight);
    document.saveDocument();
    desk.desktop.runLoop.settle();
  }
  /// The path at the end of the one alert, which says that another version was kept.
  QString pathInTheAlert(const GrowthDesk& desk) {
    if (desk.alerts.shown.size() != 1) {
      ADD_FAILURE() << desk.alerts.shown.size() << " alerts";
      return {};
    }
    EXPECT_EQ(desk.alerts.shown.first().messageText,
              QStringLiteral("Another version of the record 'A1.growth' was in its place."));
    const QString text = desk.alerts.shown.first().informativeText;
    const qsizetype start = text.indexOf(QLatin1Char('\'')) + 1;
    return text.mid(start, text.lastIndexOf(QLatin1Char('\'')) - start);
  }

  GrowthDesk mine;
  GrowthDesk other;
};

TEST_F(SharedFile, ChangedBySomebodyElseIsKeptAndTold) {
  other.opened(file());  // before the change
  saveWith(mine, QStringLiteral("11"));
  EXPECT_TRUE(mine.alerts.shown.isEmpty());
  saveWith(other, QStringLiteral("12"));
  EXPECT_EQ(firstWeight(recordIn(other, file())), QStringLiteral("12"));
  const QString kept = pathInTheAlert(other);
  EXPECT_EQ(firstWeight(recordIn(other, kept)), QStringLiteral("11"));
  saveWith(other, QStringLiteral("13"));
  EXPECT_EQ(other.alerts.shown.size(), 1) << "told once";
}

TEST_F(SharedFile, RemovedBySomebodyElseIsWrittenAgainAndTold) {
  GrowthDocument& document = mine.opened(file());
  ASSERT_TRUE(QFile::remove(file()));
  mine.enterWeight(document, QStringLiteral("11"));
  document.saveDocument();
  EXPECT_EQ(firstWeight(recordIn(mine, file())), QStringLiteral("11"));
  ASSERT_EQ(mine.alerts.shown.size(), 1);
  EXPECT_EQ(mine.alerts.shown.first().messageText,
            QStringLiteral("The record 'A1.growth' had been removed by somebody else."));
}

TEST_F(SharedFile, MadeBySomebodyElseUnderTheNameOfANewRecordIsKeptAndTold) {
  GrowthDocument& document = other.newRecord(QStringLiteral("A1"));
  other.enterWeight(document, QStringLiteral("12"));
  document.saveDocument();
  other.desktop.runLoop.settle();
  EXPECT_EQ(firstWeight(recordIn(other, file())), QStringLiteral("12"));
  EXPECT_EQ(firstWeight(recordIn(other, pathInTheAlert(other))), QStringLiteral("10"));
}

TEST_F(SharedFile, ReplacedByRubbishIsKeptToo) {
  GrowthDocument& document = mine.opened(file());
  testkit::writeFile(file(), "rubbish");
  mine.enterWeight(document, QStringLiteral("11"));
  document.saveDocument();
  EXPECT_EQ(firstWeight(recordIn(mine, file())), QStringLiteral("11"));
  EXPECT_EQ(testkit::readFile(pathInTheAlert(mine)), "rubbish");
}

TEST_F(SharedFile, OfSomebodyElseIsNotReplacedWhenNoCopyOfItCanBeKept) {
  const testkit::LogRecorder log;
  other.opened(file());
  saveWith(mine, QStringLiteral("11"));
  QDir(other.home.path(QStringLiteral(".local/share"))).removeRecursively();
  testkit::writeFile(other.home.path(QStringLiteral(".local/share")), "no folder");
  qputenv("XDG_DATA_HOME", QFile::encodeName(other.home.path(QStringLiteral(".local/share"))));
  saveWith(other, QStringLiteral("12"));
  EXPECT_EQ(firstWeight(recordIn(mine, file())), QStringLiteral("11"));
  ASSERT_EQ(other.alerts.shown.size(), 1);
  EXPECT_EQ(other.alerts.shown.first().messageText,
            QStringLiteral("The record 'A1.growth' could not be saved."));
  EXPECT_TRUE(other.opened(file()).isDocumentEdited());
}

TEST_F(SharedFile, LosesNothingInManyTurnsOfTwoPeople) {
  other.opened(file());
  QStringList written{QStringLiteral("10")};
  for (int turn = 0; turn < 15; ++turn) {
    const QString weight = QString::number(11 + turn);
    saveWith(turn % 2 ? mine : other, weight);
    EXPECT_EQ(firstWeight(recordIn(mine, file())), weight);
    written.append(weight);
  }
  QStringList kept;
  for (GrowthDesk* desk : {&mine, &other}) {
    for (const QString& copy : desk->files()) {
      if (copy.contains(QStringLiteral("Earlier Versions")))
        kept.append(firstWeight(recordIn(*desk, desk->home.path(copy))));
    }
  }
  for (const QString& weight : written.mid(0, written.size() - 1)) {
    EXPECT_TRUE(kept.contains(weight))
        << qPrintable(weight) << " of " << qPrintable(kept.join(QLatin1Char(' ')));
  }
}

TEST_F(SharedFile, OfSomebodyElseOutlivesAnyNumberOfSaves) {
  other.opened(file());
  saveWith(mine, QStringLiteral("11"));
  saveWith(other, QStringLiteral("12"));
  const QString theirs = pathInTheAlert(other);
  for (int i = 0; i < 2 * OrvKeptCopies::MostVersions; ++i) {
    if (i % 2) {
      saveWith(other, QString::number(13 + i));
    } else {
      other.opened(file()).saveDocument();  // without a change
    }
    other.desktop.runLoop.advance(1);
  }
  EXPECT_EQ(firstWeight(recordIn(other, theirs)), QStringLiteral("11"));
  EXPECT_EQ(other.alerts.shown.size(), 1);
}

}  // namespace
