// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QObject>

class QMenu;
class QWidget;

namespace velmora::platform {
class RunLoop;
}

namespace velmora {

class MenuCommands;

/// Fills a menu, each time it opens, with the recent documents and with the items that clear them and turn
/// them off. Lives as long as the menu.
class RecentsMenu : public QObject {
 public:
  /// `menu` belongs to `window`. A document is opened once the edit in that window has ended, with all that
  /// follows from it, unless `application` has gone.
  RecentsMenu(QMenu* menu, QWidget* window, MenuCommands& commands, platform::RunLoop& runLoop,
              const QObject* application);

 private:
  void fill();
  void open(const QString& path);

  QMenu* menu_;
  QWidget* window_;
  MenuCommands& commands_;
  platform::RunLoop& runLoop_;
  const QObject* application_;
};

}  // namespace velmora
