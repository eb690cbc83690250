// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Lets the stand-ins fail the test when an expectation is broken.
#include <gtest/gtest.h>

#include "testing/Scripted.h"

using namespace velmora;

namespace {

const bool failuresReported = [] {
  testkit::setFailureHandler([](const QString& what) { ADD_FAILURE() << qPrintable(what); });
  return true;
}();

}  // namespace
