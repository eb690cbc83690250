// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>

class VelmoraAppController;

namespace velmora::platform {
struct Services;
class WindowController;
}  // namespace velmora::platform

namespace velmora {

/// Gives the window of a document the application's menu bar. Commands that act on the document first end
/// what is being edited, and run after what that sets going; on a document that has closed meanwhile they do
/// nothing.
///
/// The items of a menu are validated when it opens, those that belong to the application by the controller's
/// rule, those that belong to a text field by what the field can do. A closed menu leaves nothing disabled:
/// its shortcuts ask anew each time.
void installMainMenu(platform::Services& services, VelmoraAppController& controller,
                     platform::WindowController& windowController);

/// Gives a window without a menu bar the keys that every window has: close, quit, help. Once for each window.
void installWindowShortcuts(platform::Services& services, VelmoraAppController& controller,
                            platform::WindowController& windowController);

/// The title of a menu item as it is read: without the mark of its mnemonic.
QString titleWithoutMnemonic(const QString& text);

}  // namespace velmora
