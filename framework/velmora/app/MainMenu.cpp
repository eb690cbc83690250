// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/app/MainMenu.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QShortcut>
#include <functional>

#include "platform/documents/Application.h"
#include "base/log/Guard.h"
#include "platform/text/Localization.h"
#include "platform/printing/Printing.h"
#include "platform/runloop/RunLoop.h"
#include "platform/Services.h"
#include "platform/controls/TextFieldEditing.h"
#include "platform/documents/WindowController.h"
#include "velmora/app/MainMenuEdit.h"
#include "velmora/app/MainMenuRecents.h"
#include "velmora/app/VelmoraAppController.h"
#include "velmora/document/VelmoraDocument.h"

using velmora::platform::localizedString;

namespace velmora {

namespace {

// Written out where Qt's standard key depends on the desktop, or is none.
const QKeySequence QuitKeys(Qt::CTRL | Qt::Key_Q);
const QKeySequence CloseKeys(Qt::CTRL | Qt::Key_W);

void quit(platform::Services& services, VelmoraAppController& controller, QWidget* window) {
  platform::TextFieldEditing::endEditing(window);
  services.runLoop.performAfterDelay(&controller, 0, [&controller] { controller.terminate(); });
}

/// Makes the menus of one document window.
class MenuMaker {
 public:
  MenuMaker(platform::Services& services, VelmoraAppController& controller, QMainWindow& window,
            VelmoraDocument& document)
      : services_(services), controller_(controller), window_(window), document_(document) {}

  void make() {
    makeFileMenu(addMenu(localizedString("VelmoraAppController", "&File"), "fileMenu"));
    makeEditMenu(addMenu(localizedString("VelmoraAppController", "&Edit"), "editMenu"));
    makeExaminationMenu(addMenu(localizedString("VelmoraAppController", "E&xamination"), "examinationMenu"));
    makeHelpMenu(addMenu(localizedString("VelmoraAppController", "&Help"), "helpMenu"));
  }

 private:
  QMenu* addMenu(const QString& title, const char* name) {
    QMenu* menu = window_.menuBar()->addMenu(title);
    menu->setObjectName(QString::fromLatin1(name));
    const VelmoraAppController& controller = controller_;
    QObject::connect(menu, &QMenu::aboutToShow, &window_, [&controller, menu] {
      base::guarded("menu", [&] {
        for (QAction* action : menu->actions()) {
          if (!action->isSeparator())
            action->setEnabled(controller.validateMenuItem(titleWithoutMnemonic(action->text())));
        }
      });
    });
    // A disabled item is deaf to its shortcut, and nobody validates it again before the menu opens.
    QObject::connect(menu, &QMenu::aboutToHide, &window_, [menu] {
      for (QAction* action : menu->actions()) action->setEnabled(true);
    });
    return menu;
  }

  QAction* add(QMenu* menu, const QString& title, const char* name, const QKeySequence& keys,
               std::function<void()> command) {
    QAction* action = menu->addAction(title);
    action->setObjectName(QString::fromLatin1(name));
    action->setShortcut(keys);
    QObject::connect(action, &QAction::triggered, &window_,
                     [command = std::move(command)] { base::guarded("menu", command); });
    return action;
  }

  /// A command of the application's.
  std::function<void()> onApplication(void (VelmoraAppController::*command)(const QObject*)) {
    VelmoraAppController* controller = &controller_;
    const QObject* sender = &window_;
    return [controller, command, sender] { (controller->*command)(sender); };
  }

  /// A command of the document's.
  std::function<void()> onDocument(std::function<void(VelmoraDocument&)> command) {
    return [this_ = *this, command = std::move(command)] {
      platform::TextFieldEditing::endEditing(&this_.window_);
      VelmoraDocument* document = &this_.document_;
      this_.services_.runLoop.performAfterDelay(document, 0, [document, command] {
        if (!document->isClosed()) command(*document);
      });
    };
  }

