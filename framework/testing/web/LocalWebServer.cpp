// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/web/LocalWebServer.h"

#include <QHostAddress>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QTimer>
#include <algorithm>
#include <memory>
#include <stdexcept>
#include <utility>

#include "testing/web/TestCertificate.h"

namespace velmora::testkit {

namespace {
constexpr qint64 Piece = 64 * 1024;  // bytes that are sent at once
}

LocalWebServer::LocalWebServer(Connection connection) {
  if (connection == Connection::Encrypted) {
    scheme_ = QStringLiteral("https");
    auto encrypted = std::make_unique<QSslServer>();
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(QSslCertificate(TestCertificate));
    configuration.setPrivateKey(QSslKey(TestCertificateKey, QSsl::Ec));
    encrypted->setSslConfiguration(configuration);
    server_ = std::move(encrypted);
  } else {
    scheme_ = QStringLiteral("http");
    server_ = std::make_unique<QTcpServer>();
  }
  if (!server_->listen(QHostAddress::LocalHost))
    throw std::runtime_error("No local server: " + server_->errorString().toStdString());
  QObject::connect(server_.get(), &QTcpServer::pendingConnectionAvailable, server_.get(),
                   [this] { accept(); });
}

LocalWebServer::~LocalWebServer() {
  for (QTcpSocket* socket : server_->findChildren<QTcpSocket*>()) socket->disconnect();
}

QUrl LocalWebServer::url(const QString& path) const {
  return QUrl(QStringLiteral("%1://127.0.0.1:%2%3").arg(scheme_).arg(server_->serverPort()).arg(path));
}

void LocalWebServer::accept() {
  while (QTcpSocket* socket = server_->nextPendingConnection()) {
    ++open_;
    QObject::connect(socket, &QTcpSocket::disconnected, server_.get(), [this, socket] {
      --open_;
      socket->deleteLater();
    });
    QObject::connect(socket, &QTcpSocket::bytesWritten, server_.get(),
                     [this](qint64 bytes) { bytesSent_ += bytes; });
    QObject::connect(socket, &QTcpSocket::readyRead, server_.get(), [this, socket] { read(*socket); });
  }
}

QByteArray LocalWebServer::Request::header(const QByteArray& name) const {
  for (const QByteArray& line : headers) {
    const qsizetype colon = line.indexOf(':');
    if (line.left(colon).compare(name, Qt::CaseInsensitive) == 0) return line.mid(colon + 1).trimmed();
  }
  return {};
}

void LocalWebServer::read(QTcpSocket& socket) {
  const QByteArray received = socket.property("received").toByteArray() + socket.readAll();
  socket.setProperty("received", received);
  const qsizetype end = received.indexOf("\r\n\r\n");
  if (end < 0) return;
  Request request;
  for (const QByteArray& line : received.left(end).split('\n')) request.headers.append(line.trimmed());
  const QList<QByteArray> first = request.headers.takeFirst().split(' ');
  request.method = first.value(0);
  request.path = first.value(1);
  const qsizetype size = end + 4 + request.header("Content-Length").toLongLong();
  if (received.size() < size) return;
  request.body = received.mid(end + 4, size - end - 4);
  socket.setProperty("received", received.mid(size));
  requests_.append(request);
  if (handlers_.contains(request.path)) return handlers_[request.path](socket);
  const Handler handler = choose_ ? choose_(request) : status("404 Not Found");
  handler(socket);
}

LocalWebServer::Handler LocalWebServer::raw(const QByteArray& bytes) {
  return [bytes](QTcpSocket& socket) {
    socket.write(bytes);
    socket.disconnectFromHost();
  };
}

LocalWebServer::Handler LocalWebServer::page(const QByteArray& body, const QByteArray& headers) {
  return raw("HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n" + headers +
             "\r\n" + body);
}

LocalWebServer::Handler LocalWebServer::status(const QByteArray& statusAndReason, const QByteArray& headers) {
  return raw("HTTP/1.1 " + statusAndReason + "\r\nContent-Length: 5\r\n" + headers + "\r\nsorry");
}

LocalWebServer::Handler LocalWebServer::redirect(const QByteArray& location,
                                                 const QByteArray& statusAndReason) {
  return status(statusAndReason, "Location: " + location + "\r\n");
}

LocalWebServer::Handler LocalWebServer::stall(const QByteArray& bytes) {
  return [bytes](QTcpSocket& socket) { socket.write(bytes); };
}

LocalWebServer::Handler LocalWebServer::drip(const QByteArray& head, int milliseconds) {
  return [head, milliseconds](QTcpSocket& socket) {
    socket.write(head);
    auto* timer = new QTimer(&socket);
    QObject::connect(timer, &QTimer::timeout, &socket, [&socket] { socket.write("x"); });
    timer->start(milliseconds);
  };
}

LocalWebServer::Handler LocalWebServer::flood(const QByteArray& head, qint64 size) {
  return [head, size](QTcpSocket& socket) {
    const auto left = std::make_shared<qint64>(size);
    const auto more = [&socket, left] {
      // The next piece when the one before has gone: what the other end does not take is not sent.
      if (socket.bytesToWrite() > 0) return;
      const qint64 piece = std::min(*left, Piece);
      *left -= piece;
      if (piece > 0) {
        socket.write(QByteArray(piece, 'x'));
      } else {
        socket.disconnectFromHost();
      }
    };
    QObject::connect(&socket, &QTcpSocket::bytesWritten, &socket, more);
    if (head.isEmpty()) {
      more();
    } else {
      socket.write(head);
    }
  };
}

}  // namespace velmora::testkit
