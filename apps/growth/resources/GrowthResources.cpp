// SPDX-License-Identifier: LGPL-3.0-or-later
#include "apps/growth/resources/GrowthResources.h"

#include <QDir>

// In a static library the files would stay behind if nothing asked for them. Outside every namespace, as Qt
// wants it.
static void loadFiles() { Q_INIT_RESOURCE(growth); }

namespace growth {

QString interfaceFolder() {
  loadFiles();
  return QStringLiteral(":/growth");
}

}  // namespace growth
