// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QJsonObject>

#include "orv/OrvKeptCopies.h"
#include "platform/Document.h"

/// A document whose data file is JSON, and which prints one of its views.
///
/// The data file is UTF-8 text: an object with a header ("format": the application's bundle identifier,
/// "version": the version of the content's form, "application": who wrote it) and the "content", which the
/// subclass reads and writes. A file that is damaged, of another application or of a newer version is refused
/// with the reason. What a save replaces is kept as an earlier version; a save that fails tells the user and
/// leaves a rescue copy.
class OrvDocument : public platform::Document {
 public:
  explicit OrvDocument(platform::Services& services);

  platform::FileResult readFromData(const QByteArray& data, const QString& typeName) override;
  platform::FileResult dataOfType(const QString& typeName, QByteArray& data) override;

  void keepUnsavedChanges() override;
  /// Closes; unsaved changes leave a rescue copy, because another window has saved this record's file.
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
  virtual platform::FileResult contentFromJson(const QJsonObject& content, int version) = 0;

  qint64 largestFile() const override { return 64LL * 1024 * 1024; }
  void didReadFile(const QByteArray& data) override;

  /// Keeps the content as it is now outside the save folder, because it is about to be dropped, and gives the
  /// path. When no copy can be made the user may save it elsewhere; then, and when he does not, the path is
  /// null.
  QString keepRescueCopy();

  platform::FileResult writeToURL(const QUrl& url, const QByteArray& data,
                                  platform::SaveOperation operation) override;
  void presentSaveError(const QUrl& url, const QByteArray& data, const QString& reason) override;

 private:
  platform::FileResult keepWhatStandsAt(const QString& path, QString* copyOfAnother);
  void tellAboutAnother(const QString& path, const QString& copy);
  void saveElsewhere(const QByteArray& data);
  QString fileNameForCopies() const;

  OrvKeptCopies keptCopies_;
  /// Checksum of what this document last read from its file or wrote there; empty while it has no file.
  QByteArray knownContents_;
  /// Checksum of what this document last tried to write: a save may fail when that stands in its place
  /// already.
  QByteArray attemptedContents_;
};
