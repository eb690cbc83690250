// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QUrl>
#include <functional>

#include "base/Export.h"
#include "base/Result.h"

namespace velmora::platform {

/// A web page, or why there is none, in a sentence that can be shown.
using WebAnswer = base::Result<QByteArray>;

/// Gets pages from the web, without keeping anybody waiting.
class VELMORA_EXPORT Web {
 public:
  using DidLoad = std::function<void(const WebAnswer&)>;

  virtual ~Web() = default;

  /// Asks for a page, http or https, and nothing else: no cookie is kept or sent, nothing about the user or
  /// the machine. `didLoad` gets the answer later, on the main thread through the run loop, unless `owner`
  /// has gone: the page, or the failure when the whole took longer than `timeout` seconds or exceeds `limit`
  /// bytes. Main thread only.
  virtual void load(const QUrl& url, double timeout, qint64 limit, const QObject* owner, DidLoad didLoad) = 0;
};

/// Whether that is the address of a page that can be asked for: http or https, with a host.
inline bool isWebAddress(const QUrl& url) {
  return url.isValid() && !url.host().isEmpty() &&
         (url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https"));
}

}  // namespace velmora::platform
