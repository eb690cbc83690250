// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>

#include "base/Result.h"

namespace bridge {

/// The Series Instance UID of the charts that an application sends for a study: always the same.
QString chartSeriesUID(const QString& studyInstanceUID, const QString& application);
/// Their Series Number, 9000 to 9999: beyond those of images, and different for most applications.
int chartSeriesNumber(const QString& application);

/// Gives out the instance numbers of each series, 1 and upwards, each once: a small file for each series.
class InstanceNumbers {
 public:
  explicit InstanceNumbers(const QString& folder);

  /// A number that no image of the series had before, and none will have again. Fails when it cannot be
  /// written down.
  velmora::base::Result<int> next(const QString& seriesInstanceUID);

 private:
  QString folder_;
};

}  // namespace bridge
