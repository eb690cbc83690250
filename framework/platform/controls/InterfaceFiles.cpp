// SPDX-License-Identifier: LGPL-3.0-or-later
#include "platform/controls/InterfaceFiles.h"

#include <QFile>
#include <QUiLoader>
#include <QWidget>

#include "base/log/Log.h"

namespace velmora::platform {

namespace {

/// A loader that knows the program's own widget classes.
class Loader : public QUiLoader {
 public:
  explicit Loader(const QMap<QString, InterfaceFiles::WidgetFactory>& factories) : factories_(factories) {}

  QWidget* createWidget(const QString& className, QWidget* parent, const QString& name) override {
    const auto factory = factories_.constFind(className);
    if (factory == factories_.constEnd()) return QUiLoader::createWidget(className, parent, name);
    QWidget* widget = (*factory)(parent);
    widget->setObjectName(name);
    return widget;
  }

 private:
  const QMap<QString, InterfaceFiles::WidgetFactory>& factories_;
};

}  // namespace

void InterfaceFiles::addSearchPath(const QString& folder) { searchPaths_.prepend(folder); }

void InterfaceFiles::registerWidget(const QString& className, WidgetFactory factory) {
  factories_.insert(className, factory);
}

std::unique_ptr<QWidget> InterfaceFiles::load(const QString& name) const {
  for (const QString& folder : searchPaths_) {
    QFile file(folder + QLatin1Char('/') + name + QStringLiteral(".ui"));
    if (!file.open(QIODevice::ReadOnly)) continue;
    Loader loader(factories_);
    std::unique_ptr<QWidget> window(loader.load(&file));
    if (window) return window;
    base::logLine(QStringLiteral("Interface file %1: %2").arg(file.fileName(), loader.errorString()));
  }
  base::logLine(QStringLiteral("Interface file %1 not found").arg(name));
  return nullptr;
}

}  // namespace velmora::platform
