// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/spool/Spool.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <cerrno>

#include "base/files/FileManager.h"
#include "bridge/spool/SpoolFile.h"
#include "link/wire/WireFormat.h"

using namespace velmora;

namespace bridge {
namespace {

const char* const ReplyEnding = ".reply";
const char* const StateEnding = ".state";
/// The largest reply file: the largest message on the bus, and the head.
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

QString damageOf(const QString& name, const QString& ending) {
  return QStringLiteral("its file %1%2 is damaged").arg(name, ending);
}

struct ReadEntry {
  SpoolItem item;
  EntryState state;
  QString damaged;  ///< the ending of the file that is damaged
};

/// Reads the two files of an entry. Returns nothing when the entry is gone, and fails when one of the files
/// cannot be read for now.
base::Result<std::optional<ReadEntry>> readEntry(const QString& folder, const QString& name) {
  const auto read = [&](const char* ending, qint64 most) -> base::Result<std::optional<QByteArray>> {
    const QString file = name + QLatin1String(ending);
    auto contents = readBeginning(within(folder, "replies/") + file, most);
    if (contents) return contents;
    return base::Failure{QStringLiteral("cannot read its file %1: %2").arg(file, contents.error())};
  };
  ReadEntry entry;
  entry.item.name = name;
  // The state first: a server that stores meanwhile writes the state, then deletes the reply.
  const auto stateFile = read(StateEnding, LargestState);
  if (!stateFile) return stateFile.failure();
  if (*stateFile) {
    const auto state = decodeState(**stateFile);
    if (state) {
      entry.state = *state;
    } else {
      entry.damaged = QLatin1String(StateEnding);
    }
  }
  if (entry.state.state != SpoolState::Stored) {
    const auto replyFile = read(ReplyEnding, HeadSize);
    if (!replyFile) return replyFile.failure();
    const auto reply = *replyFile ? decodeReplyHead(**replyFile) : std::nullopt;
    if (reply) {
      entry.item.arrival = reply->arrival;
      entry.item.application = reply->application;
      entry.item.sopInstanceUID = reply->sopInstanceUID;
      entry.item.identifier = reply->identifier;
    } else if (*replyFile) {
      entry.damaged = QLatin1String(ReplyEnding);
    } else if (entry.state.state != SpoolState::Aside) {
      return std::optional<ReadEntry>();  // stored between the two looks
    }
  } else {
    entry.item.arrival = entry.state.arrival;
    entry.item.application = entry.state.application;
    entry.item.sopInstanceUID = entry.state.sopInstanceUID;
  }
  if (!entry.damaged.isEmpty()) {
    entry.state.state = SpoolState::Aside;
    entry.state.reason = damageOf(name, entry.damaged);
  }
  return std::optional(entry);
}

void show(const EntryState& state, SpoolItem& item) {
  item.state = state.state;
  item.changed = state.changed;
  item.tries = state.tries;
  item.reason = state.reason;
  item.studyInstanceUID = state.decision ? state.decision->study.studyInstanceUID : state.studyInstanceUID;
  if (state.state == SpoolState::Stored) item.identifier.clear();
}

SpoolItem unreadable(const QString& name, const QString& reason) {
  SpoolItem item;
  item.name = name;
  item.isReadable = false;
  item.reason = reason;
  return item;
}

}  // namespace

base::Result<QList<SpoolItem>> Spool::list(const QString& folder) {
  QList<SpoolItem> items;
  const QDir replies(within(folder, "replies"));
  if (!replies.exists()) {
    if (QFile::exists(folder) && !QDir(folder).isReadable()) {
      return base::Failure{QStringLiteral("cannot read %1").arg(folder)};
    }
    return items;
  }
  if (!replies.isReadable()) return base::Failure{QStringLiteral("cannot read %1").arg(replies.path())};
  for (const QString& name :
       namesIn(replies.path(), {QLatin1String(ReplyEnding), QLatin1String(StateEnding)})) {
    auto read = readEntry(folder, name);
    if (!read) {
      items.append(unreadable(name, read.error()));
    } else if (*read) {
      ReadEntry entry = **read;
      if (entry.state.state == SpoolState::Aside && QFile::exists(within(folder, "again/") + name)) {
        entry.state.state = SpoolState::Waiting;
      }
      show(entry.state, entry.item);
      items.append(entry.item);
    }
  }
  return items;
}

base::Result<> Spool::requestRetry(const QString& folder, const QString& name) {
  const base::Result<QList<SpoolItem>> items = list(folder);
  if (!items) return items.failure();
  for (const SpoolItem& item : *items) {
    if (item.name != name) continue;
    if (item.state == SpoolState::Waiting) {
      return base::Failure{QStringLiteral("%1 waits already").arg(name)};
    }
    if (item.state == SpoolState::Stored) return base::Failure{QStringLiteral("%1 is stored").arg(name)};
    if (item.sopInstanceUID.isEmpty()) {
      return base::Failure{QStringLiteral("%1 cannot be sent: %2").arg(name, item.reason)};
    }
    return writeSpoolFile(within(folder, "again/") + name, QByteArray());
  }
  return base::Failure{QStringLiteral("there is no %1").arg(name)};
}

bool Spool::isServed(const QString& folder) {
  const int file = ::open(QFile::encodeName(within(folder, "lock")).constData(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return false;
  // Shared, so that two callers at once do not take each other for the server.
  const bool served = ::flock(file, LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
  ::close(file);
  return served;
}

Spool::Spool(const QString& folder, WallClock wallClock)
    : folder_(folder), wallClock_(std::move(wallClock)) {}

Spool::~Spool() {
  if (lock_ >= 0) ::close(lock_);
}

QString Spool::retryRequestsFolder() const { return within(folder_, "again"); }

QString Spool::path(const QString& name, const char* ending) const {
  return within(folder_, "replies/") + name + QLatin1String(ending);
}

base::Result<> Spool::open() {
  for (const char* part : {"", "/replies", "/again", "/damaged", "/series"}) {
    const base::Result<> made = base::FileManager().createPrivateDirectory(folder_ + QLatin1String(part));
    if (!made) return made;
  }
  const base::Result<> locked = lock();
  if (!locked) return locked;
  removeAbandonedFiles();
  load();
  return {};
}

base::Result<> Spool::lock() {
  const QString file = within(folder_, "lock");
  lock_ = ::open(QFile::encodeName(file).constData(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600);
  if (lock_ < 0) {
    return base::Failure{QStringLiteral("cannot open %1: %2").arg(file, qt_error_string(errno))};
  }
  int result = 0;
  // A caller of isServed() holds the lock for an instant.
  for (int attempt = 0; attempt < 50; ++attempt) {
    result = ::flock(lock_, LOCK_EX | LOCK_NB);
    if (result == 0 || errno != EWOULDBLOCK) break;
    ::usleep(20'000);
  }
  if (result == 0) return {};
  return base::Failure{errno == EWOULDBLOCK
                           ? QStringLiteral("another server works in %1").arg(folder_)
                           : QStringLiteral("cannot lock %1: %2").arg(file, qt_error_string(errno))};
}

/// The lock keeps other machines out, so a file that nobody on this one is writing is abandoned.
void Spool::removeAbandonedFiles() const {
  using base::FileManager;
  FileManager().removeAbandonedFiles(folder_, FileManager::AnyExtension, FileManager::Depth::Everything,
                                     std::chrono::minutes(0));
}

void Spool::load() {
  const QString replies = within(folder_, "replies");
  for (const QString& name : namesIn(replies, {QLatin1String(ReplyEnding), QLatin1String(StateEnding)})) {
    advanceNumberPast(name);
    const base::Result<QStringList> loaded = loadEntry(name);
    warnings_ += loaded ? *loaded : QStringList(QStringLiteral("%1 waits: %2").arg(name, loaded.error()));
  }
  for (const QString& name :
       namesIn(within(folder_, "damaged"), {QLatin1String(ReplyEnding), QLatin1String(StateEnding)})) {
    advanceNumberPast(name);
  }
}

base::Result<QStringList> Spool::loadEntry(const QString& name) {
  const auto found = readEntry(folder_, name);
  if (!found) {
    const std::lock_guard guard(mutex_);
    entries_[name] = {unreadable(name, found.error()), {}};
    return found.failure();
  }
  if (!*found) {
    const std::lock_guard guard(mutex_);
    entries_.remove(name);
    return QStringList();
  }
  ReadEntry read = **found;
  QStringList warnings;
  if (!read.damaged.isEmpty()) {
    warnings.append(QStringLiteral("%1 is set aside: %2").arg(name, read.state.reason));
    const bool kept = keepDamaged(name, ReplyEnding);
    keepDamaged(name, StateEnding);
    read.state.changed = wallClock_();
    const base::Result<> written = writeSpoolFile(path(name, StateEnding), encodeState(read.state));
    if (!written) warnings.append(written.error());
    if (written && kept && read.damaged == QLatin1String(ReplyEnding)) {
      QFile::remove(path(name, ReplyEnding));
    }
  }
  // A server was killed between the record and the end of the image.
  if (read.state.state == SpoolState::Stored) QFile::remove(path(name, ReplyEnding));
  show(read.state, read.item);
  const std::lock_guard guard(mutex_);
  entries_.insert(name, {read.item, read.state});
  return warnings;
}

void Spool::advanceNumberPast(const QString& name) {
  // No spool gets that far. A file with such a name is not ours, and names after it would not have the form.
  constexpr qint64 Unreachable = 99'000'000;
  const qint64 number = name.left(8).toLongLong();
  if (number < Unreachable) next_ = qMax(next_, number + 1);
}

bool Spool::keepDamaged(const QString& name, const char* ending) const {
  const QString kept = within(folder_, "damaged/") + name + QLatin1String(ending);
  // A second link, so that there is no moment without the file.
  return ::link(QFile::encodeName(path(name, ending)).constData(), QFile::encodeName(kept).constData()) ==
             0 ||
         errno == EEXIST;
}

QString Spool::newName() {
  const std::lock_guard guard(mutex_);
  return QStringLiteral("%1-%2")
      .arg(next_++, 8, 10, QLatin1Char('0'))
      .arg(wallClock_().date().toString(QStringLiteral("yyyyMMdd")));
}

base::Result<> Spool::add(const QString& name, const SpooledReply& reply) {
  const base::Result<> written = writeSpoolFile(path(name, ReplyEnding), encodeReply(reply));
  if (!written) return written;
  Entry entry;
  entry.item = {name, SpoolState::Waiting, reply.arrival,
                {},   reply.application,   reply.sopInstanceUID,
                {},   reply.identifier,    0,
                {}};
  const std::lock_guard guard(mutex_);
  entries_.insert(name, entry);
  return {};
}

QList<SpoolItem> Spool::waiting() const {
  const std::lock_guard guard(mutex_);
  QList<SpoolItem> items;
  for (const Entry& entry : entries_) {
    if (entry.state.state == SpoolState::Waiting) items.append(entry.item);
  }
  return items;
}

base::Result<std::optional<SpooledReply>> Spool::read(const QString& name) const {
  const base::Result<std::optional<QByteArray>> file =
      readBeginning(path(name, ReplyEnding), LargestReply + 1);
  if (!file) return file.failure();
  if (!*file) return base::Failure{qt_error_string(ENOENT)};
  return decodeReply(**file);
}

EntryState Spool::state(const QString& name) const {
  const std::lock_guard guard(mutex_);
  return entries_.value(name).state;
}

base::Result<> Spool::change(const QString& name, const EntryState& state) {
  const base::Result<> written = writeSpoolFile(path(name, StateEnding), encodeState(state));
  if (!written) return written;
  if (state.state == SpoolState::Stored) QFile::remove(path(name, ReplyEnding));
  const std::lock_guard guard(mutex_);
  Entry& entry = entries_[name];
  entry.state = state;
  show(state, entry.item);
  return {};
}

QString Spool::setDamagedAside(const QString& name) {
  EntryState aside;
  aside.state = SpoolState::Aside;
  aside.changed = wallClock_();
  aside.reason = damageOf(name, QLatin1String(ReplyEnding));
  const bool kept = keepDamaged(name, ReplyEnding);
  if (writeSpoolFile(path(name, StateEnding), encodeState(aside)).ok() && kept) {
    QFile::remove(path(name, ReplyEnding));
  }
  const std::lock_guard guard(mutex_);
  Entry& entry = entries_[name];
  entry.state = aside;
  entry.item.sopInstanceUID.clear();
  show(aside, entry.item);
  return aside.reason;
}

QStringList Spool::takeRetryRequests() {
  QStringList taken;
  for (const QString& name : namesIn(retryRequestsFolder(), {QString()})) {
    Entry entry;
    {
      const std::lock_guard guard(mutex_);
      entry = entries_.value(name);
    }
    if (!entry.item.isReadable) continue;  // the request stays until its entry can be read
    EntryState again = entry.state;
    if (!entry.item.sopInstanceUID.isEmpty() && again.state == SpoolState::Aside) {
      again.state = SpoolState::Waiting;
      again.changed = wallClock_();
      again.tries = 0;
      if (!change(name, again).ok()) continue;  // the request stays
      taken.append(name);
    }
    QFile::remove(retryRequestsFolder() + QLatin1Char('/') + name);
  }
  return taken;
}

bool Spool::hasRetryRequests() const { return !namesIn(retryRequestsFolder(), {QString()}).isEmpty(); }

void Spool::forgetOldRecords() {
  const QDateTime now = wallClock_();
  QStringList old;
  {
    const std::lock_guard guard(mutex_);
    int records = 0;
    for (auto entry = entries_.end(); entry != entries_.begin();) {
      --entry;
      if (entry->state.state != SpoolState::Stored) continue;
      // The newest is always kept: the next name follows it.
      const bool tooOld = entry->state.changed.daysTo(now) > DaysOfRecords;
      if (++records > MostRecords || (tooOld && records > 1)) old.append(entry.key());
    }
    for (const QString& name : old) entries_.remove(name);
  }
  for (const QString& name : old) QFile::remove(path(name, StateEnding));
}

}  // namespace bridge
