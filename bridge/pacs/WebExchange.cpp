// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/pacs/WebExchange.h"

#include <QEventLoop>

#include "base/http/HttpExchange.h"

using namespace velmora;

namespace bridge {
namespace {

QString serverOf(const QUrl& url) {
  const int port = url.port(url.scheme() == QLatin1String("https") ? 443 : 80);
  return QStringLiteral("%1:%2").arg(url.host()).arg(port);
}

QNetworkRequest networkRequest(const PacsSettings& settings, const WebRequest& request) {
  QNetworkRequest result = base::HttpExchange::plainRequest(request.url, "velmora-link");
  result.setRawHeader("Accept", request.accept);
  if (!request.contentType.isEmpty()) result.setRawHeader("Content-Type", request.contentType);
  if (!settings.user.isEmpty()) {
    const QByteArray credentials = (settings.user + QLatin1Char(':') + settings.password).toUtf8();
    result.setRawHeader("Authorization", "Basic " + credentials.toBase64());
  }
  result.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
  return result;
}

/// Why there is no answer.
QString sentenceFor(const QUrl& url, const base::HttpAnswer& answer) {
  const QString server = serverOf(url);
  switch (answer.error) {
    case QNetworkReply::ConnectionRefusedError:
      return QStringLiteral("nothing listens at %1").arg(server);
    case QNetworkReply::HostNotFoundError:
      return QStringLiteral("there is no computer named %1").arg(url.host());
    case QNetworkReply::SslHandshakeFailedError:
      if (answer.tlsErrors.isEmpty()) {
        return QStringLiteral("no encrypted connection to %1 came about: %2").arg(server, answer.errorText);
      }
      return QStringLiteral("%1 does not prove that it is the archive: %2")
          .arg(server, answer.tlsErrors.join(QStringLiteral("; ")));
    case QNetworkReply::RemoteHostClosedError:
      return QStringLiteral("%1 broke the connection off").arg(server);
    case QNetworkReply::ProtocolFailure:
    case QNetworkReply::ProtocolInvalidOperationError:
    case QNetworkReply::ProtocolUnknownError:
    case QNetworkReply::UnknownContentError:
      return QStringLiteral("what %1 answers is not HTTP").arg(server);
    default:
      return QStringLiteral("%1 could not be reached: %2").arg(server, answer.errorText);
  }
}

/// What the exchange brought, or the failure in words.
base::Result<WebAnswer> webAnswer(const QUrl& url, std::chrono::seconds timeout,
                                  const base::HttpAnswer& answer) {
  switch (answer.end) {
    case base::HttpAnswer::End::TimedOut:
      return base::Failure{
          QStringLiteral("%1 did not answer within %2 seconds").arg(serverOf(url)).arg(timeout.count())};
    case base::HttpAnswer::End::TooLarge:
      return base::Failure{QStringLiteral("%1 answers with more than %2 MB")
                               .arg(serverOf(url))
                               .arg(LongestWebAnswer / (1024 * 1024))};
    case base::HttpAnswer::End::Finished:
      break;
  }
  // Statuses of 400 and more are errors to Qt and answers to us; an answer that broke off is none.
  const bool refusal = answer.status >= 400 && answer.error >= QNetworkReply::ContentAccessDenied;
  if (answer.status == 0 || (answer.error != QNetworkReply::NoError && !refusal)) {
    return base::Failure{sentenceFor(url, answer)};
  }
  WebAnswer result{answer.status, answer.header("Content-Type"), {}, answer.header("Location"), answer.body};
  for (const auto& [name, value] : answer.headers) {
    if (name.compare("Warning", Qt::CaseInsensitive) == 0) result.warnings.append(value);
  }
  return result;
}

}  // namespace

base::Result<WebAnswer> exchange(const PacsSettings& settings, const WebRequest& request) {
  const QString scheme = request.url.scheme();
  if (request.url.host().isEmpty() || (scheme != QLatin1String("http") && scheme != QLatin1String("https"))) {
    return base::Failure{QStringLiteral("\"%1\" is no web address")
                             .arg(request.url.toDisplayString(QUrl::RemovePassword | QUrl::RemoveQuery))};
  }
  const std::chrono::seconds timeout = settings.timeFor(request.body.size());
  const auto body = request.contentType.isEmpty() ? std::nullopt : std::optional(request.body);
  QEventLoop loop;
  base::HttpAnswer answer;
  const base::HttpExchange exchange(networkRequest(settings, request), body, {LongestWebAnswer, timeout},
                                    base::HttpExchange::Proxy::None, [&](const base::HttpAnswer& came) {
                                      answer = came;
                                      loop.quit();
                                    });
  loop.exec();
  return webAnswer(request.url, timeout, answer);
}

}  // namespace bridge
