// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The main function of every test program: a home folder of its own, then all tests.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QTemporaryDir>
#include <cstdio>

#include "testing/standins/Scripted.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  // A broken expectation of a stand-in fails the test.
  velmora::testkit::setFailureHandler([](const QString& what) { ADD_FAILURE() << qPrintable(what); });

  // Whatever a test does to the user's files, settings and runtime folder, it does here.
  const QTemporaryDir home;
  if (!home.isValid()) {
    std::fprintf(stderr, "No temporary home folder: %s\n", qPrintable(home.errorString()));
    return 1;
  }
  const auto own = [&home](const char* variable, const char* folder) {
    const QString path = home.path() + QLatin1String(folder);
    QDir().mkpath(path);
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv(variable, QFile::encodeName(path));
  };
  own("HOME", "");
  own("XDG_CONFIG_HOME", "/.config");
  own("XDG_DATA_HOME", "/.local/share");
  own("XDG_CACHE_HOME", "/.cache");
  own("XDG_RUNTIME_DIR", "/.runtime");
  // The same clock and language everywhere; a test about another one sets its own.
  qputenv("TZ", "Europe/Berlin");
  qputenv("LC_ALL", "C.UTF-8");
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");

  QApplication application(argc, argv);
  QGuiApplication::setQuitOnLastWindowClosed(false);
  return RUN_ALL_TESTS();
}
