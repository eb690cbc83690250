// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

class QMenu;
class QWidget;
class VelmoraAppController;

namespace velmora::platform {
struct Services;
}

namespace velmora {

/// Fills `menu` with the recent documents, and with the items that clear them and switch them off, each time
/// that it opens.
void makeRecentsMenu(platform::Services& services, VelmoraAppController& controller, QMenu* menu,
                     QWidget* window);

}  // namespace velmora
