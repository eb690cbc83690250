// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/web/QtWebTransfers.h"

#include <algorithm>
#include <utility>

#include "base/log/Guard.h"
#include "platform/text/Localization.h"

namespace velmora::desktop {

namespace {

constexpr int MostRedirects = 5;
/// What may wait, received and not yet taken: keeps a fast server from filling the memory.
constexpr qint64 ReadAhead = 64 * 1024;
constexpr int StatusOk = 200;

QString tooLarge() { return platform::localizedString("OrvVersion", "The server's answer is too large."); }

/// A request that says nothing of who asks. Qt would otherwise add a list of the user's languages and a name
/// of its own, keep the connection for later, and unpack whatever size a packed answer has.
QNetworkRequest plainRequest(const QUrl& url) {
  QNetworkRequest request(url);
  request.setRawHeader("User-Agent", "Velmora");
  request.setRawHeader("Accept-Language", "*");
  request.setRawHeader("Accept-Encoding", "identity");
  request.setRawHeader("Connection", "close");
  request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
  request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
  request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
  request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
  request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
  request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
  request.setMaximumRedirectsAllowed(MostRedirects);
  return request;
}

QString sentenceFor(QNetworkReply::NetworkError error) {
  switch (error) {
    case QNetworkReply::TooManyRedirectsError:
      return platform::localizedString("OrvVersion",
                                       "The server leads from one address to the next without end.");
    case QNetworkReply::InsecureRedirectError:
    case QNetworkReply::ProtocolUnknownError:
      return platform::localizedString("OrvVersion", "The server leads to an address that is not safe.");
    case QNetworkReply::SslHandshakeFailedError:
      return platform::localizedString("OrvVersion", "A secure connection to the server could not be made.");
    case QNetworkReply::RemoteHostClosedError:
      return platform::localizedString("OrvVersion", "The server broke the connection off.");
    case QNetworkReply::ProtocolFailure:
    case QNetworkReply::ProtocolInvalidOperationError:
    case QNetworkReply::UnknownContentError:
      return platform::localizedString("OrvVersion", "The server's answer could not be understood.");
    case QNetworkReply::TimeoutError:
    case QNetworkReply::ProxyTimeoutError:
      return platform::localizedString("OrvVersion", "The server took too long to answer.");
    default:
      return platform::localizedString("OrvVersion", "The server could not be reached.");
  }
}

/// Why a transfer that has finished brought no page; null when it did.
QString failureOf(const QNetworkReply& reply) {
  const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
  const bool moved = status / 100 == 3 && reply.hasRawHeader("Location");
  if (status != 0 && status != StatusOk && !moved)
    return platform::formatted(platform::localizedString("OrvVersion", "The server answered with status %@."),
                               {QString::number(status)});
  return reply.error() == QNetworkReply::NoError ? QString() : sentenceFor(reply.error());
}

}  // namespace

void QtWebTransfers::start(quint64 id, const QUrl& url, qint64 limit) {
  auto* network = new QNetworkAccessManager(this);
  QNetworkReply* reply = network->get(plainRequest(url));
  reply->setReadBufferSize(std::min(limit, ReadAhead) + 1);
  transfers_.emplace(id, Transfer{network, reply, limit, {}});
  connect(reply, &QNetworkReply::readyRead, this,
          [this, id] { base::guarded("web", [&] { takeWhatCame(id); }); });
  connect(reply, &QNetworkReply::finished, this, [this, id, reply] {
    base::guarded("web", [&] {
      takeWhatCame(id);
      const auto transfer = transfers_.find(id);
      if (transfer == transfers_.end()) return;
      const QString failure = failureOf(*reply);
      end(id, failure.isNull() ? platform::WebAnswer{transfer->second.body, {}}
                               : platform::WebAnswer{{}, failure});
    });
  });
}

void QtWebTransfers::takeWhatCame(quint64 id) {
  const auto found = transfers_.find(id);
  if (found == transfers_.end()) return;
  Transfer& transfer = found->second;
  const qint64 announced = transfer.reply->header(QNetworkRequest::ContentLengthHeader).toLongLong();
  transfer.body += transfer.reply->read(transfer.limit + 1 - transfer.body.size());
  if (std::max<qint64>(announced, transfer.body.size()) > transfer.limit) end(id, {{}, tooLarge()});
}

void QtWebTransfers::stop(quint64 id) {
  const auto found = transfers_.find(id);
  if (found == transfers_.end()) return;
  const Transfer transfer = found->second;
  transfers_.erase(found);
  transfer.reply->disconnect(this);
  // Takes the reply with it, which breaks off what is under way. Later, as a signal of the reply may be what
  // brought us here.
  transfer.network->deleteLater();
}

void QtWebTransfers::stopAll() {
  while (!transfers_.empty()) stop(transfers_.begin()->first);
}

void QtWebTransfers::end(quint64 id, const platform::WebAnswer& answer) {
  const platform::WebAnswer last = answer;
  stop(id);
  ended_(id, last);
}

}  // namespace velmora::desktop
