// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace velmora::desktop {

/// A request to the application from outside: from the command line, or from the desktop over the bus.
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
  /// The desktop's permission to come to the front (xdg-activation); may be empty.
  QString activationToken;

  bool operator==(const ActivationRequest&) const = default;
};

/// The outcome of taking the application's name on the bus, or handing the request over to whoever has it.
enum class ActivationOutcome {
  Serving,     ///< this instance has the name: continue, requests will arrive
  HandedOver,  ///< another instance took the request over: end
  Refused,     ///< another instance refused the request, or the rest of it: end
  Alone        ///< no bus, no valid name, or no answer: continue without
};

/// The running instance's answer to a request.
enum class ActivationAcceptance {
  Taken,
  Full,   ///< too many requests are waiting
  Ending  ///< the application is ending
};

/// The request for the log: its kind and the number of files, but not their names, which are those of
/// patients.
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
