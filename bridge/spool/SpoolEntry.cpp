// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/spool/SpoolEntry.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include "base/CalendarDay.h"
#include "bridge/dicom/Uid.h"
#include "bridge/spool/SpoolFile.h"
#include "link/protocol/LinkReply.h"

using namespace velmora;

namespace bridge {
namespace {

const QByteArray ReplyKind("velmora-link reply 1");
const QByteArray StateKind("velmora-link state 1");

QString keyed(const char* key) { return QString::fromLatin1(key); }

/// Reads the members of an object, and remembers whether all were valid.
class JsonReader {
 public:
  explicit JsonReader(const QJsonObject& object) : object_(object) {}

  void text(const char* key, QString& value) {
    const QJsonValue member = object_.value(keyed(key));
    if (member.isString()) value = member.toString();
    valid_ = valid_ && member.isString();
  }
  void number(const char* key, int& value) {
    const QJsonValue member = object_.value(keyed(key));
    value = member.toInt(-1);
    valid_ = valid_ && value >= 0;
  }
  void day(const char* key, QDate& value) {
    QString written;
    text(key, written);
    value = base::dayFromIso(written);
    valid_ = valid_ && (value.isValid() || written.isEmpty());
  }
  void time(const char* key, QDateTime& value) {
    QString written;
    text(key, written);
    value = QDateTime::fromString(written, Qt::ISODateWithMs);
    valid_ = valid_ && (value.isValid() || written.isEmpty());
  }
  bool valid() const { return valid_; }

