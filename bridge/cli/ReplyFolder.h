// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDir>
#include <QLockFile>
#include <QString>
#include <QVariantMap>

#include "base/Result.h"

namespace bridge {

/// The folder into which replies are written, "0001.jpg" beside "0001.json" and so on, counting on from what
/// is there.
class ReplyFolder {
 public:
  explicit ReplyFolder(const QString& path);

  /// Makes the folder if it is missing and keeps other receivers out of it for as long as this object lives.
  velmora::base::Result<> open();

  /// The number under which the next reply is written.
  QString nextNumber() const;

  /// Writes a reply under the next number: first the chart, if it has one, then the rest, so that whoever
  /// sees the second file finds both whole.
  velmora::base::Result<> write(const QVariantMap& reply);

 private:
  QDir folder_;
  QLockFile lock_;
  int next_ = 1;
};

}  // namespace bridge
