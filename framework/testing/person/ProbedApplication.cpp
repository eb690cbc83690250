// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/person/ProbedApplication.h"

#include <QFile>

#include "testing/person/ProbeInput.h"

namespace velmora::testkit {

namespace {

QString socketOn(const Stage& stage) { return stage.workFolder() + "/probe"; }

QProcessEnvironment withProbe(const Stage& stage) {
  QProcessEnvironment environment = stage.environment();
  ProbeClient::addProbe(environment, socketOn(stage));
  return environment;
}

}  // namespace

ProbedApplication::ProbedApplication(const Program::Trace& trace, const Stage& stage, const QString& program)
    : process_("application", program, withProbe(stage), trace) {
  QFile::remove(socketOn(stage));  // of an earlier run
  process_.start();
  probe_ = std::make_unique<ProbeClient>(trace, socketOn(stage), process_, 20);
  person_ = std::make_unique<PersonWithMouse>(*probe_, std::make_unique<ProbeInput>(*probe_), 5);
}

SeenWindow ProbedApplication::document(std::optional<double> seconds) {
  return document(
      "a document window", [](const SeenWindow&) { return true; }, seconds);
}

SeenWindow ProbedApplication::document(const QString& what,
                                       const std::function<bool(const SeenWindow&)>& holds,
                                       std::optional<double> seconds) {
  return person_->waitFor(
      what, [&](const SeenWindow& window) { return window.name() == "VelmoraDocument" && holds(window); },
      seconds);
}

void ProbedApplication::waitForGoodEnd(double seconds) {
  if (process_.finish(seconds) != 0)
    throw Differs("the application to end with exit code 0", process_.ending());
}

void ProbedApplication::waitForStatus(const QString& text, double seconds) {
  person_->waitFor(
      "the status \"" + text + '"',
      [&](const SeenWindow& window) {
        return window.name() == "About" && window.text("statusField") == text;
      },
      seconds);
}

}  // namespace velmora::testkit
