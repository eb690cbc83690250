// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QObject>
#include <QStringList>
#include <QTimer>
#include <QUrl>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>

#include "base/Export.h"

namespace velmora::base {

/// How an exchange ended, and what came of it.
struct VELMORA_EXPORT HttpAnswer {
  enum class End {
    Finished,  ///< the server answered, or `error` says why it did not
    TooLarge,  ///< the body is larger than was allowed
    TimedOut   ///< the answer was not whole in time
  };
  End end = End::Finished;
  int status = 0;  ///< 0 when none came
  QByteArray body;
  QList<QNetworkReply::RawHeaderPair> headers;
  /// What Qt calls an error, which statuses of 400 and more are to it.
  QNetworkReply::NetworkError error = QNetworkReply::NoError;
  QString errorText;
  QStringList tlsErrors;  ///< what is wrong with the server's certificate

  /// The first header of that name, in whatever case; a null array when there is none.
  QByteArray header(const char* name) const;
};

/// One HTTP request and its answer, with a limit on size and time. Shares nothing with other exchanges: no
/// connections, cookies or passwords.
///
/// Lives on a thread with an event loop. Destroying it cancels the request without a callback.
///
/// Memory is bounded for the body, not for what comes before it: Qt reads a head that never ends for as long
/// as it comes in, at about 2 MB a second and even after the request was given up (6.4.2).
class VELMORA_EXPORT HttpExchange : public QObject {
 public:
  struct Limits {
    qint64 bytes;                          ///< of the answer's body
    std::chrono::milliseconds timeout{0};  ///< for everything; 0 for as long as it takes
  };
  enum class Proxy { OfTheSystem, None };
  /// Called once, from the event loop. May call deleteLater() on the exchange, but must not delete it.
  using Ended = std::function<void(const HttpAnswer&)>;

  /// An HTTP/1.1 request that tells nothing about the sender but `userAgent`, and follows no redirection. It
  /// asks for an uncompressed answer, because a compressed one could exceed any limit when it is unpacked.
  static QNetworkRequest plainRequest(const QUrl& url, const QByteArray& userAgent);

  /// Sends the request: POST with a body, GET without one.
  HttpExchange(const QNetworkRequest& request, const std::optional<QByteArray>& body, Limits limits,
               Proxy proxy, Ended ended);
  ~HttpExchange() override;

 private:
  void read();
  void finish();
  void end(HttpAnswer::End end);

  Limits limits_;
  Ended ended_;
  QNetworkAccessManager manager_;
  std::unique_ptr<QNetworkReply> reply_;
  QTimer deadline_;
  HttpAnswer answer_;
};

}  // namespace velmora::base
