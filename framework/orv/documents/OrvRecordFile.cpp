// SPDX-License-Identifier: LGPL-3.0-or-later
#include "orv/documents/OrvRecordFile.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <utility>

#include "base/files/FileManager.h"
#include "base/log/Log.h"
#include "orv/documents/OrvKeptCopies.h"
#include "orv/documents/OrvWrittenFolders.h"
#include "platform/text/Localization.h"

using namespace velmora;

using velmora::base::Failure;
using velmora::base::Result;

namespace {

QByteArray fingerprint(const QByteArray& contents) {
  return QCryptographicHash::hash(contents, QCryptographicHash::Sha256);
}

}  // namespace

struct OrvRecordFile::Replacing {
  bool looked = false;
  QByteArray seen;  ///< checksum of what stood there at the last look; empty where nothing did
  QStringList copiesOfAnother;
};

void OrvRecordFile::setKnownContents(const QByteArray& contents) { known_ = fingerprint(contents); }

Result<OrvRecordFile::Found> OrvRecordFile::write(const Place& place, const QByteArray& contents) {
  const bool removedByAnother = place.isOwn && !known_.isEmpty() && !files_.fileExistsAtPath(place.path);
  Replacing replacing;
  Result<> result = keepWhatStandsAt(place, replacing);
  if (result.ok()) {
    attempted_ = fingerprint(contents);
    // Somebody else may save while the new file is being written, which can take long on a network.
    result = writtenFolders_.write(place.path, contents, [&] { return keepWhatStandsAt(place, replacing); });
  }
  if (!result.ok()) return result.failure();
  return Found{removedByAnother, replacing.copiesOfAnother};
}

Result<> OrvRecordFile::keepWhatStandsAt(const Place& place, Replacing& replacing) {
  const bool firstLook = !std::exchange(replacing.looked, true);
  // Nothing to keep of a folder; the write itself says why it cannot be.
  if (!files_.fileExistsAtPath(place.path) || files_.isDirectory(place.path)) return {};
  const Result<QByteArray> standing = files_.readFile(place.path);
  const QByteArray found = standing.ok() ? fingerprint(*standing) : QByteArray("unreadable");
  if (std::exchange(replacing.seen, found) == found) return {};

  const bool own = standing.ok() && ((place.isOwn && found == known_) || found == attempted_);
  const auto origin = own ? OrvKeptCopies::Origin::Own : OrvKeptCopies::Origin::Another;
  const Result<QString> copy =
      standing.ok() ? copies_.keepEarlierVersion(place.path, *standing, origin) : standing.failure();
  if (own || (firstLook && place.replacementAllowed)) {
    // The user's own earlier version, or one that the user chose to replace: worth a copy, but not worth a
    // failed save.
    if (!copy.ok()) {
      // Never the name: that is the patient's identifier, and logs are read by others.
      base::logLine(
          QStringLiteral("No earlier version was kept of a record in %1").arg(QFileInfo(place.path).path()));
    }
    return {};
  }
  if (!copy.ok()) {
    return Failure{platform::localizedString(
        "OrvDocument", "Another record stands there under this name, and no copy of it could be kept.")};
  }
  replacing.copiesOfAnother.append(*copy);
  return {};
}
