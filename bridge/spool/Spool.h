// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <functional>
#include <mutex>
#include <optional>

#include "base/Result.h"
#include "bridge/spool/SpoolEntry.h"

namespace bridge {

/// One reply in the spool, as it is listed.
struct SpoolItem {
  QString name;  ///< what log lines call it; it holds nothing about the patient
  SpoolState state = SpoolState::Waiting;
  QDateTime arrival;         ///< invalid when the entry is damaged
  QDateTime changed;         ///< of the last change of state, or of the last failed try
  QString application;       ///< bundle identifier
  QString sopInstanceUID;    ///< empty when the entry is damaged
  QString studyInstanceUID;  ///< empty until it is decided
  QString identifier;        ///< the patient's, as the reply has it; empty when stored
  int tries = 0;             ///< exchanges with the PACS that failed and will be repeated
  QString reason;            ///< of the last failure, or for setting it aside
  bool isReadable = true;    ///< false when the disk does not give its files for now: it waits for that
};

/// The folder in which replies wait until the PACS has confirmed them.
///
///     lock                  held by the one server that works here
///     replies/NAME.reply    a reply, written once; gone when the PACS has confirmed it
///     replies/NAME.state    what has become of it; without one it waits, and nothing is decided
///     again/NAME            asks the server to take back what was set aside
///     damaged/              files that cannot be read, kept for whoever can
///     series/               the instance numbers that were given (InstanceNumbers)
///     requests              the requests that were heard (RequestMemory)
///
/// A file comes into its place whole, by one rename, and every change of state is one such rename: a server
/// that is killed at any moment leaves a spool that the next one understands. Nobody but the server that
/// holds the lock changes a state. The folders are for their owner only, whatever the umask.
class Spool {
 public:
  /// The time of day; for what is written down, never for waiting.
  using WallClock = std::function<QDateTime()>;

  // For everybody, also while a server runs.

  /// Everything in the spool, in the order of arrival. A spool that does not exist yet is empty.
  static velmora::base::Result<QList<SpoolItem>> list(const QString& folder);
  /// Asks the server to send again what was set aside; one that runs sees it at once.
  static velmora::base::Result<> requestRetry(const QString& folder, const QString& name);
  /// Whether a server works in this spool.
  static bool isServed(const QString& folder);

  // For the server.

  /// Records of stored replies older than this, or more than so many, are forgotten.
  static constexpr int MostRecords = 2000;
  static constexpr int DaysOfRecords = 90;

  explicit Spool(const QString& folder, WallClock wallClock = &QDateTime::currentDateTime);
  ~Spool();
  Spool(const Spool&) = delete;
  Spool& operator=(const Spool&) = delete;

  /// Makes what is missing, locks, clears away what a killed server left, and reads what is there.
  velmora::base::Result<> open();
  /// What open() found damaged, one log line each.
  QStringList warnings() const { return warnings_; }
  QString folder() const { return folder_; }
  /// Where requestRetry() leaves its requests, for whoever wants to watch the folder.
  QString retryRequestsFolder() const;

  /// A name for the next reply, later in the order than all others.
  QString newName();
  /// Writes a reply; when this succeeds, it is on the disk, and waits. After a failure the same name can be
  /// tried again. Any thread.
  velmora::base::Result<> add(const QString& name, const SpooledReply& reply);

  /// Reads an entry that could not be read before; it becomes what its files say. What was found damaged is
  /// returned, one log line each; fails when it still cannot be read.
  velmora::base::Result<QStringList> loadEntry(const QString& name);
  /// What waits, in the order of arrival; also what cannot be read for now. Any thread.
  QList<SpoolItem> waiting() const;
  /// The whole reply; nothing when its file is damaged, and a failure when it cannot be read for now.
  velmora::base::Result<std::optional<SpooledReply>> read(const QString& name) const;
  EntryState state(const QString& name) const;
  /// Writes what has become of a reply; when stored, its image is dropped.
  velmora::base::Result<> change(const QString& name, const EntryState& state);
  /// Moves an unreadable reply to the damaged ones; it counts as set aside. Returns the reason, as it is
  /// noted.
  QString setDamagedAside(const QString& name);
  /// Lets those wait again that requestRetry() was called for. Returns their names.
  QStringList takeRetryRequests();
  /// Whether there are requests that takeRetryRequests() could not carry out or has not seen.
  bool hasRetryRequests() const;
  /// Forgets old records of stored replies.
  void forgetOldRecords();

 private:
  struct Entry {
    SpoolItem item;
    EntryState state;
  };

  QString path(const QString& name, const char* ending) const;
  velmora::base::Result<> lock();
  void removeAbandonedFiles() const;
  void load();
  /// Lets new names come after this one.
  void advanceNumberPast(const QString& name);
  bool keepDamaged(const QString& name, const char* ending) const;

  QString folder_;
  WallClock wallClock_;
  int lock_ = -1;
  QStringList warnings_;
  mutable std::mutex mutex_;  // of what follows
  QMap<QString, Entry> entries_;
  qint64 next_ = 1;
};

}  // namespace bridge
