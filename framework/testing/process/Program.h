// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QList>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <functional>

#include "base/Export.h"
#include "testing/waiting/Waiting.h"

namespace velmora::testkit {

/// A program as a process of its own, heard line by line. It starts in the HOME of its environment and ends
/// with this object, or with this process however that ends. Whatever waits for it runs the event loop, and
/// throws Differs with what it has said when that does not come.
class VELMORA_EXPORT Program {
 public:
  struct Line {
    QString text;
    qint64 at;  ///< when it was heard: steady clock, milliseconds
  };
  /// Hears who did what: a program's start, each of its lines, its end.
  using Trace = std::function<void(const QString& who, const QString& what)>;

  Program(const QString& path, const QProcessEnvironment& environment);
  /// Known to the trace by that name. Its errors are lines like the others, as on a terminal.
  Program(const QString& name, const QString& path, const QProcessEnvironment& environment, Trace trace);
  ~Program() { kill(); }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  /// Throws Differs when it does not start.
  void start(const QStringList& arguments = {});
  /// Writes a line to its standard input.
  void tell(const QByteArray& line);
  bool running() const { return process_.state() != QProcess::NotRunning; }
  qint64 processId() const { return process_.processId(); }

  /// The next line that has not been read, without its end.
  QString readLine(double seconds = Patience.count());
  /// Reads up to the line that begins so and gives it.
  QString readLineWith(const QString& beginning);
  /// The first line from `from` on that contains `part`, whether it has been read or not.
  Line waitForLine(const QString& part, double seconds = Patience.count(), qsizetype from = 0);
  /// Waits until it has written that to standard error.
  void waitForError(const QString& part);
  /// Every line that it has printed so far.
  const QList<Line>& lines() const { return lines_; }
  /// What it has printed and nobody has read.
  QString output() const;
  /// What it has written to standard error so far, where that is no line of the output.
  QString errors() const { return QString::fromUtf8(errors_); }

  /// start(), then finish().
  int run(const QStringList& arguments);
  /// Waits for it to end by itself; the exit code, or -1 when it crashed or did not end.
  int finish(double seconds = Patience.count());
  /// Asks it to end, and insists when it does not; the exit code, or -1 when it did not end well. Does not
  /// run the event loop.
  int terminate();
  /// Ends it in the middle of what it is doing.
  void kill();
  /// How it ended, in a few words.
  QString ending() const;

 private:
  int exitCode() const;
  void read();
  void note(const QString& what) const;
  [[noreturn]] void failWithout(const QString& wanted, double seconds) const;

  QString name_;
  QString path_;
  Trace trace_;
  QProcess process_;
  QByteArray partial_;
  QList<Line> lines_;
  qsizetype next_ = 0;  // the first line that has not been read
  QByteArray errors_;
};

}  // namespace velmora::testkit
