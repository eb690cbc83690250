// SPDX-License-Identifier: LGPL-3.0-or-later
//
// velmora-link study and velmora-link open, with a real archive, a real bus and a listening application.
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QObject>
#include <QThread>
#include <memory>

#include "bridge/testing/Orthanc.h"
#include "bridge/testing/SyntheticStudy.h"
#include "desktop/notifications/QtDistributedNotificationCenter.h"
#include "testing/bus/LinkOnTheBus.h"
#include "testing/bus/Mailbox.h"
#include "testing/files/EnvironmentVariable.h"
#include "testing/files/Files.h"
#include "tests/integration/bridge/CommandTesting.h"

using namespace velmora;

using bridge::Study;
using namespace bridge_testing;
using namespace command_testing;
using namespace velmora::testkit;
using namespace velmora::testkit::bus;

namespace {

/// The desktop's notification service, as far as the command needs it. It answers on a thread of its own,
/// while the test waits for the command.
class NotificationService : public QDBusVirtualObject {
 public:
  explicit NotificationService(const QString& address) {
    QDBusConnection bus = QDBusConnection::connectToBus(address, connection());
    EXPECT_TRUE(bus.registerVirtualObject(text("/org/freedesktop/Notifications"), this));
    EXPECT_TRUE(bus.registerService(text("org.freedesktop.Notifications")));
    moveToThread(&thread_);
    thread_.start();
  }
  ~NotificationService() override {
    QDBusConnection::disconnectFromBus(connection());
    end();
  }

  /// What it was told to show; it shows nothing after that.
  QString body() {
    end();
    return body_;
  }

  QString introspect(const QString&) const override { return QString(); }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
    if (message.member() != text("Notify")) return false;
    body_ = message.arguments().value(4).toString();
    bus.send(message.createReply(1U));
    return true;
  }

 private:
  static QString connection() { return text("notifications"); }
  void end() {
    thread_.quit();
    thread_.wait();
  }
  QThread thread_;
  QString body_;
};

}  // namespace

class StudyCommand : public Commands {
 protected:
  static void SetUpTestSuite() { orthanc_ = new Orthanc; }
  static void TearDownTestSuite() {
    delete orthanc_;
    orthanc_ = nullptr;
  }
  void SetUp() override {
    orthanc_->clear();
    configure(orthanc_->dimse());
    center_ = std::make_unique<desktop::QtDistributedNotificationCenter>(bus_.address());
    center_->addObserver(&application_, GrowthLink, Request, mailbox_.handler());
    ASSERT_TRUE(center_->flush());
    // An application that runs has its bundle identifier for a name on the bus.
    ASSERT_TRUE(QDBusConnection::connectToBus(bus_.address(), text("growth")).registerService(Growth));
  }
  void TearDown() override { QDBusConnection::disconnectFromBus(text("growth")); }

  QString file(const char* name, const QByteArray& contents) const {
    testkit::writeFile(folder_.filePath(text(name)), contents);
    return folder_.filePath(text(name));
  }

  /// The study that is to be sent, as the archive has it.
  static Study put(int number, const char* patient = nullptr, const char* description = nullptr) {
    Study study = inventedStudy(number);
    if (description != nullptr) study.description = text(description);
    if (patient != nullptr) study.patientID = text(patient);
    orthanc_->put(syntheticStudy(study));
    return study;
  }
  /// Whether the application has got just this: the request for the study of inventedStudy(number).
  void expectRequest(int number) {
    const QVariantMap details = mailbox_.takeDetails();
    EXPECT_EQ(details.size(), 5);
    EXPECT_EQ(details.value(text("Identifier")).toString(), inventedStudy(number).patientID);
    EXPECT_EQ(details.value(text("Name")).toString(), text("Maja Lindqvist"));
    EXPECT_EQ(details.value(text("DateOfBirth")).toDateTime(),
              QDateTime(QDate(2015, 4, 12), QTime(10, 0), Qt::UTC));
    EXPECT_EQ(details.value(text("DateOfStudy")).toDateTime(),
              QDateTime(QDate(2024, 3, 1), QTime(11, 0), Qt::UTC));
    EXPECT_EQ(details.value(text("OsiriXStudyID")).toString(), inventedStudy(number).studyInstanceUID);
    EXPECT_TRUE(mailbox_.empty());
  }
  /// Whether nothing has arrived: what is sent now is the first that does.
  void expectNothing() {
    desktop::QtDistributedNotificationCenter(bus_.address())
        .postNotificationName(GrowthLink, Request, {{text("Identifier"), text("end")}});
    EXPECT_EQ(mailbox_.takeDetails().value(text("Identifier")).toString(), text("end"));
  }

