// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/app/MainMenu.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <functional>

#include "platform/Guard.h"
#include "platform/Localization.h"
#include "platform/RunLoop.h"
#include "platform/Services.h"
#include "platform/TextFieldEditing.h"
#include "platform/WindowController.h"
#include "velmora/app/VelmoraAppController.h"
#include "velmora/document/VelmoraDocument.h"

namespace velmora {

namespace {

QString text(const char* english) { return platform::localizedString("VelmoraAppController", english); }

/// Makes the menus of one document window.
class MenuMaker {
 public:
  MenuMaker(platform::Services& services, VelmoraAppController& controller, QMainWindow& window,
            VelmoraDocument& document)
      : services_(services), controller_(controller), window_(window), document_(document) {}

  void make() {
    makeFileMenu(addMenu("&File", "fileMenu"));
    makeEditMenu(addMenu("&Edit", "editMenu"));
    makeExaminationMenu(addMenu("E&xamination", "examinationMenu"));
    makeHelpMenu(addMenu("&Help", "helpMenu"));
  }

 private:
  QMenu* addMenu(const char* title, const char* name) {
    QMenu* menu = window_.menuBar()->addMenu(text(title));
    menu->setObjectName(QString::fromLatin1(name));
    QObject::connect(menu, &QMenu::aboutToShow, &window_,
                     [this_ = *this, menu] { platform::guarded("menu", [&] { this_.validate(menu); }); });
    return menu;
  }

  void validate(const QMenu* menu) const {
    for (QAction* action : menu->actions()) {
      if (!action->isSeparator())
        action->setEnabled(controller_.validateMenuItem(action->text().remove(u'&')));
    }
  }

  QAction* add(QMenu* menu, const char* title, const char* name, const QKeySequence& keys,
               std::function<void()> command) {
    QAction* action = menu->addAction(text(title));
    action->setObjectName(QString::fromLatin1(name));
    action->setShortcut(keys);
    QObject::connect(action, &QAction::triggered, &window_,
                     [command = std::move(command)] { platform::guarded("menu", command); });
    return action;
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
    add(menu, "&New", "doNewDocument", QKeySequence::New, [controller] { controller->newDocument(); });
    add(menu, "&Open...", "doOpenDocument", QKeySequence::Open, [controller] { controller->openDocument(); });
    menu->addSeparator();
    VelmoraDocument* document = &document_;
    add(menu, "&Close", "doClose", QKeySequence::Close, [document] { document->performClose(); });
    add(menu, "&Save", "doSave", QKeySequence::Save,
        onDocument([](VelmoraDocument& record) { record.saveDocument(); }));
    add(menu, "Save &As...", "doSaveAs", QKeySequence::SaveAs,
        onDocument([](VelmoraDocument& record) { record.saveDocumentAs(); }));
    menu->addSeparator();
    add(menu, "&Export", "doExport", QKeySequence(Qt::CTRL | Qt::Key_E),
        onDocument([controller](VelmoraDocument& record) { controller->doExport(&record); }));
    add(menu, "&Print...", "doPrint", QKeySequence::Print,
        onDocument([](VelmoraDocument& record) { record.printDocument({}, true); }));
    menu->addSeparator();
    add(menu, "&Quit", "doQuit", QKeySequence(Qt::CTRL | Qt::Key_Q), [this_ = *this, controller] {
      platform::TextFieldEditing::endEditing(&this_.window_);
      this_.services_.runLoop.performAfterDelay(controller, 0, [controller] { controller->terminate(); });
    });
  }

  /// An item that works on the text field with the keyboard. Its key is shown, but the field itself hears it
  /// first.
  void addEdit(QMenu* menu, const char* title, const char* name, const QKeySequence& keys,
               void (QLineEdit::*command)()) {
    add(menu, title, name, keys, [command] {
      if (auto* field = dynamic_cast<QLineEdit*>(QApplication::focusWidget())) (field->*command)();
    });
  }

  void makeEditMenu(QMenu* menu) {
    addEdit(menu, "&Undo", "doUndo", QKeySequence::Undo, &QLineEdit::undo);
    addEdit(menu, "&Redo", "doRedo", QKeySequence::Redo, &QLineEdit::redo);
    menu->addSeparator();
    addEdit(menu, "Cu&t", "doCut", QKeySequence::Cut, &QLineEdit::cut);
    // Copying changes nothing, so the const member needs a form of its own.
    add(menu, "&Copy", "doCopy", QKeySequence::Copy, [] {
      if (const auto* field = dynamic_cast<QLineEdit*>(QApplication::focusWidget())) field->copy();
    });
    addEdit(menu, "&Paste", "doPaste", QKeySequence::Paste, &QLineEdit::paste);
    addEdit(menu, "Select &All", "doSelectAll", QKeySequence::SelectAll, &QLineEdit::selectAll);
  }

  void makeExaminationMenu(QMenu* menu) {
    add(menu, "&New Examination", "doNewRecord", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_N),
        onDocument([](VelmoraDocument& record) { record.doNewRecord(&record); }));
    add(menu, "&Delete Examination...", "doDeleteRecord",
        QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Backspace),
        onDocument([](VelmoraDocument& record) { record.doDeleteRecord(&record); }));
    menu->addSeparator();
    add(menu, "Ne&xt Examination", "doNextRecord", QKeySequence(Qt::CTRL | Qt::Key_PageDown),
        onDocument([](VelmoraDocument& record) { record.doNextRecord(&record); }));
    add(menu, "&Previous Examination", "doPreviousRecord", QKeySequence(Qt::CTRL | Qt::Key_PageUp),
        onDocument([](VelmoraDocument& record) { record.doPreviousRecord(&record); }));
  }

  void makeHelpMenu(QMenu* menu) {
    VelmoraAppController* controller = &controller_;
    QAction* about = add(menu, "&About %@", "doSplashAboutBox", QKeySequence(),
                         [controller] { controller->doSplashAboutBox(controller); });
    about->setText(platform::formatted(about->text(), {controller_.orvVersion().applicationName()}));
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

}  // namespace velmora
