// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>

#include "bridge/pacs/Pacs.h"

namespace bridge {

/// How an exchange with an archive ended, for tables.
enum class Outcome { Done, TryAgain, Never };

template <typename Value>
Outcome outcomeOf(const PacsResult<Value>& result) {
  if (result.ok()) return Outcome::Done;
  return result.failure().kind == PacsFailure::Kind::Never ? Outcome::Never : Outcome::TryAgain;
}

/// The studies of an answer; a failure fails the test.
inline QList<Study> studiesOf(const PacsResult<QList<Study>>& result) {
  EXPECT_TRUE(result.ok()) << qPrintable(result.error());
  return result.valueOr({});
}

}  // namespace bridge
