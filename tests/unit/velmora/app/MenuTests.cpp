// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include <QAction>
#include <QKeySequence>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QSet>
#include <QTest>
#include <QTranslator>
#include <QUrl>

#include "testing/application/RecordApplication.h"
#include "velmora/about/AboutController.h"
#include "velmora/app/MainMenu.h"
#include "velmora/batch/BatchExportController.h"
#include "velmora/preferences/PreferencesController.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;
using namespace velmora::testkit;

namespace settings = velmora::settings;
using velmora::titleWithoutMnemonic;

namespace {

QMenu* menuOf(RecordingDocument& document, const char* name) {
  auto* menu = document.window()->findChild<QMenu*>(name);
  if (!menu) throw std::runtime_error(std::string("no menu ") + name);
  return menu;
}

QAction* item(RecordingDocument& document, const char* name) {
  auto* action = document.window()->findChild<QAction*>(name);
  if (!action) throw std::runtime_error(std::string("no item ") + name);
  return action;
}

QStringList titlesOf(const QMenu* menu) {
  QStringList titles;
  for (const QAction* action : menu->actions())
    titles.append(action->isSeparator() ? QStringLiteral("-") : titleWithoutMnemonic(action->text()));
  return titles;
}

/// The user's language, as a few words of it.
class Words : public QTranslator {
 public:
  explicit Words(const QMap<QString, QString>& words) : words_(words) {
    QCoreApplication::installTranslator(this);
  }
  ~Words() override { QCoreApplication::removeTranslator(this); }
  bool isEmpty() const override { return false; }
  QString translate(const char* context, const char* source, const char*, int) const override {
    if (QLatin1String(context) != QLatin1String("VelmoraAppController")) return {};
    return words_.value(QString::fromUtf8(source));
  }

 private:
  QMap<QString, QString> words_;
};

}  // namespace

TEST(Menus, HoldTheUsualItemsInTheirUsualPlaces) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  EXPECT_EQ(titlesOf(menuOf(document, "fileMenu")),
            (QStringList{"New", "Open...", "Open Recent", "-", "Close", "Close All", "Save", "Save As...",
                         "-", "Export", "Batch Export...", "-", "Page Setup...", "Print...", "-", "Quit"}));
  EXPECT_EQ(titlesOf(menuOf(document, "editMenu")),
            (QStringList{"Undo", "Redo", "-", "Cut", "Copy", "Paste", "Delete", "Select All", "-",
                         "Preferences..."}));
  EXPECT_EQ(titlesOf(menuOf(document, "examinationMenu")),
            (QStringList{"New Examination", "Delete Examination...", "-", "Next Examination",
                         "Previous Examination"}));
  EXPECT_EQ(titlesOf(menuOf(document, "helpMenu")),
            (QStringList{"Recorder Help", "-", "Check for New Version...", "Web Site", "Contact Support...",
                         "-", "About Recorder"}));
}

TEST(Menus, HaveTheUsualKeys) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  const QMap<QString, QString> keys{{"doNewDocument", "Ctrl+N"}, {"doOpenDocument", "Ctrl+O"},
                                    {"doClose", "Ctrl+W"},       {"doCloseAllDocuments", "Ctrl+Shift+W"},
                                    {"doSave", "Ctrl+S"},        {"doSaveAs", "Ctrl+Shift+S"},
                                    {"doExport", "Ctrl+E"},      {"doPrint", "Ctrl+P"},
                                    {"doQuit", "Ctrl+Q"},        {"doUndo", "Ctrl+Z"},
                                    {"doCut", "Ctrl+X"},         {"doCopy", "Ctrl+C"},
                                    {"doPaste", "Ctrl+V"},       {"doSelectAll", "Ctrl+A"},
                                    {"doPreferences", "Ctrl+,"}, {"doHelp", "F1"}};
  for (auto key = keys.begin(); key != keys.end(); ++key) {
    EXPECT_EQ(item(document, qPrintable(key.key()))->shortcut().toString(), key.value())
        << qPrintable(key.key());
  }
}

TEST(Menus, GiveNoKeyAndNoMnemonicTwice) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  QSet<QString> keys;
  for (const QMenu* menu : document.window()->findChildren<QMenu*>()) {
    QSet<QString> mnemonics;
    for (const QAction* action : menu->actions()) {
      for (const QKeySequence& key : action->shortcuts()) {
        EXPECT_FALSE(keys.contains(key.toString())) << qPrintable(key.toString());
        keys.insert(key.toString());
      }
      const QString mnemonic = QKeySequence::mnemonic(action->text()).toString();
      if (action->isSeparator()) continue;
      EXPECT_FALSE(mnemonic.isEmpty() || mnemonics.contains(mnemonic)) << qPrintable(action->text());
      mnemonics.insert(mnemonic);
    }
  }
}

TEST(Menus, AreValidatedByTheVisibleTitleWithoutItsMnemonic) {
  EXPECT_EQ(titleWithoutMnemonic("&Export"), "Export");
  EXPECT_EQ(titleWithoutMnemonic("E&xport"), "Export");
  EXPECT_EQ(titleWithoutMnemonic("Cut && &Paste"), "Cut & Paste");
  EXPECT_EQ(titleWithoutMnemonic("Export"), "Export");
  EXPECT_EQ(titleWithoutMnemonic("End&"), "End");
}

TEST(Menus, EnableEverythingOfTheApplicationWithADocument) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  for (const char* name : {"fileMenu", "examinationMenu", "helpMenu"}) {
    QMenu* menu = menuOf(document, name);
    for (QAction* action : menu->actions()) action->setEnabled(false);
    Q_EMIT menu->aboutToShow();
    for (const QAction* action : menu->actions()) {
      if (!action->isSeparator()) {
        EXPECT_TRUE(action->isEnabled()) << qPrintable(action->text());
      }
    }
  }
}

