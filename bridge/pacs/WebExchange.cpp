// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/pacs/WebExchange.h"

#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSslError>
#include <QStringList>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <memory>

namespace bridge {
namespace {

constexpr qint64 ReadAhead = 256 * 1024;  // bytes that Qt holds for us unread

QString serverOf(const QUrl& url) {
  const int port = url.port(url.scheme() == QLatin1String("https") ? 443 : 80);
  return QStringLiteral("%1:%2").arg(url.host()).arg(port);
}

QNetworkRequest networkRequest(const PacsSettings& settings, const WebRequest& request) {
  QNetworkRequest result(request.url);
  result.setRawHeader("Accept", request.accept);
  // An answer that is not packed cannot swell while it is unpacked.
  result.setRawHeader("Accept-Encoding", "identity");
  result.setRawHeader("User-Agent", "velmora-link");
  if (!request.contentType.isEmpty()) result.setRawHeader("Content-Type", request.contentType);
  if (!settings.user.isEmpty()) {
    const QByteArray credentials = (settings.user + QLatin1Char(':') + settings.password).toUtf8();
    result.setRawHeader("Authorization", "Basic " + credentials.toBase64());
  }
  result.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
  result.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
  result.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
  return result;
}

QString sentenceFor(const QNetworkReply& reply, const QStringList& tlsErrors) {
  const QString server = serverOf(reply.url());
  switch (reply.error()) {
    case QNetworkReply::ConnectionRefusedError:
      return QStringLiteral("nothing listens at %1").arg(server);
    case QNetworkReply::HostNotFoundError:
      return QStringLiteral("there is no computer named %1").arg(reply.url().host());
    case QNetworkReply::SslHandshakeFailedError:
      if (tlsErrors.isEmpty()) {
        return QStringLiteral("no encrypted connection to %1 came about: %2")
            .arg(server, reply.errorString());
      }
      return QStringLiteral("%1 does not prove that it is the archive: %2")
          .arg(server, tlsErrors.join(QStringLiteral("; ")));
    case QNetworkReply::RemoteHostClosedError:
      return QStringLiteral("%1 broke the connection off").arg(server);
    case QNetworkReply::ProtocolFailure:
    case QNetworkReply::ProtocolInvalidOperationError:
    case QNetworkReply::ProtocolUnknownError:
    case QNetworkReply::UnknownContentError:
      return QStringLiteral("what %1 answers is not HTTP").arg(server);
    default:
      return QStringLiteral("%1 could not be reached: %2").arg(server, reply.errorString());
  }
}

/// The state of one exchange. Qt calls it back on the event loop of exchange().
class Exchange {
 public:
  Exchange(const PacsSettings& settings, const WebRequest& request)
      : timeout_(settings.timeFor(request.body.size())) {
    manager_.setProxy(QNetworkProxy(QNetworkProxy::NoProxy));
    const QNetworkRequest asked = networkRequest(settings, request);
    reply_.reset(request.contentType.isEmpty() ? manager_.get(asked) : manager_.post(asked, request.body));
    reply_->setReadBufferSize(ReadAhead);
  }

  WebAnswer wait() {
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, reply_.get(), [this] {
      giveUp(QStringLiteral("%1 did not answer within %2 seconds")
                 .arg(serverOf(reply_->url()))
                 .arg(timeout_.count()));
    });
    QObject::connect(reply_.get(), &QNetworkReply::sslErrors, reply_.get(),
                     [this](const QList<QSslError>& errors) {
                       for (const QSslError& error : errors) tlsErrors_.append(error.errorString());
                     });
    QObject::connect(reply_.get(), &QNetworkReply::readyRead, reply_.get(), [this] { read(); });
    QObject::connect(reply_.get(), &QNetworkReply::finished, reply_.get(), [this] { finish(); });
    timer.start(timeout_);
    if (reply_->isFinished()) finish();
    if (!ended_) loop_.exec();
    timer.stop();
    // The signals that an unfinished reply sends while it is taken down have nobody to go to.
    reply_->disconnect();
    if (!reply_->isFinished()) reply_->abort();
    return answer_;
  }

 private:
  void read() {
    if (ended_) return;
    const qint64 announced = reply_->header(QNetworkRequest::ContentLengthHeader).toLongLong();
    answer_.body += reply_->read(LongestWebAnswer + 1 - answer_.body.size());
    if (std::max<qint64>(announced, answer_.body.size()) > LongestWebAnswer) {
      giveUp(QStringLiteral("%1 answers with more than %2 MB")
                 .arg(serverOf(reply_->url()))
                 .arg(LongestWebAnswer / (1024 * 1024)));
    }
  }

  void finish() {
    read();
    if (ended_) return;
    const int status = reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    // Statuses of 400 and more are errors to Qt and answers to us; an answer that broke off is none.
    const QNetworkReply::NetworkError error = reply_->error();
    const bool refusal = status >= 400 && error >= QNetworkReply::ContentAccessDenied;
    if (status == 0 || (error != QNetworkReply::NoError && !refusal)) {
      giveUp(sentenceFor(*reply_, tlsErrors_));
      return;
    }
    answer_.status = status;
    answer_.contentType = reply_->rawHeader("Content-Type");
    answer_.location = reply_->rawHeader("Location");
    for (const auto& [name, value] : reply_->rawHeaderPairs()) {
      if (name.compare("Warning", Qt::CaseInsensitive) == 0) answer_.warnings.append(value);
    }
    end();
  }

  void giveUp(const QString& failure) {
    answer_ = WebAnswer();
    answer_.failure = failure;
    end();
  }

  void end() {
    ended_ = true;
    loop_.quit();
  }

  std::chrono::seconds timeout_;
  QNetworkAccessManager manager_;
  std::unique_ptr<QNetworkReply> reply_;
  QEventLoop loop_;
  QStringList tlsErrors_;
  WebAnswer answer_;
  bool ended_ = false;
};

}  // namespace

WebAnswer exchange(const PacsSettings& settings, const WebRequest& request) {
  const QString scheme = request.url.scheme();
  if (request.url.host().isEmpty() || (scheme != QLatin1String("http") && scheme != QLatin1String("https"))) {
    WebAnswer answer;
    answer.failure = QStringLiteral("\"%1\" is no web address")
                         .arg(request.url.toDisplayString(QUrl::RemovePassword | QUrl::RemoveQuery));
    return answer;
  }
  return Exchange(settings, request).wait();
}

}  // namespace bridge
