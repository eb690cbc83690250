// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/app/MainMenu.h"

#include <QAction>
#include <QKeySequence>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

#include "base/log/Guard.h"
#include "platform/Services.h"
#include "platform/bundles/Bundle.h"
#include "platform/controls/TextFieldEditing.h"
#include "platform/documents/Application.h"
#include "platform/documents/DocumentController.h"
#include "platform/documents/WindowController.h"
#include "platform/printing/Printing.h"
#include "platform/runloop/RunLoop.h"
#include "platform/text/Localization.h"
#include "velmora/app/MenuCommands.h"
#include "velmora/app/RecentsMenu.h"
#include "velmora/app/TextEditItems.h"
#include "velmora/app/WindowShortcuts.h"
#include "velmora/document/VelmoraDocument.h"

using velmora::platform::localizedString;

namespace velmora {

void MainMenu::install(platform::Services& services, platform::DocumentController& controller,
                       MenuCommands& commands, platform::WindowController& windowController) {
  auto* window = dynamic_cast<QMainWindow*>(windowController.window());
  auto* document = dynamic_cast<VelmoraDocument*>(windowController.document());
  if (window && document) new MainMenu(services, controller, commands, *window, *document);
}

MainMenu::MainMenu(platform::Services& services, platform::DocumentController& controller,
                   MenuCommands& commands, QMainWindow& window, VelmoraDocument& document)
    : QObject(&window),
      services_(services),
      controller_(controller),
      commands_(commands),
      window_(window),
      document_(document) {
  makeFileMenu(addMenu(localizedString("VelmoraAppController", "&File"), "fileMenu"));
  makeEditMenu(addMenu(localizedString("VelmoraAppController", "&Edit"), "editMenu"));
  makeExaminationMenu(addMenu(localizedString("VelmoraAppController", "E&xamination"), "examinationMenu"));
  makeHelpMenu(addMenu(localizedString("VelmoraAppController", "&Help"), "helpMenu"));
}

QMenu* MainMenu::addMenu(const QString& title, const char* name) {
  QMenu* menu = window_.menuBar()->addMenu(title);
  menu->setObjectName(QString::fromLatin1(name));
  connect(menu, &QMenu::aboutToShow, this, [this, menu] {
    base::guarded("menu", [&] {
      for (QAction* action : menu->actions()) {
        if (!action->isSeparator())
          action->setEnabled(commands_.validateMenuItem(titleWithoutMnemonic(action->text())));
      }
    });
  });
  // A disabled item is deaf to its shortcut, and nobody validates it again before the menu opens.
  connect(menu, &QMenu::aboutToHide, this, [menu] {
    base::guarded("menu", [menu] {
      for (QAction* action : menu->actions()) action->setEnabled(true);
    });
  });
  return menu;
}

void MainMenu::add(QMenu* menu, const QString& title, const char* name, const QKeySequence& keys,
                   std::function<void()> command) {
  QAction* action = menu->addAction(title);
  action->setObjectName(QString::fromLatin1(name));
  action->setShortcut(keys);
  connect(action, &QAction::triggered, this,
          [command = std::move(command)] { base::guarded("menu", command); });
}

std::function<void()> MainMenu::onApplication(void (MenuCommands::*command)(const QObject*)) {
  return [commands = &commands_, command, sender = &window_] { (commands->*command)(sender); };
}

std::function<void()> MainMenu::onDocument(std::function<void(VelmoraDocument&)> command) {
  return [this, command = std::move(command)] {
    platform::TextFieldEditing::endEditing(&window_);
    // The window, and the menu with it, may go before the document.
    VelmoraDocument* document = &document_;
    services_.runLoop.performAfterDelay(document, 0, [document, command] {
      if (!document->isClosed()) command(*document);
    });
  };
}

void MainMenu::makeFileMenu(QMenu* menu) {
  add(menu, localizedString("VelmoraAppController", "&New"), "doNewDocument", QKeySequence::New,
      [this] { controller_.newDocument(); });
  add(menu, localizedString("VelmoraAppController", "&Open..."), "doOpenDocument", QKeySequence::Open,
      [this] { controller_.openDocument(); });
  QMenu* recents = menu->addMenu(localizedString("VelmoraAppController", "Open &Recent"));
  recents->setObjectName(QStringLiteral("openRecentMenu"));
  new RecentsMenu(recents, &window_, commands_, services_.runLoop, &controller_);
  menu->addSeparator();
  add(menu, localizedString("VelmoraAppController", "&Close"), "doClose", CloseKeys,
      [this] { document_.performClose(); });
  add(menu, localizedString("VelmoraAppController", "C&lose All"), "doCloseAllDocuments",
      QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_W), onApplication(&MenuCommands::doCloseAllDocuments));
  add(menu, localizedString("VelmoraAppController", "&Save"), "doSave", QKeySequence::Save,
      onDocument([](VelmoraDocument& record) { record.saveDocument(); }));
  add(menu, localizedString("VelmoraAppController", "Save &As..."), "doSaveAs",
      QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S),
      onDocument([](VelmoraDocument& record) { record.saveDocumentAs(); }));
  menu->addSeparator();
  add(menu, localizedString("VelmoraAppController", "&Export"), "doExport",
      QKeySequence(Qt::CTRL | Qt::Key_E), onDocument([](VelmoraDocument& record) { record.doExport(true); }));
  add(menu, localizedString("VelmoraAppController", "&Batch Export..."), "doBatchExport",
      QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_E), onApplication(&MenuCommands::doBatchExport));
  menu->addSeparator();
  add(menu, localizedString("VelmoraAppController", "Pa&ge Setup..."), "doPageSetup",
      QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_P),
      [this] { services_.printer.runPageSetup(services_.sharedPrintInfo, &window_); });
  add(menu, localizedString("VelmoraAppController", "&Print..."), "doPrint", QKeySequence::Print,
      onDocument([](VelmoraDocument& record) { record.printDocument({}, true); }));
  menu->addSeparator();
  add(menu, localizedString("VelmoraAppController", "&Quit"), "doQuit", QuitKeys,
      [this] { quitFrom(&window_, services_.runLoop, controller_); });
}

