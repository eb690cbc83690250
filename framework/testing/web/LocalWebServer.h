// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>
#include <functional>
#include <memory>

#include "base/Export.h"

namespace velmora::testkit {

/// A web server of a test's own, on this machine, that behaves as badly as the test wants. It lives on the
/// event loop of its thread, so it answers while the test waits for something.
class VELMORA_EXPORT LocalWebServer {
 public:
  /// Sends an answer to somebody who has asked; the socket belongs to the server.
  using Handler = std::function<void(QTcpSocket&)>;

  /// What somebody sent, with its body.
  struct VELMORA_EXPORT Request {
    QByteArray method;
    QByteArray path;            ///< with its query, as it came
    QList<QByteArray> headers;  ///< "Name: value", without the line of the path
    QByteArray body;

    /// The value of a header; null when it is not there.
    QByteArray header(const QByteArray& name) const;
  };

  enum class Connection { Open, Encrypted };

  /// An encrypted one proves itself with TestCertificate.
  explicit LocalWebServer(Connection connection = Connection::Open);
  ~LocalWebServer();

  QUrl url(const QString& path) const;
  /// What happens to those who ask for that path.
  void at(const QByteArray& path, Handler handler) { handlers_[path] = std::move(handler); }
  /// What happens to those who ask for anything else; without it they get "404 Not Found".
  void otherwise(std::function<Handler(const Request&)> choose) { choose_ = std::move(choose); }

  const QList<Request>& requests() const { return requests_; }
  qsizetype openConnections() const { return open_; }
  /// How much of an answer went out, over all connections.
  qint64 bytesSent() const { return bytesSent_; }

  // Ways to behave.

  /// Sends these bytes as they stand and closes the connection.
  static Handler raw(const QByteArray& bytes);
  /// A page, with further header lines, each ending in "\r\n".
  static Handler page(const QByteArray& body, const QByteArray& headers = {});
  /// No page: "404 Not Found", "500 Internal Server Error".
  static Handler status(const QByteArray& statusAndReason, const QByteArray& headers = {});
  static Handler redirect(const QByteArray& location, const QByteArray& statusAndReason = "302 Found");
  /// Says nothing more after that, and keeps the connection.
  static Handler stall(const QByteArray& bytes = {});
  /// After the head, the same byte again and again, one every `milliseconds`, without end.
  static Handler drip(const QByteArray& head, int milliseconds);
  /// After the head, that many bytes, as fast as they are taken.
  static Handler flood(const QByteArray& head, qint64 size);

 private:
  void accept();
  void read(QTcpSocket& socket);

  QString scheme_;
  std::unique_ptr<QTcpServer> server_;
  QMap<QByteArray, Handler> handlers_;
  std::function<Handler(const Request&)> choose_;
  QList<Request> requests_;
  qsizetype open_ = 0;
  qint64 bytesSent_ = 0;
};

}  // namespace velmora::testkit
