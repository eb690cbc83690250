// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QString>
#include <QVariantMap>

namespace bridge {

/// A reply without its chart, as a JSON object with the keys of the payload. Strings, booleans and numbers
/// stay as they are; a date becomes {"date": "YYYY-MM-DD", "instant": "...Z"}, the local calendar day and the
/// point in time; bytes become {"base64": "..."}; lists and dictionaries hold the same. A number that JSON
/// cannot hold becomes a string.
QJsonObject jsonOf(const QVariantMap& reply);

/// One line about a reply, without the line break: number, time of arrival, identifier, description, size of
/// the chart, study, and what is wrong with the reply, if anything, separated by tabs. Unsafe characters are
/// escaped, so that no value can end the line or add a column.
QString summaryOf(const QVariantMap& reply, const QString& number, const QDateTime& arrival);

}  // namespace bridge
