// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/person/Stage.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QScreen>

#include "testing/files/Files.h"
#include "testing/waiting/Waiting.h"

namespace velmora::testkit {

Stage::Stage(const Program::Trace& trace, Screen screen, const QString& program, const QString& locale)
    : trace_(trace), environment_(QProcessEnvironment::systemEnvironment()) {
  if (!folder_.isValid()) throw Differs("a temporary folder", folder_.errorString());
  for (const char* path : {"home/Desktop", "home/Documents", "runtime"})
    if (!QDir(folder_.path()).mkpath(path)) throw Differs(QString("to make ") + path, "it was not possible");
  const auto ownerOnly = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
  QFile::setPermissions(folder_.path() + "/runtime", ownerOnly);

  // Asked with the user's own key to the screen, which is found through the home folder.
  const bool users = screen == Screen::UsersOrVirtual && usersScreenWorks(program);
  if (users && !environment_.contains("XAUTHORITY") && QFile::exists(QDir::homePath() + "/.Xauthority"))
    environment_.insert("XAUTHORITY", QDir::homePath() + "/.Xauthority");

  // A user whose whole world is the empty home folder, and whose language is not the machine's.
  for (const char* name : {"LANGUAGE", "LANG", "XDG_CURRENT_DESKTOP", "XDG_SESSION_TYPE", "WAYLAND_DISPLAY",
                           "QT_QPA_PLATFORMTHEME", "QT_STYLE_OVERRIDE", "QT_SCALE_FACTOR", "SESSION_MANAGER"})
    environment_.remove(name);
  environment_.insert("HOME", home());
  environment_.insert("XDG_CONFIG_HOME", home() + "/.config");
  environment_.insert("XDG_DATA_HOME", home() + "/.local/share");
  environment_.insert("XDG_STATE_HOME", home() + "/.local/state");
  environment_.insert("XDG_CACHE_HOME", home() + "/.cache");
  environment_.insert("XDG_RUNTIME_DIR", folder_.path() + "/runtime");
  environment_.insert("LC_ALL", locale + ".UTF-8");
  environment_.insert("QT_QPA_PLATFORM", "xcb");

  bus_ = std::make_unique<PrivateBus>(PrivateBus::Start::Now, PrivateBus::Activation::Nothing, trace_,
                                      environment_);
  environment_.insert("DBUS_SESSION_BUS_ADDRESS", bus_->address());
  if (users) {
    screenDescription_ = "the user's screen " + environment_.value("DISPLAY");
  } else {
    screen_ = std::make_unique<VirtualScreen>(VirtualScreen::WindowManager::Openbox, environment_, trace_);
    screen_->addTo(environment_);
    screenDescription_ = screen_->description();
  }
}

void Stage::installDesktopEntry(const QString& identifier, const QString& name) const {
  writeFile(home() + "/.local/share/applications/" + identifier + ".desktop",
            "[Desktop Entry]\nType=Application\nName=" + name.toUtf8() + "\nExec=/bin/false\n");
}

bool Stage::usersScreenWorks(const QString& program) {
  if (environment_.value("DISPLAY").isEmpty()) return false;
  QProcessEnvironment environment = environment_;
  environment.insert("QT_QPA_PLATFORM", "xcb");
  const bool works = Program(program, environment).run({"--check-screen"}) == 0;
  if (!works) trace_("demo", "the screen " + environment_.value("DISPLAY") + " does not work");
  return works;
}

int Stage::checkScreen(int argc, char** argv) {
  const QGuiApplication application(argc, argv);
  return QGuiApplication::primaryScreen() ? 0 : 1;
}

}  // namespace velmora::testkit
