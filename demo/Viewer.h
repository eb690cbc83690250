// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDate>
#include <QJsonObject>
#include <QString>
#include <memory>

#include "testing/person/Stage.h"
#include "testing/process/Program.h"

namespace demo {

class Report;

using namespace velmora::testkit;

/// The study that is picked in the viewer.
struct Study {
  QString identifier;
  QString name;
  QDate birthDate;
  QDate studyDate;
  QString studyId;
};

/// The viewer's end of the link: another process, which sends what was picked there and takes what comes
/// back.
class Viewer {
 public:
  /// One reply as the viewer's process got it.
  struct Reply {
    qint64 at;            ///< when its line came, steady clock, milliseconds
    QByteArray jpeg;      ///< the file that it wrote
    QJsonObject details;  ///< the other keys: strings as they are, a date as {"date", "instant"}
    QString complaints;   ///< what the viewer's process found wrong with it
  };

  /// `link` is the program, `application` the bundle identifier of the application it talks to; what comes
  /// back is written into `folder`.
  Viewer(Report& report, const Stage& stage, const QString& link, const QString& application,
         const QString& folder);

  /// Sends the link request for a study, and has done so when this returns.
  void pick(const Study& study);
  /// Begins to listen for so many replies, and does when this returns.
  void listen(int replies);
  /// Waits for the next reply.
  Reply nextReply(double seconds);
  /// Waits for the listening process to have ended well, after its last reply.
  void finished(double seconds);

 private:
  Report& report_;
  const Stage& stage_;
  QString link_;
  QString application_;
  QString folder_;
  std::unique_ptr<Program> listening_;
  int received_ = 0;
};

}  // namespace demo
