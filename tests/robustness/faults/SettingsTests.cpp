// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The settings file is not what the program left behind.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <array>
#include <memory>

#include "apps/growth/resources/GrowthResources.h"
#include "desktop/settings/QtUserDefaults.h"
#include "testing/files/EnvironmentVariable.h"
#include "testing/files/Files.h"
#include "testing/files/OrdinaryUser.h"
#include "tests/robustness/faults/GrowthDesk.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;

using faults::GrowthDesk;
using velmora::desktop::QtUserDefaults;

namespace settings = velmora::settings;

namespace {

const QString Identifier = QStringLiteral("org.velmora.growth");

class SettingsFile : public testing::Test {
 protected:
  QString file() const { return folder.path() + QStringLiteral("/org.velmora.growth.conf"); }
  QByteArray stored() const { return testkit::readFile(file()); }
  QStringList names() const { return testkit::fileNames(folder.path()); }

  QTemporaryDir folder;
  testkit::VirtualRunLoop clock;

 private:
  testkit::EnvironmentVariable configuration_{"XDG_CONFIG_HOME", QFile::encodeName(folder.path())};
};

TEST_F(SettingsFile, ThatIsDamagedIsKeptAsideBeforeItIsWrittenOver) {
  const testkit::LogRecorder log;
  const QByteArray damaged = "[General]\nAuto%20Save=true\nSave%20Direc\xff\xfe\nrubbish without a sign\n";
  testkit::writeFile(file(), damaged);
  QtUserDefaults defaults(Identifier, clock);
  EXPECT_TRUE(defaults.boolForKey(settings::AutoSave)) << "what can be read counts";
  defaults.setInteger(7, settings::VersionCheckInterval);
  ASSERT_EQ(names().size(), 2);
  const QString copy = names().at(1);
  EXPECT_TRUE(copy.startsWith(QStringLiteral("org.velmora.growth.conf.damaged-"))) << qPrintable(copy);
  EXPECT_EQ(testkit::readFile(folder.path() + QLatin1Char('/') + copy), damaged);
  EXPECT_EQ(QtUserDefaults(Identifier, clock).integerForKey(settings::VersionCheckInterval), 7);
  EXPECT_EQ(log.lines().size(), 1);
}

TEST_F(SettingsFile, DamagedUnderARunningProgramIsKeptAsideToo) {
  const testkit::LogRecorder log;
  QtUserDefaults defaults(Identifier, clock);
  defaults.setObject(true, settings::AutoSave);
  const QByteArray damaged = "[General]\nno sign here\n";
  testkit::writeFile(file(), damaged);
  defaults.setInteger(7, settings::VersionCheckInterval);
  bool kept = false;
  for (const QString& name : names()) {
    kept = kept || testkit::readFile(folder.path() + QLatin1Char('/') + name) == damaged;
  }
  EXPECT_TRUE(kept) << qPrintable(names().join(QLatin1Char(' ')));
}

TEST_F(SettingsFile, CutAtEveryLengthNeitherStopsTheProgramNorInventsSettings) {
  const testkit::LogRecorder log;
  {
    QtUserDefaults defaults(Identifier, clock);
    defaults.setObject(true, settings::AutoSave);
    defaults.setObject(QStringLiteral("~/Documents/Größe & \"Gewicht\", 100%"), settings::SaveDirectory);
    defaults.setObject(platform::distantPast(), settings::LastVersionCheckDate);
  }
  const QByteArray whole = stored();
  for (qsizetype length = 0; length < whole.size(); ++length) {
    QFile::remove(file());
    testkit::writeFile(file(), whole.left(length));
    QtUserDefaults defaults(Identifier, clock);
    defaults.registerDefaults({{settings::SaveDirectory, QStringLiteral("~/Desktop/")}});
    const QString folderName = defaults.stringForKey(settings::SaveDirectory);
    EXPECT_FALSE(folderName.isNull()) << length;
    defaults.boolForKey(settings::AutoSave);
    defaults.dateForKey(settings::LastVersionCheckDate);
    defaults.setInteger(7, settings::VersionCheckInterval);
    EXPECT_EQ(QtUserDefaults(Identifier, clock).integerForKey(settings::VersionCheckInterval), 7) << length;
  }
}

TEST_F(SettingsFile, ThatIsReadOnlyIsReadAndItsRefusalLogged) {
  testkit::writeFile(file(), "[General]\nAuto%20Save=true\n");
  const QByteArray before = stored();
  const testkit::LogRecorder log;
  {
    const testkit::OrdinaryUser user(folder.path());
    QFile::setPermissions(file(), QFile::ReadOwner);
    QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::ExeOwner);
    QtUserDefaults defaults(Identifier, clock);
    EXPECT_TRUE(defaults.boolForKey(settings::AutoSave));
    defaults.setInteger(7, settings::VersionCheckInterval);
    EXPECT_EQ(defaults.integerForKey(settings::VersionCheckInterval), 7) << "for as long as the program runs";
    QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QFile::setPermissions(file(), QFile::ReadOwner | QFile::WriteOwner);
  }
  EXPECT_EQ(stored(), before);
  ASSERT_EQ(log.lines().size(), 1);
  EXPECT_TRUE(log.lines().first().contains(QStringLiteral("Version Check Interval")))
      << qPrintable(log.lines().first());
}

