// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include "platform/workspace/Workspace.h"

namespace velmora::desktop {

/// The desktop by its freedesktop conventions.
class QtWorkspace : public platform::Workspace {
 public:
  bool openURL(const QUrl& url) override;
  /// Asks the file viewer (org.freedesktop.FileManager1) to show the item; failing that, opens its folder.
  bool selectFile(const QString& path) override;
  /// The program that the desktop entry "<identifier>.desktop" starts, or the entry itself where it names
  /// none.
  std::optional<QString> absolutePathForAppBundleWithIdentifier(const QString& identifier) const override;
};

}  // namespace velmora::desktop
