// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QString>
#include <QVariantMap>
#include <deque>
#include <functional>

#include "base/Result.h"
#include "bridge/spool/RequestMemory.h"
#include "bridge/spool/Spool.h"

namespace bridge {

/// Takes what is heard on the bus: requests into the memory, replies into the spool. While the disk takes
/// nothing, replies are kept in memory, in their order, up to a bound; only what comes beyond that is lost,
/// and the log says so. Requests are kept in memory likewise, up to the bound that they have anyway.
class Inbox {
 public:
  using Line = std::function<void(const QString& line)>;

  /// How much is kept in memory while the disk is full, in bytes.
  static constexpr qint64 MostKept = 256LL * 1024 * 1024;

  /// `taken` gets one line for each reply that is on the disk, `log` one for each thing that went wrong.
  Inbox(Spool& spool, RequestMemory& requests, Line taken, Line log, qint64 mostKept = MostKept);

  void request(const QVariantMap& request, const QString& application, const QDateTime& time);
  /// True when a new reply waits in the spool.
  bool reply(const QVariantMap& reply, const QString& application, const QDateTime& arrival);

  /// Tries once more to write what is kept in memory. True when a new reply waits in the spool.
  bool tryAgain();
  /// Whether something is not on the disk yet.
  bool keepsSome() const { return !kept_.empty() || !requests_.isSaved(); }
  /// How many replies are not.
  qsizetype kept() const { return static_cast<qsizetype>(kept_.size()); }

 private:
  struct Kept {
    QString name;
    SpooledReply reply;
  };
  velmora::base::Result<> write(const QString& name, const SpooledReply& reply);

  Spool& spool_;
  RequestMemory& requests_;
  Line taken_;
  Line log_;
  qint64 mostKept_;
  qint64 size_ = 0;
  std::deque<Kept> kept_;
};

}  // namespace bridge
