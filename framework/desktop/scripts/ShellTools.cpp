// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/scripts/ShellTools.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>

#include "desktop/alerts/BusyPointer.h"
#include "desktop/scripts/ShellErrors.h"
#include "platform/text/Localization.h"

namespace velmora::desktop {

namespace {

struct Answer {
  bool crashed = false;
  int status = 0;
  QString output;
  QString report;  // the standard error
};

/// What a tool that reads its standard input says of a text; nothing when it cannot be asked.
std::optional<Answer> ask(const QString& tool, const QStringList& arguments, const QString& text,
                          std::chrono::milliseconds patience) {
  QProcess process;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));  // the form of the reports
  process.setProcessEnvironment(environment);
  process.setWorkingDirectory(QStringLiteral("/"));
  process.start(tool, arguments);
  process.write(text.toUtf8());
  process.closeWriteChannel();
  if (!process.waitForFinished(static_cast<int>(patience.count()))) {
    process.kill();
    process.waitForFinished();
    return std::nullopt;
  }
  return Answer{process.exitStatus() == QProcess::CrashExit, process.exitCode(),
                QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
}

/// What shfmt says: an error, or the formatted text.
ShellCheck checkWithFormatter(const QString& source, std::chrono::milliseconds patience) {
  const QString shfmt = QStandardPaths::findExecutable(QStringLiteral("shfmt"));
  if (shfmt.isEmpty()) return {};
  // A flag for the language also keeps it from reading .editorconfig files.
  const std::optional<Answer> answer =
      ask(shfmt, {QStringLiteral("-ln"), QStringLiteral("posix")}, source, patience);
  if (!answer || answer->crashed) return {};
  if (answer->status == 0) return {std::nullopt, false, answer->output};
  return {errorOfFormatter(source, answer->report), false, std::nullopt};
}

}  // namespace

ShellCheck checkShellSource(const QString& source, std::chrono::milliseconds patience) {
  const BusyPointer busy;
  const std::optional<Answer> answer =
      ask(QStringLiteral("/bin/sh"), {QStringLiteral("-n")}, source, patience);
  // Whoever has waited that long is not to wait for shfmt, too.
  if (!answer) return {};
  // A source that is nested so deeply that the shell runs out of stack would take shfmt a gigabyte
  // (measured, 3.6.0).
  if (answer->crashed) {
    const QString message = platform::localizedString("Script", "The shell cannot read this script.");
    return {platform::ScriptError{message, message, {source.size(), 0}}, true, std::nullopt};
  }
  ShellCheck check = checkWithFormatter(source, patience);
  if (answer->status != 0) {
    check.shellRefuses = true;
    if (!check.error) check.error = errorOfSyntaxCheck(source, answer->report);
    check.formatted.reset();
  }
  return check;
}

}  // namespace velmora::desktop
