// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QVariantMap>

namespace bridge {

/// A dictionary, or the reason why there is none, in words for the user.
struct RequestResult {
  QVariantMap values;
  QString error;
  bool ok() const { return error.isNull(); }
};

/// Reads a study from a JSON object with the keys of the link request, dates as "YYYY-MM-DD". A key whose
/// value is null counts as absent. Checks no more than that it is an object.
RequestResult studyFromJson(const QByteArray& json);

/// The details of the link request for a study: strings stay, the dates become points in time, the study's
/// identifier is any value and goes as it is. The patient's identifier is required; an unknown key is an
/// error, since it is most likely a known one mistyped.
RequestResult linkRequest(const QVariantMap& study);

/// Whether the text can be a bundle identifier: letters, digits, dots, hyphens and underscores.
bool isBundleIdentifier(const QString& text);

}  // namespace bridge
