// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/spool/SpoolEntry.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include "bridge/dicom/Uid.h"
#include "bridge/spool/SpoolFile.h"
#include "base/CalendarDay.h"
#include "link/protocol/LinkProtocol.h"

namespace protocol = velmora::link;

namespace bridge {
namespace {

const QByteArray ReplyKind("velmora-link reply 1");
const QByteArray StateKind("velmora-link state 1");

QString keyed(const char* key) { return QString::fromLatin1(key); }

/// Reads the members of an object, and remembers whether all were what they should be.
class Reading {
 public:
  explicit Reading(const QJsonObject& object) : object_(object) {}

  void text(const char* key, QString& value) {
    const QJsonValue member = object_.value(keyed(key));
    if (member.isString()) value = member.toString();
    right_ = right_ && member.isString();
  }
  void number(const char* key, int& value) {
    const QJsonValue member = object_.value(keyed(key));
    value = member.toInt(-1);
    right_ = right_ && value >= 0;
  }
  void day(const char* key, QDate& value) {
    QString written;
    text(key, written);
    value = QDate::fromString(written, Qt::ISODate);
    right_ = right_ && (value.isValid() || written.isEmpty());
  }
  void time(const char* key, QDateTime& value) {
    QString written;
    text(key, written);
    value = QDateTime::fromString(written, Qt::ISODateWithMs);
    right_ = right_ && (value.isValid() || written.isEmpty());
  }
  bool right() const { return right_; }

 private:
  QJsonObject object_;
  bool right_ = true;
};

QString written(const QDate& day) { return day.isValid() ? day.toString(Qt::ISODate) : QString(); }

QString written(const QDateTime& time) {
  if (!time.isValid()) return QString();
  // Only this form says the offset that the time has.
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
  Reading reading(object);
  reading.text("studyInstanceUID", study.studyInstanceUID);
  reading.text("patientID", study.patientID);
  reading.text("issuerOfPatientID", study.issuerOfPatientID);
  reading.text("patientName", study.patientName);
  reading.day("birthDate", study.birthDate);
  reading.text("sex", study.sex);
  reading.day("studyDate", study.studyDate);
  reading.text("studyTime", study.studyTime);
  reading.text("studyID", study.studyID);
  reading.text("accessionNumber", study.accessionNumber);
  reading.text("referringPhysician", study.referringPhysician);
  reading.text("description", study.description);
  return reading.right();
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
  Reading reading(document.object());
  reading.text("sopInstanceUID", reply.sopInstanceUID);
  reading.time("arrival", reply.arrival);
  reading.text("application", reply.application);
  reading.text("identifier", reply.identifier);
  reading.text("patientName", reply.patientName);
  reading.day("birthDay", reply.birthDay);
  reading.day("studyDay", reply.studyDay);
  reading.text("studyID", reply.studyID);
  reading.text("requestedStudyUID", reply.requestedStudyUID);
  reading.text("description", reply.description);
  reading.text("complaint", reply.complaint);
  if (!reading.right() || reply.sopInstanceUID.isEmpty()) return std::nullopt;
  return reply;
}

/// Takes the values of a reply over, one by one.
class Taking {
 public:
  explicit Taking(const QVariantMap& reply) : reply_(reply) {}

  QString text(const QString& key, bool always) {
    const QVariant value = reply_.value(key);
    if (!value.isValid()) {
      if (always) complain(QStringLiteral("no ") + key);
      return QString();
    }
    if (value.typeId() != QMetaType::QString) {
      complain(key + QStringLiteral(" is not a string"));
      return QString();
    }
    const QString whole = value.toString();
    if (whole.size() <= SpooledReply::LongestText) return whole;
    complain(QStringLiteral("%1 is too long (%2 characters)").arg(key).arg(whole.size()));
    const QString cut = whole.left(SpooledReply::LongestText);
    return cut.back().isHighSurrogate() ? cut.chopped(1) : cut;
  }

  QDate day(const QString& key) {
    const QVariant value = reply_.value(key);
    if (!value.isValid()) return QDate();
    const QDate day =
        value.typeId() == QMetaType::QDateTime ? velmora::base::localDayOf(value.toDateTime()) : QDate();
    // The far ends of what a date can be do not survive being written.
    if (day.isValid() && day.year() >= 1 && day.year() <= 9999) return day;
    complain(key + QStringLiteral(" is not a date"));
    return QDate();
  }

  QByteArray bytes(const QString& key) const {
    const QVariant value = reply_.value(key);
    return value.typeId() == QMetaType::QByteArray ? value.toByteArray() : QByteArray();
  }

  void complain(const QString& what) { complaints_.append(what); }
  QString complaints() const { return complaints_.join(QStringLiteral(", ")); }

 private:
  const QVariantMap& reply_;
  QStringList complaints_;
};

}  // namespace

std::optional<SpooledReply> spooledReply(const QVariantMap& values, const QString& application,
                                         const QDateTime& arrival) {
  Taking taking(values);
  SpooledReply reply;
  reply.jpeg = taking.bytes(protocol::JPEG);
  if (reply.jpeg.isEmpty()) return std::nullopt;
  reply.sopInstanceUID = newUid();
  reply.arrival = arrival.toOffsetFromUtc(arrival.offsetFromUtc());
  reply.application = application;
  reply.identifier = taking.text(protocol::Identifier, true);
  reply.patientName = taking.text(protocol::Name, false);
  reply.birthDay = taking.day(protocol::DateOfBirth);
  reply.studyDay = taking.day(protocol::DateOfStudy);
  reply.studyID = taking.text(protocol::OsiriXStudyID, false);
  reply.description = taking.text(protocol::StudyDescription, false);
  // Every JPEG file begins with the start-of-image marker (ITU-T T.81, B.1.1.3) and the first byte of the
  // next one.
  if (!reply.jpeg.startsWith("\xff\xd8\xff")) {
    taking.complain(protocol::JPEG + QStringLiteral(" is not a JPEG file image"));
  }
  reply.complaint = taking.complaints();
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
  Reading reading(document.object());
  reading.text("state", name);
  reading.time("changed", state.changed);
  reading.number("tries", state.tries);
  reading.text("reason", state.reason);
  reading.text("sopInstanceUID", state.sopInstanceUID);
  reading.text("studyInstanceUID", state.studyInstanceUID);
  reading.text("application", state.application);
  reading.time("arrival", state.arrival);
  const auto named = stateNamed(name);
  if (!reading.right() || !named) return std::nullopt;
  state.state = *named;
  const QJsonValue decided = document.object().value(keyed("decision"));
  if (decided.isUndefined()) return state;
  Decision decision;
  Reading deciding(decided.toObject());
  deciding.text("seriesInstanceUID", decision.seriesInstanceUID);
  deciding.number("seriesNumber", decision.seriesNumber);
  deciding.number("instanceNumber", decision.instanceNumber);
  decision.showsPatient = decided.toObject().value(keyed("showsPatient")).toBool(true);
  if (!deciding.right() || !read(decided.toObject().value(keyed("study")).toObject(), decision.study)) {
    return std::nullopt;
  }
  state.decision = decision;
  return state;
}

}  // namespace bridge
