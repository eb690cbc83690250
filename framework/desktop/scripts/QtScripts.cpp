// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/scripts/QtScripts.h"

#include <QPointer>
#include <system_error>

#include "desktop/scripts/ShellErrors.h"
#include "desktop/scripts/ShellRun.h"
#include "desktop/scripts/ShellStyles.h"
#include "desktop/scripts/ShellTools.h"
#include "platform/text/Localization.h"

namespace velmora::desktop {

namespace {

constexpr qsizetype LongestSource = 4 * 1024 * 1024;

platform::ScriptError errorWithoutPlace(const QString& source, const QString& message) {
  return {message, message, {source.size(), 0}};
}

QString cannotBeStarted(const QString& reason) {
  return platform::formatted(platform::localizedString("Script", "The script cannot be started: %@"),
                             {reason});
}

platform::ScriptResult resultOf(const ShellRun& run, const QString& source) {
  const QString number = QString::number(run.number());
  QString ending;
  switch (run.end()) {
    case ShellRun::End::Well:
      return {};
    case ShellRun::End::NotStarted:
      return errorWithoutPlace(source, cannotBeStarted(run.startError()));
    case ShellRun::End::Stopped:
      return errorWithoutPlace(source, platform::localizedString("Script", "The script was stopped."));
    case ShellRun::End::Status:
      ending = platform::formatted(platform::localizedString("Script", "The script ended with status %@."),
                                   {number});
      break;
    case ShellRun::End::Signal:
      ending = platform::formatted(platform::localizedString("Script", "The script was ended by signal %@."),
                                   {number});
      break;
  }
  return errorOfRun(source, run.standardError(), run.scriptName(), ending);
}

using Runs = QList<QPointer<ShellRun>>;

class QtScript : public platform::Script {
 public:
  QtScript(platform::RunLoop& runLoop, const ScriptTimes& times, std::shared_ptr<Runs> runs, QString source)
      : runLoop_(runLoop), times_(times), runs_(std::move(runs)), source_(std::move(source)) {}
  /// A script that is given up while it runs ends.
  ~QtScript() override {
    if (!running_) return;
    running_->stop();
    running_->stop();
  }

  platform::ScriptResult compileAndReturnError() override {
    if (!check_) check_ = checkShellSource(source_, times_.forTools);
    return check_->error ? platform::ScriptResult(*check_->error) : platform::ScriptResult();
  }

  std::optional<platform::ScriptText> richTextSource() const override {
    if (!check_ || !check_->formatted) return std::nullopt;
    return platform::ScriptText{*check_->formatted, styledRuns(*check_->formatted)};
  }

  platform::ScriptResult executeAndReturnError() override {
    const platform::ScriptResult compiled = compileAndReturnError();
    if (!compiled && check_->shellRefuses) return compiled;
    // This object may be gone when the run is over.
    const QString source = source_;
    try {
      ShellRun run(runLoop_, times_.untilLogged, times_.untilKilled);
      running_ = &run;
      runs_->removeIf([](const QPointer<ShellRun>& other) { return !other; });
      runs_->append(&run);
      run.run(source.toUtf8());
      return resultOf(run, source);
    } catch (const std::system_error& failure) {
      return errorWithoutPlace(source, cannotBeStarted(QString::fromLocal8Bit(failure.what())));
    }
  }

 private:
  platform::RunLoop& runLoop_;
  ScriptTimes times_;
  std::shared_ptr<Runs> runs_;
  QString source_;
  std::optional<ShellCheck> check_;
  QPointer<ShellRun> running_;
};

}  // namespace

std::unique_ptr<platform::Script> QtScripts::initWithSource(const QString& source) {
  if (source.size() > LongestSource || source.contains(QChar::Null) || !source.isValidUtf16()) return nullptr;
  return std::make_unique<QtScript>(runLoop_, times_, runs_, source);
}

void QtScripts::stopRunning() {
  for (const QPointer<ShellRun>& run : Runs(*runs_)) {
    if (run) run->stop();
  }
}

}  // namespace velmora::desktop
