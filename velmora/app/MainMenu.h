// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

class VelmoraAppController;

namespace platform {
struct Services;
class WindowController;
}  // namespace platform

namespace velmora {

/// Gives the window of a document the application's menu bar. Commands that act on the document first end
/// what is being edited, and run after what that sets going; on a document that has closed meanwhile they do
/// nothing.
void installMainMenu(platform::Services& services, VelmoraAppController& controller,
                     platform::WindowController& windowController);

}  // namespace velmora
