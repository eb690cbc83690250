// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/service/Inbox.h"

#include <functional>

#include "bridge/service/LogText.h"

using namespace velmora;

namespace bridge {
namespace {

/// About how much memory a reply takes, texts included.
qint64 sizeOf(const SpooledReply& reply) {
  const qsizetype texts = reply.identifier.size() + reply.patientName.size() + reply.studyID.size() +
                          reply.description.size() + reply.complaint.size();
  return 1024 + 2 * texts + reply.jpeg.size();
}

/// Writes the requests that the disk could not take, or reads those that it did not give. Damage that is
/// found so late is said; that the disk does not answer yet has been said already.
void save(RequestHistory& requests, const std::function<void(const QString&)>& log) {
  const base::Result<> saved = requests.save();
  if (!saved && requests.isSaved()) log(saved.error());
}

}  // namespace

Inbox::Inbox(Spool& spool, RequestHistory& requests, Line taken, Line log, qint64 mostKept)
    : spool_(spool),
      requests_(requests),
      taken_(std::move(taken)),
      log_(std::move(log)),
      mostKept_(mostKept) {}

void Inbox::request(const QVariantMap& request, const QString& application, const QDateTime& time) {
  const base::Result<> remembered = requests_.remember(request, application, time);
  if (!remembered) log_(remembered.error());
}

base::Result<> Inbox::write(const QString& name, const SpooledReply& reply) {
  const base::Result<> added = spool_.add(name, reply);
  if (added) taken_(QStringLiteral("taken %1 as %2").arg(name, reply.sopInstanceUID));
  return added;
}

bool Inbox::reply(const QVariantMap& values, const QString& application, const QDateTime& arrival) {
  auto reply = spooledReply(values, application, arrival);
  if (!reply) {
    log_(QStringLiteral("a reply of %1 holds no chart and is refused").arg(oneLine(application)));
    return false;
  }
  if (!requests_.isSaved()) save(requests_, log_);
  requests_.matchToRequest(*reply);
  const QString name = spool_.newName();
  // No reply overtakes those that could not be written yet.
  const base::Result<> written =
      kept_.empty() ? write(name, *reply) : base::Failure{QStringLiteral("earlier ones wait for the disk")};
  if (written) return true;
  if (size_ + sizeOf(*reply) > mostKept_) {
    log_(QStringLiteral("CHART LOST: %1 of %2 can be kept neither on the disk nor in memory: %3")
             .arg(name, oneLine(application), written.error()));
    return false;
  }
  size_ += sizeOf(*reply);
  kept_.push_back({name, *reply});
  log_(QStringLiteral("THE SPOOL CANNOT BE WRITTEN: %1 is kept in memory only, with %2 others: %3")
           .arg(name)
           .arg(kept_.size() - 1)
           .arg(written.error()));
  return false;
}

bool Inbox::tryAgain() {
  // Before the replies, which arrived later: a server that is killed now finds them in this order, too.
  save(requests_, log_);
  bool some = false;
  while (!kept_.empty()) {
    if (!write(kept_.front().name, kept_.front().reply)) break;
    size_ -= sizeOf(kept_.front().reply);
    kept_.pop_front();
    some = true;
  }
  return some;
}

}  // namespace bridge
