// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/standins/ScriptedWeb.h"

#include "testing/standins/Scripted.h"

namespace velmora::testkit {

void ScriptedWeb::load(const QUrl& url, double timeout, qint64 limit, const QObject* owner, DidLoad didLoad) {
  requests_.append({url, timeout, limit});
  waiting_.push_back({owner, std::move(didLoad)});
}

void ScriptedWeb::answer(const platform::WebAnswer& answer) {
  if (waiting_.empty()) {
    reportFailure(QStringLiteral("An answer from the web that nobody waits for"));
    return;
  }
  const Waiting first = std::move(waiting_.front());
  waiting_.pop_front();
  if (first.owner) runLoop_.performOnMainThread(first.owner, [first, answer] { first.didLoad(answer); });
}

}  // namespace velmora::testkit
