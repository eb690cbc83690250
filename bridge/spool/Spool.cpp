// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/spool/Spool.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <cerrno>

#include "bridge/spool/DurableFile.h"
#include "link/wire/WireForm.h"

using namespace velmora;

namespace bridge {
namespace {

const char* const ReplyEnding = ".reply";
const char* const StateEnding = ".state";
/// The largest reply file: what the bus lets through, and its head.
constexpr qint64 LargestReply = link::MaximumSize + HeadSize;

QString within(const QString& folder, const char* part) {
  return folder + QLatin1Char('/') + QLatin1String(part);
}

/// The names of the entries that have files here, in their order.
QStringList namesIn(const QString& folder, const QStringList& endings) {
  static const QRegularExpression form(QStringLiteral("\\A([0-9]{8}-[0-9]{8})(\\.[a-z]+)?\\z"));
  QStringList names;
  for (const QString& file : QDir(folder).entryList(QDir::Files | QDir::System, QDir::Name)) {
    const QRegularExpressionMatch match = form.match(file);
    if (!match.hasMatch() || !endings.contains(match.captured(2))) continue;
    // The two files of an entry follow each other.
    if (names.isEmpty() || names.last() != match.captured(1)) names.append(match.captured(1));
  }
  return names;
}

struct ReadEntry {
  SpoolItem item;
  EntryState state;
  QString damaged;  ///< the ending of the file that cannot be read
};

/// What two files say of one entry. Nothing when there is no entry any more.
std::optional<ReadEntry> readEntry(const QString& folder, const QString& name) {
  const QString base = within(folder, "replies/") + name;
  ReadEntry entry;
  entry.item.name = name;
  QString reason;
  // The state first: whoever stores meanwhile writes the state, then drops the reply.
  const auto stateFile = readBeginning(base + QLatin1String(StateEnding), LargestState, reason);
  if (stateFile) {
    const auto state = decodeState(*stateFile);
    if (state) {
      entry.state = *state;
    } else {
      entry.damaged = QLatin1String(StateEnding);
    }
  }
  if (entry.state.state != SpoolState::Stored) {
    const auto replyFile = readBeginning(base + QLatin1String(ReplyEnding), HeadSize, reason);
    const auto reply = replyFile ? decodeReplyHead(*replyFile) : std::nullopt;
    if (reply) {
      entry.item.arrival = reply->arrival;
      entry.item.application = reply->application;
      entry.item.sopInstanceUID = reply->sopInstanceUID;
      entry.item.identifier = reply->identifier;
    } else if (replyFile) {
      entry.damaged = QLatin1String(ReplyEnding);
    } else if (!QFile::exists(base + QLatin1String(ReplyEnding)) && entry.state.state != SpoolState::Aside) {
      return std::nullopt;  // stored between the two looks
    }
  } else {
    entry.item.arrival = entry.state.arrival;
    entry.item.application = entry.state.application;
    entry.item.sopInstanceUID = entry.state.sopInstanceUID;
  }
  if (!entry.damaged.isEmpty()) {
    entry.state.state = SpoolState::Aside;
    entry.state.reason = QStringLiteral("its file %1%2 is damaged").arg(name, entry.damaged);
  }
  return entry;
}

void show(const EntryState& state, SpoolItem& item) {
  item.state = state.state;
  item.changed = state.changed;
  item.tries = state.tries;
  item.reason = state.reason;
  item.studyInstanceUID = state.decision ? state.decision->study.studyInstanceUID : state.studyInstanceUID;
  if (state.state == SpoolState::Stored) item.identifier.clear();
}

}  // namespace

SpoolListing Spool::list(const QString& folder) {
  SpoolListing listing;
  const QDir replies(within(folder, "replies"));
  if (!replies.exists()) {
    if (QFile::exists(folder) && !QDir(folder).isReadable()) {
      listing.error = QStringLiteral("cannot read %1").arg(folder);
    }
    return listing;
  }
  if (!replies.isReadable()) {
    listing.error = QStringLiteral("cannot read %1").arg(replies.path());
    return listing;
  }
  for (const QString& name :
       namesIn(replies.path(), {QLatin1String(ReplyEnding), QLatin1String(StateEnding)})) {
    auto entry = readEntry(folder, name);
    if (!entry) continue;
    if (entry->state.state == SpoolState::Aside && QFile::exists(within(folder, "again/") + name)) {
      entry->state.state = SpoolState::Waiting;
    }
    show(entry->state, entry->item);
    listing.items.append(entry->item);
  }
  return listing;
}

QString Spool::putBack(const QString& folder, const QString& name) {
  const SpoolListing listing = list(folder);
  if (!listing.ok()) return listing.error;
  for (const SpoolItem& item : listing.items) {
    if (item.name != name) continue;
    if (item.state == SpoolState::Waiting) return QStringLiteral("%1 waits already").arg(name);
    if (item.state == SpoolState::Stored) return QStringLiteral("%1 is stored").arg(name);
    if (item.sopInstanceUID.isEmpty()) return QStringLiteral("%1 cannot be sent: %2").arg(name, item.reason);
    return writeDurably(within(folder, "again/") + name, QByteArray());
  }
  return QStringLiteral("there is no %1").arg(name);
}

bool Spool::isServed(const QString& folder) {
  const int file = ::open(QFile::encodeName(within(folder, "lock")).constData(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return false;
  // Shared: two who ask at once do not take each other for the server.
  const bool served = ::flock(file, LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
  ::close(file);
  return served;
}

Spool::Spool(const QString& folder) : folder_(folder) {}

Spool::~Spool() {
  if (lock_ >= 0) ::close(lock_);
}

QString Spool::wishesFolder() const { return within(folder_, "again"); }

QString Spool::path(const QString& name, const char* ending) const {
  return within(folder_, "replies/") + name + QLatin1String(ending);
}

QString Spool::open() {
  for (const char* part : {"", "/replies", "/again", "/damaged", "/series"}) {
    const QString error = makePrivateFolder(folder_ + QLatin1String(part));
    if (!error.isNull()) return error;
  }
  const QString error = lock();
  if (!error.isNull()) return error;
  clearStrays();
  load();
  return QString();
}

QString Spool::lock() {
  const QString file = within(folder_, "lock");
  lock_ = ::open(QFile::encodeName(file).constData(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600);
  if (lock_ < 0) return QStringLiteral("cannot open %1: %2").arg(file, qt_error_string(errno));
  int result = 0;
  // Whoever asks whether the spool is served holds the lock for an instant.
  for (int attempt = 0; attempt < 50; ++attempt) {
    result = ::flock(lock_, LOCK_EX | LOCK_NB);
    if (result == 0 || errno != EWOULDBLOCK) break;
    ::usleep(20'000);
  }
  if (result == 0) return QString();
  return errno == EWOULDBLOCK ? QStringLiteral("another server works in %1").arg(folder_)
                              : QStringLiteral("cannot lock %1: %2").arg(file, qt_error_string(errno));
}

void Spool::clearStrays() {
  for (const char* part : {".", "replies", "again", "series"}) {
    QDir inside(within(folder_, part));
    for (const QString& file : inside.entryList(QDir::Files | QDir::Hidden)) {
      if (isStray(file)) inside.remove(file);
    }
  }
}

void Spool::load() {
  const QString replies = within(folder_, "replies");
  for (const QString& name : namesIn(replies, {QLatin1String(ReplyEnding), QLatin1String(StateEnding)})) {
    countOn(name);
    auto read = readEntry(folder_, name);
    if (!read) continue;
    if (!read->damaged.isEmpty()) {
      remarks_.append(QStringLiteral("%1 is set aside: %2").arg(name, read->state.reason));
      const bool kept = keepDamaged(name, ReplyEnding);
      keepDamaged(name, StateEnding);
      read->state.changed = QDateTime::currentDateTime();
      const QString error = writeDurably(path(name, StateEnding), encodeState(read->state));
      if (!error.isNull()) remarks_.append(error);
      if (error.isNull() && kept && read->damaged == QLatin1String(ReplyEnding)) {
        QFile::remove(path(name, ReplyEnding));
      }
    }
    // A server was killed between the record and the end of the image.
    if (read->state.state == SpoolState::Stored) QFile::remove(path(name, ReplyEnding));
    show(read->state, read->item);
    entries_.insert(name, {read->item, read->state});
  }
  for (const QString& name :
       namesIn(within(folder_, "damaged"), {QLatin1String(ReplyEnding), QLatin1String(StateEnding)})) {
    countOn(name);
  }
}

/// New names come after this one.
void Spool::countOn(const QString& name) {
  // No spool comes that far. A file that is named so is not ours, and after it new names would lose their
  // form.
  constexpr qint64 Unreachable = 99'000'000;
  const qint64 number = name.left(8).toLongLong();
  if (number < Unreachable) next_ = qMax(next_, number + 1);
}

bool Spool::keepDamaged(const QString& name, const char* ending) const {
  const QString kept = within(folder_, "damaged/") + name + QLatin1String(ending);
  // A second name for it, so that there is no moment without one.
  return ::link(QFile::encodeName(path(name, ending)).constData(), QFile::encodeName(kept).constData()) ==
             0 ||
         errno == EEXIST;
}

QString Spool::newName() {
  const std::lock_guard guard(mutex_);
  return QStringLiteral("%1-%2")
      .arg(next_++, 8, 10, QLatin1Char('0'))
      .arg(QDate::currentDate().toString(QStringLiteral("yyyyMMdd")));
}

QString Spool::add(const QString& name, const SpooledReply& reply) {
  const QString error = writeDurably(path(name, ReplyEnding), encodeReply(reply));
  if (!error.isNull()) return error;
  Entry entry;
  entry.item = {name, SpoolState::Waiting, reply.arrival,
                {},   reply.application,   reply.sopInstanceUID,
                {},   reply.identifier,    0,
                {}};
  const std::lock_guard guard(mutex_);
  entries_.insert(name, entry);
  return QString();
}

QList<SpoolItem> Spool::waiting() const {
  const std::lock_guard guard(mutex_);
  QList<SpoolItem> items;
  for (const Entry& entry : entries_) {
    if (entry.state.state == SpoolState::Waiting) items.append(entry.item);
  }
  return items;
}

std::optional<SpooledReply> Spool::read(const QString& name, QString& reason, bool& damaged) const {
  const auto file = readBeginning(path(name, ReplyEnding), LargestReply + 1, reason);
  damaged = false;
  if (!file) return std::nullopt;
  auto reply = decodeReply(*file);
  if (!reply) {
    damaged = true;
    reason = QStringLiteral("its file %1%2 is damaged").arg(name, QLatin1String(ReplyEnding));
  }
  return reply;
}

EntryState Spool::state(const QString& name) const {
  const std::lock_guard guard(mutex_);
  return entries_.value(name).state;
}

QString Spool::change(const QString& name, const EntryState& state) {
  const QString error = writeDurably(path(name, StateEnding), encodeState(state));
  if (!error.isNull()) return error;
  if (state.state == SpoolState::Stored) QFile::remove(path(name, ReplyEnding));
  const std::lock_guard guard(mutex_);
  Entry& entry = entries_[name];
  entry.state = state;
  show(state, entry.item);
  return QString();
}

void Spool::setDamagedAside(const QString& name, const QString& reason) {
  EntryState aside;
  aside.state = SpoolState::Aside;
  aside.changed = QDateTime::currentDateTime();
  aside.reason = reason;
  const bool kept = keepDamaged(name, ReplyEnding);
  if (writeDurably(path(name, StateEnding), encodeState(aside)).isNull() && kept) {
    QFile::remove(path(name, ReplyEnding));
  }
  const std::lock_guard guard(mutex_);
  Entry& entry = entries_[name];
  entry.state = aside;
  entry.item.sopInstanceUID.clear();
  show(aside, entry.item);
}

QStringList Spool::takeBack(const QDateTime& now) {
  QStringList taken;
  for (const QString& name : namesIn(wishesFolder(), {QString()})) {
    EntryState again = state(name);
    bool known = false;
    {
      const std::lock_guard guard(mutex_);
      known = entries_.contains(name) && !entries_.value(name).item.sopInstanceUID.isEmpty();
    }
    if (known && again.state == SpoolState::Aside) {
      again.state = SpoolState::Waiting;
      again.changed = now;
      again.tries = 0;
      if (!change(name, again).isNull()) continue;  // the wish stays
      taken.append(name);
    }
    QFile::remove(wishesFolder() + QLatin1Char('/') + name);
  }
  return taken;
}

bool Spool::hasWishes() const { return !namesIn(wishesFolder(), {QString()}).isEmpty(); }

void Spool::forgetOldRecords(const QDateTime& now) {
  QStringList old;
  {
    const std::lock_guard guard(mutex_);
    int records = 0;
    for (auto entry = entries_.end(); entry != entries_.begin();) {
      --entry;
      if (entry->state.state != SpoolState::Stored) continue;
      // The newest is kept in any case: the next name counts on from it.
      const bool tooOld = entry->state.changed.daysTo(now) > DaysOfRecords;
      if (++records > MostRecords || (tooOld && records > 1)) old.append(entry.key());
    }
    for (const QString& name : old) entries_.remove(name);
  }
  for (const QString& name : old) QFile::remove(path(name, StateEnding));
}

}  // namespace bridge
