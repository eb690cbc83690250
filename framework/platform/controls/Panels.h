// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>

#include "base/Export.h"

namespace velmora::platform {

/// The panel in which the user chooses files or folders to open.
struct OpenPanel {
  QString title;
  QUrl directoryURL;             ///< where the panel starts; where it was when it closed
  QStringList allowedFileTypes;  ///< extensions without the dot; none means any
  bool canChooseFiles = true;
  bool canChooseDirectories = false;
  bool canCreateDirectories = false;
  bool allowsMultipleSelection = false;
  QList<QUrl> urls;  ///< what was chosen
};

/// The panel in which the user names a file to write.
struct SavePanel {
  QString title;
  QString prompt;                ///< the title of the accepting button
  QUrl directoryURL;             ///< where the panel starts
  QString nameFieldStringValue;  ///< the proposed name
  QString requiredFileType;      ///< extension that the chosen name always gets; none means as typed
  QUrl url;                      ///< what was chosen
};

enum PanelReturn : int { PanelCancelButton = 0, PanelOKButton = 1 };

/// Runs the panels application-modally and fills in what was chosen.
class VELMORA_EXPORT Panels {
 public:
  virtual ~Panels() = default;
  virtual int runModal(OpenPanel& panel) = 0;
  /// Asks before a name that exists already is accepted.
  virtual int runModal(SavePanel& panel) = 0;
};

}  // namespace velmora::platform
