// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QStringView>
#include <compare>

namespace velmora::orv {

/// Which of two version numbers comes first: "1.9" before "1.10", "1.0b2" before "1.0", "1.0" level with
/// "1.0.0".
///
/// A version is read as numbers and words; whatever else stands between them only separates. Numbers are
/// compared by value, however many digits they have, words without regard to case. At the same place a word
/// ("b", "rc") comes before the end, and the end before a further number: words mark what precedes a release.
/// Zeros before a word or the end do not count, nor does a "v" before the first number.
std::strong_ordering compareVersions(QStringView left, QStringView right);

}  // namespace velmora::orv
