// SPDX-License-Identifier: LGPL-3.0-or-later
#include "demo/Report.h"

#include <cstdio>
#include <stdexcept>

namespace demo {

Report::Report(const QString& folder) : file_(folder + "/trace.txt") {
  clock_.start();
  if (!file_.open(QIODevice::WriteOnly | QIODevice::Truncate))
    throw std::runtime_error(("cannot write " + file_.fileName() + ": " + file_.errorString()).toStdString());
}

QString Report::time() const {
  return QString("%1 s").arg(static_cast<double>(clock_.elapsed()) / 1000, 7, 'f', 3);
}

void Report::trace(const QString& who, const QString& what) {
  file_.write((time() + "  " + who.leftJustified(12) + ' ' + what + '\n').toUtf8());
  file_.flush();
}

Program::Trace Report::tracer() {
  return [this](const QString& who, const QString& what) { trace(who, what); };
}

void Report::say(const QString& line) {
  std::printf("%s\n", qUtf8Printable(line));
  std::fflush(stdout);
  trace("demo", line);
}

void Report::begin(int number, const QString& title) {
  number_ = number;
  title_ = title;
  seen_.clear();
  trace("demo", QString("--- step %1: %2").arg(number).arg(title));
}

void Report::saw(const QString& what) {
  seen_.append(what);
  trace("demo", "saw " + what);
}

void Report::passed() {
  ++passed_;
  say(QString("%1  step %2: %3: %4").arg(time()).arg(number_).arg(title_, seen_.join("; ")));
}

void Report::failed(const QString& why) {
  say(QString("%1  step %2: %3: DIFFERS: %4").arg(time()).arg(number_).arg(title_, why));
  if (!seen_.isEmpty()) say("           until then: " + seen_.join("; "));
}

}  // namespace demo
