// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

#include "base/Export.h"
#include "platform/documents/Document.h"

namespace velmora::platform {
class Alerts;
class Panels;
}  // namespace velmora::platform

class OrvKeptCopies;
class OrvWrittenFolders;

/// Finds another place for a record's content that cannot be saved, or that is about to be dropped: a rescue
/// copy or, where none can be made, a file that the user names. Tells the user what became of it.
class VELMORA_EXPORT OrvRescue {
 public:
  OrvRescue(velmora::platform::Alerts& alerts, velmora::platform::Panels& panels, OrvKeptCopies& copies,
            OrvWrittenFolders& writtenFolders)
      : alerts_(alerts), panels_(panels), copies_(copies), writtenFolders_(writtenFolders) {}

  /// The content of a record, and what the record is called.
  struct Content {
    QByteArray data;
    QString displayName;
    QString typeName;  ///< the extension of its data files
  };
  struct Outcome {
    velmora::platform::SaveOutcome outcome;
    std::optional<QString> copy;  ///< the path of the rescue copy, where there is one
  };

  /// Keeps content that is about to be dropped. When no copy can be made the user may save it elsewhere, give
  /// it up, or leave it where it is.
  Outcome keepDropped(const Content& content);
  /// Tells the user that a save failed, and why, and keeps what could not be saved. Without data nothing can
  /// be kept.
  velmora::platform::SaveOutcome keepUnsaved(const QString& fileName, const Content& content,
                                             const QString& reason);
  /// Keeps content without a word, because nobody can be told.
  void keepQuietly(const Content& content);
  /// Tells the user where the unsaved changes of a closed record are kept.
  void tellAboutCopy(const QString& name, const QString& copy);

 private:
  velmora::platform::SaveOutcome askWhereToSave(const Content& content, const QString& message,
                                                const QString& information);
  bool saveElsewhere(const Content& content);
  void tellNotSaved(const QString& name, const QString& reason);

  velmora::platform::Alerts& alerts_;
  velmora::platform::Panels& panels_;
  OrvKeptCopies& copies_;
  OrvWrittenFolders& writtenFolders_;
};
