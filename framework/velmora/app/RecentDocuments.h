// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>

#include "base/Export.h"

namespace velmora::platform {
class UserDefaults;
}

namespace velmora {

/// The data files that the user opened or saved last, newest first.
///
/// Their names are patients' identifiers: nothing is stored unless the user has asked for it, and what was
/// stored is removed when the user no longer does. Nothing is kept but the setting itself.
class VELMORA_EXPORT RecentDocuments {
 public:
  /// The most that are remembered.
  static constexpr qsizetype Most = 10;

  explicit RecentDocuments(platform::UserDefaults& defaults) : defaults_(defaults) {}

  bool remembers() const;
  /// Turning it off forgets all of them.
  void setRemembers(bool remembers);

  QStringList paths() const;
  /// Puts a file at the head of the list, while they are remembered.
  void note(const QUrl& file);
  void remove(const QString& path);
  void clear();

  /// What the menu shows for a path in that list: its name without extension, and its folder where another
  /// one has the same name.
  static QString titleOf(const QString& path, const QStringList& among);

 private:
  void store(const QStringList& paths);

  platform::UserDefaults& defaults_;
};

}  // namespace velmora
