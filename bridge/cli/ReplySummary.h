// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QString>
#include <QVariantMap>

namespace bridge {

/// All of a reply but the chart, as a JSON object with the keys of the wire. Strings, booleans and numbers
/// are themselves; a date is {"date": "YYYY-MM-DD", "instant": "...Z"}, the local calendar day and the point
/// in time; bytes are {"base64": "..."}; lists and dictionaries hold the same. A number that JSON cannot hold
/// is a string.
QJsonObject jsonOf(const QVariantMap& reply);

/// One line about a reply, without its end: number, time of arrival, identifier, description, size of the
/// chart, study, and complaints if any, separated by tabs. Control characters in what was received are shown
/// escaped, so that it can neither end the line nor add a column.
QString summaryOf(const QVariantMap& reply, const QString& number, const QDateTime& arrival);

}  // namespace bridge
