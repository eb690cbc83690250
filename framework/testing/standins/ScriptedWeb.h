// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QList>
#include <QPointer>
#include <deque>

#include "base/Export.h"
#include "platform/runloop/RunLoop.h"
#include "platform/workspace/Web.h"

namespace velmora::testkit {

/// A web whose pages the test writes. A page that was asked for answers when the test says so.
class VELMORA_EXPORT ScriptedWeb : public platform::Web {
 public:
  struct Request {
    QUrl url;
    double timeout;
    qint64 limit;
  };
  explicit ScriptedWeb(platform::RunLoop& runLoop) : runLoop_(runLoop) {}

  /// Every page that was asked for, in order.
  const QList<Request>& requests() const { return requests_; }
  /// Answers the oldest request that waits; fails the test when none does.
  void answer(const platform::WebAnswer& answer);

  void load(const QUrl& url, double timeout, qint64 limit, const QObject* owner, DidLoad didLoad) override;

 private:
  struct Waiting {
    QPointer<const QObject> owner;
    DidLoad didLoad;
  };
  platform::RunLoop& runLoop_;
  QList<Request> requests_;
  std::deque<Waiting> waiting_;
};

}  // namespace velmora::testkit
