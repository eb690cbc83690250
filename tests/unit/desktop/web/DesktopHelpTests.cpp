// SPDX-License-Identifier: LGPL-3.0-or-later
#include <QDir>
#include <QFile>
#include <QLocale>
#include <QTemporaryDir>

#include "desktop/web/HelpPages.h"
#include "testing/main/Shown.h"
#include "testing/standins/Scripted.h"
#include "testing/standins/VirtualRunLoop.h"

using namespace velmora;

using velmora::desktop::helpPage;

namespace {

class Help : public testing::Test {
 protected:
  Help() : before_(QLocale()) {}
  ~Help() override { QLocale::setDefault(before_); }
  void write(const QString& language) {
    QDir(folder.path()).mkpath(language);
    QFile page(pageOf(language));
    EXPECT_TRUE(page.open(QIODevice::WriteOnly));
  }
  QString pageOf(const QString& language) const { return folder.filePath(language + "/index.html"); }
  void show() { desktop::showHelp(folder.path(), workspace, alerts); }

  QTemporaryDir folder;
  testkit::VirtualRunLoop runLoop;
  testkit::ScriptedAlerts alerts{runLoop};
  testkit::RecordingWorkspace workspace;

 private:
  QLocale before_;
};

TEST_F(Help, IsInTheFirstOfTheUsersLanguagesThatItHas) {
  for (const char* language : {"en", "de", "fr"}) write(language);
  EXPECT_EQ(helpPage(folder.path(), {"de-AT", "fr"}), pageOf("de"));
  EXPECT_EQ(helpPage(folder.path(), {"de_CH"}), pageOf("de"));
  EXPECT_EQ(helpPage(folder.path(), {"pt-BR", "fr-CA", "de"}), pageOf("fr"));
  EXPECT_EQ(helpPage(folder.path(), {"zh-Hant-TW"}), pageOf("en"));
  EXPECT_EQ(helpPage(folder.path(), {}), pageOf("en"));
}

TEST_F(Help, PrefersTheUsersOwnVariantOfALanguage) {
  for (const char* language : {"en", "de", "de-AT"}) write(language);
  EXPECT_EQ(helpPage(folder.path(), {"de-AT"}), pageOf("de-AT"));
  EXPECT_EQ(helpPage(folder.path(), {"de-Latn-AT"}), pageOf("de"));
}

TEST_F(Help, OpensInTheUsersLanguage) {
  write("en");
  write("es");
  QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Mexico));
  show();
  EXPECT_EQ(workspace.opened, QList<QUrl>{QUrl::fromLocalFile(pageOf("es"))});
}

TEST_F(Help, SaysThatThereIsNone) {
  alerts.expect(
      {"The help is not installed.", "OK", "", "", "It was looked for in the folder " + folder.path() + "."},
      platform::AlertDefaultReturn);
  show();
  EXPECT_TRUE(workspace.opened.isEmpty());
}

/// Nothing opens anything here.
class BareWorkspace : public testkit::RecordingWorkspace {
 public:
  bool openURL(const QUrl&) override { return false; }
};

TEST_F(Help, SaysThatNothingShowsIt) {
  write("en");
  BareWorkspace bare;
  alerts.expect(
      {"The help could not be shown.", "OK", "", "", "No program opens the page " + pageOf("en") + "."},
      platform::AlertDefaultReturn);
  desktop::showHelp(folder.path(), bare, alerts);
}

}  // namespace