TEST_F(SettingsFile, ThatCanBeWrittenAgainIs) {
  QtUserDefaults defaults(Identifier, clock);
  const testkit::OrdinaryUser user(folder.path());
  {
    const testkit::LogRecorder log;
    QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::ExeOwner);
    defaults.setInteger(7, settings::VersionCheckInterval);
    QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    EXPECT_EQ(log.lines().size(), 1);
  }
  const testkit::LogRecorder log;
  defaults.setObject(true, settings::AutoSave);
  EXPECT_EQ(log.lines(), QStringList());
  EXPECT_TRUE(QtUserDefaults(Identifier, clock).boolForKey(settings::AutoSave));
  EXPECT_EQ(QtUserDefaults(Identifier, clock).integerForKey(settings::VersionCheckInterval), 7);
}

TEST_F(SettingsFile, ThatMayNotBeReadOrIsAFolderCountsAsEmpty) {
  const testkit::LogRecorder log;
  QDir().mkpath(file());
  {
    QtUserDefaults defaults(Identifier, clock);
    defaults.registerDefaults({{settings::SaveDirectory, QStringLiteral("~/Desktop/")}});
    defaults.setObject(true, settings::AutoSave);
    EXPECT_EQ(defaults.stringForKey(settings::SaveDirectory), QStringLiteral("~/Desktop/"));
  }
  QDir().rmdir(file());
  testkit::writeFile(file(), "[General]\nAuto%20Save=true\n");
  const testkit::OrdinaryUser user(folder.path());
  QFile::setPermissions(file(), QFile::Permissions());
  EXPECT_FALSE(QtUserDefaults(Identifier, clock).boolForKey(settings::AutoSave));
}

TEST_F(SettingsFile, OfAnotherVersionKeepsWhatThisOneDoesNotKnow) {
  testkit::writeFile(file(),
                     "[General]\nAuto%20Save=true\nNew%20Thing=\"a, b\"\nList=1, 2, "
                     "3\n\n[Window]\nGeometry=@ByteArray(\\x1\\x2)\n");
  QtUserDefaults(Identifier, clock).setInteger(31, settings::VersionCheckInterval);
  const QtUserDefaults after(Identifier, clock);
  EXPECT_EQ(after.stringForKey(QStringLiteral("New Thing")), QStringLiteral("a, b"));
  EXPECT_EQ(after.objectForKey(QStringLiteral("List")).toStringList(), QStringList({"1", "2", "3"}));
  EXPECT_EQ(after.objectForKey(QStringLiteral("Window/Geometry")).toByteArray(), QByteArray("\x01\x02"));
  EXPECT_TRUE(after.boolForKey(settings::AutoSave));
  EXPECT_EQ(after.integerForKey(settings::VersionCheckInterval), 31);
  for (const char* line : {"New%20Thing=", "List=1, 2, 3", "[Window]", "Geometry="}) {
    EXPECT_TRUE(stored().contains(line)) << stored().constData();
  }
}

/// What a hand, another program or a damaged disk may have put where a value belongs.
const std::array<const char*, 14> wrongValues{"",
                                              "maybe",
                                              "-1",
                                              "99999999999999999999999",
                                              "1e300",
                                              "a, b, c",
                                              "@Invalid()",
                                              "@ByteArray(\\x0\\xff)",
                                              "@Variant(\\0\\0\\0\\x10\\0\\0\\0\\0\\0\\0\\0\\0)",
                                              "@Variant(\\xff\\xff\\xff\\xff\\xff\\xff)",
                                              "@Rect(1 2 3 4)",
                                              "@Size(",
                                              "../../../escaped",
                                              "2026-99-99T99:99:99Z"};

