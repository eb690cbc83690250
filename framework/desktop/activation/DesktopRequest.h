// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace velmora::desktop {

/// What somebody outside asks of the application: a person on the command line, or the desktop over the bus.
struct DesktopRequest {
  enum class Kind {
    Activate,  ///< come to the front, with a document
    Open,      ///< open `files`
    Print,     ///< print `files`
    Action     ///< one of the application's own actions, `action`
  };

  Kind kind = Kind::Activate;
  QStringList files;  ///< absolute paths
  QString action;
  /// What lets the application come to the front by leave of the desktop; empty when there is none.
  QString activationToken;

  bool operator==(const DesktopRequest&) const = default;
};

/// A request for the log: its kind, and how many files, whose names are those of patients.
inline QString summaryForLog(const DesktopRequest& request) {
  using Kind = DesktopRequest::Kind;
  switch (request.kind) {
    case Kind::Open:
      return QStringLiteral("open files (%1)").arg(request.files.size());
    case Kind::Print:
      return QStringLiteral("print files (%1)").arg(request.files.size());
    case Kind::Action:
      return QStringLiteral("an action");
    case Kind::Activate:
      break;
  }
  return QStringLiteral("come to the front");
}

}  // namespace velmora::desktop
