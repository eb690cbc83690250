// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/preferences/ScriptCheck.h"

#include <memory>

namespace velmora {

ScriptCheck checkScript(platform::Scripts& scripts, const QString& text) {
  ScriptCheck check;
  if (text.isEmpty()) return check;
  const std::unique_ptr<platform::Script> script = scripts.initWithSource(text);
  if (!script) return check;
  const platform::ScriptResult compiled = script->compileAndReturnError();
  if (compiled.ok()) {
    check.formatted = script->richTextSource();
  } else {
    check.error = compiled.failure();
  }
  return check;
}

}  // namespace velmora
