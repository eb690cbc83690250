// SPDX-License-Identifier: LGPL-3.0-or-later
#include "demo/Child.h"

#include <sys/prctl.h>
#include <csignal>

#include "demo/Report.h"
#include "demo/Waiting.h"

namespace demo {

Child::Child(Report& report, const QString& name) : report_(report), name_(name) {
  process_.setProcessChannelMode(QProcess::MergedChannels);
  // A signal typed at the terminal reaches a whole group: children are ended here, in order, not by it.
  process_.setChildProcessModifier([] {
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGTERM);
  });
  QObject::connect(&process_, &QProcess::readyRead, &process_, [this] { read(); });
  QObject::connect(&process_, &QProcess::finished, &process_, [this] {
    read();
    report_.trace(name_, '(' + ending() + ')');
  });
}

Child::~Child() { stop(); }

void Child::start(const QString& program, const QStringList& arguments,
                  const QProcessEnvironment& environment) {
  report_.trace(name_, "$ " + program + ' ' + arguments.join(' '));
  process_.setProcessEnvironment(environment);
  process_.setWorkingDirectory(environment.value("HOME", "/"));
  process_.start(program, arguments);
  if (!process_.waitForStarted(10000)) throw Differs(name_ + " to start", process_.errorString());
}

void Child::read() {
  partial_ += process_.readAll();
  for (qsizetype end = partial_.indexOf('\n'); end >= 0; end = partial_.indexOf('\n')) {
    take(QString::fromUtf8(partial_.left(end)));
    partial_.remove(0, end + 1);
  }
}

void Child::take(const QString& line) {
  lines_.append({line, steadyMilliseconds()});
  report_.trace(name_, line);
}

Child::Line Child::waitForLine(const QString& text, double seconds, qsizetype from) {
  std::optional<Line> found;
  const auto look = [&] {
    for (; !found && from < lines_.size(); ++from)
      if (lines_[from].text.contains(text)) found = lines_[from];
    return found.has_value();
  };
  waitUntil(seconds, [&] { return look() || !running(); });
  if (!found) read();
  if (look()) return *found;
  throw Differs(QString("a line with \"%1\" from %2 within %3 s").arg(text, name_).arg(seconds),
                lines_.isEmpty() ? QString("no line at all") : "last line \"" + lines_.last().text + '"');
}

int Child::waitForEnd(double seconds) {
  if (!waitUntil(seconds, [this] { return !running(); }))
    throw Differs(QString("%1 to end within %2 s").arg(name_).arg(seconds), "it runs on");
  if (process_.exitStatus() != QProcess::NormalExit) throw Differs(name_ + " to end by itself", ending());
  return process_.exitCode();
}

void Child::stop() {
  if (!running()) return;
  process_.terminate();
  if (!process_.waitForFinished(3000)) {
    process_.kill();
    process_.waitForFinished(3000);
  }
}

QString Child::ending() const {
  if (process_.state() != QProcess::NotRunning) return "it runs";
  if (process_.exitStatus() == QProcess::CrashExit)
    return QString("ended by signal %1").arg(process_.exitCode());
  return QString("ended with exit code %1").arg(process_.exitCode());
}

}  // namespace demo
