// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/app/RecentsMenu.h"

#include <QAction>
#include <QMenu>

#include "base/log/Guard.h"
#include "platform/controls/TextFieldEditing.h"
#include "platform/runloop/RunLoop.h"
#include "platform/text/Localization.h"
#include "velmora/app/MenuCommands.h"
#include "velmora/app/RecentDocuments.h"

using velmora::platform::localizedString;

namespace velmora {

RecentsMenu::RecentsMenu(QMenu* menu, QWidget* window, MenuCommands& commands, platform::RunLoop& runLoop,
                         const QObject* application)
    : QObject(menu),
      menu_(menu),
      window_(window),
      commands_(commands),
      runLoop_(runLoop),
      application_(application) {
  connect(menu, &QMenu::aboutToShow, this, [this] { base::guarded("menu", [this] { fill(); }); });
  // An empty menu does not open, and so would never be filled.
  fill();
}

void RecentsMenu::fill() {
  menu_->clear();
  RecentDocuments& recents = commands_.recentDocuments();
  const QStringList paths = recents.paths();
  for (const QString& path : paths) {
    // A name is shown as it is: what looks like a mnemonic in it is not one.
    QAction* recent = menu_->addAction(
        RecentDocuments::titleOf(path, paths).replace(QLatin1Char('&'), QLatin1String("&&")));
    recent->setData(path);
    connect(recent, &QAction::triggered, this, [this, path] { base::guarded("menu", [&] { open(path); }); });
  }
  if (!paths.isEmpty()) menu_->addSeparator();
  QAction* clear = menu_->addAction(localizedString("VelmoraAppController", "&Clear Menu"));
  clear->setObjectName(QStringLiteral("doClearRecentDocuments"));
  connect(clear, &QAction::triggered, this,
          [&recents] { base::guarded("menu", [&recents] { recents.clear(); }); });
  QAction* remember = menu_->addAction(localizedString("VelmoraAppController", "&Remember Recent Documents"));
  remember->setObjectName(QStringLiteral("doRememberRecentDocuments"));
  remember->setCheckable(true);
  remember->setChecked(recents.remembers());
  connect(remember, &QAction::triggered, this,
          [&recents](bool remembers) { base::guarded("menu", [&] { recents.setRemembers(remembers); }); });
}

void RecentsMenu::open(const QString& path) {
  platform::TextFieldEditing::endEditing(window_);
  runLoop_.performAfterDelay(application_, 0,
                             [&commands = commands_, path] { commands.openRecentDocument(path); });
}

}  // namespace velmora
