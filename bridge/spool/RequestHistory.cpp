// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/spool/RequestHistory.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "base/CalendarDay.h"
#include "bridge/spool/SpoolFile.h"
#include "link/protocol/LinkPayload.h"

using namespace velmora;

namespace bridge {
namespace {

const QByteArray Kind("velmora-link requests 1");
constexpr qint64 LargestFile = 4 * 1024 * 1024;
/// Longer ones are neither an identifier nor a UID; DICOM allows 64 characters for both.
constexpr qsizetype LongestIdentifier = 256;

QString textOf(const QVariant& value) {
  return value.typeId() == QMetaType::QString ? value.toString() : QString();
}

}  // namespace

QString applicationIdentifier(const QString& identifier) {
  return link::fileNameIdentifier(identifier).trimmed();
}

RequestHistory::RequestHistory(const QString& path) : path_(path) {}

base::Result<> RequestHistory::open(const QDateTime& now) {
  const base::Result<> read = readFile();
  const qsizetype all = requests_.size();
  forgetOld(now);
  saved_ = requests_.size() == all;
  return read ? save() : read;
}

/// Puts what the file holds before what was received since.
base::Result<> RequestHistory::readFile() {
  const base::Result<std::optional<QByteArray>> file = readBeginning(path_, LargestFile);
  isRead_ = file.ok();
  if (!file) return base::Failure{QStringLiteral("cannot read %1: %2").arg(path_, file.error())};
  if (!*file) return {};
  const auto contents = unsealed(Kind, **file);
  const QJsonDocument document = contents ? QJsonDocument::fromJson(*contents) : QJsonDocument();
  if (!document.isArray()) {
    QFile::remove(path_ + QStringLiteral(".damaged"));
    QFile::rename(path_, path_ + QStringLiteral(".damaged"));
    return base::Failure{QStringLiteral("%1 is damaged; earlier requests are forgotten").arg(path_)};
  }
  QList<ReceivedRequest> earlier;
  for (const QJsonValue each : document.array()) {
    const QJsonObject object = each.toObject();
    earlier.append(
        {object.value(QStringLiteral("application")).toString(),
         object.value(QStringLiteral("identifier")).toString(),
         object.value(QStringLiteral("studyUID")).toString(),
         base::dayFromIso(object.value(QStringLiteral("studyDay")).toString()),
         QDateTime::fromString(object.value(QStringLiteral("time")).toString(), Qt::ISODateWithMs)});
  }
  requests_ = earlier + requests_;
  return {};
}

void RequestHistory::forgetOld(const QDateTime& now) {
  requests_.removeIf([&now](const ReceivedRequest& each) { return each.time.daysTo(now) > Days; });
  if (requests_.size() > Most) requests_.remove(0, requests_.size() - Most);
}

base::Result<> RequestHistory::remember(const QVariantMap& payload, const QString& application,
                                        const QDateTime& time) {
  const link::LinkRequest request = link::readRequest(payload);
  ReceivedRequest heard;
  heard.application = application;
  heard.identifier = applicationIdentifier(textOf(request.identifier));
  heard.studyUID = textOf(request.studyID).trimmed();
  heard.time = time.toUTC();
  heard.studyDay = base::localDayOf(request.studyDate);
  if (heard.identifier.isEmpty() || heard.identifier.size() > LongestIdentifier) return {};
  // The application has received it all the same: a later reply may belong to it and to no earlier one.
  if (heard.studyUID.size() > LongestIdentifier) heard.studyUID.clear();
  requests_.append(heard);
  forgetOld(heard.time);
  saved_ = false;
  return save();
}

base::Result<> RequestHistory::save() {
  base::Result<> read;
  if (!isRead_) {
    read = readFile();
    if (isRead_ && !requests_.isEmpty()) forgetOld(requests_.last().time);
  }
  // Nothing is written over a file that the disk does not give for now.
  if (!isRead_ || saved_) return read;
  QJsonArray array;
  for (const ReceivedRequest& each : requests_) {
    array.append(QJsonObject{{QStringLiteral("application"), each.application},
                             {QStringLiteral("identifier"), each.identifier},
                             {QStringLiteral("studyUID"), each.studyUID},
                             {QStringLiteral("studyDay"), each.studyDay.toString(Qt::ISODate)},
                             {QStringLiteral("time"), each.time.toString(Qt::ISODateWithMs)}});
  }
  const base::Result<> written =
      writeSpoolFile(path_, sealed(Kind, QJsonDocument(array).toJson(QJsonDocument::Compact)));
  saved_ = written.ok();
  return saved_ ? read : written;
}

void RequestHistory::matchToRequest(SpooledReply& reply) const {
  const QString identifier = applicationIdentifier(reply.identifier);
  const auto isOfPatient = [&](const ReceivedRequest& request) {
    // The record of a returning patient may hold the identifier in capitals. Whether it is this patient, the
    // birth date has to tell; see checkSamePatient().
    return request.identifier == identifier || request.identifier.toUpper() == identifier;
  };
  bool isLatest = true;
  for (auto request = requests_.rbegin(); request != requests_.rend(); ++request) {
    if (request->application != reply.application || !isOfPatient(*request)) continue;
    // The order is that of arrival; if the clock was set back, the latest may lie in the future.
    const bool isFresh = qAbs(request->time.secsTo(reply.arrival)) <= HoursOfTheLatest * 3600;
    const bool isOfTheDay = reply.studyDay.isValid() && request->studyDay == reply.studyDay;
    if ((isLatest && isFresh) || isOfTheDay) {
      reply.requestedStudyUID = request->studyUID;
      return;
    }
    isLatest = false;
  }
}

}  // namespace bridge
