// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>
#include <functional>

class QKeySequence;
class QMainWindow;
class QMenu;
class VelmoraDocument;

namespace velmora::platform {
class DocumentController;
struct Services;
class WindowController;
}  // namespace velmora::platform

namespace velmora {

class MenuCommands;

/// The menu bar of one document's window.
///
/// Commands that act on the document first end what is being edited, and run after what that sets going; they
/// act on this document even when another one has come to the front meanwhile, and do nothing when it has
/// closed. The items are validated when a menu opens, those that belong to the application by its rule, those
/// that belong to a text field by what the field can do. A closed menu leaves nothing disabled: its shortcuts
/// ask anew each time.
class MainMenu : public QObject {
 public:
  /// Gives the window its menu bar, which lives as long as the window. A window that is no main window, or
  /// not that of a patient document, gets none.
  static void install(platform::Services& services, platform::DocumentController& controller,
                      MenuCommands& commands, platform::WindowController& windowController);

 private:
  MainMenu(platform::Services& services, platform::DocumentController& controller, MenuCommands& commands,
           QMainWindow& window, VelmoraDocument& document);

  QMenu* addMenu(const QString& title, const char* name);
  void add(QMenu* menu, const QString& title, const char* name, const QKeySequence& keys,
           std::function<void()> command);
  std::function<void()> onApplication(void (MenuCommands::*command)(const QObject*));
  std::function<void()> onDocument(std::function<void(VelmoraDocument&)> command);
  void makeFileMenu(QMenu* menu);
  void makeEditMenu(QMenu* menu);
  void makeExaminationMenu(QMenu* menu);
  void makeHelpMenu(QMenu* menu);

  platform::Services& services_;
  platform::DocumentController& controller_;
  MenuCommands& commands_;
  QMainWindow& window_;
  VelmoraDocument& document_;
};

/// The title of a menu item as it is read: without the mark of its mnemonic.
QString titleWithoutMnemonic(const QString& text);

}  // namespace velmora
