// SPDX-License-Identifier: LGPL-3.0-or-later
#include "demo/Stage.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QRandomGenerator>
#include <QScreen>
#include <QStandardPaths>

#include "demo/Report.h"
#include "demo/Waiting.h"

namespace demo {

namespace {

constexpr const char* ScreenSize = "1280x1024";

QString programNamed(const QString& name) {
  const QString path = QStandardPaths::findExecutable(name);
  if (path.isEmpty()) throw Differs("the program " + name + " on this machine", "none");
  return path;
}

void write(const QString& path, const QByteArray& bytes) {
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush())
    throw Differs("to write " + path, file.errorString());
}

// No folders of services: what nobody on the stage started does not run.
QByteArray busConfiguration(const QString& socketFolder) {
  return "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\"\n"
         " \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
         "<busconfig>\n"
         "  <type>session</type>\n"
         "  <listen>unix:dir=" +
         socketFolder.toUtf8() +
         "</listen>\n"
         "  <auth>EXTERNAL</auth>\n"
         "  <policy context=\"default\">\n"
         "    <allow send_destination=\"*\" eavesdrop=\"true\"/>\n"
         "    <allow eavesdrop=\"true\"/>\n"
         "    <allow own=\"*\"/>\n"
         "  </policy>\n"
         "  <limit name=\"max_message_size\">134217728</limit>\n"
         "  <limit name=\"max_incoming_bytes\">1000000000</limit>\n"
         "  <limit name=\"max_outgoing_bytes\">1000000000</limit>\n"
         "</busconfig>\n";
}

}  // namespace

Stage::Stage(Report& report, Screen screen, const QString& program, const QString& locale)
    : report_(report), environment_(QProcessEnvironment::systemEnvironment()) {
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

  startBus();
  if (users)
    screenDescription_ = "the user's screen " + environment_.value("DISPLAY");
  else
    startVirtualScreen();
}

Stage::~Stage() {
  windowManager_.reset();
  virtualScreen_.reset();
  bus_.reset();
}

void Stage::installDesktopEntry(const QString& identifier, const QString& name) const {
  const QString folder = home() + "/.local/share/applications";
  if (!QDir().mkpath(folder)) throw Differs("to make " + folder, "it was not possible");
  write(folder + '/' + identifier + ".desktop",
        "[Desktop Entry]\nType=Application\nName=" + name.toUtf8() + "\nExec=/bin/false\n");
}

void Stage::startBus() {
  const QString configuration = folder_.path() + "/bus.conf";
  write(configuration, busConfiguration(folder_.path() + "/runtime"));
  bus_ = std::make_unique<Child>(report_, "bus");
  bus_->start(programNamed("dbus-daemon"),
              {"--config-file=" + configuration, "--nofork", "--print-address=1"}, environment_);
  environment_.insert("DBUS_SESSION_BUS_ADDRESS", bus_->waitForLine("unix:", 10).text);
}

QByteArray Stage::screenKey() {
  // One entry of an Xauthority file: any family, no address, any screen number, the method's name, the key;
  // each with its length before it, two bytes, the high one first.
  QByteArray key(16, '\0');
  for (char& byte : key) byte = static_cast<char>(QRandomGenerator::system()->bounded(256));
  const QByteArray name = "MIT-MAGIC-COOKIE-1";
  const auto counted = [](const QByteArray& bytes) {
    return QByteArray(1, '\0') + QByteArray(1, static_cast<char>(bytes.size())) + bytes;
  };
  return QByteArray("\xff\xff", 2) + counted({}) + counted({}) + counted(name) + counted(key);
}

void Stage::startVirtualScreen() {
  const QString keyFile = folder_.path() + "/runtime/screen-key";
  write(keyFile, screenKey());
  environment_.insert("XAUTHORITY", keyFile);
  virtualScreen_ = std::make_unique<Child>(report_, "screen");
  virtualScreen_->start(programNamed("Xvfb"),
                        {"-displayfd", "1", "-screen", "0", QString(ScreenSize) + "x24", "-nolisten", "tcp",
                         "-noreset", "-auth", keyFile},
                        environment_);
  // The line that is nothing but the screen's number says that it is ready.
  QString number;
  if (!waitUntil(20,
                 [&] {
                   for (const Child::Line& line : virtualScreen_->lines()) {
                     bool isNumber = false;
                     line.text.toInt(&isNumber);
                     if (isNumber) number = line.text;
                   }
                   return !number.isEmpty() || !virtualScreen_->running();
                 }) ||
      number.isEmpty())
    throw Differs("a virtual screen within 20 s", virtualScreen_->lines().isEmpty()
                                                      ? QString("nothing")
                                                      : virtualScreen_->lines().last().text);
  environment_.insert("DISPLAY", ':' + number);

  windowManager_ = std::make_unique<Child>(report_, "openbox");
  windowManager_->start(programNamed("openbox"), {"--sm-disable", "--startup", "/bin/echo ready"},
                        environment_);
  windowManager_->waitForLine("ready", 20);
  screenDescription_ = QString("a virtual screen :%1 of %2, openbox").arg(number, ScreenSize);
}

bool Stage::usersScreenWorks(const QString& program) {
  if (environment_.value("DISPLAY").isEmpty()) return false;
  QProcessEnvironment environment = environment_;
  environment.insert("QT_QPA_PLATFORM", "xcb");
  QProcess check;
  check.setProcessEnvironment(environment);
  check.setProcessChannelMode(QProcess::MergedChannels);
  check.start(program, {"--check-screen"});
  const bool ended = check.waitForFinished(20000);
  const bool works = ended && check.exitStatus() == QProcess::NormalExit && check.exitCode() == 0;
  if (!works) report_.trace("demo", "the screen " + environment_.value("DISPLAY") + " does not work");
  return works;
}

int Stage::checkScreen(int argc, char** argv) {
  const QGuiApplication application(argc, argv);
  return QGuiApplication::primaryScreen() ? 0 : 1;
}

}  // namespace demo
