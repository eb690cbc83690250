// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/ScriptedScripts.h"

namespace velmora::testkit {

namespace {

class ScriptedScript : public platform::Script {
 public:
  ScriptedScript(ScriptedScripts& scripts, QString source)
      : scripts_(scripts), source_(std::move(source)), behaviour_(scripts.behaviours.value(source_)) {}

  bool compileAndReturnError(std::optional<platform::ScriptError>& error) override {
    scripts_.compiled.append(source_);
    error = behaviour_.compileError;
    compiled_ = !error;
    return compiled_;
  }

  std::optional<platform::ScriptText> richTextSource() const override {
    return compiled_ ? behaviour_.formatted : std::nullopt;
  }

  bool executeAndReturnError(std::optional<platform::ScriptError>& error) override {
    error = behaviour_.compileError;
    if (error) return false;
    // The test may end this script while it runs.
    const std::optional<platform::ScriptError> runError = behaviour_.runError;
    scripts_.executed.append(source_);
    if (scripts_.whileRunning) scripts_.whileRunning(source_);
    error = runError;
    return !error;
  }

 private:
  ScriptedScripts& scripts_;
  QString source_;
  ScriptedScripts::Behaviour behaviour_;
  bool compiled_ = false;
};

}  // namespace

std::unique_ptr<platform::Script> ScriptedScripts::initWithSource(const QString& source) {
  if (behaviours.value(source).refused) return nullptr;
  return std::make_unique<ScriptedScript>(*this, source);
}

}  // namespace velmora::testkit
