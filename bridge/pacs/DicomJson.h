// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>

#include "base/Result.h"
#include "bridge/dicom/Study.h"
#include "bridge/dicom/StudyAttributes.h"

namespace bridge {

/// The key of an attribute in the DICOM JSON model (PS3.18 F.2), and its name in a query (8.3.4.3): eight
/// hexadecimal digits.
QString jsonKey(Tag tag);

/// The values of an attribute in the DICOM JSON model (PS3.18 F.2) as DICOM writes them in a data set:
/// several with backslashes between them, a person's name with "=" between its component groups. A whole
/// number counts as text; whatever else is no text is empty, as is an attribute that is missing.
QString jsonText(const QJsonObject& dataset, Tag tag);

/// The studies of a QIDO-RS answer in JSON. One that has no proper Study Instance UID spoils the answer:
/// whoever counts studies must not miss one.
velmora::base::Result<QList<Study>> studiesFromJson(const QByteArray& json);

}  // namespace bridge