 private:
  QJsonObject object_;
  bool valid_ = true;
};

QString written(const QDate& day) { return day.isValid() ? day.toString(Qt::ISODate) : QString(); }

QString written(const QDateTime& time) {
  if (!time.isValid()) return QString();
  // Only this form includes the offset from UTC.
  return time.toOffsetFromUtc(time.offsetFromUtc()).toString(Qt::ISODateWithMs);
}

QJsonObject jsonOf(const Study& study) {
  return {{keyed("studyInstanceUID"), study.studyInstanceUID},
          {keyed("patientID"), study.patientID},
          {keyed("issuerOfPatientID"), study.issuerOfPatientID},
          {keyed("patientName"), study.patientName},
          {keyed("birthDate"), written(study.birthDate)},
          {keyed("sex"), study.sex},
          {keyed("studyDate"), written(study.studyDate)},
          {keyed("studyTime"), study.studyTime},
          {keyed("studyID"), study.studyID},
          {keyed("accessionNumber"), study.accessionNumber},
          {keyed("referringPhysician"), study.referringPhysician},
          {keyed("description"), study.description}};
}

bool read(const QJsonObject& object, Study& study) {
  JsonReader reader(object);
  reader.text("studyInstanceUID", study.studyInstanceUID);
  reader.text("patientID", study.patientID);
  reader.text("issuerOfPatientID", study.issuerOfPatientID);
  reader.text("patientName", study.patientName);
  reader.day("birthDate", study.birthDate);
  reader.text("sex", study.sex);
  reader.day("studyDate", study.studyDate);
  reader.text("studyTime", study.studyTime);
  reader.text("studyID", study.studyID);
  reader.text("accessionNumber", study.accessionNumber);
  reader.text("referringPhysician", study.referringPhysician);
  reader.text("description", study.description);
  return reader.valid();
}

QString nameOf(SpoolState state) {
  switch (state) {
    case SpoolState::Stored:
      return keyed("stored");
    case SpoolState::Aside:
      return keyed("aside");
    case SpoolState::Waiting:
      break;
  }
  return keyed("waiting");
}

std::optional<SpoolState> stateNamed(const QString& name) {
  for (const SpoolState state : {SpoolState::Waiting, SpoolState::Stored, SpoolState::Aside}) {
    if (nameOf(state) == name) return state;
  }
  return std::nullopt;
}

std::optional<SpooledReply> replyFrom(const QByteArray& json) {
  const QJsonDocument document = QJsonDocument::fromJson(json);
  if (!document.isObject()) return std::nullopt;
  SpooledReply reply;
  JsonReader reader(document.object());
  reader.text("sopInstanceUID", reply.sopInstanceUID);
  reader.time("arrival", reply.arrival);
  reader.text("application", reply.application);
  reader.text("identifier", reply.identifier);
  reader.text("patientName", reply.patientName);
  reader.day("birthDay", reply.birthDay);
  reader.day("studyDay", reply.studyDay);
  reader.text("studyID", reply.studyID);
  reader.text("requestedStudyUID", reply.requestedStudyUID);
  reader.text("description", reply.description);
  reader.text("complaint", reply.complaint);
  if (!reader.valid() || reply.sopInstanceUID.isEmpty()) return std::nullopt;
  return reply;
}

}  // namespace

std::optional<SpooledReply> spooledReply(const QVariantMap& payload, const QString& application,
                                         const QDateTime& arrival) {
  const link::LinkReply received = link::readReply(payload);
  if (received.jpeg.isEmpty()) return std::nullopt;
  SpooledReply reply;
  reply.sopInstanceUID = newUid();
  reply.arrival = arrival.toOffsetFromUtc(arrival.offsetFromUtc());
  reply.application = application;
  reply.identifier = received.identifier;
  reply.patientName = received.name;
  reply.birthDay = received.birthDay;
  reply.studyDay = received.studyDay;
  reply.studyID = received.studyID;
  reply.description = received.description;
  if (!received.canBeFiled) reply.complaint = received.complaints.join(QStringLiteral(", "));
  reply.jpeg = received.jpeg;
  return reply;
}

QByteArray encodeReply(const SpooledReply& reply) {
  const QJsonObject head{{keyed("sopInstanceUID"), reply.sopInstanceUID},
                         {keyed("arrival"), written(reply.arrival)},
                         {keyed("application"), reply.application},
                         {keyed("identifier"), reply.identifier},
                         {keyed("patientName"), reply.patientName},
                         {keyed("birthDay"), written(reply.birthDay)},
                         {keyed("studyDay"), written(reply.studyDay)},
                         {keyed("studyID"), reply.studyID},
                         {keyed("requestedStudyUID"), reply.requestedStudyUID},
                         {keyed("description"), reply.description},
                         {keyed("complaint"), reply.complaint}};
  return sealed(ReplyKind, QJsonDocument(head).toJson(QJsonDocument::Compact) + '\n' + reply.jpeg);
}

std::optional<SpooledReply> decodeReply(const QByteArray& file) {
  const auto contents = unsealed(ReplyKind, file);
  const qsizetype end = contents ? contents->indexOf('\n') : -1;
  if (end < 0) return std::nullopt;
  auto reply = replyFrom(contents->left(end));
  if (reply) reply->jpeg = contents->mid(end + 1);
  return reply;
}

std::optional<SpooledReply> decodeReplyHead(const QByteArray& beginning) {
  const qsizetype start = beginning.indexOf('\n') + 1;
  const qsizetype end = beginning.indexOf('\n', start);
  if (!beginning.startsWith(ReplyKind + ' ') || start < 1 || end < 0) return std::nullopt;
  return replyFrom(beginning.mid(start, end - start));
}

QByteArray encodeState(const EntryState& state) {
  QJsonObject object{{keyed("state"), nameOf(state.state)},
                     {keyed("changed"), written(state.changed)},
                     {keyed("tries"), state.tries},
                     {keyed("reason"), state.reason},
                     {keyed("sopInstanceUID"), state.sopInstanceUID},
                     {keyed("studyInstanceUID"), state.studyInstanceUID},
                     {keyed("application"), state.application},
                     {keyed("arrival"), written(state.arrival)}};
  if (state.decision) {
    object.insert(keyed("decision"),
                  QJsonObject{{keyed("study"), jsonOf(state.decision->study)},
                              {keyed("seriesInstanceUID"), state.decision->seriesInstanceUID},
                              {keyed("seriesNumber"), state.decision->seriesNumber},
                              {keyed("instanceNumber"), state.decision->instanceNumber},
                              {keyed("showsPatient"), state.decision->showsPatient}});
  }
  return sealed(StateKind, QJsonDocument(object).toJson(QJsonDocument::Compact));
}

std::optional<EntryState> decodeState(const QByteArray& file) {
  const auto contents = unsealed(StateKind, file);
  const QJsonDocument document = contents ? QJsonDocument::fromJson(*contents) : QJsonDocument();
  if (!document.isObject()) return std::nullopt;
  EntryState state;
  QString name;
  JsonReader reader(document.object());
  reader.text("state", name);
  reader.time("changed", state.changed);
  reader.number("tries", state.tries);
  reader.text("reason", state.reason);
  reader.text("sopInstanceUID", state.sopInstanceUID);
  reader.text("studyInstanceUID", state.studyInstanceUID);
  reader.text("application", state.application);
  reader.time("arrival", state.arrival);
  const auto named = stateNamed(name);
  if (!reader.valid() || !named) return std::nullopt;
  state.state = *named;
  const QJsonValue decided = document.object().value(keyed("decision"));
  if (decided.isUndefined()) return state;
  Decision decision;
  JsonReader decisionReader(decided.toObject());
  decisionReader.text("seriesInstanceUID", decision.seriesInstanceUID);
  decisionReader.number("seriesNumber", decision.seriesNumber);
  decisionReader.number("instanceNumber", decision.instanceNumber);
  decision.showsPatient = decided.toObject().value(keyed("showsPatient")).toBool(true);
  if (!decisionReader.valid() || !read(decided.toObject().value(keyed("study")).toObject(), decision.study)) {
    return std::nullopt;
  }
  state.decision = decision;
  return state;
}

}  // namespace bridge
