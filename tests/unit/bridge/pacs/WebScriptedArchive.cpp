// SPDX-License-Identifier: LGPL-3.0-or-later
#include "tests/unit/bridge/pacs/WebScriptedArchive.h"

#include <QHostAddress>
#include <stdexcept>
#include <utility>

namespace web_testing {

QByteArray ScriptedArchive::Request::header(const QByteArray& name) const {
  for (const QByteArray& line : headers) {
    const qsizetype colon = line.indexOf(':');
    if (line.left(colon).compare(name, Qt::CaseInsensitive) == 0) return line.mid(colon + 1).trimmed();
  }
  return {};
}

ScriptedArchive::ScriptedArchive(Script script) : script_(std::move(script)) {
  if (!server_.listen(QHostAddress::LocalHost))
    throw std::runtime_error("No local server: " + server_.errorString().toStdString());
  QObject::connect(&server_, &QTcpServer::newConnection, &server_, [this] {
    while (QTcpSocket* socket = server_.nextPendingConnection()) {
      QObject::connect(socket, &QTcpSocket::readyRead, &server_, [this, socket] { read(*socket); });
    }
  });
}

ScriptedArchive::ScriptedArchive(const QByteArray& answer)
    : ScriptedArchive([answer](const Request&) { return answer; }) {}

bridge::PacsSettings ScriptedArchive::settings() const {
  bridge::PacsSettings settings;
  settings.kind = bridge::PacsSettings::Kind::Web;
  settings.url = QUrl(QStringLiteral("http://127.0.0.1:%1/dicom-web/").arg(server_.serverPort()));
  return settings;
}

void ScriptedArchive::read(QTcpSocket& socket) {
  const QByteArray received = socket.property("received").toByteArray() + socket.readAll();
  socket.setProperty("received", received);
  const qsizetype end = received.indexOf("\r\n\r\n");
  if (end < 0) return;
  Request request;
  for (const QByteArray& line : received.left(end).split('\n')) request.headers.append(line.trimmed());
  const QList<QByteArray> first = request.headers.takeFirst().split(' ');
  request.method = first.value(0);
  request.target = first.value(1);
  request.body = received.mid(end + 4);
  if (request.body.size() < request.header("Content-Length").toLongLong()) return;
  requests_.append(request);
  const QByteArray answer = script_(request);
  if (answer.isEmpty()) return;
  socket.write(answer);
  socket.disconnectFromHost();
}

QByteArray answer(const QByteArray& statusAndReason, const QByteArray& body, const QByteArray& headers) {
  return "HTTP/1.1 " + statusAndReason + "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n" +
         headers + "\r\n" + body;
}

QByteArray json(const QByteArray& body) {
  return answer("200 OK", body, "Content-Type: application/dicom+json\r\n");
}

}  // namespace web_testing