TEST_F(SettingsFile, WithAWrongValueUnderAnyKeyStillStartsAndSaves) {
  const testkit::LogRecorder log;
  const QStringList keys{
      settings::SaveDirectory,        settings::ExportDirectory,      settings::AutoSave,
      settings::ExportToOsiriX,       settings::LaunchScript,         settings::AutomaticVersionCheck,
      settings::VersionCheckInterval, settings::LastVersionCheckDate, settings::DataFileExtension};
  int starts = 0;
  int told = 0;
  for (qsizetype keyIndex = 0; keyIndex < keys.size(); ++keyIndex) {
    const QString& key = keys.at(keyIndex);
    for (std::size_t valueIndex = 0; valueIndex < wrongValues.size(); ++valueIndex) {
      // Every key and every value; every pair of them takes its time.
      if (!faults::tortures() && (static_cast<std::size_t>(keyIndex) + valueIndex) % 3 != 0) continue;
      const char* value = wrongValues[valueIndex];
      SCOPED_TRACE(testing::Message() << qPrintable(key) << " = " << value);
      GrowthDesk desk;
      // Where a path without a beginning leads.
      const QString before = QDir::currentPath();
      QDir::setCurrent(desk.home.path());
      const auto back = qScopeGuard([&before] { QDir::setCurrent(before); });
      QFile::remove(file());
      QtUserDefaults good(Identifier, clock);
      for (const QString& stored : desk.desktop.defaults.stored().keys()) {
        good.setObject(desk.desktop.defaults.stored().value(stored), stored);
      }
      QByteArray lines = stored();
      const QByteArray escaped = QString(key).replace(QLatin1Char(' '), QStringLiteral("%20")).toLatin1();
      QByteArrayList kept;
      for (const QByteArray& line : lines.split('\n')) {
        if (!line.startsWith(escaped + '=') && !line.isEmpty()) kept.append(line);
      }
      testkit::writeFile(file(), kept.join('\n') + '\n' + escaped + '=' + value + '\n');

      QtUserDefaults defaults(Identifier, clock);
      platform::Services services = testkit::with(desk.services, defaults);
      defaults.registerDefaults({{settings::DataFileExtension, QStringLiteral("growth")}});
      VelmoraAppController controller(services);
      services.interfaceFiles.addSearchPath(growth::interfaceFolder());
      controller.setDocumentFactory(
          [&] { return std::make_unique<GrowthDocument>(services, controller, desk.references); });
      controller.awakeFromNib();
      controller.applicationDidFinishLaunching();
      desk.desktop.runLoop.advance(2);

      // One record can be made and saved: where the settings say, or where the panel says.
      const QString fallback = desk.home.path(QStringLiteral("fallback.growth"));
      auto* document = dynamic_cast<GrowthDocument*>(controller.openUntitledDocument(false));
      document->window();
      document->setIdentifier(QStringLiteral("A1"));
      document->directUpdateDisplayAndSetDirty(nullptr);
      const bool panel =
          !defaults.boolForKey(settings::AutoSave) ||
          !QFileInfo::exists(base::expandingTildeInPath(defaults.stringForKey(settings::SaveDirectory)));
      if (panel) desk.desktop.panels.expectSave(QUrl::fromLocalFile(fallback));
      document->saveDocument();
      desk.desktop.runLoop.settle();
      // Or it cannot, the user has been told so, and there is a copy.
      QStringList records = desk.files().filter(QRegularExpression(QStringLiteral("(^|/)(A1|fallback)\\.")));
      if (records.isEmpty()) {
        ASSERT_FALSE(desk.alerts.shown.isEmpty());
        EXPECT_TRUE(desk.alerts.shown.last().messageText.endsWith(QStringLiteral("could not be saved.")));
        records = desk.files().filter(QStringLiteral("/Rescued/"));
        ++told;
      }
      EXPECT_EQ(records.size(), 1) << qPrintable(desk.files().join(QLatin1Char(' ')));
      EXPECT_EQ(defaults.stringForKey(settings::DataFileExtension).isNull(), false);
      EXPECT_TRUE(defaults.dateForKey(settings::LastVersionCheckDate).isValid());
      ++starts;
      for (platform::Document* open : controller.documents()) open->close();
      desk.desktop.runLoop.settle();
      if (HasFailure()) return;
    }
  }
  std::printf("%d starts, %d saves refused\n", starts, told);
}

TEST_F(SettingsFile, WrittenByTwoProcessesAtOnceLosesNothing) {
  const int count = faults::tortures() ? 400 : 60;
  std::array<QProcess, 2> writers;
  const std::array<QString, 2> prefixes{QStringLiteral("First"), QStringLiteral("Other")};
  for (std::size_t i = 0; i < writers.size(); ++i) {
    writers[i].setProcessChannelMode(QProcess::MergedChannels);
    writers[i].start(QStringLiteral(SETTINGS_WRITER), {prefixes[i], QString::number(count)});
    ASSERT_TRUE(writers[i].waitForReadyRead(30000)) << qPrintable(writers[i].errorString());
    ASSERT_EQ(writers[i].readLine(), "ready\n");
  }
  for (QProcess& writer : writers) writer.write("\n");
  for (QProcess& writer : writers) {
    ASSERT_TRUE(writer.waitForFinished(100000));
    EXPECT_EQ(writer.exitCode(), 0) << writer.readAll().constData();
  }
  const QtUserDefaults defaults(Identifier, clock);
  for (const QString& prefix : prefixes) {
    for (int i = count - 5; i < count; ++i) {
      EXPECT_EQ(defaults.integerForKey(prefix + QString::number(i % 5)), 1000 + i);
    }
  }
  EXPECT_EQ(names(), QStringList{QStringLiteral("org.velmora.growth.conf")})
      << "no lock and no temporary file stays";
}

}  // namespace
