// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QLocalServer>
#include <QObject>
#include <QPointer>
#include <QString>

#include "testing/probe/Eyes.h"
#include "testing/probe/Hands.h"

class QLocalSocket;

namespace velmora::testkit::probe {

/// Gives one driver outside the program eyes and hands in it, over a local socket that only this user may
/// open.
///
/// One JSON object a line each way. A request is {"id": n, "do": command, ...}; its answer is {"id": n, "ok":
/// true, ...} or {"id": n, "ok": false, "error": text}. The commands:
///
/// - windows: every visible window with what is in it ("windows", see Eyes), and which has the focus.
/// - click: a left click on a target (see Target).
/// - where: the place of a target on the screen ("at"), for a click that comes through the window system.
/// - type: "text", a key stroke for each character, to the widget that has the focus.
/// - key: "key" (as QKeySequence names it: "Tab", "Ctrl+A"), to the widget that has the focus.
/// - shots: a picture of every visible window, as "folder"/"prefix"<window>.png ("files").
/// - screen: a picture of the whole screen, as "file".
/// - picture: a picture of one target widget, as "file".
///
/// The answer to click, type and key comes when the program has dealt with the last of the events, or is
/// inside a dialog that one of them opened. A line without an "id" is news: {"news": "shown" or "hidden",
/// "window": {...}, "at": milliseconds of the machine's steady clock}, from the start of the program on.
class ProbeServer : public QObject {
 public:
  /// Listens at the socket's path.
  explicit ProbeServer(const QString& socket);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void accept();
  void readLines();
  QJsonObject answer(const QJsonObject& request, bool& later);
  void send(const QJsonObject& line);

  QLocalServer server_;
  QPointer<QLocalSocket> driver_;
  QList<QByteArray> unsent_;  // news from before the driver was there
  Eyes eyes_;
  Hands hands_;
};

}  // namespace velmora::testkit::probe
