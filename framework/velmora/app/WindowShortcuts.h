// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QKeySequence>

class QWidget;

namespace velmora::platform {
class Application;
class DocumentController;
class RunLoop;
class WindowController;
}  // namespace velmora::platform

namespace velmora {

// Given here because Qt's standard keys for these depend on the desktop, or are missing.
inline const QKeySequence CloseKeys(Qt::CTRL | Qt::Key_W);
inline const QKeySequence QuitKeys(Qt::CTRL | Qt::Key_Q);

/// Ends what is being edited in `window` and then, after what that sets going, quits the application.
void quitFrom(QWidget* window, platform::RunLoop& runLoop, platform::DocumentController& controller);

/// Gives a window without a menu bar the keys that every window has: close, quit, help. Once for each window.
void installWindowShortcuts(platform::WindowController& windowController, platform::RunLoop& runLoop,
                            platform::Application& application, platform::DocumentController& controller);

}  // namespace velmora
