// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>
#include <functional>

#include "bridge/pacs/PacsSettings.h"

namespace web_testing {

/// A DICOMweb server that answers as the test says. It reads whole requests, and lives on the event loop of
/// the one who asks, which runs while the answer is waited for.
class ScriptedArchive {
 public:
  struct Request {
    QByteArray method;
    QByteArray target;          ///< path and query as they came
    QList<QByteArray> headers;  ///< "Name: value"
    QByteArray body;

    /// The value of a header; null when it is not there.
    QByteArray header(const QByteArray& name) const;
  };
  /// The bytes of the answer, head and all; empty leaves the one who asked waiting.
  using Script = std::function<QByteArray(const Request&)>;

  explicit ScriptedArchive(Script script);
  /// Gives everyone the same answer.
  explicit ScriptedArchive(const QByteArray& answer);
  ScriptedArchive(const ScriptedArchive&) = delete;
  ScriptedArchive& operator=(const ScriptedArchive&) = delete;

  bridge::PacsSettings settings() const;
  const QList<Request>& requests() const { return requests_; }

 private:
  void read(QTcpSocket& socket);

  Script script_;
  QList<Request> requests_;
  QTcpServer server_;
};

/// An answer with a head of its own.
QByteArray answer(const QByteArray& statusAndReason, const QByteArray& body, const QByteArray& headers = {});
/// "200 OK" with JSON.
QByteArray json(const QByteArray& body);

}  // namespace web_testing
