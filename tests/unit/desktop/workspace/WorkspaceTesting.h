// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>

#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTextBrowser>

#include "desktop/workspace/QtWorkspace.h"
#include "testing/files/EnvironmentVariable.h"
#include "testing/files/Files.h"

namespace testing_support {

/// A desktop whose applications stand in a data folder of the test's own.
class RealWorkspace : public testing::Test {
 protected:
  RealWorkspace() { QDir().mkpath(data.path() + "/applications"); }

  QString entry(const QString& identifier) const {
    return data.path() + "/applications/" + identifier + ".desktop";
  }
  void install(const QString& identifier, const QByteArray& lines) const {
    velmora::testkit::writeFile(entry(identifier),
                                "[Desktop Entry]\nType=Application\nName=Viewer\n" + lines);
  }

  QTemporaryDir data;
  velmora::testkit::EnvironmentVariable dataHome{"XDG_DATA_HOME", QFile::encodeName(data.path())};
  velmora::desktop::QtWorkspace workspace;
};

/// Stands for the user's programs for files.
class ProgramForFiles {
 public:
  ProgramForFiles() {
    QObject::connect(&browser_, &QTextBrowser::sourceChanged, &browser_,
                     [this](const QUrl& url) { opened.append(url); });
    QDesktopServices::setUrlHandler("file", &browser_, "setSource");
  }
  ~ProgramForFiles() { QDesktopServices::unsetUrlHandler("file"); }
  ProgramForFiles(const ProgramForFiles&) = delete;
  ProgramForFiles& operator=(const ProgramForFiles&) = delete;

  QList<QUrl> opened;

 private:
  QTextBrowser browser_;
};

}  // namespace testing_support
