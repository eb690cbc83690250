// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/standins/ScriptedScripts.h"

namespace velmora::testkit {

namespace {

platform::ScriptResult resultOf(const std::optional<platform::ScriptError>& error) {
  return error ? platform::ScriptResult(*error) : platform::ScriptResult();
}

class ScriptedScript : public platform::Script {
 public:
  ScriptedScript(ScriptedScripts& scripts, QString source)
      : scripts_(scripts), source_(std::move(source)), behaviour_(scripts.behaviours.value(source_)) {}

  platform::ScriptResult compileAndReturnError() override {
    scripts_.compiled.append(source_);
    compiled_ = !behaviour_.compileError;
    return resultOf(behaviour_.compileError);
  }

  std::optional<platform::ScriptText> richTextSource() const override {
    return compiled_ ? behaviour_.formatted : std::nullopt;
  }

  platform::ScriptResult executeAndReturnError() override {
    if (behaviour_.compileError) return *behaviour_.compileError;
    // The test may end this script while it runs.
    const platform::ScriptResult result = resultOf(behaviour_.runError);
    scripts_.executed.append(source_);
    if (scripts_.whileRunning) scripts_.whileRunning(source_);
    return result;
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
