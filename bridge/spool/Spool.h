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
  QString name;  ///< as in log lines; says nothing about the patient
  SpoolState state = SpoolState::Waiting;
  QDateTime arrival;         ///< invalid when the entry is damaged
  QDateTime changed;         ///< time of the last change of state or of the last failed attempt
  QString application;       ///< bundle identifier
  QString sopInstanceUID;    ///< empty when the entry is damaged
  QString studyInstanceUID;  ///< empty until the study is decided
  QString identifier;        ///< the patient's, as the reply has it; empty once stored
  int tries = 0;             ///< failed exchanges with the PACS that will be repeated
  QString reason;            ///< of the last failure, or why it was set aside
  bool isReadable = true;    ///< false while its files cannot be read: it waits until they can
};

/// The folder in which replies wait until the PACS has confirmed them.
///
///     lock                  held by the one server that works here
///     replies/NAME.reply    a reply, written once; gone when the PACS has confirmed it
///     replies/NAME.state    its state; without one it waits, and nothing is decided
///     again/NAME            asks the server to retry what was set aside
///     damaged/              damaged files, kept for a person to look at
///     series/               the instance numbers that have been given out (InstanceNumbers)
///     requests              the latest requests (RequestHistory)
///
/// Files are put in place whole, by one rename, and every change of state is one such rename: a server that
/// is killed at any moment leaves a spool that the next one understands. Only the server that holds the lock
/// changes a state. The folders are accessible to their owner only, whatever the umask.
class Spool {
 public:
  /// The time of day, for records; never used for waiting.
  using WallClock = std::function<QDateTime()>;

  // For everyone, even while a server runs.

  /// Everything in the spool in the order of arrival. A spool that does not exist yet is empty.
  static velmora::base::Result<QList<SpoolItem>> list(const QString& folder);
  /// Asks the server to send again what was set aside; one that runs sees it at once.
  static velmora::base::Result<> requestRetry(const QString& folder, const QString& name);
  /// Whether a server is running on this spool.
  static bool isServed(const QString& folder);

  // For the server.

  /// How many records of stored replies are kept, and for how long.
  static constexpr int MostRecords = 2000;
  static constexpr int DaysOfRecords = 90;

  explicit Spool(
      const QString& folder, WallClock wallClock = [] { return QDateTime::currentDateTime(); });
  ~Spool();
  Spool(const Spool&) = delete;
  Spool& operator=(const Spool&) = delete;

  /// Creates the missing folders, takes the lock, removes what a killed server left unfinished, and reads the
  /// entries.
  velmora::base::Result<> open();
  /// What open() found damaged or could not read, one log line each.
  QStringList warnings() const { return warnings_; }
  QString folder() const { return folder_; }
  /// Where requestRetry() leaves its requests, for whoever wants to watch the folder.
  QString retryRequestsFolder() const;

  /// A name for the next reply, later in the order than all others.
  QString newName();
  /// Writes a reply. After a success it is on the disk and waits; after a failure the same name can be tried
  /// again. Any thread.
  velmora::base::Result<> add(const QString& name, const SpooledReply& reply);

  /// Reads an entry that could not be read before. Returns what it found damaged, one log line each; fails
  /// while the entry still cannot be read.
  velmora::base::Result<QStringList> loadEntry(const QString& name);
  /// The entries that wait, in the order of arrival, among them those that cannot be read for now. Any
  /// thread.
  QList<SpoolItem> waiting() const;
  /// The whole reply. Returns nothing when its file is damaged, and fails when the file cannot be read for
  /// now.
  velmora::base::Result<std::optional<SpooledReply>> read(const QString& name) const;
  EntryState state(const QString& name) const;
  /// Writes the new state of a reply; once it is stored, its image is deleted.
  velmora::base::Result<> change(const QString& name, const EntryState& state);
  /// Moves a damaged reply to the damaged files and sets it aside. Returns the reason as it is recorded.
  QString setDamagedAside(const QString& name);
  /// Lets those wait again that requestRetry() was called for. Returns their names.
  QStringList takeRetryRequests();
  /// Whether there are requests that takeRetryRequests() could not carry out or has not seen.
  bool hasRetryRequests() const;
  /// Deletes old records of stored replies.
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
