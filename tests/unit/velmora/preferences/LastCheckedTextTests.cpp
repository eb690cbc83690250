// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/preferences/LastCheckedText.h"

#include <gtest/gtest.h>

#include <QTimeZone>

#include "platform/settings/UserDefaults.h"
#include "testing/main/Shown.h"

using namespace velmora;

using velmora::lastCheckedText;

namespace {
const QLocale British(QLocale::English, QLocale::UnitedKingdom);
}

TEST(LastCheckedText, IsNeverUntilTheFirstSuccess) {
  EXPECT_EQ(lastCheckedText(platform::distantPast(), British), "Never");
  // Told by the moment, not by how it is written.
  EXPECT_EQ(lastCheckedText(platform::distantPast().toOffsetFromUtc(3600), British), "Never");
  EXPECT_NE(lastCheckedText(platform::distantPast().addSecs(1), British), "Never");
}

TEST(LastCheckedText, IsDayAndTimeAfterwards) {
  const QDateTime morning(QDate(2024, 5, 2), QTime(9, 5, 59));
  EXPECT_EQ(lastCheckedText(morning, British), "02/05/2024 at 09:05");
  EXPECT_EQ(lastCheckedText(morning, QLocale(QLocale::German, QLocale::Germany)), "02.05.2024 at 09:05");
  const QString american = lastCheckedText(morning, QLocale(QLocale::English, QLocale::UnitedStates));
  EXPECT_TRUE(american.startsWith("5/2/2024 at 9:05")) << qPrintable(american);
  EXPECT_TRUE(american.endsWith("AM")) << qPrintable(american);
}

TEST(LastCheckedText, GoesByTheClockOnTheWall) {
  // This process lives in Berlin.
  const QDateTime utc(QDate(2024, 5, 2), QTime(22, 30), QTimeZone::utc());
  EXPECT_EQ(lastCheckedText(utc, British), "03/05/2024 at 00:30");
}
