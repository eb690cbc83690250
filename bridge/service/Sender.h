// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QHash>
#include <QString>
#include <QStringList>
#include <chrono>
#include <functional>
#include <optional>

#include "bridge/pacs/Pacs.h"
#include "bridge/service/StudyFinder.h"
#include "bridge/spool/InstanceNumbers.h"
#include "bridge/spool/Spool.h"

namespace bridge {

/// Stores what waits in the spool in the PACS, one exchange at a time.
///
/// The replies of one patient form a queue: they are sent in the order of arrival, and while the first cannot
/// be sent, the others wait behind it. Queues do not wait for each other. What the PACS could not take is
/// retried after 5 seconds, then after twice as long each time, 10 minutes at most. When one is
/// through after several queues have failed, all of them are tried again at once. A reply whose files cannot
/// be read for now is in no patient's queue until they can.
///
/// Where a reply belongs is decided once, so that it is the same object however often it is sent. Before it
/// is sent again, the PACS is asked for its study anew, whose patient may have been corrected meanwhile.
class Sender {
 public:
  using Milliseconds = std::chrono::milliseconds;
  /// Receive one line for each step, without anything about the patient.
  struct Report {
    std::function<void(const QString& line)> done;
    std::function<void(const QString& line)> failed;
  };

  static constexpr Milliseconds FirstDelay{5'000};
  static constexpr Milliseconds LongestDelay{600'000};

  /// `chartsWithoutPatient` are the applications whose pictures do not show who the patient is.
  Sender(Spool& spool, Pacs& pacs, Report report, Spool::WallClock wallClock,
         QStringList chartsWithoutPatient = {});

  /// Does what is due, with at most one reply. Returns when to call again: at once (0), after some time, or
  /// (nothing) when something new waits. `now` is the time of a clock that never goes back.
  std::optional<Milliseconds> step(Milliseconds now);

 private:
  enum class End { Finished, Later };
  struct PatientQueue {
    Milliseconds due{0};
    Milliseconds delay{0};  ///< after the last failure; 0 after a success
  };

  End attempt(const SpoolItem& item);
  End send(const SpoolItem& item);
  End setAside(const SpoolItem& item, EntryState state, const QString& reason);
  End retryLater(const SpoolItem& item, EntryState state, const QString& reason);
  std::optional<End> decide(const SpoolItem& item, const SpooledReply& reply, EntryState& state);
  std::optional<End> confirm(const SpoolItem& item, const SpooledReply& reply, EntryState& state);
  std::optional<End> storeDecision(const EntryState& decided, const SpoolItem& item, EntryState& state);
  End retryOrSetAside(const PacsFailure& failure, const SpoolItem& item, const SpooledReply& reply,
                      const EntryState& state);
  void finished(const QString& queue, Milliseconds now);

  Spool& spool_;
  Pacs& pacs_;
  Report report_;
  Spool::WallClock wallClock_;
  QStringList chartsWithoutPatient_;
  InstanceNumbers instanceNumbers_;
  QHash<QString, PatientQueue> queues_;  // of the patients' identifiers
};

}  // namespace bridge
