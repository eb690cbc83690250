// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QVariant>
#include <QVariantMap>

#include "base/Export.h"
#include "base/Result.h"

namespace velmora::link {

/// What a document knows that goes into a link reply.
struct ChartExport {
  QString name;         ///< a null string is absent, an empty one is sent
  QVariant studyID;     ///< an invalid value is absent
  QString identifier;   ///< always sent
  QString description;  ///< always sent
  QDateTime birthDate;  ///< an invalid date is absent
  QDateTime examDate;   ///< an invalid date is absent
  QByteArray jpeg;
};

/// The payload of the link reply.
VELMORA_EXPORT QVariantMap replyPayload(const ChartExport& chart);

/// The payload of the link request for a study: strings stay, dates written "YYYY-MM-DD" become points in
/// time, the study's identifier is any value and goes as it is. The patient's identifier is required; an
/// unknown key is an error, since it is most likely a known one mistyped.
VELMORA_EXPORT base::Result<QVariantMap> requestPayload(const QVariantMap& study);

/// What a request that came says of the study that was chosen in the viewer.
struct LinkRequest {
  QVariant identifier;  ///< as it came; the patient's when it is a string
  QString name;         ///< as text; null when absent or nothing that has one
  QDateTime birthDate;  ///< invalid when absent or no date
  QDateTime studyDate;  ///< invalid when absent or no date
  QVariant studyID;     ///< as it came; invalid when absent
};
VELMORA_EXPORT LinkRequest readRequest(const QVariantMap& payload);
/// The payload of a request without what readRequest() does not look at.
VELMORA_EXPORT QVariantMap requestKeysOnly(const QVariantMap& payload);

/// The identifier as it names the patient's data file, and as applications hold it: every "/" is "-".
VELMORA_EXPORT QString fileNameIdentifier(const QString& identifier);

}  // namespace velmora::link
