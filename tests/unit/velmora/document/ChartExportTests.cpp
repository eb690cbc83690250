// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include <QTabWidget>

#include "testing/application/RecordApplication.h"
#include "testing/files/Files.h"
#include "velmora/document/ChartFileName.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;
using namespace velmora::testkit;

namespace settings = velmora::settings;
using velmora::platform::AlertAlternateReturn;
using velmora::platform::AlertDefaultReturn;
using velmora::platform::AlertOtherReturn;

namespace {

/// A document with the identifier ab/12, which exports to files.
class ChartExport : public testing::Test {
 protected:
  ChartExport() {
    document = &application.newRecord();
    document->setIdentifier("ab/12");
  }
  QTabWidget& tabView() { return dynamic_cast<QTabWidget&>(*user::widget(*document, "tabView")); }
  QStringList charts() const { return fileNames(application.exportFolder()); }
  platform::Alert exists(const QString& name) const {
    return {"A file with that name already exists", "Overwrite", "Skip", "",
            "A file named '" + name + "' is already present in '" + application.exportFolder() + "/'."};
  }
  RecordApplication application;
  RecordingDocument* document;
};

}  // namespace

TEST_F(ChartExport, NamesTheFileAfterTheIdentifierInUpperCase) {
  document->doExport(false);
  EXPECT_EQ(charts(), QStringList{"AB-12.jpg"});
  EXPECT_EQ(readFile(application.exportFolder() + "/AB-12.jpg"), document->getJPEGData());
}

TEST_F(ChartExport, NamesTheFileAfterTheSelectedTab) {
  tabView().setTabText(0, "Weight");
  tabView().addTab(new QWidget, "Height");
  document->doExport(false);
  EXPECT_EQ(charts(), QStringList{"AB-12 Weight.jpg"});
  tabView().setCurrentIndex(1);
  document->doExport(false);
  EXPECT_EQ(charts(), (QStringList{"AB-12 Height.jpg", "AB-12 Weight.jpg"}));
}

TEST_F(ChartExport, LeavesKeyboardMarksAndSlashesOutOfTheName) {
  tabView().setTabText(0, "&Weight/height && more");
  tabView().addTab(new QWidget, "Height");
  document->doExport(false);
  EXPECT_EQ(charts(), QStringList{"AB-12 Weight-height & more.jpg"});
}

TEST_F(ChartExport, WithoutAnIdentifierNamesTheFileJpgAlone) {
  document->setIdentifier("");
  document->doExport(false);
  EXPECT_EQ(charts(), QStringList{".jpg"});
}

TEST_F(ChartExport, ByTheUserWithoutAnIdentifierShowsAPanelWhateverAutoSaveSays) {
  document->setIdentifier("");
  for (const bool autoSave : {false, true}) {
    application.desktop.defaults.setObject(autoSave, settings::AutoSave);
    application.desktop.panels.expectSave({});
    document->doExport(true);
  }
  EXPECT_EQ(application.desktop.panels.savePanels().size(), 2);
  EXPECT_TRUE(charts().isEmpty());
}

TEST_F(ChartExport, ByTheUserWithoutAutoSaveShowsAPanel) {
  const QString chosen = application.home.path("my chart");
  application.desktop.panels.expectSave(QUrl::fromLocalFile(chosen));
  document->doExport(true);
  EXPECT_EQ(readFile(chosen), document->getJPEGData());
  EXPECT_TRUE(charts().isEmpty());
}

TEST_F(ChartExport, LeavesTheNameInThePanelToTheUser) {
  application.desktop.panels.expectSave({});
  document->doExport(true);
  const platform::SavePanel& panel = application.desktop.panels.savePanels().first();
  EXPECT_EQ(panel.title, "Export");
  EXPECT_EQ(panel.prompt, "Export");
  EXPECT_TRUE(panel.directoryURL.isEmpty());
  EXPECT_TRUE(panel.nameFieldStringValue.isEmpty());
  EXPECT_TRUE(panel.requiredFileType.isEmpty());
}

TEST_F(ChartExport, ByTheUserWithAutoSaveAndAnIdentifierShowsNoPanel) {
  application.turnOn(settings::AutoSave);
  document->doExport(true);
  EXPECT_EQ(charts(), QStringList{"AB-12.jpg"});
  EXPECT_TRUE(application.desktop.panels.savePanels().isEmpty());
}

TEST_F(ChartExport, WithoutTheUserNeverShowsAPanel) {
  document->autoExport();
  EXPECT_EQ(charts(), QStringList{"AB-12.jpg"});
  EXPECT_TRUE(application.desktop.panels.savePanels().isEmpty());
}

