// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/spool/SeriesBook.h"

#include <QFile>
#include <limits>

#include "bridge/dicom/Capture.h"
#include "bridge/spool/DurableFile.h"

namespace bridge {
namespace {
const QByteArray Kind("velmora-link series 1");
}

QString chartSeriesUID(const QString& studyInstanceUID, const QString& application) {
  // No UID holds a space, so no two pairs make the same text.
  return uidOf(studyInstanceUID + QLatin1Char(' ') + application);
}

int chartSeriesNumber(const QString& application) {
  const QByteArray text = application.toUtf8();
  return 9000 + qChecksum(QByteArrayView(text)) % 1000;
}

SeriesBook::SeriesBook(const QString& folder) : folder_(folder) {}

int SeriesBook::next(const QString& seriesInstanceUID, QString& reason) {
  const QString path = folder_ + QLatin1Char('/') + seriesInstanceUID;
  int last = 0;
  if (QFile::exists(path)) {
    const auto file = readBeginning(path, 1024, reason);
    if (!file) return 0;
    const auto contents = unsealed(Kind, *file);
    last = contents ? contents->toInt() : 0;
    if (last < 1 || last == std::numeric_limits<int>::max()) {
      reason = QStringLiteral("%1 is damaged: write anew which number was the last, or remove it").arg(path);
      return 0;
    }
  }
  const QString error = writeDurably(path, sealed(Kind, QByteArray::number(last + 1)));
  if (error.isNull()) return last + 1;
  reason = error;
  return 0;
}

}  // namespace bridge
