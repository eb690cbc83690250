// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QTemporaryDir>
#include <memory>

#include "base/Export.h"
#include "testing/process/Program.h"

namespace velmora::testkit {

/// A screen without glass, for programs that must run on a real window system: up when the constructor
/// returns. Only those who are given its key may use it.
class VELMORA_EXPORT VirtualScreen {
 public:
  /// Who puts windows in their places and gives one of them the keyboard.
  enum class WindowManager { None, Openbox };

  /// Screen and window manager run in that environment, whose home says how the latter is set up; what they
  /// say goes to the trace. Throws Differs when they do not come up.
  explicit VirtualScreen(WindowManager windowManager = WindowManager::None,
                         QProcessEnvironment environment = QProcessEnvironment::systemEnvironment(),
                         const Program::Trace& trace = {});
  ~VirtualScreen();
  VirtualScreen(const VirtualScreen&) = delete;
  VirtualScreen& operator=(const VirtualScreen&) = delete;

  /// Tells those who are started with that environment of this screen, and gives them its key.
  void addTo(QProcessEnvironment& environment) const;
  /// "a virtual screen :99 of 1280x1024, openbox".
  QString description() const;

 private:
  QString keyFile() const { return folder_.filePath(QStringLiteral("screen-key")); }

  QTemporaryDir folder_;
  QString display_;
  std::unique_ptr<Program> server_;
  std::unique_ptr<Program> windowManager_;
};

}  // namespace velmora::testkit
