// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <sys/types.h>

#include <QByteArray>
#include <QString>
#include <optional>

#include "base/Result.h"

namespace velmora::base {

/// Writes all of it to an open file, not yet to the disk itself.
Result<> writeAll(int descriptor, const QByteArray& contents);

/// A file under a temporary name in the folder of its target. Only the user may read it until it is put in
/// place; if it never is, the destructor removes it.
class TemporaryFile {
 public:
  explicit TemporaryFile(const QString& target);
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  /// Writes everything, to the disk itself.
  Result<> write(const QByteArray& contents);

  /// Replaces the target and takes over its rights, group and access list.
  Result<> replace();
  /// Replaces the target and stays readable and writable by the user alone.
  Result<> rename();
  /// Takes the target's place if nothing stands there, with the rights that a new file gets in this folder.
  /// False if something stands there by now.
  Result<bool> placeWhereNothingStands();

  /// Takes the target's extension out of the name of a temporary file, ".<16 hexadecimal
  /// digits>.<extension>.unfinished"; it is empty if the target has none. Nothing for any other name.
  static std::optional<QString> finalExtension(const QString& name);

 private:
  Result<> takeRightsOfTarget();
  bool takeAccessListOfTarget();
  Result<> setRights(mode_t rights);

  QByteArray target_;
  QByteArray path_;
  int descriptor_ = -1;
  int openError_ = 0;
  mode_t newRights_ = 0;
  bool inPlace_ = false;
};

}  // namespace velmora::base