  void makeFileMenu(QMenu* menu) {
    VelmoraAppController* controller = &controller_;
    add(menu, localizedString("VelmoraAppController", "&New"), "doNewDocument", QKeySequence::New,
        [controller] { controller->newDocument(); });
    add(menu, localizedString("VelmoraAppController", "&Open..."), "doOpenDocument", QKeySequence::Open,
        [controller] { controller->openDocument(); });
    QMenu* recents = menu->addMenu(localizedString("VelmoraAppController", "Open &Recent"));
    recents->setObjectName(QStringLiteral("openRecentMenu"));
    makeRecentsMenu(services_, controller_, recents, &window_);
    menu->addSeparator();
    VelmoraDocument* document = &document_;
    add(menu, localizedString("VelmoraAppController", "&Close"), "doClose", CloseKeys,
        [document] { document->performClose(); });
    add(menu, localizedString("VelmoraAppController", "C&lose All"), "doCloseAllDocuments",
        QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_W),
        onApplication(&VelmoraAppController::doCloseAllDocuments));
    add(menu, localizedString("VelmoraAppController", "&Save"), "doSave", QKeySequence::Save,
        onDocument([](VelmoraDocument& record) { record.saveDocument(); }));
    add(menu, localizedString("VelmoraAppController", "Save &As..."), "doSaveAs",
        QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S),
        onDocument([](VelmoraDocument& record) { record.saveDocumentAs(); }));
    menu->addSeparator();
    add(menu, localizedString("VelmoraAppController", "&Export"), "doExport",
        QKeySequence(Qt::CTRL | Qt::Key_E),
        onDocument([controller](VelmoraDocument& record) { controller->doExport(&record); }));
    add(menu, localizedString("VelmoraAppController", "&Batch Export..."), "doBatchExport",
        QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_E), onApplication(&VelmoraAppController::doBatchExport));
    menu->addSeparator();
    add(menu, localizedString("VelmoraAppController", "Pa&ge Setup..."), "doPageSetup",
        QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_P), [this_ = *this] {
          this_.services_.printer.runPageSetup(this_.services_.sharedPrintInfo, &this_.window_);
        });
    add(menu, localizedString("VelmoraAppController", "&Print..."), "doPrint", QKeySequence::Print,
        onDocument([](VelmoraDocument& record) { record.printDocument({}, true); }));
    menu->addSeparator();
    add(menu, localizedString("VelmoraAppController", "&Quit"), "doQuit", QuitKeys,
        [this_ = *this] { quit(this_.services_, this_.controller_, &this_.window_); });
  }

  void makeEditMenu(QMenu* menu) {
    auto* items = new TextEditItems(menu, &window_);
    QObject::connect(menu, &QMenu::aboutToShow, items,
                     [items] { base::guarded("menu", [&] { items->validate(); }); });
    menu->addSeparator();
    add(menu, localizedString("VelmoraAppController", "Prefere&nces..."), "doPreferences",
        QKeySequence(Qt::CTRL | Qt::Key_Comma), onApplication(&VelmoraAppController::doPreferences));
  }

  void makeExaminationMenu(QMenu* menu) {
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

  void makeHelpMenu(QMenu* menu) {
    const QString name = controller_.orvVersion().applicationName();
    platform::Application* application = &services_.application;
    add(menu, platform::formatted(localizedString("VelmoraAppController", "%@ &Help"), {name}), "doHelp",
        QKeySequence::HelpContents, [application] { application->showHelp(); });
    menu->addSeparator();
    add(menu, localizedString("VelmoraAppController", "Check for New &Version..."), "doCheckForNewVersion",
        QKeySequence(), onApplication(&VelmoraAppController::doCheckForNewVersion));
    add(menu, localizedString("VelmoraAppController", "&Web Site"), "doGoToWebSite", QKeySequence(),
        onApplication(&VelmoraAppController::doGoToWebSite));
    add(menu, localizedString("VelmoraAppController", "&Contact Support..."), "doMailAuthor", QKeySequence(),
        onApplication(&VelmoraAppController::doMailAuthor));
    menu->addSeparator();
    add(menu, platform::formatted(localizedString("VelmoraAppController", "&About %@"), {name}),
        "doSplashAboutBox", QKeySequence(), onApplication(&VelmoraAppController::doSplashAboutBox));
  }

  platform::Services& services_;
  VelmoraAppController& controller_;
  QMainWindow& window_;
  VelmoraDocument& document_;
};

}  // namespace

void installMainMenu(platform::Services& services, VelmoraAppController& controller,
                     platform::WindowController& windowController) {
  auto* window = dynamic_cast<QMainWindow*>(windowController.window());
  auto* document = dynamic_cast<VelmoraDocument*>(windowController.document());
  if (!window || !document) return;
  MenuMaker(services, controller, *window, *document).make();
}

void installWindowShortcuts(platform::Services& services, VelmoraAppController& controller,
                            platform::WindowController& windowController) {
  QWidget* window = windowController.window();
  const auto add = [window](const QKeySequence& keys, std::function<void()> command) {
    // Two shortcuts on one key would silence each other: a window's own comes first.
    for (const QShortcut* own : window->findChildren<QShortcut*>()) {
      if (own->key() == keys) return;
    }
    auto* shortcut = new QShortcut(keys, window);
    QObject::connect(shortcut, &QShortcut::activated, window,
                     [command = std::move(command)] { base::guarded("shortcut", command); });
  };
  // As the window's close button does, with whatever the window makes of that.
  add(CloseKeys, [window] { window->close(); });
  add(QuitKeys, [&services, &controller, window] { quit(services, controller, window); });
  add(QKeySequence::HelpContents, [&services] { services.application.showHelp(); });
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
