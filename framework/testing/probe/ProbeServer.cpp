// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/probe/ProbeServer.h"

#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QKeySequence>
#include <QLocalSocket>
#include <QStyleHints>
#include <QWidget>
#include <cstdio>

#include "testing/waiting/SteadyClock.h"

namespace velmora::testkit::probe {

ProbeServer::ProbeServer(const QString& socket) : hands_(eyes_) {
  server_.setSocketOptions(QLocalServer::UserAccessOption);
  if (!server_.listen(socket))
    std::fprintf(stderr, "probe: cannot listen at %s: %s\n", qPrintable(socket),
                 qPrintable(server_.errorString()));
  connect(&server_, &QLocalServer::newConnection, this, [this] { accept(); });
  QCoreApplication::instance()->installEventFilter(this);
}

bool ProbeServer::eventFilter(QObject* watched, QEvent* event) {
  if (watched->isWidgetType() && (event->type() == QEvent::Show || event->type() == QEvent::Hide)) {
    auto* widget = static_cast<QWidget*>(watched);
    if (widget->isWindow() && widget->windowType() != Qt::ToolTip)
      send({{"news", event->type() == QEvent::Show ? "shown" : "hidden"},
            {"window", eyes_.identity(widget)},
            {"at", steadyMilliseconds()}});
  }
  return false;
}

void ProbeServer::accept() {
  QLocalSocket* socket = server_.nextPendingConnection();
  if (driver_) {  // one pair of hands at a time
    socket->deleteLater();
    return;
  }
  driver_ = socket;
  // A cursor that comes and goes would make two pictures of the same thing differ.
  QGuiApplication::styleHints()->setCursorFlashTime(0);
  connect(socket, &QLocalSocket::readyRead, this, [this] { readLines(); });
  connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
  for (const QByteArray& line : std::as_const(unsent_)) socket->write(line);
  unsent_.clear();
}

void ProbeServer::readLines() {
  // A command may run the program into a dialog's event loop, from which the next one is read: take one line
  // at a time.
  while (driver_ && driver_->canReadLine()) {
    const QJsonObject request = QJsonDocument::fromJson(driver_->readLine()).object();
    bool later = false;
    QJsonObject reply = answer(request, later);
    if (later) continue;
    reply["id"] = request["id"];
    if (!reply.contains("ok")) reply["ok"] = !reply.contains("error");
    send(reply);
  }
}

QJsonObject ProbeServer::answer(const QJsonObject& request, bool& later) {
  const QString command = request["do"].toString();
  if (command == "windows") return {{"windows", eyes_.windows()}};
  if (command == "shots")
    return eyes_.takePictures(request["folder"].toString(), request["prefix"].toString());
  if (command == "screen") return eyes_.takeScreen(request["file"].toString());
  if (command == "where") return placeOnScreen(eyes_.find(request));
  if (command == "picture") return eyes_.takePicture(request, request["file"].toString());

  const QJsonValue id = request["id"];
  const Hands::Done done = [this, id](const QString& error) {
    QJsonObject reply{{"id", id}, {"ok", error.isEmpty()}};
    if (!error.isEmpty()) reply["error"] = error;
    send(reply);
  };
  later = true;
  if (command == "click") {
    hands_.click(request, done);
  } else if (command == "type") {
    hands_.type(request["text"].toString(), done);
  } else if (command == "key") {
    hands_.press(QKeySequence::fromString(request["key"].toString(), QKeySequence::PortableText), done);
  } else {
    later = false;
    return {{"error", "unknown command \"" + command + "\""}};
  }
  return {};
}

void ProbeServer::send(const QJsonObject& line) {
  const QByteArray bytes = QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
  if (driver_) {
    driver_->write(bytes);
    driver_->flush();
  } else if (line.contains("news")) {
    unsent_.append(bytes);
  }
}

}  // namespace velmora::testkit::probe
