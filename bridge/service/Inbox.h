// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QString>
#include <QVariantMap>
#include <deque>
#include <functional>

#include "base/Result.h"
#include "bridge/spool/RequestHistory.h"
#include "bridge/spool/Spool.h"

namespace bridge {

/// Takes what arrives on the bus: requests into the history, replies into the spool. While the disk cannot be
/// written, replies are kept in memory, in their order, up to a limit; only what comes beyond that is lost,
/// and the log says so. Requests are kept in memory too, up to the limit of the history.
class Inbox {
 public:
  using Line = std::function<void(const QString& line)>;

  /// How much is kept in memory while the disk cannot be written, in bytes.
  static constexpr qint64 MostKept = 256LL * 1024 * 1024;

  /// `taken` gets a line for each reply once it is on the disk, `log` one for each failure.
  Inbox(Spool& spool, RequestHistory& requests, Line taken, Line log, qint64 mostKept = MostKept);

  void request(const QVariantMap& request, const QString& application, const QDateTime& time);
  /// Returns true when a new reply waits in the spool.
  bool reply(const QVariantMap& reply, const QString& application, const QDateTime& arrival);

  /// Tries again to write what is kept in memory. Returns true when a new reply waits in the spool.
  bool tryAgain();
  /// Whether something is not on the disk yet.
  bool keepsSome() const { return !kept_.empty() || !requests_.isSaved(); }
  /// How many replies are not on the disk yet.
  qsizetype kept() const { return static_cast<qsizetype>(kept_.size()); }

 private:
  struct Kept {
    QString name;
    SpooledReply reply;
  };
  velmora::base::Result<> write(const QString& name, const SpooledReply& reply);

  Spool& spool_;
  RequestHistory& requests_;
  Line taken_;
  Line log_;
  qint64 mostKept_;
  qint64 size_ = 0;
  std::deque<Kept> kept_;
};

}  // namespace bridge
