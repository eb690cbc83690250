// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/app/MainMenuRecents.h"

#include <QAction>
#include <QMenu>

#include "base/log/Guard.h"
#include "platform/text/Localization.h"
#include "platform/runloop/RunLoop.h"
#include "platform/Services.h"
#include "platform/controls/TextFieldEditing.h"
#include "velmora/app/VelmoraAppController.h"

using velmora::platform::localizedString;

namespace velmora {

namespace {

void fill(platform::Services& services, VelmoraAppController& controller, QMenu* menu, QWidget* window) {
  menu->clear();
  const QStringList paths = controller.recentDocuments().paths();
  for (const QString& path : paths) {
    // A name is shown as it is: what looks like a mnemonic in it is none.
    QAction* recent =
        menu->addAction(RecentDocuments::titleOf(path, paths).replace(QLatin1Char('&'), QLatin1String("&&")));
    recent->setData(path);
    QObject::connect(recent, &QAction::triggered, window, [&services, &controller, path, window] {
      base::guarded("menu", [&] {
        platform::TextFieldEditing::endEditing(window);
        services.runLoop.performAfterDelay(&controller, 0,
                                           [&controller, path] { controller.openRecentDocument(path); });
      });
    });
  }
  if (!paths.isEmpty()) menu->addSeparator();
  QAction* clear = menu->addAction(localizedString("VelmoraAppController", "&Clear Menu"));
  clear->setObjectName(QStringLiteral("doClearRecentDocuments"));
  QObject::connect(clear, &QAction::triggered, window,
                   [&controller] { base::guarded("menu", [&] { controller.recentDocuments().clear(); }); });
  QAction* remember = menu->addAction(localizedString("VelmoraAppController", "&Remember Recent Documents"));
  remember->setObjectName(QStringLiteral("doRememberRecentDocuments"));
  remember->setCheckable(true);
  remember->setChecked(controller.recentDocuments().remembers());
  QObject::connect(remember, &QAction::triggered, window, [&controller](bool remembers) {
    base::guarded("menu", [&] { controller.recentDocuments().setRemembers(remembers); });
  });
}

}  // namespace

void makeRecentsMenu(platform::Services& services, VelmoraAppController& controller, QMenu* menu,
                     QWidget* window) {
  QObject::connect(menu, &QMenu::aboutToShow, window, [&services, &controller, menu, window] {
    base::guarded("menu", [&] { fill(services, controller, menu, window); });
  });
  // An empty menu does not open, and so would never be filled.
  fill(services, controller, menu, window);
}

}  // namespace velmora
