// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointer>
#include <QThread>
#include <QTimer>
#include <map>
#include <memory>

#include "platform/workspace/Web.h"

namespace velmora::platform {
class RunLoop;
}

namespace velmora::desktop {

class QtWebTransfers;

/// The web over Qt Network.
///
/// The transfers live on a thread of their own, started with the first: before it connects Qt asks the
/// desktop which proxy to use, and that question alone can take as long as the network likes. A deadline runs
/// on the main thread, so it holds whatever the other thread is waiting for. Neither a page's owner that goes
/// nor the end of this object waits for an answer.
class QtWeb : public platform::Web {
 public:
  explicit QtWeb(platform::RunLoop& runLoop);
  ~QtWeb() override;
  QtWeb(const QtWeb&) = delete;
  QtWeb& operator=(const QtWeb&) = delete;

  void load(const QUrl& url, double timeout, qint64 limit, const QObject* owner, DidLoad didLoad) override;

 private:
  struct Waiting {
    QPointer<const QObject> owner;
    DidLoad didLoad;
    std::unique_ptr<QTimer> deadline;
    QMetaObject::Connection ownerGone;
  };
  void start();
  void finish(quint64 id, const platform::WebAnswer& answer);
  void giveUp(quint64 id);

  platform::RunLoop& runLoop_;
  std::map<quint64, Waiting> waiting_;
  quint64 lastId_ = 0;
  /// Null until the first page is asked for.
  std::unique_ptr<QThread> thread_;
  std::unique_ptr<QtWebTransfers> transfers_;
  /// False once this object has gone. Read and written on the main thread only.
  std::shared_ptr<bool> open_ = std::make_shared<bool>(true);
  /// Receives, on the main thread, what the transfers report.
  std::unique_ptr<QObject> mainThread_ = std::make_unique<QObject>();
};

}  // namespace velmora::desktop