  static inline Orthanc* orthanc_ = nullptr;
  const testkit::EnvironmentVariable zone_{"TZ", "Europe/Berlin"};
  QObject application_;
  Mailbox mailbox_;
  std::unique_ptr<desktop::QtDistributedNotificationCenter> center_;
};

TEST_F(StudyCommand, SendsTheStudyThatEachOptionNames) {
  put(1);
  put(2);
  for (const QStringList& options :
       {QStringList{text("--uid"), text("2.25.4711.1")}, QStringList{text("--accession"), text("A-1")},
        QStringList{text("--patient"), text("P-1")},
        QStringList{text("--patient"), text("P-1"), text("--date"), text("2024-03-01")}}) {
    EXPECT_EQ(run(QStringList{text("study")} + options), 0) << qPrintable(errors_);
    EXPECT_EQ(output_, text("sent P-1 to org.velmora.growth\n"));
    EXPECT_EQ(errors_, QString());
    expectRequest(1);
  }
}

TEST_F(StudyCommand, SendsTheStudyOfAFileWithoutAnArchive) {
  const QString path = file("image.dcm", syntheticStudy(inventedStudy(3)));
  Program program(QStringLiteral(VELMORA_LINK), environment_);
  EXPECT_EQ(program.run({text("study"), text("--file"), path, text("--application"), Growth}), 0)
      << qPrintable(program.errors());
  expectRequest(3);
  EXPECT_EQ(run({text("study"), text("--file"), path}), 0) << qPrintable(errors_);
  expectRequest(3);
  EXPECT_EQ(run({text("study"), text("--file"), file("image.txt", "no image")}), 1);
  EXPECT_FALSE(errors_.isEmpty());
  expectNothing();
}

TEST_F(StudyCommand, SaysThatThereIsNoSuchStudy) {
  put(1);
  EXPECT_EQ(run({text("study"), text("--patient"), text("P-1"), text("--date"), text("2024-03-02")}), 1);
  EXPECT_EQ(errors_, text("velmora-link: the archive has no such study\n"));
  expectNothing();
}

TEST_F(StudyCommand, ListsTheStudiesAmongWhichToChoose) {
  put(1, "P-7");
  put(2, "P-7");
  EXPECT_EQ(run({text("study"), text("--patient"), text("P-7")}), 1);
  EXPECT_EQ(errors_,
            text("velmora-link: the archive has 2 such studies; choose one by its Study Instance UID\n"));
  QStringList lines = output_.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
  lines.sort();
  EXPECT_EQ(lines, QStringList({text("2024-03-01\tLeft hand\tA-1\t2.25.4711.1"),
                                text("2024-03-01\tLeft hand\tA-2\t2.25.4711.2")}));
  expectNothing();
}

TEST_F(StudyCommand, SaysThatAStudyHasNoPatientIdentifier) {
  put(1, "");
  EXPECT_EQ(run({text("study"), text("--uid"), text("2.25.4711.1")}), 1);
  EXPECT_TRUE(errors_.contains(text("no patient identifier"))) << qPrintable(errors_);
  expectNothing();
}

TEST_F(StudyCommand, SaysThatTheArchiveCannotBeReached) {
  configure(text("host = 127.0.0.1\nport = %1\n").arg(freePort()));
  EXPECT_EQ(run({text("study"), text("--uid"), text("1.2")}), 1);
  EXPECT_TRUE(errors_.contains(text("cannot be reached"))) << qPrintable(errors_);
}

TEST_F(StudyCommand, RefusesOptionsThatDoNotNameOneStudy) {
  for (const char* line : {"", "--uid 1.2 --accession A", "--uid 1.2 --file x", "--date 2024-03-01",
                           "--uid 1.2 --date 2024-03-01", "--uid x", "--patient P --date today",
                           "--patient P --application a/b", "--uid 1.2 more"}) {
    EXPECT_EQ(run(QStringList{text("study")} + text(line).split(QLatin1Char(' '), Qt::SkipEmptyParts)), 2)
        << line;
    EXPECT_FALSE(errors_.isEmpty()) << line;
  }
  EXPECT_EQ(run({text("study"), text("--patient"), QString()}), 2);
}

TEST_F(StudyCommand, SaysThatTheConfigurationIsWrong) {
  configure(text("host = a:104\n"));
  EXPECT_EQ(run({text("study"), text("--uid"), text("1.2")}), 2);
  EXPECT_TRUE(errors_.contains(text("\"host\" is not the name of a host"))) << qPrintable(errors_);
  EXPECT_EQ(run({text("open"), text("velmora-link:study?uid=1.2")}), 2);
  EXPECT_TRUE(errors_.contains(text("\"host\" is not the name of a host"))) << qPrintable(errors_);
}

