// SPDX-License-Identifier: LGPL-3.0-or-later
#include "demo/Viewer.h"

#include <QFile>
#include <QJsonDocument>

#include "demo/Stage.h"
#include "demo/Waiting.h"

namespace demo {

Viewer::Viewer(Report& report, const Stage& stage, const QString& link, const QString& application,
               const QString& folder)
    : report_(report), stage_(stage), link_(link), application_(application), folder_(folder) {}

void Viewer::pick(const Study& study) {
  Child request(report_, "viewer");
  request.start(link_,
                {"request", "--application", application_, "--identifier", study.identifier, "--name",
                 study.name, "--birth-date", study.birthDate.toString(Qt::ISODate), "--study-date",
                 study.studyDate.toString(Qt::ISODate), "--study-id", study.studyId},
                stage_.environment());
  if (const int code = request.waitForEnd(15); code != 0)
    throw Differs("the viewer to send the request", QString("exit code %1").arg(code));
}

void Viewer::listen(int replies) {
  listening_ = std::make_unique<Child>(report_, "viewer");
  listening_->start(link_,
                    {"receive", "--application", application_, "--out", folder_, "--count",
                     QString::number(replies), "--timeout", "60"},
                    stage_.environment());
  listening_->waitForLine("listening", 15);
}

Viewer::Reply Viewer::nextReply(double seconds) {
  const QString name = QString("%1").arg(++received_, 4, 10, QChar(u'0'));
  Reply reply;
  const Child::Line line = listening_->waitForLine(name + '\t', seconds);
  reply.at = line.at;
  reply.complaints = line.text.section('\t', 6);
  QFile jpeg(folder_ + '/' + name + ".jpg");
  QFile details(folder_ + '/' + name + ".json");
  if (!jpeg.open(QIODevice::ReadOnly) || !details.open(QIODevice::ReadOnly))
    throw Differs(name + ".jpg and " + name + ".json at the viewer",
                  jpeg.errorString() + ", " + details.errorString());
  reply.jpeg = jpeg.readAll();
  reply.details = QJsonDocument::fromJson(details.readAll()).object();
  return reply;
}

void Viewer::finished(double seconds) {
  if (const int code = listening_->waitForEnd(seconds); code != 0)
    throw Differs("the viewer's process to end well", QString("exit code %1").arg(code));
}

}  // namespace demo
