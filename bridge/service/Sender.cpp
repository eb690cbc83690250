// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/service/Sender.h"

#include <algorithm>
#include <exception>

#include "bridge/dicom/Capture.h"
#include "bridge/service/LogText.h"
#include "bridge/spool/RequestHistory.h"

using namespace velmora;

namespace bridge {
namespace {

/// A reply that cannot be read for now may be any patient's, and holds up no other.
QString queueOf(const SpoolItem& item) {
  return item.isReadable ? applicationIdentifier(item.identifier) : item.name;
}

}  // namespace

Sender::Sender(Spool& spool, Pacs& pacs, Report report, Spool::WallClock wallClock,
               QStringList chartsWithoutPatient)
    : spool_(spool),
      pacs_(pacs),
      report_(std::move(report)),
      wallClock_(std::move(wallClock)),
      chartsWithoutPatient_(std::move(chartsWithoutPatient)),
      instanceNumbers_(spool.folder() + QStringLiteral("/series")) {}

std::optional<Sender::Milliseconds> Sender::step(Milliseconds now) {
  for (const QString& name : spool_.takeRetryRequests()) {
    report_.done(QStringLiteral("again %1").arg(name));
  }
  const QList<SpoolItem> waiting = spool_.waiting();
  const SpoolItem* next = nullptr;
  QHash<QString, PatientQueue> queues;
  std::optional<Milliseconds> earliest;
  for (const SpoolItem& item : waiting) {
    const QString name = queueOf(item);
    if (queues.contains(name)) continue;  // an earlier one of this queue comes first
    const PatientQueue queue = queues_.value(name);
    queues.insert(name, queue);
    if (!earliest || queue.due < *earliest) {
      earliest = queue.due;
      next = &item;
    }
  }
  queues_ = queues;  // drops the empty ones
  // A request to retry stays until the disk takes the new state, and nothing tells us when it does.
  const auto orRetryRequests = [this](std::optional<Milliseconds> wait) {
    return spool_.hasRetryRequests() ? std::min(wait.value_or(FirstDelay), FirstDelay) : wait;
  };
  if (next == nullptr) return orRetryRequests(std::nullopt);
  if (*earliest > now) return orRetryRequests(*earliest - now);

  const QString name = queueOf(*next);
  if (attempt(*next) == End::Finished) {
    finished(name, now);
  } else {
    PatientQueue& queue = queues_[name];
    queue.delay = std::min(queue.delay.count() == 0 ? FirstDelay : 2 * queue.delay, LongestDelay);
    queue.due = now + queue.delay;
  }
  return Milliseconds(0);
}

void Sender::finished(const QString& name, Milliseconds now) {
  queues_[name] = {now, Milliseconds(0)};
  const auto failing = std::count_if(queues_.begin(), queues_.end(),
                                     [](const PatientQueue& queue) { return queue.delay.count() > 0; });
  if (failing < 2) return;
  for (PatientQueue& queue : queues_) queue.due = std::min(queue.due, now);
}

/// A failure of one reply does not stop the others.
Sender::End Sender::attempt(const SpoolItem& item) {
  try {
    return send(item);
  } catch (const std::exception& exception) {
    if (!item.isReadable) return End::Later;
    const EntryState state = spool_.state(item.name);
    if (state.state != SpoolState::Waiting) return End::Finished;
    return retryLater(item, state,
                      QStringLiteral("the exchange failed: ") + QString::fromLocal8Bit(exception.what()));
  }
}

Sender::End Sender::send(const SpoolItem& item) {
  if (!item.isReadable) {
    // Nothing is known of it, and nothing must be written over what cannot be read.
    const base::Result<QStringList> loaded = spool_.loadEntry(item.name);
    for (const QString& warning : loaded.valueOr({})) report_.failed(warning);
    return loaded ? End::Finished : End::Later;
  }
  EntryState state = spool_.state(item.name);
  const auto read = spool_.read(item.name);
  if (!read) return retryLater(item, state, QStringLiteral("cannot read its file: ") + read.error());
  const std::optional<SpooledReply>& reply = *read;
  if (!reply) {
    report_.failed(QStringLiteral("aside %1: %2").arg(item.name, spool_.setDamagedAside(item.name)));
    return End::Finished;
  }
  if (!reply->complaint.isEmpty()) return setAside(item, state, reply->complaint);
  const auto end = state.decision ? confirm(item, *reply, state) : decide(item, *reply, state);
  if (end) return *end;

  const Decision& decision = *state.decision;
  const CaptureIdentity identity{reply->sopInstanceUID, decision.seriesInstanceUID, decision.instanceNumber,
                                 decision.seriesNumber, reply->arrival};
  const auto capture = secondaryCapture(
      decision.study, {reply->jpeg, reply->description, reply->application, decision.showsPatient}, identity);
  if (!capture.ok()) return setAside(item, state, capture.error());

  const PacsResult<> sent = pacs_.store(*capture, CaptureSopClassUID, reply->sopInstanceUID);
  if (!sent.ok()) return retryOrSetAside(sent.failure(), item, *reply, state);

  EntryState stored;
  stored.state = SpoolState::Stored;
  stored.changed = wallClock_();
  stored.tries = state.tries;
  stored.sopInstanceUID = reply->sopInstanceUID;
  stored.studyInstanceUID = decision.study.studyInstanceUID;
  stored.application = reply->application;
  stored.arrival = reply->arrival;
  // Without the record it will be stored once more, as the same object.
  const base::Result<> kept = spool_.change(item.name, stored);
  if (!kept) return retryLater(item, state, kept.error());
  report_.done(QStringLiteral("stored %1 as %2").arg(item.name, reply->sopInstanceUID));
  spool_.forgetOldRecords();
  return End::Finished;
}

/// Decides where the reply belongs and records that. Returns nothing when sending continues, otherwise how
/// the attempt ended.
std::optional<Sender::End> Sender::decide(const SpoolItem& item, const SpooledReply& reply,
                                          EntryState& state) {
  const PacsResult<Study> study = findStudyFor(reply, pacs_);
  if (!study.ok()) return retryOrSetAside(study.failure(), item, reply, state);
  Decision decision;
  decision.study = *study;
  decision.seriesInstanceUID = chartSeriesUID(study->studyInstanceUID, reply.application);
  decision.seriesNumber = chartSeriesNumber(reply.application);
  decision.showsPatient = !chartsWithoutPatient_.contains(reply.application);
  const base::Result<int> number = instanceNumbers_.next(decision.seriesInstanceUID);
  if (!number) return retryLater(item, state, number.error());
  decision.instanceNumber = *number;
  EntryState decided = state;
  decided.decision = decision;
  return storeDecision(decided, item, state);
}

/// Asks whether the earlier decision still holds, and takes over what the PACS now says of the study. If the
/// decision does not hold, the reply is set aside undecided. Returns as decide() does.
std::optional<Sender::End> Sender::confirm(const SpoolItem& item, const SpooledReply& reply,
                                           EntryState& state) {
  const PacsResult<Study> study = studyOfUID(state.decision->study.studyInstanceUID, reply, pacs_);
  EntryState asked = state;
  if (!study.ok()) {
    if (study.failure().kind == PacsFailure::Kind::Never) asked.decision.reset();
    return retryOrSetAside(study.failure(), item, reply, asked);
  }
  if (*study == state.decision->study) return std::nullopt;
  asked.decision->study = *study;
  return storeDecision(asked, item, state);
}

/// Records a decision. Returns as decide() does.
std::optional<Sender::End> Sender::storeDecision(const EntryState& decided, const SpoolItem& item,
                                                 EntryState& state) {
  if (encodeState(decided).size() > LargestState) {
    // It could be written, but not read again.
    return setAside(item, state, QStringLiteral("what the PACS says of its study is too long"));
  }
  EntryState written = decided;
  written.changed = wallClock_();
  const base::Result<> kept = spool_.change(item.name, written);
  if (!kept) return retryLater(item, state, kept.error());
  state = written;
  return std::nullopt;
}

/// Lets the reply wait or sets it aside, depending on the kind of failure.
Sender::End Sender::retryOrSetAside(const PacsFailure& failure, const SpoolItem& item,
                                    const SpooledReply& reply, const EntryState& state) {
  const Study* const known = state.decision ? &state.decision->study : nullptr;
  const QString reason = redactPatient(failure.message, reply, known);
  return failure.kind == PacsFailure::Kind::Never ? setAside(item, state, reason)
                                                  : retryLater(item, state, reason);
}

Sender::End Sender::setAside(const SpoolItem& item, EntryState state, const QString& reason) {
  state.state = SpoolState::Aside;
  state.changed = wallClock_();
  state.reason = reason;
  const base::Result<> kept = spool_.change(item.name, state);
  if (!kept) {
    report_.failed(QStringLiteral("cannot set %1 aside: %2").arg(item.name, kept.error()));
    return End::Later;
  }
  report_.failed(QStringLiteral("aside %1: %2").arg(item.name, oneLine(reason)));
  return End::Finished;
}

Sender::End Sender::retryLater(const SpoolItem& item, EntryState state, const QString& reason) {
  ++state.tries;
  state.changed = wallClock_();
  // The same reason again is not logged again.
  if (state.reason != reason || state.tries == 1) {
    report_.failed(QStringLiteral("waiting %1: %2").arg(item.name, oneLine(reason)));
  }
  state.reason = reason;
  const base::Result<> kept = spool_.change(item.name, state);
  if (!kept) report_.failed(kept.error());
  return End::Later;
}

}  // namespace bridge
