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

// Written out where Qt's standard key depends on the desktop, or is none.
inline const QKeySequence CloseKeys(Qt::CTRL | Qt::Key_W);
inline const QKeySequence QuitKeys(Qt::CTRL | Qt::Key_Q);

/// Ends what is being edited in `window` and then, after what that sets going, quits the application.
void quitFrom(QWidget* window, platform::RunLoop& runLoop, platform::DocumentController& controller);

/// Gives a window without a menu bar the keys that every window has: close, quit, help. Once for each window.
void installWindowShortcuts(platform::WindowController& windowController, platform::RunLoop& runLoop,
                            platform::Application& application, platform::DocumentController& controller);

}  // namespace velmora
