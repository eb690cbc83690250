// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/app/WindowShortcuts.h"

#include <QShortcut>
#include <QWidget>
#include <functional>

#include "base/log/Guard.h"
#include "platform/controls/TextFieldEditing.h"
#include "platform/documents/Application.h"
#include "platform/documents/DocumentController.h"
#include "platform/documents/WindowController.h"
#include "platform/runloop/RunLoop.h"

namespace velmora {

void quitFrom(QWidget* window, platform::RunLoop& runLoop, platform::DocumentController& controller) {
  platform::TextFieldEditing::endEditing(window);
  runLoop.performAfterDelay(&controller, 0, [&controller] { controller.terminate(); });
}

void installWindowShortcuts(platform::WindowController& windowController, platform::RunLoop& runLoop,
                            platform::Application& application, platform::DocumentController& controller) {
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
  add(QuitKeys, [&runLoop, &controller, window] { quitFrom(window, runLoop, controller); });
  add(QKeySequence::HelpContents, [&application] { application.showHelp(); });
}

}  // namespace velmora
