// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include <QAction>
#include <QMenu>
#include <QUrl>

#include "tests/velmora/support/RecordApplication.h"
#include "velmora/resources/SettingsKeys.h"

namespace settings = velmora::settings;
using testing_support::RecordApplication;

TEST(Commands, EnableItemsThatBeginWithExportOnlyWithADocument) {
  RecordApplication application;
  EXPECT_FALSE(application.controller.validateMenuItem("Export"));
  EXPECT_FALSE(application.controller.validateMenuItem("Export all charts"));
  EXPECT_TRUE(application.controller.validateMenuItem("Open..."));
  EXPECT_TRUE(application.controller.validateMenuItem("Batch Export"));
  EXPECT_TRUE(application.controller.validateMenuItem(""));
  RecordingDocument& document = application.newRecord();
  EXPECT_TRUE(application.controller.validateMenuItem("Export"));
  EXPECT_TRUE(application.controller.validateMenuItem("Open..."));
  document.close();
  EXPECT_FALSE(application.controller.validateMenuItem("Export"));
}

TEST(Commands, StartTheOpenPanelInTheSaveFolder) {
  RecordApplication application;
  application.desktop.panels.expectOpen({});
  application.controller.openDocument();
  ASSERT_EQ(application.desktop.panels.openPanels().size(), 1);
  EXPECT_EQ(application.desktop.panels.openPanels().first().directoryURL.toLocalFile(),
            application.saveFolder());
  EXPECT_EQ(application.desktop.panels.openPanels().first().allowedFileTypes, QStringList{"rec"});
}

TEST(Commands, OfferEveryFileWithoutAnExtensionInTheSettings) {
  RecordApplication application;
  application.desktop.defaults.registerDefaults({{settings::DataFileExtension, QVariant()}});
  EXPECT_TRUE(application.controller.openableFileTypes().isEmpty());
}

TEST(Commands, ExportTheChartOfTheFrontDocument) {
  RecordApplication application;
  application.turnOn(settings::AutoSave);
  application.newRecord().setIdentifier("back");
  application.newRecord().setIdentifier("front");
  application.controller.doExport(nullptr);
  EXPECT_EQ(QDir(application.exportFolder()).entryList(QDir::Files), QStringList{"FRONT.jpg"});
}

TEST(Commands, ExportNothingWithoutADocument) {
  RecordApplication application;
  application.controller.doExport(nullptr);
  EXPECT_TRUE(QDir(application.exportFolder()).entryList(QDir::Files).isEmpty());
}

TEST(Commands, EndTheEditInProgressBeforeTheyRun) {
  RecordApplication application;
  application.turnOn(settings::AutoSave);
  RecordingDocument& document = application.newRecord();
  user::type(user::field(document, "referenceIDField"), "ab/1");
  document.window()->findChild<QAction*>("doExport")->trigger();
  EXPECT_FALSE(QFile::exists(application.exportFolder() + "/AB-1.jpg"))
      << "not within the event that ends the edit";
  application.settle();
  EXPECT_TRUE(QFile::exists(application.exportFolder() + "/AB-1.jpg"));
}

TEST(Commands, DoNothingToADocumentThatTheEndOfTheEditHasClosed) {
  RecordApplication application;
  application.turnOn(settings::AutoSave);
  application.keepRecord("AB1");
  RecordingDocument& document = application.newRecord();
  document.setLookUpRequired(true);
  user::type(user::field(document, "referenceIDField"), "ab1");
  application.desktop.alerts.expect(
      {"Patient Data Found", "Open", "Cancel", "",
       "A previously saved data file is available for patient 'AB1'.  Would you like to open it?"},
      platform::AlertDefaultReturn);
  document.window()->findChild<QAction*>("doSave")->trigger();
  const QByteArray kept = testing_support::readFile(application.pathOfRecord("AB1"));
  application.settle();
  EXPECT_EQ(testing_support::readFile(application.pathOfRecord("AB1")), kept);
  ASSERT_NE(application.front(), nullptr);
  EXPECT_EQ(application.front()->identifier(), "AB1");
}

TEST(Commands, AddAndStepThroughExaminations) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  const auto choose = [&](const char* item) {
    document.window()->findChild<QAction*>(item)->trigger();
    application.settle();
  };
  choose("doNewRecord");
  EXPECT_EQ(document.exams.size(), 2);
  EXPECT_EQ(document.currentExam(), 1U);
  choose("doPreviousRecord");
  EXPECT_EQ(document.currentExam(), 0U);
  choose("doNextRecord");
  EXPECT_EQ(document.currentExam(), 1U);
}

TEST(Commands, GreyOutNothingInAMenuOfAnOpenDocument) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  auto* menu = document.window()->findChild<QMenu*>("fileMenu");
  ASSERT_NE(menu, nullptr);
  for (QAction* action : menu->actions()) action->setEnabled(false);
  Q_EMIT menu->aboutToShow();
  for (const QAction* action : menu->actions()) {
    if (!action->isSeparator()) {
      EXPECT_TRUE(action->isEnabled()) << qPrintable(action->text());
    }
  }
}
