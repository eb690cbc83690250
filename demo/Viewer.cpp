// SPDX-License-Identifier: LGPL-3.0-or-later
#include "demo/Viewer.h"

#include <QJsonDocument>

#include "demo/Report.h"
#include "testing/files/Files.h"
#include "testing/waiting/Waiting.h"

namespace demo {

Viewer::Viewer(Report& report, const Stage& stage, const QString& link, const QString& application,
               const QString& folder)
    : report_(report), stage_(stage), link_(link), application_(application), folder_(folder) {}

void Viewer::pick(const Study& study) {
  Program request("viewer", link_, stage_.environment(), report_.tracer());
  request.start({"request", "--application", application_, "--identifier", study.identifier, "--name",
                 study.name, "--birth-date", study.birthDate.toString(Qt::ISODate), "--study-date",
                 study.studyDate.toString(Qt::ISODate), "--study-id", study.studyId});
  if (request.finish(15) != 0) throw Differs("the viewer to send the request", request.ending());
}

void Viewer::listen(int replies) {
  listening_ = std::make_unique<Program>("viewer", link_, stage_.environment(), report_.tracer());
  listening_->start({"receive", "--application", application_, "--out", folder_, "--count",
                     QString::number(replies), "--timeout", "60"});
  listening_->waitForLine("listening", 15);
}

Viewer::Reply Viewer::nextReply(double seconds) {
  const QString name = QString("%1").arg(++received_, 4, 10, QChar(u'0'));
  Reply reply;
  const Program::Line line = listening_->waitForLine(name + '\t', seconds);
  reply.at = line.at;
  reply.complaints = line.text.section('\t', 6);
  reply.jpeg = readFile(folder_ + '/' + name + ".jpg");
  reply.details = QJsonDocument::fromJson(readFile(folder_ + '/' + name + ".json")).object();
  expect(!reply.jpeg.isEmpty() && !reply.details.isEmpty(), name + ".jpg and " + name + ".json at the viewer",
         fileNames(folder_).join(", "));
  return reply;
}

void Viewer::finished(double seconds) {
  if (listening_->finish(seconds) != 0)
    throw Differs("the viewer's process to end well", listening_->ending());
}

}  // namespace demo
