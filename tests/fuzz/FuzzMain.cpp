// SPDX-License-Identifier: LGPL-3.0-or-later
//
// A fuzzer: libFuzzer's inputs, one of the targets. Its name is compiled in.
#include <QApplication>
#include <QLoggingCategory>
#include <QStandardPaths>
#include <cstdint>

#include "tests/fuzz/FuzzTargets.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("TZ", "Europe/Berlin");
  qputenv("LC_ALL", "C.UTF-8");
  QStandardPaths::setTestModeEnabled(true);
  QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
  static int argc = 1;
  static char name[] = "fuzz";
  static char* argv[] = {name, nullptr};
  new QApplication(argc, argv);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FUZZ_TARGET(QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
  return 0;
}
