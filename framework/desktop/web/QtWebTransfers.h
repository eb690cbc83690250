// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QObject>
#include <functional>
#include <map>
#include <memory>

#include "base/http/HttpExchange.h"
#include "platform/workspace/Web.h"

namespace velmora::desktop {

/// Pages on their way. Lives on the thread of the transfers: each operation is called there, and so is
/// `ended`.
class QtWebTransfers : public QObject {
 public:
  using Ended = std::function<void(quint64 id, const platform::WebAnswer&)>;

  /// `ended` is called once for each page that was not stopped.
  explicit QtWebTransfers(Ended ended) : ended_(std::move(ended)) {}

  /// Asks for a page of at most `limit` bytes.
  void start(quint64 id, const QUrl& url, qint64 limit);
  /// Cancels a transfer, which is not reported. Does nothing to one that has ended.
  void stop(quint64 id);
  void stopAll();

 private:
  Ended ended_;
  std::map<quint64, std::unique_ptr<base::HttpExchange>> transfers_;
};

}  // namespace velmora::desktop
