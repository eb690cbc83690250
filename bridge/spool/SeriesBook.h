// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>

namespace bridge {

/// The Series Instance UID of the charts that an application sends for a study: always the same.
QString chartSeriesUID(const QString& studyInstanceUID, const QString& application);
/// Their Series Number, 9000 to 9999: beyond those of images, and different for most applications.
int chartSeriesNumber(const QString& application);

/// Gives out the instance numbers of each series, 1 and upwards, each once: a small file for each series.
class SeriesBook {
 public:
  explicit SeriesBook(const QString& folder);

  /// A number that no image of the series had before, and none will have again. 0 when it cannot be written
  /// down, with the reason.
  int next(const QString& seriesInstanceUID, QString& reason);

 private:
  QString folder_;
};

}  // namespace bridge
