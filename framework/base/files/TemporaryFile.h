// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <sys/types.h>

#include <QByteArray>
#include <QString>
#include <optional>

#include "base/Result.h"

namespace velmora::base {

/// A file under a temporary name in the folder of its final one: readable by the user alone until it is put
/// in place, and removed again unless it is.
class TemporaryFile {
 public:
  explicit TemporaryFile(const QString& target);
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  /// Writes everything, to the disk itself.
  Result<> write(const QByteArray& contents);

  /// Takes the final name, and the rights, the group and the access list of the file that has it.
  Result<> replace();
  /// Takes the final name with the rights that it has.
  Result<> rename();
  /// Takes the final name if nothing has it, and the rights that a new file gets in this folder. False when
  /// something has it by now.
  Result<bool> placeWhereNothingStands();

  /// The extension of the final name for which a file of this name is a temporary one, empty when the final
  /// name has none: ".<16 hexadecimal digits>", a dot and the extension, ".unfinished". Nothing for any other
  /// name.
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