TEST_F(ChartExport, OverwritesOnlyAfterAQuestion) {
  writeFile(application.exportFolder() + "/AB-12.jpg", "earlier");
  application.desktop.alerts.expect(exists("AB-12.jpg"), AlertDefaultReturn);
  document->doExport(false);
  EXPECT_EQ(readFile(application.exportFolder() + "/AB-12.jpg"), document->getJPEGData());
  EXPECT_EQ(charts().size(), 1);
}

TEST_F(ChartExport, LeavesTheFileThatIsThereWhenTheUserSkipsOrTheProgramEnds) {
  writeFile(application.exportFolder() + "/AB-12.jpg", "earlier");
  for (const int answer : {+AlertAlternateReturn, +platform::AlertStopped}) {
    application.desktop.alerts.expect(exists("AB-12.jpg"), answer);
    document->doExport(false);
    EXPECT_EQ(readFile(application.exportFolder() + "/AB-12.jpg"), "earlier") << answer;
  }
}

TEST_F(ChartExport, WritesAfterAnyOtherAnswer) {
  writeFile(application.exportFolder() + "/AB-12.jpg", "earlier");
  application.desktop.alerts.expect(exists("AB-12.jpg"), AlertOtherReturn);
  document->doExport(false);
  EXPECT_NE(readFile(application.exportFolder() + "/AB-12.jpg"), "earlier");
}

TEST_F(ChartExport, GoesToTheDesktopWhenTheFolderIsMissing) {
  QDir(application.exportFolder()).removeRecursively();
  application.home.makeFolder("Desktop");
  document->doExport(false);
  EXPECT_TRUE(QFile::exists(application.home.path("Desktop/AB-12.jpg")));
  EXPECT_FALSE(QFile::exists(application.exportFolder()));
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
}

TEST_F(ChartExport, AsksWithTheFolderThatItReallyWritesTo) {
  QDir(application.exportFolder()).removeRecursively();
  writeFile(application.home.path("Desktop/AB-12.jpg"), "earlier");
  application.desktop.alerts.expect(
      {"A file with that name already exists", "Overwrite", "Skip", "",
       "A file named 'AB-12.jpg' is already present in '" + application.home.path("Desktop") + "/'."},
      AlertAlternateReturn);
  document->doExport(false);
}

TEST_F(ChartExport, SaysNothingOfAWriteThatFails) {
  QDir(application.exportFolder()).removeRecursively();
  writeFile(application.exportFolder(), "a file where the folder should be");
  document->doExport(false);
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
  EXPECT_EQ(readFile(application.exportFolder()), "a file where the folder should be");
}

TEST_F(ChartExport, WritesNothingWithoutDataPoints) {
  document->setCurrentDataPointsVisible(false);
  document->doExport(false);
  document->doExport(true);
  EXPECT_TRUE(charts().isEmpty());
  EXPECT_TRUE(application.desktop.panels.savePanels().isEmpty());
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
}

TEST_F(ChartExport, ToOsirixWritesNoFileByTheUserOrWithout) {
  application.turnOn(settings::ExportToOsiriX);
  document->doExport(false);
  document->doExport(true);
  EXPECT_TRUE(charts().isEmpty());
  EXPECT_TRUE(application.desktop.panels.savePanels().isEmpty());
  EXPECT_EQ(application.controller.exportToOsirixArray().size(), 2);
}

TEST_F(ChartExport, ToAFileSendsNothingToOsirix) {
  document->doExport(false);
  application.pass(60);
  EXPECT_TRUE(application.controller.exportToOsirixArray().isEmpty());
  EXPECT_TRUE(application.replies().isEmpty());
}

TEST(ChartFileName, IsMadeOfNameAndSelectedTab) {
  struct Case {
    QString name;
    QStringList tabs;
    qsizetype selected;
    QString expected;
  };
  const Case cases[] = {
      {"ab-12", {}, -1, "AB-12.jpg"},
      {"ab-12", {"Weight"}, 0, "AB-12.jpg"},
      {"ab-12", {"Weight", "Height"}, 0, "AB-12 Weight.jpg"},
      {"ab-12", {"Weight", "Height"}, 1, "AB-12 Height.jpg"},
      {"ab-12", {"Weight", "Height"}, -1, "AB-12.jpg"},
      {"", {}, -1, ".jpg"},
      {"", {"Weight", "Height"}, 0, " Weight.jpg"},
      {"straße", {}, -1, "STRASSE.jpg"},
      {"ab", {"kg/m", "cm"}, 0, "AB kg-m.jpg"},
  };
  for (const Case& each : cases) {
    EXPECT_EQ(velmora::chartFileName(each.name, each.tabs, each.selected), each.expected);
  }
}
