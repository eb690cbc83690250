// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include "base/Export.h"

namespace velmora::testkit {

/// A program of ours as a process of its own. It ends with this object, or with the test.
class VELMORA_EXPORT Program {
 public:
  Program(const QString& path, const QProcessEnvironment& environment);
  ~Program() { kill(); }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  void start(const QStringList& arguments = {});
  /// Writes a line to its standard input.
  void tell(const QByteArray& line);
  bool running() const { return process_.state() != QProcess::NotRunning; }

  /// The next line of its output, without its end, waiting for it; null when none comes.
  QString readLine();
  /// Reads up to the line that begins so and gives it; null when none comes.
  QString readLineWith(const QString& beginning);
  /// Waits until it has written that to standard error; false when it ends, or writes nothing for long.
  bool waitForError(const QString& part);

  /// start(), then finish().
  int run(const QStringList& arguments);
  /// Waits for its end; the exit code, or -1 when it crashed or did not end.
  int finish();
  /// Asks it to end; then finish().
  int terminate();
  void kill();

  /// Every line that was read, in order; after its end, all of them.
  const QStringList& lines() const { return lines_; }
  /// What it wrote and nobody has read, after its end.
  QString output() const { return QString::fromUtf8(output_); }
  /// What it has written to standard error so far.
  QString errors();

 private:
  QString path_;
  QProcess process_;
  QStringList lines_;
  QByteArray output_;
  QByteArray errors_;
};

}  // namespace velmora::testkit
