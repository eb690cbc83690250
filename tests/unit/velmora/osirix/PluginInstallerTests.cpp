// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/osirix/PluginInstaller.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <QDateTime>
#include <QDirIterator>
#include <tuple>

#include "platform/bundles/PropertyList.h"
#include "testing/files/Files.h"
#include "testing/files/OrdinaryUser.h"
#include "testing/files/TemporaryHome.h"
#include "testing/standins/LogRecorder.h"
#include "testing/standins/TestServices.h"
#include "tests/unit/velmora/osirix/PluginTesting.h"
#include "velmora/osirix/Osirix.h"

using namespace velmora;

using namespace plugin_testing;
using testkit::readFile;
using testkit::writeFile;

namespace {

const QString Name = QStringLiteral("Recorder Link.osirixplugin");

void setTime(const QString& path, const QDateTime& time) {
  const timeval then{time.toSecsSinceEpoch(), 0};
  const timeval times[] = {then, then};
  ASSERT_EQ(::lutimes(QFile::encodeName(path).constData(), times), 0);
}

/// An application that may carry a plugin, a user whose viewer may have one.
class Plugin : public testing::Test {
 protected:
  QString carried(const QString& below = Name) const {
    return home.path("resources/OsiriX Plugins/" + below);
  }
  QString installed(const QString& below = Name) const { return home.path(ViewersFolder + '/' + below); }
  QStringList inViewersFolder() const {
    return desktop.fileManager.contentsOfDirectoryAtPath(home.path(ViewersFolder));
  }
  void install(const platform::Alert& outcome) {
    desktop.alerts.expect(outcome, platform::AlertDefaultReturn);
    plugin.doInstallOsirixPlugin();
    EXPECT_TRUE(desktop.alerts.allCame());
  }

  testkit::TemporaryHome home;
  testkit::LogRecorder log;
  testkit::TestServices desktop{{}, home.path("resources")};
  velmora::PluginInstaller plugin{desktop.fileManager, desktop.alerts, desktop.runLoop, desktop.mainBundle};
};

}  // namespace

// Which plugin is carried.

TEST_F(Plugin, IsNamedAfterTheOneEntryOfTheCarriedFolder) {
  makePlugin(carried(), "1");
  EXPECT_EQ(plugin.nameOfInstallableOsirixPlugin(), Name) << "and not after what is in it";
}

TEST_F(Plugin, HasNoNameWhereNoneIsCarried) {
  EXPECT_FALSE(plugin.nameOfInstallableOsirixPlugin()) << "no folder";
  home.makeFolder("resources/OsiriX Plugins");
  EXPECT_FALSE(plugin.nameOfInstallableOsirixPlugin()) << "an empty folder";
}

