// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/web/QtWebTransfers.h"

#include "platform/text/Localization.h"

namespace velmora::desktop {

namespace {

constexpr int MostRedirects = 5;
constexpr int StatusOk = 200;

/// A request that says nothing of who asks, and keeps no connection for later.
QNetworkRequest requestFor(const QUrl& url) {
  QNetworkRequest request = base::HttpExchange::plainRequest(url, "Velmora");
  request.setRawHeader("Connection", "close");
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

/// The page, or why there is none.
platform::WebAnswer pageOf(const base::HttpAnswer& answer) {
  using base::Failure;
  if (answer.end == base::HttpAnswer::End::TooLarge)
    return Failure{platform::localizedString("OrvVersion", "The server's answer is too large.")};
  const bool moved = answer.status / 100 == 3 && !answer.header("Location").isNull();
  if (answer.status != 0 && answer.status != StatusOk && !moved)
    return Failure{
        platform::formatted(platform::localizedString("OrvVersion", "The server answered with status %@."),
                            {QString::number(answer.status)})};
  if (answer.error != QNetworkReply::NoError) return Failure{sentenceFor(answer.error)};
  return answer.body;
}

}  // namespace

void QtWebTransfers::start(quint64 id, const QUrl& url, qint64 limit) {
  transfers_[id] = std::make_unique<base::HttpExchange>(
      requestFor(url), std::nullopt, base::HttpExchange::Limits{limit},
      base::HttpExchange::Proxy::OfTheSystem, [this, id](const base::HttpAnswer& answer) {
        stop(id);
        ended_(id, pageOf(answer));
      });
}

void QtWebTransfers::stop(quint64 id) {
  const auto found = transfers_.find(id);
  if (found == transfers_.end()) return;
  // Later, as its own end may be what brought us here.
  found->second.release()->deleteLater();
  transfers_.erase(found);
}

void QtWebTransfers::stopAll() {
  while (!transfers_.empty()) stop(transfers_.begin()->first);
}

}  // namespace velmora::desktop
