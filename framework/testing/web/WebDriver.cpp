// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/web/WebDriver.h"

#include <QEventLoop>
#include <QJsonDocument>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QRegularExpression>
#include <chrono>
#include <memory>
#include <stdexcept>

namespace velmora::testkit {

namespace {

/// Far longer than anything here takes: reached only when something is broken.
constexpr std::chrono::milliseconds Limit{60000};

[[noreturn]] void fail(const QString& message) { throw std::runtime_error(message.toStdString()); }

}  // namespace

WebDriver::WebDriver(QSize window) {
  network_.setProxy(QNetworkProxy(QNetworkProxy::NoProxy));
  startDriver();
  startSession(window);
}

WebDriver::~WebDriver() {
  try {
    exchange("DELETE", QStringLiteral("/session/%1").arg(session_), {});
  } catch (const std::exception& exception) {
    qWarning("The browser did not end: %s", exception.what());
  }
}

void WebDriver::startDriver() {
  if (!profile_.isValid()) fail(QStringLiteral("No folder for the browser: ") + profile_.errorString());
  driver_.start({QStringLiteral("--port=0")});
  // It says so itself when it listens, and where.
  static const QRegularExpression port(QStringLiteral("on port ([0-9]+)"));
  const QString line = driver_.waitForLine(QStringLiteral("started successfully on port")).text;
  server_ = QStringLiteral("http://127.0.0.1:%1").arg(port.match(line).captured(1));
}

void WebDriver::startSession(QSize window) {
  const QJsonArray arguments{QStringLiteral("--headless=new"),
                             // Containers and the root user have no sandbox to offer.
                             QStringLiteral("--no-sandbox"), QStringLiteral("--disable-gpu"),
                             QStringLiteral("--disable-dev-shm-usage"),
                             // The browser ends when this pipe does, so it does not outlive the driver.
                             QStringLiteral("--remote-debugging-pipe"), QStringLiteral("--lang=en"),
                             QStringLiteral("--no-first-run"),
                             QStringLiteral("--force-device-scale-factor=1"),
                             QStringLiteral("--user-data-dir=") + profile_.path(),
                             QStringLiteral("--window-size=%1,%2").arg(window.width()).arg(window.height())};
  const QJsonObject capabilities{
      {QStringLiteral("browserName"), QStringLiteral("chrome")},
      {QStringLiteral("timeouts"),
       QJsonObject{{QStringLiteral("script"), static_cast<qint64>(Limit.count()) / 2}}},
      {QStringLiteral("goog:chromeOptions"), QJsonObject{{QStringLiteral("args"), arguments}}}};
  const QJsonObject request{
      {QStringLiteral("capabilities"), QJsonObject{{QStringLiteral("alwaysMatch"), capabilities}}}};
  const QJsonValue value = exchange("POST", QStringLiteral("/session"), QJsonDocument(request).toJson());
  session_ = value.toObject().value(QLatin1String("sessionId")).toString();
}

void WebDriver::open(const QUrl& url) {
  command(QStringLiteral("url"), {{QStringLiteral("url"), QString::fromLatin1(url.toEncoded())}});
}

QJsonValue WebDriver::run(const QString& body, const QJsonArray& arguments) {
  return command(QStringLiteral("execute/sync"),
                 {{QStringLiteral("script"), body}, {QStringLiteral("args"), arguments}});
}

void WebDriver::waitUntil(const QString& expression) {
  const QString body = QStringLiteral(R"(
    const done = arguments[arguments.length - 1];
    const holds = () => { try { return Boolean(%1); } catch (error) { return false; } };
    if (holds()) { done(true); return; }
    const look = () => {
      if (!holds()) return;
      observer.disconnect();
      for (const event of events) document.removeEventListener(event, look, true);
      done(true);
    };
    const observer = new MutationObserver(look);
    // Those of the pictures do not reach the window.
    const events = ['load', 'error', 'focusin'];
    observer.observe(document, { subtree: true, childList: true, attributes: true, characterData: true });
    for (const event of events) document.addEventListener(event, look, true);
  )")
                           .arg(expression);
  command(QStringLiteral("execute/async"),
          {{QStringLiteral("script"), body}, {QStringLiteral("args"), QJsonArray()}});
}

void WebDriver::press(QChar key) {
  const auto stroke = [key](const char* type) {
    return QJsonObject{{QStringLiteral("type"), QLatin1String(type)},
                       {QStringLiteral("value"), QString(key)}};
  };
  const QJsonObject keyboard{{QStringLiteral("type"), QStringLiteral("key")},
                             {QStringLiteral("id"), QStringLiteral("keyboard")},
                             {QStringLiteral("actions"), QJsonArray{stroke("keyDown"), stroke("keyUp")}}};
  command(QStringLiteral("actions"), {{QStringLiteral("actions"), QJsonArray{keyboard}}});
}

QByteArray WebDriver::screenshot() {
  const QJsonValue value = exchange("GET", QStringLiteral("/session/%1/screenshot").arg(session_), {});
  return QByteArray::fromBase64(value.toString().toLatin1());
}

QJsonValue WebDriver::command(const QString& path, const QJsonObject& parameters) {
  return exchange("POST", QStringLiteral("/session/%1/%2").arg(session_, path),
                  QJsonDocument(parameters).toJson());
}

QJsonValue WebDriver::exchange(const QByteArray& method, const QString& path, const QByteArray& body) {
  QNetworkRequest request(QUrl(server_ + path));
  request.setTransferTimeout(static_cast<int>(Limit.count()));
  request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArray("application/json; charset=utf-8"));
  const std::unique_ptr<QNetworkReply> reply(network_.sendCustomRequest(request, method, body));
  QEventLoop loop;
  QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
  if (!reply->isFinished()) loop.exec();
  const QJsonDocument answer = QJsonDocument::fromJson(reply->readAll());
  const QJsonValue value = answer.object().value(QLatin1String("value"));
  const QString error = value.toObject().value(QLatin1String("error")).toString();
  if (!error.isEmpty()) {
    const QString message = value.toObject().value(QLatin1String("message")).toString();
    fail(QStringLiteral("%1: %2: %3").arg(path, error, message));
  }
  if (reply->error() != QNetworkReply::NoError)
    fail(QStringLiteral("%1: %2").arg(path, reply->errorString()));
  return value;
}

}  // namespace velmora::testkit
