// SPDX-License-Identifier: LGPL-3.0-or-later
//
// What a save that was cut off has left is cleared away when the application starts.
#include <gtest/gtest.h>

#include <QFileInfo>

#include "orv/OrvKeptCopies.h"
#include "tests/velmora/support/RecordApplication.h"
#include "velmora/resources/SettingsKeys.h"

using testing_support::RecordApplication;
using testing_support::writeFile;

TEST(Start, RemovesWhatSavesThatWereCutOffHaveLeft) {
  RecordApplication application;
  const OrvKeptCopies copies(application.desktop.fileManager, application.desktop.runLoop,
                             "org.velmora.recorder");
  const QString versions = copies.earlierVersionsFolder(application.pathOfRecord("AB1"));
  QDir().mkpath(versions);
  const QStringList abandoned{application.saveFolder() + "/.0123456789abcdef.rec.unfinished",
                              application.home.path("Charts/.0123456789abcdef.jpg.unfinished"),
                              versions + "/.0123456789abcdef.rec.unfinished"};
  const QString kept = application.saveFolder() + "/AB1.rec.backup";
  for (const QString& file : abandoned) writeFile(file, "half a record");
  writeFile(kept, "a person's own");
  application.desktop.defaults.setInteger(31, velmora::settings::VersionCheckInterval);
  application.controller.applicationDidFinishLaunching();
  for (const QString& file : abandoned) EXPECT_FALSE(QFileInfo::exists(file)) << qPrintable(file);
  EXPECT_TRUE(QFileInfo::exists(kept));
}
