// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QStringList>

#include "base/Export.h"
#include "base/Result.h"

namespace velmora::base {
class FileManager;
}

class OrvKeptCopies;
class OrvWrittenFolders;

/// The file in which one document keeps its record.
///
/// It remembers what was last read from the file or written there. So a save tells the user's own earlier
/// version from a record that somebody else has put in its place, and keeps a copy of what it replaces.
class VELMORA_EXPORT OrvRecordFile {
 public:
  OrvRecordFile(velmora::base::FileManager& files, OrvKeptCopies& copies, OrvWrittenFolders& writtenFolders)
      : files_(files), copies_(copies), writtenFolders_(writtenFolders) {}

  /// What a save needs to know of the place it writes to.
  struct Place {
    QString path;
    bool isOwn = false;               ///< the document has its file there already
    bool replacementAllowed = false;  ///< the user has agreed to replace what stands there
  };
  /// What a save found in its place.
  struct Found {
    bool removedByAnother = false;  ///< the document's own file had gone
    QStringList copiesOfAnother;    ///< of what the user has neither seen nor agreed to replace
  };
  /// Keeps what stands there as an earlier version, then replaces it durably. Fails, and replaces nothing,
  /// when somebody else's record stands there and no copy of it can be made.
  velmora::base::Result<Found> write(const Place& place, const QByteArray& contents);

  /// The document's file holds these contents.
  void setKnownContents(const QByteArray& contents);
  /// The document has no file any more.
  void forgetContents() { known_.clear(); }

 private:
  struct Replacing;
  velmora::base::Result<> keepWhatStandsAt(const Place& place, Replacing& replacing);

  velmora::base::FileManager& files_;
  OrvKeptCopies& copies_;
  OrvWrittenFolders& writtenFolders_;
  /// Checksum of the document's file as it was last read or written; empty while there is none.
  QByteArray known_;
  /// Checksum of what was last to be written: a save may fail when that stands in its place already.
  QByteArray attempted_;
};
