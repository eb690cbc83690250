// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QObject>
#include <functional>
#include <map>

#include "platform/workspace/Web.h"

namespace velmora::desktop {

/// Pages on their way. Lives on the thread of the transfers: each operation is called there, and so is
/// `ended`.
///
/// Memory is bounded for the page, not for what comes before it: Qt reads a head that never ends for as long
/// as it comes in, at about 2 MB a second and even after the transfer was given up (6.4.2). Nobody waits for
/// that.
class QtWebTransfers : public QObject {
 public:
  using Ended = std::function<void(quint64 id, const platform::WebAnswer&)>;

  /// `ended` is called once for each page that was not stopped.
  explicit QtWebTransfers(Ended ended) : ended_(std::move(ended)) {}

  /// Asks for a page of at most `limit` bytes.
  void start(quint64 id, const QUrl& url, qint64 limit);
  /// Breaks a transfer off; nothing more is said of it. One that has ended is left in peace.
  void stop(quint64 id);
  void stopAll();

 private:
  struct Transfer {
    /// One for each page: what it remembers (connections, tickets to resume them) is forgotten with it.
    QNetworkAccessManager* network;
    QNetworkReply* reply;
    qint64 limit;
    QByteArray body;
  };
  void takeWhatCame(quint64 id);
  void end(quint64 id, const platform::WebAnswer& answer);

  Ended ended_;
  std::map<quint64, Transfer> transfers_;
};

}  // namespace velmora::desktop
