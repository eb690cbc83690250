// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>

#include "base/Export.h"

/// What a patient document asks of the application: the list of data files in the save folder.
class VELMORA_EXPORT VelmoraApplicationDelegate {
 public:
  virtual ~VelmoraApplicationDelegate() = default;

  /// Whether a data file of exactly that name (without folder and extension) is known.
  virtual bool fileIsInCachedDatabaseFiles(const QString& name) const = 0;
  /// Adds a saved file, given by name or path, to the list.
  virtual void addToCachedDatabaseFiles(const QString& fileName) = 0;
};
