// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/person/ProbeClient.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>

#include "testing/process/Program.h"
#include "testing/waiting/Waiting.h"

namespace velmora::testkit {

namespace {

// Longer than anything that the application does in one go.
constexpr double AnswerSeconds = 15;

QString compact(const QJsonObject& object) {
  return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

}  // namespace

ProbeClient::ProbeClient(const Program::Trace& trace, const QString& socket, Program& application,
                         double seconds)
    : trace_(trace), application_(application) {
  QObject::connect(&socket_, &QLocalSocket::readyRead, &socket_, [this] { read(); });
  const bool connected = waitUntil(seconds, [&] {
    if (!application_.running()) return true;
    if (socket_.state() == QLocalSocket::UnconnectedState && QFile::exists(socket))
      socket_.connectToServer(socket);
    return socket_.state() == QLocalSocket::ConnectedState;
  });
  if (!connected || socket_.state() != QLocalSocket::ConnectedState)
    throw Differs(QString("the application to start within %1 s").arg(seconds),
                  application_.running() ? "it does not answer" : "it has ended");
}

void ProbeClient::addProbe(QProcessEnvironment& environment, const QString& socket) {
  // Beside this program in the build's folder, wherever that has been moved to.
  environment.insert("QT_PLUGIN_PATH", QCoreApplication::applicationDirPath() + "/../lib/testing");
  environment.insert("QT_QPA_GENERIC_PLUGINS", "velmoraprobe:" + socket);
}

void ProbeClient::read() {
  while (socket_.canReadLine()) {
    const QJsonObject line = QJsonDocument::fromJson(socket_.readLine()).object();
    if (line.contains("news")) {
      news_.append({line["news"] == "shown", line["window"].toObject(), line["at"].toInteger()});
      trace_("window", line["news"].toString() + ' ' + compact(line["window"].toObject()));
    } else if (line["id"].toInt() == lastId_) {
      reply_ = line;
    }
  }
}

QJsonObject ProbeClient::ask(QJsonObject request) {
  request["id"] = ++lastId_;
  reply_.reset();
  socket_.write(QJsonDocument(request).toJson(QJsonDocument::Compact) + '\n');
  socket_.flush();
  const bool answered = waitUntil(AnswerSeconds, [this] {
    return reply_ || !application_.running() || socket_.state() != QLocalSocket::ConnectedState;
  });
  if (reply_) return *reply_;
  if (!answered)
    throw Differs(QString("the application to answer within %1 s").arg(AnswerSeconds),
                  "no answer to " + compact(request));
  return {{"ok", true}};
}

QList<SeenWindow> ProbeClient::look() {
  const QJsonArray windows = ask({{"do", "windows"}})["windows"].toArray();
  if (!application_.running()) throw Differs("the application to go on", application_.ending());
  QList<SeenWindow> result;
  for (const QJsonValue window : windows) result.append(SeenWindow(window.toObject()));
  return result;
}

QString ProbeClient::screen() {
  QStringList result;
  const QList<SeenWindow> windows = look();
  for (const SeenWindow& window : windows) result.append(window.summary());
  return result.isEmpty() ? QString("no window") : result.join(", ");
}

void ProbeClient::picture(const SeenWindow& window, const QString& file, const QString& widget) {
  QJsonObject request{{"do", "picture"}, {"window", window.id()}, {"file", file}};
  if (!widget.isEmpty()) request["widget"] = widget;
  must("a picture of " + window.summary(), request);
}

void ProbeClient::must(const QString& what, QJsonObject request) {
  const QString error = command(std::move(request));
  if (!error.isEmpty()) throw Differs(what, error + "; on the screen: " + screen());
}

QString ProbeClient::command(QJsonObject request) {
  const QJsonObject answer = ask(request);
  const QString error = answer["ok"].toBool() ? QString() : answer["error"].toString("no answer");
  trace_("hand", compact(request) + (error.isEmpty() ? QString() : " refused: " + error));
  return error;
}

}  // namespace velmora::testkit
