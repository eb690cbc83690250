// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/resources/FrameworkResources.h"

namespace velmora {

QString frameworkInterfaceFolder() { return QStringLiteral(":/velmora"); }

}  // namespace velmora
