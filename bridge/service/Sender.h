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

/// Brings what waits in the spool into the PACS, one exchange after the other.
///
/// The replies of one patient form a line: they go in the order in which they came, and while the first
/// cannot be sent, the others of the line wait behind it. Lines do not wait for each other. What the PACS
/// could not take now is tried again after 5 seconds, then after twice as long each time, 10 minutes at most;
/// when the PACS takes something after several lines have failed, it is there again, and all of them get
/// their turn at once. A reply whose files cannot be read for now is in no patient's line until they can.
///
/// Where a reply belongs is decided once, so that it is the same object however often it is sent. When it is
/// sent again, the PACS is asked what its study is by now: meanwhile its patient may have been corrected.
class Sender {
 public:
  using Milliseconds = std::chrono::milliseconds;
  /// Gets one line about each thing that was done, without anything about the patient.
  struct Report {
    std::function<void(const QString& line)> done;
    std::function<void(const QString& line)> failed;
  };

  static constexpr Milliseconds FirstDelay{5'000};
  static constexpr Milliseconds LongestDelay{600'000};

  /// `chartsWithoutPatient` are the applications in whose pictures nothing tells who the patient is.
  Sender(Spool& spool, Pacs& pacs, Report report, Spool::WallClock wallClock,
         QStringList chartsWithoutPatient = {});

  /// Does what is due now, with at most one reply. Returns when to call again: at once (0), after some time,
  /// or, with nothing, not before something new waits. `now` is on a clock that never goes back.
  std::optional<Milliseconds> step(Milliseconds now);

 private:
  enum class End { Finished, Later };
  struct PatientQueue {
    Milliseconds due{0};
    Milliseconds delay{0};  ///< of the last failure; 0 when the last try went well
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
  void finished(const QString& line, Milliseconds now);

  Spool& spool_;
  Pacs& pacs_;
  Report report_;
  Spool::WallClock wallClock_;
  QStringList chartsWithoutPatient_;
  InstanceNumbers instanceNumbers_;
  QHash<QString, PatientQueue> queues_;  // of the patients' identifiers
};

}  // namespace bridge
