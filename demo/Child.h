// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QList>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <optional>

namespace demo {

class Report;

/// A process that the demonstration started. Its output lines go to the trace and can be waited for. It ends
/// with this object, and with the demonstration itself, however that ends.
class Child {
 public:
  struct Line {
    QString text;
    qint64 at;  ///< steady clock, milliseconds
  };

  Child(Report& report, const QString& name);
  ~Child();
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  /// Starts the program; throws when it does not start.
  void start(const QString& program, const QStringList& arguments, const QProcessEnvironment& environment);

  bool running() const { return process_.state() != QProcess::NotRunning; }
  /// What it has printed until now, both streams.
  const QList<Line>& lines() const { return lines_; }
  /// The first line from `from` on that contains `text`; waits for it for at most so many seconds.
  /// Throws when it does not come, or the process ends before.
  Line waitForLine(const QString& text, double seconds, qsizetype from = 0);
  /// Waits for it to end by itself and gives its exit code; throws when it does not end, or crashed.
  int waitForEnd(double seconds);
  /// How it ended, in a few words.
  QString ending() const;
  /// Asks it to end, insists when it does not.
  void stop();

 private:
  void read();
  void take(const QString& line);

  Report& report_;
  QString name_;
  QProcess process_;
  QByteArray partial_;
  QList<Line> lines_;
};

}  // namespace demo
