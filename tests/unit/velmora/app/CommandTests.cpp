// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include <QAction>
#include <QMenu>
#include <QUrl>

#include "base/log/AssertionFailure.h"
#include "testing/application/RecordApplication.h"
#include "testing/files/Files.h"
#include "velmora/about/AboutController.h"
#include "velmora/batch/BatchExportController.h"
#include "velmora/preferences/PreferencesController.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;
using namespace velmora::testkit;

namespace settings = velmora::settings;

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
  EXPECT_EQ(fileNames(application.exportFolder()), QStringList{"FRONT.jpg"});
}

TEST(Commands, ExportNothingWithoutADocument) {
  RecordApplication application;
  application.controller.doExport(nullptr);
  EXPECT_TRUE(fileNames(application.exportFolder()).isEmpty());
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

TEST(Commands, ExportTheRecordInWhoseWindowTheyWereChosen) {
  RecordApplication application;
  application.turnOn(settings::AutoSave);
  RecordingDocument& chosen = application.newRecord();
  chosen.setIdentifier("chosen");
  RecordingDocument& another = application.newRecord();
  another.setIdentifier("another");
  user::bringToFront(chosen);
  chosen.window()->findChild<QAction*>("doExport")->trigger();
  // Before the command runs, the viewer brings another record to the front.
  user::bringToFront(another);
  application.settle();
  EXPECT_EQ(QDir(application.exportFolder()).entryList(QDir::Files), QStringList{"CHOSEN.jpg"});
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
  const QByteArray kept = readFile(application.pathOfRecord("AB1"));
  application.settle();
  EXPECT_EQ(readFile(application.pathOfRecord("AB1")), kept);
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

TEST(Commands, DoNotRunTheOpenPanelWithoutASaveFolder) {
  RecordApplication application;
  application.desktop.defaults.setObject(QStringLiteral(""), settings::SaveDirectory);
  try {
    application.controller.openDocument();
    ADD_FAILURE() << "nothing was thrown";
  } catch (const base::AssertionFailure& failure) {
    EXPECT_EQ(failure.message(), "Value==nil");
    EXPECT_EQ(failure.sourceFile(), "VelmoraAppController");
  }
  EXPECT_TRUE(application.desktop.panels.openPanels().isEmpty());
}

TEST(Commands, BeginAMailWithTheNameAndVersionOfTheApplication) {
  RecordApplication application;
  application.controller.doMailAuthor(nullptr);
  ASSERT_EQ(application.desktop.workspace.opened.size(), 1);
  const QString mail = QString::fromLatin1(application.desktop.workspace.opened.first().toEncoded());
  EXPECT_TRUE(mail.startsWith("mailto:")) << qPrintable(mail);
  EXPECT_TRUE(mail.endsWith("?subject=Technical%20Support%20Query%20for%20Recorder%202.1"))
      << qPrintable(mail);
}

TEST(Commands, OpenTheWebSite) {
  RecordApplication application;
  application.controller.doGoToWebSite(nullptr);
  ASSERT_EQ(application.desktop.workspace.opened.size(), 1);
  EXPECT_EQ(application.desktop.workspace.opened.first().scheme(), "https");
}

TEST(Commands, CloseEveryDocumentEachAskingItsQuestion) {
  RecordApplication application;
  application.newRecord();
  application.newRecord();
  application.controller.doCloseAllDocuments(nullptr);
  application.settle();
  EXPECT_TRUE(application.controller.documents().isEmpty());
}

TEST(Commands, MakeEachWindowOnceAndShowItAgain) {
  RecordApplication application;
  VelmoraAppController& controller = application.controller;
  controller.doPreferences(nullptr);
  controller.doBatchExport(nullptr);
  controller.doSplashAboutBox(nullptr);
  const PreferencesController* preferences = controller.preferencesController();
  const BatchExportController* batch = controller.batchExportController();
  const AboutController* about = controller.aboutController();
  controller.preferencesController()->close();
  controller.doPreferences(nullptr);
  controller.doBatchExport(nullptr);
  controller.doSplashAboutBox(nullptr);
  EXPECT_EQ(controller.preferencesController(), preferences);
  EXPECT_TRUE(controller.preferencesController()->window()->isVisible());
  EXPECT_EQ(controller.batchExportController(), batch);
  EXPECT_EQ(controller.aboutController(), about);
}

TEST(Commands, OfTheDesktopEntryOpenTheirWindows) {
  RecordApplication application;
  EXPECT_TRUE(application.controller.applicationPerformAction("preferences"));
  EXPECT_NE(application.controller.preferencesController(), nullptr);
  EXPECT_TRUE(application.controller.applicationPerformAction("batch-export"));
  EXPECT_NE(application.controller.batchExportController(), nullptr);
  EXPECT_TRUE(application.controller.applicationPerformAction("new"));
  EXPECT_EQ(application.controller.documents().size(), 1);
  EXPECT_FALSE(application.controller.applicationPerformAction("dance"));
}

// Files that the desktop asks to print.

TEST(PrintingAFile, OpensItPrintsItWithoutAPanelAndClosesIt) {
  RecordApplication application;
  application.writeRecord("AB1");
  bool shown = false;
  application.desktop.printer.whilePrinting = [&](QWidget* view) { shown = view->window()->isVisible(); };
  EXPECT_TRUE(application.controller.applicationPrintFile(application.pathOfRecord("AB1")));
  ASSERT_EQ(application.desktop.printer.jobs.size(), 1);
  EXPECT_EQ(application.desktop.printer.jobs.first().title, "AB1");
  EXPECT_FALSE(application.desktop.printer.jobs.first().showPrintPanel);
  EXPECT_TRUE(application.desktop.printer.jobs.first().settings.isEmpty());
  EXPECT_TRUE(shown);
  EXPECT_TRUE(application.controller.documents().isEmpty());
}

TEST(PrintingAFile, AnswersYesForAPathThatDoesNotOpen) {
  RecordApplication application;
  EXPECT_TRUE(application.controller.applicationPrintFile("/none.rec"));
  EXPECT_TRUE(application.desktop.printer.jobs.isEmpty());
  EXPECT_TRUE(application.controller.documents().isEmpty());
}

TEST(PrintingAFile, ClosesTheWindowThatWasOpenBeforeWithoutAskingAndKeepsWhatWasUnsaved) {
  RecordApplication application;
  application.writeRecord("AB1");
  RecordingDocument& document = application.openRecord("AB1");
  user::enter(user::field(document, "examDateField"), "2/2/2021");
  application.desktop.alerts.expect(closedWithChanges(application, "AB1"), platform::AlertDefaultReturn);
  EXPECT_TRUE(application.controller.applicationPrintFile(application.pathOfRecord("AB1")));
  EXPECT_EQ(application.desktop.printer.jobs.size(), 1);
  EXPECT_TRUE(application.controller.documents().isEmpty());
  EXPECT_EQ(application.rescueCopies().size(), 1);
  EXPECT_TRUE(application.desktop.alerts.allCame()) << "the user is told where the copy is";
}

TEST(PrintingAFile, PrintsARescueCopyOnceAndLeavesNoFurtherOne) {
  RecordApplication application;
  application.keepRecord("AB1");
  user::enter(user::field(application.openRecord("AB1"), "examDateField"), "2/2/2021");
  application.front()->keepUnsavedChanges();
  application.front()->close();
  application.settle();
  ASSERT_EQ(application.rescueCopies().size(), 1);
  EXPECT_TRUE(application.controller.applicationPrintFile(
      application.home.path(".local/share/org.velmora.recorder/Rescued/") +
      application.rescueCopies().first()));
  EXPECT_EQ(application.desktop.printer.jobs.size(), 1);
  EXPECT_TRUE(application.controller.documents().isEmpty());
  EXPECT_EQ(application.rescueCopies().size(), 1);
}

TEST(PrintingAFile, SurvivesADocumentThatGoesWhileItIsPrinted) {
  RecordApplication application;
  application.writeRecord("AB1");
  application.desktop.printer.whilePrinting = [&](QWidget*) { application.front()->close(); };
  EXPECT_TRUE(application.controller.applicationPrintFile(application.pathOfRecord("AB1")));
  application.settle();
  EXPECT_TRUE(application.controller.documents().isEmpty());
}
