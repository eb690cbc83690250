// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The plugin for the archive Orthanc: adds a way to the measurement applications, and their charts, to the
// study page of Orthanc Explorer. It changes nothing that is stored.
#include <orthanc/OrthancCPlugin.h>

#include <QByteArray>
#include <exception>

#include "bridge/orthanc/PageScript.h"

namespace {

/// The configuration of Orthanc as JSON; empty when Orthanc does not give it.
QByteArray configurationOf(OrthancPluginContext* context) {
  char* text = OrthancPluginGetConfiguration(context);
  if (text == nullptr) return {};
  const QByteArray configuration(text);
  OrthancPluginFreeString(context, text);
  return configuration;
}

void extendExplorer(OrthancPluginContext* context) {
  const bridge::PageScript script = bridge::pageScript(configurationOf(context));
  for (const QString& complaint : script.complaints) {
    OrthancPluginLogWarning(context, ("velmora: configuration: " + complaint.toUtf8()).constData());
  }
  OrthancPluginExtendOrthancExplorer(context, script.javaScript.constData());
}

}  // namespace

extern "C" {

ORTHANC_PLUGINS_API int32_t OrthancPluginInitialize(OrthancPluginContext* context) {
  if (OrthancPluginCheckVersion(context) == 0) {
    OrthancPluginLogError(context, "velmora: this version of Orthanc is too old for the plugin");
    return -1;
  }
  try {
    OrthancPluginSetDescription(context, "Hands studies to measurement applications and shows their charts.");
    extendExplorer(context);
  } catch (const std::exception& exception) {
    OrthancPluginLogError(context, exception.what());
    return -1;
  }
  return 0;
}

ORTHANC_PLUGINS_API void OrthancPluginFinalize() {}

ORTHANC_PLUGINS_API const char* OrthancPluginGetName() { return "velmora"; }

ORTHANC_PLUGINS_API const char* OrthancPluginGetVersion() { return VELMORA_VERSION; }

}  // extern "C"
