// SPDX-License-Identifier: LGPL-3.0-or-later
#include "demo/Application.h"

#include <QFile>

#include "demo/Stage.h"

namespace demo {

Application::Application(Report& report, const Stage& stage, const QString& program,
                         const QString& pluginFolder)
    : process_(report, "application") {
  const QString socket = stage.workFolder() + "/probe";
  QFile::remove(socket);  // of an earlier run
  QProcessEnvironment environment = stage.environment();
  environment.insert("QT_PLUGIN_PATH", pluginFolder);
  environment.insert("QT_QPA_GENERIC_PLUGINS", "velmoraprobe:" + socket);
  process_.start(program, {}, environment);
  probe_ = std::make_unique<ProbeClient>(report, socket, process_, 20);
  person_ = std::make_unique<Person>(*probe_);
}

SeenWindow Application::document(double seconds) {
  return document(
      "a document window", [](const SeenWindow&) { return true; }, seconds);
}

SeenWindow Application::document(const QString& what, const std::function<bool(const SeenWindow&)>& holds,
                                 double seconds) {
  return person_->waitFor(
      what, [&](const SeenWindow& window) { return window.name() == "VelmoraDocument" && holds(window); },
      seconds);
}

void Application::waitForStatus(const QString& text, double seconds) {
  person_->waitFor(
      "the status \"" + text + '"',
      [&](const SeenWindow& window) {
        return window.name() == "About" && window.text("statusField") == text;
      },
      seconds);
}

}  // namespace demo
