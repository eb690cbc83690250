// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <QUrl>
#include <functional>
#include <optional>

class VelmoraApplicationDelegate;

namespace velmora::base {
class FileManager;
}
namespace velmora::platform {
class Alerts;
class Document;
class DocumentController;
}  // namespace velmora::platform

namespace velmora {

class RecordFolder;

/// Finds the earlier data file of a returning patient, and opens it in place of the document in which the
/// patient's identifier was entered.
class PatientLookUp {
 public:
  PatientLookUp(const RecordFolder& folder, const VelmoraApplicationDelegate& knownFiles,
                const base::FileManager& files, platform::Alerts& alerts)
      : folder_(folder), knownFiles_(knownFiles), files_(files), alerts_(alerts) {}

  /// The path of the data file of `identifier` in the save folder, which the user has agreed to open when
  /// asked. Returns nothing when records are not saved automatically, the file is not known or not there, or
  /// the user declines.
  std::optional<QString> find(const QString& identifier, bool askForConfirmation) const;

  /// Opens a file that was found; `document` then closes by `closeInFavourOf`. When the file cannot be opened
  /// the user is told, and a document whose own file it is stays open.
  static void open(platform::DocumentController& controller, const QUrl& file, platform::Document& document,
                   const std::function<void()>& closeInFavourOf);

 private:
  const RecordFolder& folder_;
  const VelmoraApplicationDelegate& knownFiles_;
  const base::FileManager& files_;
  platform::Alerts& alerts_;
};

}  // namespace velmora
