// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QTemporaryDir>
#include <memory>

#include "testing/bus/PrivateBus.h"
#include "testing/process/VirtualScreen.h"

namespace velmora::testkit {

/// What programs are played with on: an empty home folder, a session bus of its own on which nothing is
/// started by itself, and a screen, which is the user's or, where there is none, a virtual one with a window
/// manager.
class Stage {
 public:
  enum class Screen { UsersOrVirtual, Virtual };

  /// Sets everything up; throws with the reason when a part is missing. `program` is this program's own path,
  /// `locale` the language that the programs on the stage are told, as in "de_DE".
  Stage(const Program::Trace& trace, Screen screen, const QString& program, const QString& locale = "C");

  /// The home folder: "<home>/Desktop" and "<home>/Documents" exist, nothing else does.
  QString home() const { return folder_.path() + "/home"; }
  /// A folder beside the home folder, for sockets and the like.
  QString workFolder() const { return folder_.path(); }
  /// Puts the desktop entry of a program with that identifier into the home folder: for the desktop, and for
  /// whoever asks it, the program is then installed.
  void installDesktopEntry(const QString& identifier, const QString& name) const;
  /// What a program on this stage is started with.
  const QProcessEnvironment& environment() const { return environment_; }
  /// "virtual screen :99, 1280 x 1024, openbox" or "the user's screen :0".
  QString screenDescription() const { return screenDescription_; }
  bool hasVirtualScreen() const { return screen_ != nullptr; }

  /// Whether a program can show windows on the screen that the environment names. Ends the process when it
  /// cannot, so it is asked of another process: `velmora-demo --check-screen`.
  static int checkScreen(int argc, char** argv);

 private:
  bool usersScreenWorks(const QString& program);

  Program::Trace trace_;
  QTemporaryDir folder_;
  QProcessEnvironment environment_;
  QString screenDescription_;
  std::unique_ptr<PrivateBus> bus_;
  std::unique_ptr<VirtualScreen> screen_;
};

}  // namespace velmora::testkit