TEST(Menus, DisableExportAloneWithoutADocument) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  QMenu* menu = menuOf(document, "fileMenu");
  document.close();  // its window is still there until this event is over
  Q_EMIT menu->aboutToShow();
  EXPECT_FALSE(item(document, "doExport")->isEnabled());
  EXPECT_TRUE(item(document, "doBatchExport")->isEnabled()) << "its title only contains the word";
  EXPECT_TRUE(item(document, "doOpenDocument")->isEnabled());
}

TEST(Menus, FollowTheRuleInTheUsersLanguage) {
  const Words german({{"Export", "Exportieren"},
                      {"&Export", "&Exportieren"},
                      {"&Batch Export...", "Mehrere e&xportieren..."},
                      {"Pa&ge Setup...", "Exportieren für das &Papier..."}});
  RecordApplication application;
  EXPECT_FALSE(application.controller.validateMenuItem("Exportieren"));
  EXPECT_TRUE(application.controller.validateMenuItem("Export")) << "no longer the word of the language";
  RecordingDocument& document = application.newRecord();
  QMenu* menu = menuOf(document, "fileMenu");
  document.close();
  Q_EMIT menu->aboutToShow();
  EXPECT_FALSE(item(document, "doExport")->isEnabled());
  EXPECT_FALSE(item(document, "doPageSetup")->isEnabled()) << "the title begins with the word";
  EXPECT_TRUE(item(document, "doBatchExport")->isEnabled());
}

TEST(Menus, LeaveNoShortcutDeadWhenTheyClose) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  QMenu* menu = menuOf(document, "fileMenu");
  document.close();
  Q_EMIT menu->aboutToShow();
  ASSERT_FALSE(item(document, "doExport")->isEnabled());
  Q_EMIT menu->aboutToHide();
  EXPECT_TRUE(item(document, "doExport")->isEnabled());
}

TEST(Menus, HearTheirKeysWithoutHavingBeenOpened) {
  RecordApplication application;
  application.turnOn(settings::AutoSave);
  RecordingDocument& document = application.newRecord();
  document.setIdentifier("ab1");
  QTest::keyClick(document.window(), Qt::Key_E, Qt::ControlModifier);
  application.settle();
  EXPECT_TRUE(QFile::exists(application.exportFolder() + "/AB1.jpg"));
}

TEST(Menus, SetUpThePage) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  application.desktop.printer.chooseInPageSetup = [](platform::PrintInfo& info) {
    info.orientation = platform::PrintInfo::Orientation::Landscape;
  };
  item(document, "doPageSetup")->trigger();
  EXPECT_EQ(application.desktop.printer.pageSetups, 1);
  document.printDocument({}, false);
  ASSERT_EQ(application.desktop.printer.jobs.size(), 1);
  EXPECT_EQ(application.desktop.printer.jobs.first().info.orientation,
            platform::PrintInfo::Orientation::Landscape);
}

TEST(Menus, ReachTheApplication) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  item(document, "doHelp")->trigger();
  EXPECT_EQ(application.desktop.application.helps, 1);
  item(document, "doSplashAboutBox")->trigger();
  ASSERT_NE(application.controller.aboutController(), nullptr);
  item(document, "doPreferences")->trigger();
  ASSERT_NE(application.controller.preferencesController(), nullptr);
  item(document, "doBatchExport")->trigger();
  ASSERT_NE(application.controller.batchExportController(), nullptr);
  item(document, "doGoToWebSite")->trigger();
  item(document, "doMailAuthor")->trigger();
  ASSERT_EQ(application.desktop.workspace.opened.size(), 2);
  EXPECT_EQ(application.desktop.workspace.opened.first().scheme(), "https");
  EXPECT_EQ(application.desktop.workspace.opened.last().scheme(), "mailto");
}

TEST(Menus, QuitAfterTheEditInProgress) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  item(document, "doQuit")->trigger();
  EXPECT_EQ(application.desktop.application.stops, 0);
  application.settle();
  EXPECT_EQ(application.desktop.application.stops, 1);
}

// Windows without a menu bar.

TEST(WindowKeys, CloseQuitAndHelpInEveryWindowOfTheApplication) {
  RecordApplication application;
  application.newRecord();
  VelmoraAppController& controller = application.controller;
  controller.doSplashAboutBox(nullptr);
  controller.doPreferences(nullptr);
  controller.doBatchExport(nullptr);
  int helps = 0;
  for (platform::WindowController* each :
       {static_cast<platform::WindowController*>(controller.aboutController()),
        static_cast<platform::WindowController*>(controller.preferencesController()),
        static_cast<platform::WindowController*>(controller.batchExportController())}) {
    QWidget* window = each->window();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    QTest::keyClick(window, Qt::Key_F1);
    EXPECT_EQ(application.desktop.application.helps, ++helps) << qPrintable(window->objectName());
    QTest::keyClick(window, Qt::Key_W, Qt::ControlModifier);
    EXPECT_FALSE(window->isVisible()) << qPrintable(window->objectName());
  }
}

TEST(WindowKeys, QuitOnce) {
  RecordApplication application;
  application.controller.doPreferences(nullptr);
  application.controller.doPreferences(nullptr);
  QWidget* window = application.controller.preferencesController()->window();
  window->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window));
  QTest::keyClick(window, Qt::Key_Q, Qt::ControlModifier);
  application.settle();
  EXPECT_EQ(application.desktop.application.stops, 1);
}
