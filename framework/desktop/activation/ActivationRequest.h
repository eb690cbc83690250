// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace velmora::desktop {

/// What somebody outside asks of the application: a person on the command line, or the desktop over the bus.
struct ActivationRequest {
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

  bool operator==(const ActivationRequest&) const = default;
};

/// What came of a request that another running program may take over.
enum class ActivationOutcome {
  Serving,     ///< this program is the one: go on, requests will come
  HandedOver,  ///< another one runs and has taken the request over: end
  Refused,     ///< another one runs and will have none of it, or of the rest: end
  Alone        ///< no bus, no name, or no answer: go on without
};

/// What the running program says to a request.
enum class ActivationAcceptance {
  Taken,
  Full,   ///< too many wait already
  Ending  ///< it comes too late
};

/// A request for the log: its kind, and how many files, whose names are those of patients.
inline QString summaryForLog(const ActivationRequest& request) {
  using Kind = ActivationRequest::Kind;
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
