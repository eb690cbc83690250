// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QString>

/// What can go wrong between a program and its files. A program that this is linked into has the system calls
/// on files go through here (its own functions of these names come before the C library's), so that one of
/// them can be made to fail, or to be the last thing that the process does.
namespace faults {

enum class Fault {
  None,        ///< only counts
  Error,       ///< the call fails with an error number
  ShortWrite,  ///< a write takes half of what it was given, and the next one fails with ENOSPC; other calls
               ///< go through
  Kill,        ///< the process is killed before the call
  KillHalfway  ///< a write takes half of what it was given, then the process is killed; other calls: as Kill
};

/// While one lives, the calls on paths below a folder are counted, and the chosen one meets its fault. One at
/// a time.
class SystemCalls {
 public:
  /// Counts calls on everything below `folder`.
  explicit SystemCalls(const QString& folder);
  /// The `number`-th call, from 1, meets `fault`.
  SystemCalls(const QString& folder, int number, Fault fault, int error = 0);
  /// The disk has room for `bytes` more below the folder; what is written beyond is cut off, then fails with
  /// ENOSPC.
  static SystemCalls onDiskWithRoomFor(const QString& folder, qint64 bytes);
  ~SystemCalls();
  SystemCalls(const SystemCalls&) = delete;
  SystemCalls& operator=(const SystemCalls&) = delete;

  int count() const;
  /// The names of the counted calls, in order; "fsync" is of a file, "fsync folder" of a folder.
  QByteArrayList names() const;
  /// The name of the call that met the fault; empty when none has.
  QByteArray met() const;

 private:
  SystemCalls(const QString& folder, int number, Fault fault, int error, qint64 room);
};

}  // namespace faults
