// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/process/VirtualScreen.h"

#include <QRandomGenerator>

#include "testing/files/Files.h"

namespace velmora::testkit {

namespace {

const QString Size = QStringLiteral("1280x1024");

// One entry of an Xauthority file: any family, no address, any screen number, the method's name, the key;
// each with its length before it, two bytes, the high one first.
QByteArray screenKey() {
  QByteArray key(16, '\0');
  for (char& byte : key) byte = static_cast<char>(QRandomGenerator::system()->bounded(256));
  const QByteArray name = "MIT-MAGIC-COOKIE-1";
  const auto counted = [](const QByteArray& bytes) {
    return QByteArray(1, '\0') + QByteArray(1, static_cast<char>(bytes.size())) + bytes;
  };
  return QByteArray("\xff\xff", 2) + counted({}) + counted({}) + counted(name) + counted(key);
}

bool isNumber(const QString& text) {
  bool is = false;
  text.toInt(&is);
  return is;
}

}  // namespace

VirtualScreen::VirtualScreen(WindowManager windowManager, QProcessEnvironment environment,
                             const Program::Trace& trace) {
  writeFile(keyFile(), screenKey());
  server_ = std::make_unique<Program>(QStringLiteral("screen"), QStringLiteral("Xvfb"), environment, trace);
  server_->start({QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                  QStringLiteral("0"), Size + QStringLiteral("x24"), QStringLiteral("-nolisten"),
                  QStringLiteral("tcp"), QStringLiteral("-noreset"), QStringLiteral("-auth"), keyFile()});
  // The line that is nothing but the screen's number says that it is ready.
  QString line;
  while (!isNumber(line)) line = server_->readLine();
  display_ = ':' + line;
  if (windowManager == WindowManager::None) return;

  addTo(environment);
  windowManager_ =
      std::make_unique<Program>(QStringLiteral("openbox"), QStringLiteral("openbox"), environment, trace);
  windowManager_->start(
      {QStringLiteral("--sm-disable"), QStringLiteral("--startup"), QStringLiteral("/bin/echo ready")});
  windowManager_->waitForLine(QStringLiteral("ready"));
}

VirtualScreen::~VirtualScreen() {
  if (windowManager_) windowManager_->terminate();
  // It removes its lock and its socket.
  if (server_) server_->terminate();
}

void VirtualScreen::addTo(QProcessEnvironment& environment) const {
  environment.insert(QStringLiteral("DISPLAY"), display_);
  environment.insert(QStringLiteral("XAUTHORITY"), keyFile());
}

QString VirtualScreen::description() const {
  const QString screen = QStringLiteral("a virtual screen %1 of %2").arg(display_, Size);
  return windowManager_ ? screen + QStringLiteral(", openbox") : screen;
}

}  // namespace velmora::testkit
