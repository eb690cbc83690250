// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/spool/InstanceNumbers.h"

#include <limits>

#include "bridge/dicom/Uid.h"
#include "bridge/spool/SpoolFile.h"

using namespace velmora;

namespace bridge {
namespace {
const QByteArray Kind("velmora-link series 1");
}

QString chartSeriesUID(const QString& studyInstanceUID, const QString& application) {
  // No UID has a space, so no two pairs give the same text.
  return uidOf(studyInstanceUID + QLatin1Char(' ') + application);
}

int chartSeriesNumber(const QString& application) {
  const QByteArray text = application.toUtf8();
  return 9000 + qChecksum(QByteArrayView(text)) % 1000;
}

InstanceNumbers::InstanceNumbers(const QString& folder) : folder_(folder) {}

base::Result<int> InstanceNumbers::next(const QString& seriesInstanceUID) {
  const QString path = folder_ + QLatin1Char('/') + seriesInstanceUID;
  int last = 0;
  const base::Result<std::optional<QByteArray>> file = readBeginning(path, 1024);
  if (!file) return file.failure();
  if (*file) {
    const auto contents = unsealed(Kind, **file);
    last = contents ? contents->toInt() : 0;
    if (last < 1 || last == std::numeric_limits<int>::max()) {
      return base::Failure{
          QStringLiteral("%1 is damaged: write anew which number was the last, or remove it").arg(path)};
    }
  }
  const base::Result<> written = writeSpoolFile(path, sealed(Kind, QByteArray::number(last + 1)));
  if (!written) return written.failure();
  return last + 1;
}

}  // namespace bridge
