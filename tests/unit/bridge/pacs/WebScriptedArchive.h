// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <functional>

#include "bridge/pacs/PacsSettings.h"
#include "testing/web/LocalWebServer.h"

namespace web_testing {

/// A DICOMweb server that answers as the test says.
class ScriptedArchive {
 public:
  using Request = velmora::testkit::LocalWebServer::Request;
  /// The bytes of the answer, head and all; empty leaves the one who asked waiting.
  using Script = std::function<QByteArray(const Request&)>;

  explicit ScriptedArchive(Script script);
  /// Gives everyone the same answer.
  explicit ScriptedArchive(const QByteArray& answer);

  bridge::PacsSettings settings() const;
  const QList<Request>& requests() const { return server_.requests(); }

 private:
  velmora::testkit::LocalWebServer server_;
};

/// An answer with a head of its own.
QByteArray answer(const QByteArray& statusAndReason, const QByteArray& body, const QByteArray& headers = {});
/// "200 OK" with JSON.
QByteArray json(const QByteArray& body);

}  // namespace web_testing
