// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/pacs/StowMessage.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUuid>

#include "bridge/dicom/DicomText.h"
#include "bridge/pacs/DicomJson.h"

namespace bridge {
namespace {

/// The item of a sequence that speaks of an instance; empty when there is none.
QJsonObject itemAbout(const QJsonObject& dataset, Tag sequence, const QString& sopInstanceUID) {
  const QJsonArray items =
      dataset.value(jsonKey(sequence)).toObject().value(QLatin1String("Value")).toArray();
  for (const auto& item : items) {
    const QString uid = jsonText(item.toObject(), tags::ReferencedSOPInstanceUID);
    if (withoutPadding(uid) == sopInstanceUID) return item.toObject();
  }
  return {};
}

}  // namespace

QByteArray randomBoundary() { return "velmora-" + QUuid::createUuid().toByteArray(QUuid::WithoutBraces); }

StowMessage stowMessage(const QByteArray& file, const std::function<QByteArray()>& candidate) {
  QByteArray boundary = candidate();
  while (file.contains(boundary)) boundary = candidate();
  StowMessage message;
  message.contentType = "multipart/related; type=\"application/dicom\"; boundary=" + boundary;
  if (!file.isEmpty()) {
    message.body = "--" + boundary + "\r\nContent-Type: application/dicom\r\n\r\n" + file + "\r\n";
  }
  message.body += "--" + boundary + "--\r\n";
  return message;
}

StowVerdict stowVerdict(const QByteArray& json, const QString& sopInstanceUID) {
  const QJsonDocument document = QJsonDocument::fromJson(json);
  // The answer is one data set; some servers put it into a list, as the answers to searches are.
  const QJsonObject dataset = document.isArray() ? document.array().first().toObject() : document.object();
  StowVerdict verdict;
  const QJsonObject failed = itemAbout(dataset, tags::FailedSOPSequence, sopInstanceUID);
  if (!failed.isEmpty()) {
    verdict.said = StowVerdict::Said::Failed;
    verdict.failureReason = jsonText(failed, tags::FailureReason).toUShort();
  } else if (!itemAbout(dataset, tags::ReferencedSOPSequence, sopInstanceUID).isEmpty()) {
    verdict.said = StowVerdict::Said::Stored;
  }
  return verdict;
}

}  // namespace bridge
