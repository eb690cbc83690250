// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The save folder is not what it was when the record was opened or begun.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QScopeGuard>

#include "platform/controls/Alert.h"
#include "testing/files/Files.h"
#include "testing/files/OrdinaryUser.h"
#include "tests/robustness/faults/GrowthDesk.h"

using namespace velmora;

using faults::firstWeight;
using faults::GrowthDesk;
using faults::recordIn;

namespace {

class SaveFolder : public testing::Test {
 protected:
  /// The one alert that came, which says that A1 could not be saved and where the copy is, which holds the
  /// weight.
  void expectToldWithRescueCopy(const QString& weight) {
    ASSERT_EQ(desk.alerts.shown.size(), 1);
    EXPECT_EQ(desk.alerts.shown.first().messageText,
              QStringLiteral("The record 'A1.growth' could not be saved."));
    ASSERT_EQ(desk.rescued().size(), 1);
    const QString copy = desk.rescueFolder() + QLatin1Char('/') + desk.rescued().first();
    EXPECT_TRUE(desk.alerts.shown.first().informativeText.contains(copy));
    EXPECT_EQ(firstWeight(recordIn(desk, copy)), weight);
  }

  GrowthDesk desk;
  testkit::LogRecorder log;
};

TEST_F(SaveFolder, ThatIsMissingBringsThePanelForANewRecord) {
  GrowthDocument& document = desk.newRecord(QStringLiteral("A1"));
  QDir(desk.saveFolder()).removeRecursively();
  const QString elsewhere = desk.home.makeFolder(QStringLiteral("Elsewhere")) + QStringLiteral("/A1.growth");
  desk.desktop.panels.expectSave(QUrl::fromLocalFile(elsewhere));
  document.saveDocument();
  EXPECT_EQ(firstWeight(recordIn(desk, elsewhere)), QStringLiteral("10"));
  EXPECT_TRUE(desk.alerts.shown.isEmpty());
  desk.closeAll();
}

TEST_F(SaveFolder, ThatIsMissingIsToldForAnOpenRecord) {
  GrowthDocument& document = desk.savedRecord(QStringLiteral("A1"));
  QDir(desk.saveFolder()).removeRecursively();
  desk.enterWeight(document, QStringLiteral("12"));
  document.saveDocument();
  expectToldWithRescueCopy(QStringLiteral("12"));
  EXPECT_TRUE(document.isDocumentEdited());
  EXPECT_FALSE(QFile::exists(desk.saveFolder()));
}

TEST_F(SaveFolder, ThatIsAFileIsToldAndLeftAsItIs) {
  GrowthDocument& document = desk.newRecord(QStringLiteral("A1"));
  QDir(desk.saveFolder()).removeRecursively();
  testkit::writeFile(desk.saveFolder(), "not a folder");
  document.saveDocument();
  expectToldWithRescueCopy(QStringLiteral("10"));
  EXPECT_TRUE(document.isDocumentEdited());
  EXPECT_EQ(testkit::readFile(desk.saveFolder()), "not a folder");
}

TEST_F(SaveFolder, ThatBecameAFileIsToldForAnOpenRecord) {
  GrowthDocument& document = desk.savedRecord(QStringLiteral("A1"));
  QDir(desk.saveFolder()).removeRecursively();
  testkit::writeFile(desk.saveFolder(), "not a folder");
  desk.enterWeight(document, QStringLiteral("12"));
  document.saveDocument();
  expectToldWithRescueCopy(QStringLiteral("12"));
  EXPECT_TRUE(document.isDocumentEdited());
}

TEST_F(SaveFolder, ThatIsReadOnlyIsToldAndKeepsTheOldRecord) {
  GrowthDocument& document = desk.savedRecord(QStringLiteral("A1"));
  desk.enterWeight(document, QStringLiteral("12"));
  {
    const testkit::OrdinaryUser user(desk.home.path());
    QFile::setPermissions(desk.saveFolder(), QFile::ReadOwner | QFile::ExeOwner);
    document.saveDocument();
    QFile::setPermissions(desk.saveFolder(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  }
  expectToldWithRescueCopy(QStringLiteral("12"));
  EXPECT_TRUE(desk.alerts.shown.first().informativeText.startsWith(QStringLiteral("Permission denied")));
  EXPECT_TRUE(document.isDocumentEdited());
  EXPECT_EQ(firstWeight(recordIn(desk, desk.pathOfRecord(QStringLiteral("A1")))), QStringLiteral("10"));
  EXPECT_EQ(desk.strayFiles(), QStringList());
}

TEST_F(SaveFolder, WithAProtectedRecordIsToldAndKeepsIt) {
  GrowthDocument& document = desk.savedRecord(QStringLiteral("A1"));
  desk.enterWeight(document, QStringLiteral("12"));
  {
    const testkit::OrdinaryUser user(desk.home.path());
    QFile::setPermissions(desk.pathOfRecord(QStringLiteral("A1")), QFile::ReadOwner);
    document.saveDocument();
  }
  expectToldWithRescueCopy(QStringLiteral("12"));
  EXPECT_EQ(firstWeight(recordIn(desk, desk.pathOfRecord(QStringLiteral("A1")))), QStringLiteral("10"));
}

TEST_F(SaveFolder, ThatGoesBetweenTheQuestionAndTheSaveIsToldForAnOpenRecord) {
  GrowthDocument& document = desk.savedRecord(QStringLiteral("A1"));
  desk.enterWeight(document, QStringLiteral("12"));
  desk.alerts.answer = [this](const platform::Alert& alert) {
    if (alert.messageText == QStringLiteral("Save changes to document?"))
      QDir(desk.saveFolder()).removeRecursively();
    return platform::AlertDefaultReturn;
  };
  document.performClose();
  desk.desktop.runLoop.settle();
  ASSERT_EQ(desk.alerts.shown.size(), 2);
  desk.alerts.shown.removeFirst();
  expectToldWithRescueCopy(QStringLiteral("12"));
}

TEST_F(SaveFolder, ThatGoesBetweenTheQuestionAndTheSaveBringsThePanelForANewRecord) {
  GrowthDocument& document = desk.newRecord(QStringLiteral("A1"));
  const QString elsewhere = desk.home.makeFolder(QStringLiteral("Elsewhere")) + QStringLiteral("/A1.growth");
  desk.desktop.panels.expectSave(QUrl::fromLocalFile(elsewhere));
  desk.alerts.answer = [this](const platform::Alert&) {
    QDir(desk.saveFolder()).removeRecursively();
    return platform::AlertDefaultReturn;
  };
  document.performClose();
  desk.desktop.runLoop.settle();
  EXPECT_EQ(desk.alerts.shown.size(), 1);
  EXPECT_EQ(firstWeight(recordIn(desk, elsewhere)), QStringLiteral("10"));
}

TEST_F(SaveFolder, ThatIsNamedNowhereIsNotTheFolderThatTheProgramStandsIn) {
  const QString before = QDir::currentPath();
  const QString here = desk.home.makeFolder(QStringLiteral("Here"));
  QDir::setCurrent(here);
  const auto back = qScopeGuard([&before] { QDir::setCurrent(before); });
  const QString stranger = here + QStringLiteral("/.0123456789abcdef.growth.unfinished");
  testkit::writeFile(stranger, "not ours");
  testkit::writeFile(here + QStringLiteral("/B2.growth"), "not ours");
  desk.desktop.defaults.setObject(QStringLiteral(""), QStringLiteral("Save Directory"));
  EXPECT_EQ(desk.desktop.fileManager.contentsOfDirectoryAtPath(QString()), QStringList());
  desk.start();
  EXPECT_TRUE(QFile::exists(stranger));
  EXPECT_TRUE(desk.controller.cachedDatabaseArray().isEmpty());
}

}  // namespace
