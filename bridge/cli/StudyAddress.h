// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>

#include "base/Result.h"
#include "bridge/dicom/Study.h"

namespace bridge {

/// What a "velmora-link:" address asks for: the study to look for, and the application to send it to.
struct StudyAddress {
  StudyQuery query;
  QString application;  ///< empty: the first that is configured
};

/// Parses an address of the form
///
///   velmora-link:study?uid=1.2.840.99.7&application=org.example.growth
///
/// with the keys uid, accession, patient, date (YYYY-MM-DD) and application, in any order, each at most once,
/// and at least one of the first three. Values are UTF-8, percent-encoded (RFC 3986); "+" is a plus sign.
///
/// Any page in a browser may pass such an address. It can name a study and nothing else: it has at most
/// `LongestAddress` characters, all of them printable ASCII; a UID is one (isUid()); an identifier is at most
/// 64 characters, without backslashes, wildcards and control characters; and there is no key for a file, a
/// host or a configuration. A refusal says why, without quoting the address.
velmora::base::Result<StudyAddress> studyAddress(const QString& address);

inline constexpr int LongestAddress = 2048;

/// Whether the text can be a patient's identifier or an accession number.
bool isPlainIdentifier(const QString& text);

}  // namespace bridge
