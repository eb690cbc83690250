// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QNetworkAccessManager>
#include <QSize>
#include <QString>
#include <QTemporaryDir>
#include <QUrl>

#include "base/Export.h"
#include "testing/process/Program.h"

namespace velmora::testkit {

/// A headless Chromium, driven over the W3C WebDriver protocol by chromium-driver. It has a profile of its
/// own in a temporary folder and goes when this object does, or when the process that made it ends in any
/// way.
///
/// Every operation waits for its end and throws std::runtime_error when it fails.
class VELMORA_EXPORT WebDriver {
 public:
  explicit WebDriver(QSize window = QSize(1280, 1024));
  ~WebDriver();
  WebDriver(const WebDriver&) = delete;
  WebDriver& operator=(const WebDriver&) = delete;

  /// Loads a page, up to its load event.
  void open(const QUrl& url);

  /// Runs the body of a JavaScript function in the page, where `arguments` are the values given.
  QJsonValue run(const QString& body, const QJsonArray& arguments = {});

  /// Waits until the JavaScript expression is true. It is looked at whenever the page has changed or loaded
  /// something.
  void waitUntil(const QString& expression);

  /// Presses and releases one key, where the focus is: WebDriver's code for it (U+E004 is Tab, U+E007 Enter).
  void press(QChar key);
  static constexpr QChar Tab{0xE004};
  static constexpr QChar Enter{0xE007};

  /// What the window shows, a PNG image.
  QByteArray screenshot();

 private:
  QJsonValue command(const QString& path, const QJsonObject& parameters);
  QJsonValue exchange(const QByteArray& method, const QString& path, const QByteArray& body);
  void startDriver();
  void startSession(QSize window);

  QTemporaryDir profile_;
  Program driver_{QStringLiteral("chromedriver"), QProcessEnvironment::systemEnvironment()};
  QNetworkAccessManager network_;
  QString server_;
  QString session_;
};

}  // namespace velmora::testkit
