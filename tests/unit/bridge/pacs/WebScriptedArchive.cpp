// SPDX-License-Identifier: LGPL-3.0-or-later
#include "tests/unit/bridge/pacs/WebScriptedArchive.h"

#include <utility>

namespace web_testing {

using velmora::testkit::LocalWebServer;

ScriptedArchive::ScriptedArchive(Script script) {
  server_.otherwise([script = std::move(script)](const Request& request) {
    const QByteArray answer = script(request);
    return answer.isEmpty() ? LocalWebServer::stall() : LocalWebServer::raw(answer);
  });
}

ScriptedArchive::ScriptedArchive(const QByteArray& answer)
    : ScriptedArchive([answer](const Request&) { return answer; }) {}

bridge::PacsSettings ScriptedArchive::settings() const {
  bridge::PacsSettings settings;
  settings.kind = bridge::PacsSettings::Kind::Web;
  settings.url = server_.url(QStringLiteral("/dicom-web/"));
  return settings;
}

QByteArray answer(const QByteArray& statusAndReason, const QByteArray& body, const QByteArray& headers) {
  return "HTTP/1.1 " + statusAndReason + "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n" +
         headers + "\r\n" + body;
}

QByteArray json(const QByteArray& body) {
  return answer("200 OK", body, "Content-Type: application/dicom+json\r\n");
}

}  // namespace web_testing
