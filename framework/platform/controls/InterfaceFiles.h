// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

#include "base/Export.h"

class QWidget;

namespace velmora::platform {

/// Finds and loads the interface files (Qt Designer's .ui) by name: the application's own first, then the
/// framework's.
class VELMORA_EXPORT InterfaceFiles {
 public:
  using WidgetFactory = std::function<QWidget*(QWidget* parent)>;

  /// Adds a folder (or ":/resource" folder) that is searched before those added earlier.
  void addSearchPath(const QString& folder);
  /// Lets interface files name a class of the program's own (a promoted widget).
  void registerWidget(const QString& className, WidgetFactory factory);

  /// Loads a new window from the interface file "name.ui". Returns null, with a log line, when none can be
  /// loaded.
  std::unique_ptr<QWidget> load(const QString& name) const;

 private:
  QStringList searchPaths_;
  QMap<QString, WidgetFactory> factories_;
};

}  // namespace velmora::platform
