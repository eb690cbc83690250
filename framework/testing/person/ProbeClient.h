// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QLocalSocket>
#include <QString>
#include <optional>

#include "testing/person/SeenWindow.h"
#include "testing/process/Program.h"

namespace velmora::testkit {

/// The driver's end of the probe inside the application.
class ProbeClient {
 public:
  /// A window came or went.
  struct News {
    bool shown;
    QJsonObject window;  ///< id, name, class, title; "panel" for a file panel
    qint64 at;           ///< steady clock, milliseconds
  };

  /// Lets a program that is started with that environment load the probe, which listens at that socket.
  static void addProbe(QProcessEnvironment& environment, const QString& socket);

  /// Connects to the probe in `application` at that socket as soon as it is there.
  ProbeClient(const Program::Trace& trace, const QString& socket, Program& application, double seconds);

  /// The windows that are visible now. Throws once the application has gone.
  QList<SeenWindow> look();
  /// What is on the screen, in a few words.
  QString screen();
  /// Carries a command out; what went wrong, empty when nothing did.
  QString command(QJsonObject request);
  /// The same; throws with what is on the screen, too, when something went wrong. `what` was wanted.
  void must(const QString& what, QJsonObject request);
  /// The same with the whole answer. An application that goes in the middle of it has nothing to complain
  /// about.
  QJsonObject ask(QJsonObject request);

  /// Draws a window, or a widget in it, as it is now into a file.
  void picture(const SeenWindow& window, const QString& file, const QString& widget = {});

  /// Every window that came or went since the application's start, in order.
  const QList<News>& news() const { return news_; }

 private:
  void read();

  Program::Trace trace_;
  Program& application_;
  QLocalSocket socket_;
  int lastId_ = 0;
  std::optional<QJsonObject> reply_;
  QList<News> news_;
};

}  // namespace velmora::testkit
