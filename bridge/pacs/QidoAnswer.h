// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QString>

#include "bridge/dicom/Study.h"

namespace bridge {

/// The attributes that are asked for, as eight hexadecimal digits each (PS3.18 8.3.4.3).
QList<QByteArray> studyAttributes();

/// The first value of an attribute in the DICOM JSON model (PS3.18 F.2), whatever its tag's letters look
/// like; undefined when there is none.
QJsonValue firstValue(const QJsonObject& dataset, const char* tag);
/// The same as text, without the padding; a number in its shortest form; empty when it is neither.
QString firstText(const QJsonObject& dataset, const char* tag);
/// A person's name with its component groups as DICOM writes it (PS3.5 6.2.1), groups without content left
/// out.
QString firstName(const QJsonObject& dataset, const char* tag);

struct QidoAnswer {
  QList<Study> studies;
  QString error;  ///< why it could not be understood; null when it was
  bool ok() const { return error.isNull(); }
};

/// The studies of a QIDO-RS answer in JSON. One that has no proper Study Instance UID spoils the answer:
/// whoever counts studies must not miss one.
QidoAnswer studiesFromJson(const QByteArray& json);

}  // namespace bridge
