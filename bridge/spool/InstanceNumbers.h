// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>

#include "base/Result.h"

namespace bridge {

/// The Series Instance UID of an application's charts in a study: always the same.
QString chartSeriesUID(const QString& studyInstanceUID, const QString& application);
/// The Series Number of an application's charts, 9000 to 9999: above those of images, and different for most
/// applications.
int chartSeriesNumber(const QString& application);

/// Gives out the instance numbers of each series, from 1, each once. Each series has a small file.
class InstanceNumbers {
 public:
  explicit InstanceNumbers(const QString& folder);

  /// A number that no image of the series has had or will have. Fails when it cannot be recorded.
  velmora::base::Result<int> next(const QString& seriesInstanceUID);

 private:
  QString folder_;
};

}  // namespace bridge
