// SPDX-License-Identifier: LGPL-3.0-or-later
#include "base/http/HttpExchange.h"

#include <QNetworkProxy>
#include <QSslError>
#include <algorithm>
#include <utility>

#include "base/log/Guard.h"

namespace velmora::base {

namespace {
/// What may wait, received and not yet taken: keeps a fast server from filling the memory.
constexpr qint64 ReadAhead = 64 * 1024;
}  // namespace

QByteArray HttpAnswer::header(const char* name) const {
  for (const auto& [each, value] : headers) {
    if (each.compare(name, Qt::CaseInsensitive) == 0) return value;
  }
  return {};
}

QNetworkRequest HttpExchange::plainRequest(const QUrl& url, const QByteArray& userAgent) {
  QNetworkRequest request(url);
  request.setRawHeader("User-Agent", userAgent);
  request.setRawHeader("Accept-Encoding", "identity");
  // Otherwise Qt names the language of the user.
  request.setRawHeader("Accept-Language", "*");
  request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
  request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
  return request;
}

HttpExchange::HttpExchange(const QNetworkRequest& request, const std::optional<QByteArray>& body,
                           Limits limits, Proxy proxy, Ended ended)
    : limits_(limits), ended_(std::move(ended)) {
  if (proxy == Proxy::None) manager_.setProxy(QNetworkProxy(QNetworkProxy::NoProxy));
  reply_.reset(body ? manager_.post(request, *body) : manager_.get(request));
  reply_->setReadBufferSize(std::min(limits_.bytes, ReadAhead) + 1);
  connect(reply_.get(), &QNetworkReply::sslErrors, this, [this](const QList<QSslError>& errors) {
    for (const QSslError& error : errors) answer_.tlsErrors.append(error.errorString());
  });
  connect(reply_.get(), &QNetworkReply::readyRead, this, [this] { guarded("web", [this] { read(); }); });
  connect(reply_.get(), &QNetworkReply::finished, this, [this] { guarded("web", [this] { finish(); }); });
  deadline_.setSingleShot(true);
  connect(&deadline_, &QTimer::timeout, this,
          [this] { guarded("web", [this] { end(HttpAnswer::End::TimedOut); }); });
  if (limits_.timeout.count() > 0) deadline_.start(limits_.timeout);
}

HttpExchange::~HttpExchange() {
  // The signals that an unfinished reply sends while it is taken down have nobody to go to.
  reply_->disconnect(this);
  if (!reply_->isFinished()) reply_->abort();
}

void HttpExchange::read() {
  if (!ended_) return;
  const qint64 announced = reply_->header(QNetworkRequest::ContentLengthHeader).toLongLong();
  answer_.body += reply_->read(limits_.bytes + 1 - answer_.body.size());
  if (std::max<qint64>(announced, answer_.body.size()) > limits_.bytes) end(HttpAnswer::End::TooLarge);
}

void HttpExchange::finish() {
  read();
  end(HttpAnswer::End::Finished);
}

void HttpExchange::end(HttpAnswer::End end) {
  const Ended ended = std::exchange(ended_, nullptr);
  if (!ended) return;
  deadline_.stop();
  answer_.end = end;
  answer_.status = reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
  answer_.headers = reply_->rawHeaderPairs();
  answer_.error = reply_->error();
  answer_.errorText = reply_->errorString();
  ended(answer_);
}

}  // namespace velmora::base
