// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QJsonObject>

#include "base/Export.h"
#include "orv/documents/OrvKeptCopies.h"
#include "orv/documents/OrvPrivateFolder.h"
#include "orv/documents/OrvRecordFile.h"
#include "orv/documents/OrvRescue.h"
#include "orv/documents/OrvWrittenFolders.h"
#include "platform/documents/Document.h"

/// A document whose data file is JSON, and which prints one of its views.
///
/// The data file is UTF-8 text: an object with a header ("format": the application's bundle identifier,
/// "version": the version of the content's form, "application": who wrote it, "checksum": of all the rest)
/// and the "content", which the subclass reads and writes. A file that is damaged, of another application or
/// of a newer version is refused with the reason. What a save replaces is kept as an earlier version; a save
/// that fails tells the user and leaves a rescue copy. A kept copy that is opened is a new document with that
/// content.
class VELMORA_EXPORT OrvDocument : public velmora::platform::Document {
 public:
  explicit OrvDocument(velmora::platform::Services& services);

  velmora::base::Result<> readFromURL(const QUrl& url) override;
  velmora::base::Result<> readFromData(const QByteArray& data, const QString& typeName) override;
  velmora::base::Result<QByteArray> dataOfType(const QString& typeName) override;

  void keepUnsavedChanges() override;
  /// Closes, because another window has saved this record's file. Unsaved changes leave a rescue copy, of
  /// which the user is told; where none can be had the document stays open, but has no file any more.
  void fileWasReplaced() override;

  /// The view that is printed; the base answers the contents of the document's window.
  virtual QWidget* printableView() const;
  void printDocument(const QVariantMap& settings, bool showPrintPanel, DidPrint didPrint = {}) override;

 protected:
  /// The version of the content's form that this program writes, and the newest that it reads.
  virtual int contentVersion() const { return 1; }
  /// The content as JSON.
  virtual QJsonObject contentToJson() const = 0;
  /// Takes the content from JSON written in form `version`. A failure says why, in words for the user, and
  /// the document is not used.
  virtual velmora::base::Result<> contentFromJson(const QJsonObject& content, int version) = 0;

  qint64 largestFile() const override { return 64LL * 1024 * 1024; }
  void didReadFile(const QByteArray& data) override { recordFile_.setKnownContents(data); }

  using Rescue = OrvRescue::Outcome;
  /// Keeps the content as it is now outside the save folder, because it is about to be dropped. When no copy
  /// can be made the user may save it elsewhere, give it up, or leave it where it is: then it must not be
  /// dropped.
  Rescue keepRescueCopy();
  /// Tells the user where the unsaved changes of a closed record are kept, where there is a copy of them.
  void tellAboutKeptCopy(const QString& name, const std::optional<QString>& copy) {
    if (copy) rescue_.tellAboutCopy(name, *copy);
  }

  /// Writes a file for the user, durably, and remembers its folder: what a write that is cut off leaves there
  /// is removed at the next start.
  velmora::base::Result<> writeFile(const QString& path, const QByteArray& contents) {
    return writtenFolders_.write(path, contents);
  }
  velmora::base::Result<> writeToURL(const QUrl& url, const QByteArray& data,
                                     velmora::platform::SaveOperation operation) override;
  velmora::platform::SaveOutcome presentSaveError(const QUrl& url, const QByteArray& data,
                                                  const QString& reason) override;

 private:
  void tellAboutRemovalByAnother(const QString& path);
  void tellAboutAnother(const QString& path, const QString& copy);
  OrvRescue::Content rescuable(const QByteArray& data) const;

  OrvPrivateFolder privateFolder_;
  OrvKeptCopies keptCopies_;
  OrvWrittenFolders writtenFolders_;
  OrvRecordFile recordFile_;
  OrvRescue rescue_;
};
