// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <QUrl>
#include <optional>

#include "base/Export.h"

namespace velmora::platform {

/// The desktop around the application.
class VELMORA_EXPORT Workspace {
 public:
  virtual ~Workspace() = default;

  /// Opens a web page, a mail address or a file with the user's program for it. Returns false when no program
  /// takes it.
  virtual bool openURL(const QUrl& url) = 0;
  /// Reveals a file or folder in the user's file viewer.
  virtual bool selectFile(const QString& path) = 0;
  /// Where the application with that bundle identifier is installed. Returns nothing when it is not.
  virtual std::optional<QString> absolutePathForAppBundleWithIdentifier(const QString& identifier) const = 0;
};

}  // namespace velmora::platform
