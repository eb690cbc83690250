// SPDX-License-Identifier: LGPL-3.0-or-later
#include <QGenericPlugin>

#include "testing/probe/ProbeServer.h"

namespace velmora::testkit::probe {

/// Lets the environment load the probe into any Qt program, which need not know of it:
/// QT_PLUGIN_PATH names the folder above "generic", QT_QPA_GENERIC_PLUGINS is "velmoraprobe:<socket>".
class ProbePlugin : public QGenericPlugin {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "probe.json")

 public:
  QObject* create(const QString& name, const QString& socket) override {
    if (name.compare("velmoraprobe", Qt::CaseInsensitive) != 0) return nullptr;
    return new ProbeServer(socket);
  }
};

}  // namespace velmora::testkit::probe

#include "ProbePlugin.moc"