TEST_F(StudyCommand, SendsTheStudyOfALink) {
  put(1);
  for (const char* link :
       {"velmora-link:study?uid=2.25.4711.1", "velmora-link:study?patient=P%2D1&date=2024-03-01",
        "velmora-link:study?accession=A-1&application=org.velmora.growth"}) {
    EXPECT_EQ(run({text("open"), text(link)}), 0) << qPrintable(errors_);
    expectRequest(1);
  }
}

TEST_F(StudyCommand, SendsNothingForALinkThatIsNotInOrder) {
  put(1);
  const QString path = file("image.dcm", syntheticStudy(inventedStudy(3)));
  for (const QString& link : {text("velmora-link:study?file=") + path, text("velmora-link:study?patient=*"),
                              text("velmora-link:study?uid=2.25.4711.1&application=org.example.other"),
                              text("--file=") + path, text("-x"), QString()}) {
    EXPECT_EQ(run({text("open"), link}), 2) << qPrintable(link);
    EXPECT_FALSE(errors_.isEmpty());
  }
  expectNothing();
}

TEST_F(StudyCommand, TellsWhoeverClickedALinkOnTheDesktopWhatWentWrong) {
  put(1);
  {
    NotificationService desktop(bus_.address());
    EXPECT_EQ(run({text("open"), text("velmora-link:study?uid=2.25.9")}), 1);
    EXPECT_EQ(desktop.body(), text("the archive has no such study"));
  }
  {
    NotificationService desktop(bus_.address());
    EXPECT_EQ(run({text("open"), text("velmora-link:study?file=x")}), 2);
    EXPECT_TRUE(desktop.body().contains(text("cannot be followed"))) << qPrintable(desktop.body());
  }
  {
    put(2, "P-7", "<b>Left</b> & right");
    put(3, "P-7", "<b>Left</b> & right");
    NotificationService desktop(bus_.address());
    EXPECT_EQ(run({text("open"), text("velmora-link:study?patient=P-7")}), 1);
    EXPECT_TRUE(desktop.body().contains(text("&lt;b&gt;Left&lt;/b&gt; &amp; right\tA-3")))
        << qPrintable(desktop.body());
  }
  NotificationService desktop(bus_.address());
  EXPECT_EQ(run({text("open"), text("velmora-link:study?uid=2.25.4711.1")}), 0);
  EXPECT_EQ(desktop.body(), QString());
}

TEST_F(StudyCommand, WarnsWhenTheApplicationDoesNotRun) {
  put(1);
  ASSERT_TRUE(QDBusConnection(text("growth")).unregisterService(Growth));
  EXPECT_EQ(run({text("study"), text("--uid"), text("2.25.4711.1")}), 0);
  EXPECT_TRUE(errors_.contains(text("org.velmora.growth does not seem to be running")))
      << qPrintable(errors_);
  NotificationService desktop(bus_.address());
  EXPECT_EQ(run({text("open"), text("velmora-link:study?uid=2.25.4711.1")}), 0);
  EXPECT_TRUE(desktop.body().contains(text("does not seem to be running"))) << qPrintable(desktop.body());
}

TEST_F(StudyCommand, TellsItsOptionsInTheOrderInWhichTheyAreTaken) {
  Program program(QStringLiteral(VELMORA_LINK), environment_);
  EXPECT_EQ(program.run({text("study"), text("--help")}), 0);
  EXPECT_TRUE(program.output().contains(text(" study [options]"))) << qPrintable(program.output());
}

TEST_F(StudyCommand, IsWhatTheDesktopStartsForALink) {
  put(1);
  const QString data = folder_.filePath(text("data"));
  const QString settings = folder_.filePath(text("settings"));
  ASSERT_TRUE(QDir().mkpath(data + text("/applications")) && QDir().mkpath(settings + text("/velmora-link")));
  ASSERT_TRUE(QFile::copy(text(VELMORA_LINK_ENTRY), data + text("/applications/velmora-link.desktop")));
  ASSERT_TRUE(QFile::copy(config(), settings + text("/velmora-link/velmora-link.conf")));
  file("settings/mimeapps.list",
       "[Default Applications]\nx-scheme-handler/velmora-link=velmora-link.desktop\n");
  QProcess desktop;
  QProcessEnvironment environment = environment_;
  environment.insert(text("XDG_DATA_HOME"), data);
  environment.insert(text("XDG_CONFIG_HOME"), settings);
  desktop.setProcessEnvironment(environment);
  desktop.start(text("gio"),
                {text("open"), text("velmora-link:study?uid=2.25.4711.1&application=org.velmora.growth")});
  ASSERT_TRUE(desktop.waitForFinished(60000));
  EXPECT_EQ(desktop.exitCode(), 0) << desktop.readAllStandardError().constData();
  expectRequest(1);
}
