// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/document/ShortDates.h"

#include <gtest/gtest.h>

#include <QLocale>
#include <QScopeGuard>

#include "testing/standins/VirtualRunLoop.h"

using namespace velmora;

TEST(ShortDates, ReadTwoDigitsOfAYearByTheClockOfTheRunLoop) {
  const auto back = qScopeGuard([before = QLocale()] { QLocale::setDefault(before); });
  QLocale::setDefault(QLocale("en_GB"));
  testkit::VirtualRunLoop in2024;
  const ShortDates dates(in2024);
  EXPECT_EQ(dates.day("02/05/43"), QDate(2043, 5, 2));
  EXPECT_EQ(dates.day("02/05/44"), QDate(1944, 5, 2));
  in2024.advance(366.0 * 24 * 3600);
  EXPECT_EQ(dates.day("02/05/44"), QDate(2044, 5, 2)) << "a year later";
}
