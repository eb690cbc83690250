// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDir>
#include <QLockFile>
#include <QString>
#include <QVariantMap>

#include "base/Result.h"

namespace bridge {

/// The folder that replies are written to, as "0001.jpg" and "0001.json" and so on, numbered after those that
/// are there.
class ReplyFolder {
 public:
  explicit ReplyFolder(const QString& path);

  /// Creates the folder if it is missing, and keeps other receivers out of it during the life of this object.
  velmora::base::Result<> open();

  /// The number under which the next reply is written.
  QString nextNumber() const;

  /// Writes a reply under the next number: first the chart, if there is one, then the rest, so that both
  /// files are complete when the second appears.
  velmora::base::Result<> write(const QVariantMap& reply);

 private:
  QDir folder_;
  QLockFile lock_;
  int next_ = 1;
};

}  // namespace bridge
