// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUrl>

#include "base/Result.h"
#include "bridge/pacs/PacsSettings.h"

namespace bridge {

/// What is asked of a web server.
struct WebRequest {
  QUrl url;                ///< http or https
  QByteArray accept;       ///< the media type of the answer
  QByteArray contentType;  ///< of the body; empty asks with GET, anything else with POST
  QByteArray body;
};

/// What the server answered, with whatever status.
struct WebAnswer {
  int status = 0;
  QByteArray contentType;
  QList<QByteArray> warnings;  ///< the values of the Warning headers (RFC 7234, 5.5)
  QByteArray location;         ///< where a redirection leads to
  QByteArray body;
};

/// No answer is read beyond this many bytes.
inline constexpr qint64 LongestWebAnswer = 16 * 1024 * 1024;

/// One request and its answer. Waits, at most as long as the settings have it, in an event loop of its own.
///
/// The user and password go along with the first request (RFC 7617), so that a large body is not sent twice.
/// Redirections are not followed, which keeps password and patient data with the server that was configured.
/// No proxy is asked, for the same reason. Fails, in plain words, when there is no answer; a certificate that
/// does not stand up is no answer.
velmora::base::Result<WebAnswer> exchange(const PacsSettings& settings, const WebRequest& request);

}  // namespace bridge
