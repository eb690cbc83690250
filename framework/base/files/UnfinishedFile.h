// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <sys/types.h>

#include <QByteArray>
#include <QString>

namespace velmora::base {

/// A file under a temporary name in the folder of its final one: readable by the user alone until it is put
/// in place, and removed again unless it is.
class UnfinishedFile {
 public:
  explicit UnfinishedFile(const QString& target);
  ~UnfinishedFile();
  UnfinishedFile(const UnfinishedFile&) = delete;
  UnfinishedFile& operator=(const UnfinishedFile&) = delete;

  bool isOpen() const { return descriptor_ >= 0; }
  /// What stopped the last step, in the system's words.
  QString error() const;

  /// Writes everything, to the disk itself.
  bool write(const QByteArray& contents);

  enum class Placing { Done, Taken, Failed };
  /// Takes the final name, and the rights, the group and the access list of the file that has it.
  Placing replace();
  /// Takes the final name if nothing has it, and the rights that a new file gets in this folder.
  Placing placeWhereNothingStands();

  /// Whether a file of this name in a folder is such a temporary one: ".<16 hexadecimal digits>", a dot and
  /// the extension of the final name, if that has one, ".unfinished". Gives the extension.
  static bool isNameOfOne(const QString& name, QString* extension);

 private:
  bool takeRightsOfTarget();
  bool takeAccessListOfTarget();
  bool setRights(mode_t rights);
  Placing rename();
  bool failed();

  QByteArray target_;
  QByteArray path_;
  int descriptor_ = -1;
  int error_ = 0;
  mode_t newRights_ = 0;
  bool inPlace_ = false;
};

}  // namespace velmora::base
