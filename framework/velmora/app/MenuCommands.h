// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>

#include "base/Export.h"

class QObject;

namespace velmora {

class RecentDocuments;

/// The commands of the menus, apart from making, opening and closing documents.
class VELMORA_EXPORT MenuCommands {
 public:
  virtual ~MenuCommands() = default;

  /// Shows the about window; at the start it is the splash.
  virtual void doSplashAboutBox(const QObject* sender) = 0;
  virtual void doPreferences(const QObject* sender) = 0;
  virtual void doBatchExport(const QObject* sender) = 0;
  /// Closes every document; each asks its own question first.
  virtual void doCloseAllDocuments(const QObject* sender) = 0;
  /// Looks for a newer version and tells the user the result.
  virtual void doCheckForNewVersion(const QObject* sender) = 0;
  virtual void doGoToWebSite(const QObject* sender) = 0;
  /// Begins a mail to the support address, its subject naming the application and its version.
  virtual void doMailAuthor(const QObject* sender) = 0;

  /// Whether the item of that title, without its mnemonic, is enabled.
  virtual bool validateMenuItem(const QString& title) const = 0;

  virtual RecentDocuments& recentDocuments() = 0;
  /// Opens a recent document. When the file is no longer there, removes it from the menu and tells the user.
  virtual void openRecentDocument(const QString& path) = 0;
};

}  // namespace velmora
