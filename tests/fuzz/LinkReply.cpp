// SPDX-License-Identifier: LGPL-3.0-or-later
#include <cstring>

#include "bridge/dicom/Capture.h"
#include "bridge/service/StudyFinder.h"
#include "bridge/spool/RequestHistory.h"
#include "bridge/spool/SpoolFile.h"
#include "link/protocol/LinkProtocol.h"
#include "tests/fuzz/FuzzTargets.h"

using namespace bridge;

namespace {

const QDateTime Arrival(QDate(2024, 5, 2), QTime(9, 30), Qt::OffsetFromUTC, 7200);
const QString Application = QStringLiteral("org.velmora.growth");

/// Takes the input apart.
class Bytes {
 public:
  explicit Bytes(const QByteArray& input) : input_(input) {}

  bool atEnd() const { return place_ >= input_.size(); }
  quint8 next() { return atEnd() ? 0 : static_cast<quint8>(input_.at(place_++)); }
  QByteArray some(qsizetype size) {
    const QByteArray bytes = input_.mid(place_, size);
    place_ = qMin(place_ + size, input_.size());
    return bytes;
  }
  QByteArray rest() { return some(input_.size()); }
  QString text() { return QString::fromUtf8(some(next() % 80)); }
  qint64 number() {
    char bytes[sizeof(qint64)] = {};
    const QByteArray few = some(6);
    std::memcpy(bytes, few.constData(), static_cast<size_t>(few.size()));
    qint64 value = 0;
    std::memcpy(&value, bytes, sizeof value);
    return value;
  }
  QDate day() { return QDate(2024, 5, 2).addDays(next() % 3 - 1); }

 private:
  QByteArray input_;
  qsizetype place_ = 0;
};

QVariant value(Bytes& bytes) {
  switch (bytes.next() % 10) {
    case 0:
      return bytes.number();
    case 1:
      return bytes.next() % 2 == 0;
    case 2:
      return static_cast<double>(bytes.number()) / 7;
    case 3:
      return bytes.text().toUtf8();
    case 4:
      return QVariantList{bytes.text(), bytes.number()};
    case 5:
      return QVariantMap{{bytes.text(), bytes.text()}};
    case 6:
      return QDateTime::fromMSecsSinceEpoch(bytes.number() - (1LL << 46), Qt::UTC);
    case 7:
      return QDateTime(bytes.day(), QTime(12, 0)).toUTC();
    case 8:
      return bytes.text().repeated(100);
    default:
      return bytes.text();
  }
}

QVariantMap reply(Bytes& bytes) {
  static const QString keys[] = {velmora::link::Identifier,    velmora::link::Name,
                                 velmora::link::DateOfBirth,   velmora::link::DateOfStudy,
                                 velmora::link::OsiriXStudyID, velmora::link::StudyDescription,
                                 QStringLiteral("?")};
  QVariantMap reply{{velmora::link::Identifier, QStringLiteral("12-3")},
                    {velmora::link::OsiriXStudyID, QString()}};
  for (int count = bytes.next() % 8; count > 0; --count) {
    const QString& key = keys[bytes.next() % std::size(keys)];
    reply.insert(key, value(bytes));
  }
  return reply;
}

/// An archive that answers everything with the studies that the input makes.
class InventedPacs : public Pacs {
 public:
  explicit InventedPacs(Bytes& bytes) {
    static const QString patients[] = {QStringLiteral("12-3"), QStringLiteral("12/3"), QString(),
                                       QStringLiteral("7")};
    for (int count = bytes.next() % 4; count > 0; --count) {
      Study study;
      study.studyInstanceUID = QStringLiteral("1.%1").arg(bytes.next() % 4);
      const quint8 which = bytes.next();
      study.patientID = which < 200 ? patients[which % std::size(patients)] : bytes.text();
      study.issuerOfPatientID = bytes.next() % 4 == 0 ? QStringLiteral("A") : QString();
      study.patientName = bytes.text();
      if (bytes.next() % 3 > 0) study.birthDate = bytes.day();
      study.studyDate = bytes.day();
      study.description = bytes.text();
      studies_.append(study);
    }
  }

  PacsResult<QList<Study>> findStudies(const StudyQuery& query) override {
    fuzz::require(++questions_ <= 64, "the number of questions is bounded");
    const QString all = query.studyInstanceUID + query.patientID;
    fuzz::require(!all.isEmpty() && !all.contains(QLatin1Char('\\')), "one study or patient is asked for");
    return studies_;
  }
  PacsResult<> store(const QByteArray&, const QString&, const QString&) override { return {}; }
  PacsResult<> check() override { return {}; }

 private:
  QList<Study> studies_;
  int questions_ = 0;
};

void requireSafe(const SpooledReply& reply, const Study& study) {
  fuzz::require(applicationIdentifier(study.patientID) == applicationIdentifier(reply.identifier),
                "a chart lands with the patient whom it names");
  fuzz::require(!reply.birthDay.isValid() || !study.birthDate.isValid() || reply.birthDay == study.birthDate,
                "a chart lands with a patient of its birth date");
  fuzz::require(reply.studyID.trimmed().isEmpty() || reply.studyID.trimmed() == study.studyInstanceUID,
                "a chart lands in the study that it names");
}

}  // namespace

void fuzz::linkReply(const QByteArray& input) {
  // As files that somebody else left in the spool, with their seals and put right.
  decodeReply(input);
  decodeReplyHead(input);
  decodeState(input);
  decodeReply(sealed("velmora-link reply 1", input));
  decodeState(sealed("velmora-link state 1", input));

  // As a reply from a stranger.
  Bytes bytes(input);
  InventedPacs pacs(bytes);
  QVariantMap values = reply(bytes);
  const QString requested = QStringLiteral("1.%1").arg(bytes.next() % 5);
  const bool hadRequest = bytes.next() % 2 == 0;
  values.insert(velmora::link::JPEG, bytes.rest());
  auto taken = spooledReply(values, Application, Arrival);
  if (!taken) return;
  if (hadRequest) taken->requestedStudyUID = requested;
  const QByteArray file = encodeReply(*taken);
  require(decodeReply(file) == taken, "what was written is what was read");
  require(decodeReplyHead(file.left(HeadSize)).has_value(), "the head fits");

  const PacsResult<Study> study = findStudyFor(*taken, pacs);
  require(study.ok() == study.error().isNull(), "a refusal says why");
  if (!study.ok()) return;
  requireSafe(*taken, *study);
  EntryState state;
  state.decision = Decision{*study, QStringLiteral("2.25.2"), 9000, 1};
  require(decodeState(encodeState(state)) == state, "a decision is read as it was written");
  const auto capture =
      secondaryCapture(*study, {taken->jpeg, taken->description, taken->application},
                       {taken->sopInstanceUID, QStringLiteral("2.25.2"), 1, 9000, taken->arrival});
  require(capture.ok() == capture.error().isNull(), "there is an object or a reason");
}
