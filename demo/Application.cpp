// SPDX-License-Identifier: LGPL-3.0-or-later
#include "demo/Application.h"

#include <QFile>

#include "demo/Report.h"
#include "demo/Stage.h"

namespace demo {

namespace {

QString socketOn(const Stage& stage) { return stage.workFolder() + "/probe"; }

QProcessEnvironment withProbe(const Stage& stage, const QString& pluginFolder) {
  QProcessEnvironment environment = stage.environment();
  environment.insert("QT_PLUGIN_PATH", pluginFolder);
  environment.insert("QT_QPA_GENERIC_PLUGINS", "velmoraprobe:" + socketOn(stage));
  return environment;
}

}  // namespace

Application::Application(Report& report, const Stage& stage, const QString& program,
                         const QString& pluginFolder)
    : process_("application", program, withProbe(stage, pluginFolder), report.tracer()) {
  QFile::remove(socketOn(stage));  // of an earlier run
  process_.start();
  probe_ = std::make_unique<ProbeClient>(report, socketOn(stage), process_, 20);
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

void Application::waitForGoodEnd(double seconds) {
  if (process_.finish(seconds) != 0)
    throw Differs("the application to end with exit code 0", process_.ending());
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