void MainMenu::makeEditMenu(QMenu* menu) {
  auto* items = new TextEditItems(menu, &window_);
  connect(menu, &QMenu::aboutToShow, items, [items] { base::guarded("menu", [&] { items->validate(); }); });
  menu->addSeparator();
  add(menu, localizedString("VelmoraAppController", "Prefere&nces..."), "doPreferences",
      QKeySequence(Qt::CTRL | Qt::Key_Comma), onApplication(&MenuCommands::doPreferences));
}

void MainMenu::makeExaminationMenu(QMenu* menu) {
  add(menu, localizedString("VelmoraAppController", "&New Examination"), "doNewRecord",
      QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_N),
      onDocument([](VelmoraDocument& record) { record.doNewRecord(&record); }));
  add(menu, localizedString("VelmoraAppController", "&Delete Examination..."), "doDeleteRecord",
      QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Backspace),
      onDocument([](VelmoraDocument& record) { record.doDeleteRecord(&record); }));
  menu->addSeparator();
  add(menu, localizedString("VelmoraAppController", "Ne&xt Examination"), "doNextRecord",
      QKeySequence(Qt::CTRL | Qt::Key_PageDown),
      onDocument([](VelmoraDocument& record) { record.doNextRecord(&record); }));
  add(menu, localizedString("VelmoraAppController", "&Previous Examination"), "doPreviousRecord",
      QKeySequence(Qt::CTRL | Qt::Key_PageUp),
      onDocument([](VelmoraDocument& record) { record.doPreviousRecord(&record); }));
}

void MainMenu::makeHelpMenu(QMenu* menu) {
  const QString name = services_.mainBundle.stringForInfoDictionaryKey(QStringLiteral("CFBundleName"));
  add(menu, platform::formatted(localizedString("VelmoraAppController", "%@ &Help"), {name}), "doHelp",
      QKeySequence::HelpContents, [this] { services_.application.showHelp(); });
  menu->addSeparator();
  add(menu, localizedString("VelmoraAppController", "Check for New &Version..."), "doCheckForNewVersion",
      QKeySequence(), onApplication(&MenuCommands::doCheckForNewVersion));
  add(menu, localizedString("VelmoraAppController", "&Web Site"), "doGoToWebSite", QKeySequence(),
      onApplication(&MenuCommands::doGoToWebSite));
  add(menu, localizedString("VelmoraAppController", "&Contact Support..."), "doMailAuthor", QKeySequence(),
      onApplication(&MenuCommands::doMailAuthor));
  menu->addSeparator();
  add(menu, platform::formatted(localizedString("VelmoraAppController", "&About %@"), {name}),
      "doSplashAboutBox", QKeySequence(), onApplication(&MenuCommands::doSplashAboutBox));
}

QString titleWithoutMnemonic(const QString& title) {
  QString read;
  for (qsizetype i = 0; i < title.size(); ++i) {
    // "&&" is an ampersand to be read, any other "&" the mark before a mnemonic.
    if (title.at(i) == QLatin1Char('&') && ++i == title.size()) break;
    read += title.at(i);
  }
  return read;
}

}  // namespace velmora
