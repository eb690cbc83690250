// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <QString>
#include <memory>

namespace velmora::desktop {

/// The pipe that a script's standard error goes into. Of a long text its first and last 32 KiB are kept.
///
/// A program that the script leaves behind in the background holds its end of the pipe, and would be ended by
/// its next line if ours were closed; so the pipe can be left open behind the script.
class ShellStandardError : public QObject {
 public:
  /// Throws std::system_error when no pipe can be made.
  ShellStandardError();
  ~ShellStandardError() override;

  /// The script's end: a file descriptor that programs do not inherit by themselves.
  int scriptsEnd() const { return scriptsEnd_; }
  void closeScriptsEnd();

  /// Everything that was written so far.
  QString text();

  /// From now on reads and discards what comes, until no writer is left or the application ends.
  static void leaveOpen(std::unique_ptr<ShellStandardError> pipe);

 private:
  void readWhatIsThere();
  void keep(const QByteArray& written);

  int ownEnd_ = -1;
  int scriptsEnd_ = -1;
  std::unique_ptr<QSocketNotifier> notifier_;
  QByteArray beginning_;
  QByteArray end_;
  bool cut_ = false;
  bool leftOpen_ = false;
};

}  // namespace velmora::desktop