TEST_F(Plugin, IsTheFirstEntryInTheFileSystemsOrderWhateverItIs) {
  for (const char* name : {".hidden", "z.osirixplugin", "a.osirixplugin", "readme.txt"}) {
    writeFile(carried(QString::fromLatin1(name)), "x");
  }
  QDirIterator entries(home.path("resources/OsiriX Plugins"),
                       QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
  EXPECT_EQ(plugin.nameOfInstallableOsirixPlugin(), QFileInfo(entries.next()).fileName());
}

TEST_F(Plugin, IsAStrayHiddenFileWhereThatComesFirst) {
  writeFile(carried(".DS_Store"), "stray");
  EXPECT_EQ(plugin.nameOfInstallableOsirixPlugin(), ".DS_Store");
  EXPECT_FALSE(plugin.osirixPluginVersionCurrent());
  install(Succeeded);
  EXPECT_EQ(readFile(installed(".DS_Store")), "stray");
}

// Whether the installed plugin is current.

TEST_F(Plugin, IsCurrentWhereNoneIsCarried) {
  EXPECT_TRUE(plugin.osirixPluginVersionCurrent());
  makePlugin(installed(), "1");
  EXPECT_TRUE(plugin.osirixPluginVersionCurrent());
}

TEST_F(Plugin, IsNotCurrentWhereNoneIsInstalled) {
  makePlugin(carried(), "1");
  EXPECT_FALSE(plugin.osirixPluginVersionCurrent());
  makePlugin(installed("Another.osirixplugin"), "1");
  EXPECT_FALSE(plugin.osirixPluginVersionCurrent());
  EXPECT_EQ(log.lines(), QStringList()) << "that there is none is no news";
}

TEST_F(Plugin, IsCurrentOnlyWithTheSameVersionToTheLetter) {
  struct Case {
    const char* installed;
    const char* carried;
    bool current;
  };
  for (const Case& each : {Case{"1.9", "1.9", true}, Case{"1.10", "1.9", false}, Case{"1.9", "1.10", false},
                           Case{"2", "2.0", false}, Case{"2.0", "2", false}, Case{"10", "9", false},
                           Case{"1.0b", "1.0B", false}, Case{"1 ", "1", false}}) {
    makePlugin(carried(), each.carried);
    makePlugin(installed(), each.installed);
    EXPECT_EQ(plugin.osirixPluginVersionCurrent(), each.current) << each.installed << " and " << each.carried;
  }
}

TEST_F(Plugin, MayHaveItsDictionaryBesideItsContents) {
  writeFile(carried() + "/Info.plist", dictionary("3"));
  makePlugin(installed(), "3");
  EXPECT_TRUE(plugin.osirixPluginVersionCurrent());
}

TEST_F(Plugin, IsNotCurrentWhenTheInstalledOneIsDamaged) {
  makePlugin(carried(), "1");
  const QString list = installed() + "/Contents/Info.plist";
  const auto damages = QList<std::function<void()>>{
      [&] { writeFile(list, "no dictionary at all"); },
      [&] { writeFile(list, ""); },
      [&] { writeFile(list, dictionary("1").chopped(20)); },
      [&] { writeFile(list, "<plist version=\"1.0\"><array/></plist>"); },
      [&] {
        writeFile(list,
                  QByteArray("<plist><dict><key>CFBundleVersion</key><integer>1</integer></dict></plist>"));
      },
      [&] { writeFile(list, dictionary("1")), QFile(list).resize(1LL << 40); },
      [&] { QDir().mkpath(list); },
      [&] { QDir().mkpath(installed()); },
      [&] { QDir().mkpath(QFileInfo(list).path()), ::mkfifo(QFile::encodeName(list).constData(), 0600); },
      [&] { QDir().mkpath(QFileInfo(list).path()), QFile::link(list, list); },
      [&] { writeFile(installed(), "a file"); },
  };
  for (qsizetype i = 0; i < damages.size(); ++i) {
    std::ignore = desktop.fileManager.removeItem(installed());  // nothing is there before the first
    damages.at(i)();
    EXPECT_FALSE(plugin.osirixPluginVersionCurrent()) << i;
    install(Succeeded);
    EXPECT_TRUE(plugin.osirixPluginVersionCurrent()) << i;
  }
}

TEST_F(Plugin, IsNotCurrentWithoutAnyVersion) {
  writeFile(carried() + "/Contents/Info.plist", "<plist version=\"1.0\"><dict/></plist>");
  writeFile(installed() + "/Contents/Info.plist", "<plist version=\"1.0\"><dict/></plist>");
  EXPECT_FALSE(plugin.osirixPluginVersionCurrent());
}

// Installing.

TEST_F(Plugin, IsInstalledWholeWithEveryFolderAbove) {
  makePlugin(carried(), "1");
  const QString program = carried() + "/Contents/MacOS/Link";
  ASSERT_EQ(::chmod(QFile::encodeName(program).constData(), 0500), 0);
  QDir().mkpath(carried() + "/Contents/Resources/en.lproj");
  ASSERT_EQ(::symlink("MacOS/Link", QFile::encodeName(carried() + "/Contents/Current").constData()), 0);
  ASSERT_EQ(::chmod(QFile::encodeName(carried() + "/Contents/Resources").constData(), 0500), 0);

  install(Succeeded);
  EXPECT_EQ(log.lines(), QStringList());
  EXPECT_EQ(inViewersFolder(), QStringList{Name}) << "and nothing beside it";
  EXPECT_EQ(readFile(installed() + "/Contents/Info.plist"), dictionary("1"));
  EXPECT_EQ(readFile(installed() + "/Contents/MacOS/Link"), "the program of version 1");
  EXPECT_EQ(testkit::permissionsOf(installed() + "/Contents/MacOS/Link"), 0500);
  EXPECT_EQ(testkit::permissionsOf(installed()), testkit::permissionsOf(carried()));
  EXPECT_EQ(testkit::permissionsOf(installed() + "/Contents/Resources"), 0500);
  EXPECT_TRUE(QFileInfo(installed() + "/Contents/Resources/en.lproj").isDir());
  const QByteArray link = QFile::encodeName(installed() + "/Contents/Current");
  QByteArray target(100, '\0');
  target.resize(qMax<qsizetype>(0, ::readlink(link.constData(), target.data(), 100)));
  EXPECT_EQ(target, "MacOS/Link") << "as it stands, leading inside the copy";
  EXPECT_TRUE(plugin.osirixPluginVersionCurrent());
}

TEST_F(Plugin, ReplacesAnOlderCopyWholeAndTouchesNoOther) {
  makePlugin(carried(), "2");
  makePlugin(installed(), "1");
  makePlugin(installed("Another.osirixplugin"), "5");
  writeFile(installed() + "/Contents/Resources/only in version 1", "x");
  install(Succeeded);
  EXPECT_FALSE(QFile::exists(installed() + "/Contents/Resources")) << "replaced, not merged";
  EXPECT_EQ(readFile(installed() + "/Contents/MacOS/Link"), "the program of version 2");
  EXPECT_EQ(readFile(installed("Another.osirixplugin") + "/Contents/Info.plist"), dictionary("5"));
  EXPECT_EQ(inViewersFolder(), (QStringList{"Another.osirixplugin", Name}));
}

TEST_F(Plugin, ClearsAwayWhatInstallationsThatWereCutOffHaveLeft) {
  makePlugin(carried(), "2");
  makePlugin(installed(".removed-aBcDeF"), "1");
  makePlugin(installed(".unfinished-GhIjKl"), "1");
  makePlugin(installed(".unfinished-Recent"), "1");
  makePlugin(installed(".unfinished-notones"), "1");
  makePlugin(installed("removed-aBcDeF"), "1");
  writeFile(installed(".removed-aaFile"), "a file");
  QFile::link(installed("removed-aBcDeF"), installed(".removed-aaLink"));
  const QDateTime now = desktop.runLoop.now();
  for (const QString& name : inViewersFolder()) setTime(installed(name), now.addSecs(-11 * 60));
  setTime(installed(".unfinished-Recent"), now.addSecs(-9 * 60));
  install(Succeeded);
  EXPECT_EQ(inViewersFolder(), (QStringList{".removed-aaFile", ".removed-aaLink", ".unfinished-notones",
                                            ".unfinished-Recent", Name, "removed-aBcDeF"}));
  EXPECT_TRUE(QFile::exists(installed("removed-aBcDeF/Contents/Info.plist")));
  EXPECT_EQ(log.lines(), QStringList());
}

TEST_F(Plugin, TakesThePlaceOfALinkAndLeavesWhatItLeadsTo) {
  makePlugin(carried(), "2");
  makePlugin(home.path("elsewhere"), "1");
  home.makeFolder(ViewersFolder);
  ASSERT_TRUE(QFile::link(home.path("elsewhere"), installed()));
  install(Succeeded);
  EXPECT_FALSE(QFileInfo(installed()).isSymLink());
  EXPECT_EQ(readFile(home.path("elsewhere") + "/Contents/Info.plist"), dictionary("1"));

  ASSERT_TRUE(desktop.fileManager.removeItem(installed()).ok());
  ASSERT_TRUE(QFile::link(home.path("nowhere"), installed()));
  install(Succeeded);
  EXPECT_TRUE(plugin.osirixPluginVersionCurrent()) << "a link that leads nowhere is in the way too";
}

TEST_F(Plugin, GoesWhereALinkInPlaceOfTheViewersFolderLeads) {
  makePlugin(carried(), "1");
  home.makeFolder("Library/Application Support/OsiriX");
  ASSERT_TRUE(QFile::link(home.makeFolder("on another disk"), home.path(ViewersFolder)));
  install(Succeeded);
  EXPECT_TRUE(QFile::exists(home.path("on another disk/") + Name));
}

TEST_F(Plugin, TellsTheOutcomeInAModalAlert) {
  makePlugin(carried(), "1");
  desktop.alerts.expect(Succeeded, platform::AlertDefaultReturn,
                        [&] { EXPECT_TRUE(desktop.runLoop.inModalSession()); });
  plugin.doInstallOsirixPlugin();
  EXPECT_EQ(desktop.alerts.shown().size(), 1);
}

// What stands in the way.

TEST_F(Plugin, IsNotInstalledWhereAFileStandsForTheViewersFolder) {
  makePlugin(carried(), "1");
  writeFile(home.path(ViewersFolder), "in the way");
  install(Failed);
  ASSERT_EQ(log.lines().size(), 2);
  EXPECT_EQ(log.lines().at(0), QString("Create directory failed: The folder '%1' could not be created.")
                                   .arg(home.path(ViewersFolder)));
  EXPECT_TRUE(log.lines().at(1).startsWith("Copy plugin failed: "));
  EXPECT_GT(log.lines().at(1).size(), QString("Copy plugin failed: ").size());
  EXPECT_EQ(readFile(home.path(ViewersFolder)), "in the way");
}

TEST_F(Plugin, IsNotInstalledWhereAFileStandsFurtherUp) {
  makePlugin(carried(), "1");
  writeFile(home.path("Library"), "in the way");
  install(Failed);
  ASSERT_EQ(log.lines().size(), 2);
  EXPECT_TRUE(log.lines().at(0).startsWith("Create directory failed: "));
  EXPECT_TRUE(log.lines().at(1).startsWith("Copy plugin failed: "));
  EXPECT_EQ(readFile(home.path("Library")), "in the way");
}

TEST_F(Plugin, KeepsTheOldCopyWholeInAReadOnlyFolder) {
  makePlugin(carried(), "2");
  makePlugin(installed(), "1");
  QFile::setPermissions(home.path(ViewersFolder), QFile::ReadOwner | QFile::ExeOwner);
  {
    const testkit::OrdinaryUser user(home.path());
    install(Failed);
    EXPECT_FALSE(plugin.osirixPluginVersionCurrent());
  }
  EXPECT_EQ(log.lines(),
            (QStringList{
                QString("Remove old plugin failed: The folder '%1' could not be removed.").arg(installed()),
                QString("Copy plugin failed: '%1' exists already.").arg(installed())}));
  EXPECT_EQ(readFile(installed() + "/Contents/Info.plist"), dictionary("1"));
  EXPECT_EQ(readFile(installed() + "/Contents/MacOS/Link"), "the program of version 1");
}

TEST_F(Plugin, IsNotInstalledIntoAnEmptyReadOnlyFolder) {
  makePlugin(carried(), "2");
  home.makeFolder(ViewersFolder);
  QFile::setPermissions(home.path(ViewersFolder), QFile::ReadOwner | QFile::ExeOwner);
  {
    const testkit::OrdinaryUser user(home.path());
    install(Failed);
  }
  ASSERT_EQ(log.lines().size(), 1);
  EXPECT_TRUE(log.lines().first().startsWith("Copy plugin failed: "));
  EXPECT_EQ(inViewersFolder(), QStringList());
}

TEST_F(Plugin, IsNotInstalledWhereItCannotBeRead) {
  makePlugin(carried(), "2");
  QFile::setPermissions(carried() + "/Contents/MacOS/Link", QFile::WriteOwner);
  {
    const testkit::OrdinaryUser user(home.path());
    install(Failed);
  }
  ASSERT_EQ(log.lines().size(), 1);
  EXPECT_TRUE(log.lines().first().startsWith("Copy plugin failed: "));
  EXPECT_EQ(inViewersFolder(), QStringList()) << "not half of it either";
}

TEST_F(Plugin, IsNotInstalledWithoutAFolderThatCannotBeRead) {
  makePlugin(carried(), "2");
  ASSERT_EQ(::chmod(QFile::encodeName(carried() + "/Contents/MacOS").constData(), 0100), 0);
  {
    const testkit::OrdinaryUser user(home.path());
    install(Failed);
  }
  EXPECT_EQ(
      log.lines(),
      QStringList{
          QString("Copy plugin failed: The folder '%1' cannot be read.").arg(carried() + "/Contents/MacOS")});
  EXPECT_EQ(inViewersFolder(), QStringList());
}

TEST_F(Plugin, WithAPipeInItIsNotInstalledRatherThanWaitedFor) {
  makePlugin(carried(), "2");
  ASSERT_EQ(::mkfifo(QFile::encodeName(carried() + "/Contents/pipe").constData(), 0600), 0);
  install(Failed);
  EXPECT_EQ(
      log.lines(),
      QStringList{QString("Copy plugin failed: '%1' is not a file.").arg(carried() + "/Contents/pipe")});
  EXPECT_EQ(inViewersFolder(), QStringList());
}

TEST_F(Plugin, ThatIsNotCarriedIsToldAndNoOtherPluginTouched) {
  makePlugin(installed("Another.osirixplugin"), "5");
  install(Failed);
  EXPECT_EQ(log.lines(), QStringList{QString("Copy plugin failed: There is no plugin in '%1'.")
                                         .arg(home.path("resources/OsiriX Plugins"))});
  EXPECT_EQ(inViewersFolder(), QStringList{"Another.osirixplugin"});
  EXPECT_EQ(readFile(installed("Another.osirixplugin") + "/Contents/Info.plist"), dictionary("5"));
}

TEST_F(Plugin, FindsTheViewerByItsBundleIdentifier) {
  EXPECT_FALSE(velmora::osirix::isInstalled(desktop.workspace));
  desktop.workspace.applications.insert("com.example.other", "/opt/other");
  EXPECT_FALSE(velmora::osirix::isInstalled(desktop.workspace));
  desktop.workspace.applications.insert(velmora::osirix::BundleIdentifier, "/opt/osirix");
  EXPECT_TRUE(velmora::osirix::isInstalled(desktop.workspace));
}

// The plugin of the growth application.

TEST(GrowthPlugin, IsTheOnlyEntryAndHasWhatTheViewerAsksFor) {
  const QString folder = QStringLiteral(GROWTH_PLUGIN_FOLDER "/OsiriX Plugins");
  const QStringList entries = base::FileManager().contentsOfDirectoryAtPath(folder);
  ASSERT_EQ(entries, QStringList{"Growth Link.osirixplugin"});
  const platform::Bundle bundle = platform::bundleWithPath(folder + '/' + entries.first());
  EXPECT_EQ(bundle.bundleIdentifier(), "org.velmora.growth.osirix-plugin");
  EXPECT_EQ(bundle.stringForInfoDictionaryKey("CFBundlePackageType"), "BNDL");
  EXPECT_FALSE(bundle.stringForInfoDictionaryKey("CFBundleVersion").isEmpty());
  EXPECT_FALSE(bundle.stringForInfoDictionaryKey("CFBundleExecutable").isEmpty());
  EXPECT_FALSE(bundle.stringForInfoDictionaryKey("NSPrincipalClass").isEmpty());
  EXPECT_EQ(bundle.stringForInfoDictionaryKey("pluginType"), "Database");
  EXPECT_EQ(bundle.objectForInfoDictionaryKey("MenuTitles").toList().size(), 1);
  EXPECT_TRUE(QFile::exists(bundle.resourcePath() + "/About the link.txt"));
}

TEST(GrowthPlugin, InstallsAndIsCurrentThen) {
  const testkit::TemporaryHome home;
  const testkit::LogRecorder log;
  testkit::TestServices desktop({}, QStringLiteral(GROWTH_PLUGIN_FOLDER));
  velmora::PluginInstaller plugin(desktop.fileManager, desktop.alerts, desktop.runLoop, desktop.mainBundle);
  EXPECT_FALSE(plugin.osirixPluginVersionCurrent());
  desktop.alerts.expect(Succeeded, platform::AlertDefaultReturn);
  plugin.doInstallOsirixPlugin();
  EXPECT_TRUE(plugin.osirixPluginVersionCurrent());
  EXPECT_EQ(log.lines(), QStringList());
}
