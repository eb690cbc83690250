// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/spool/Spool.h"
#include "bridge/testing/Orthanc.h"
#include "tests/integration/bridge/CommandTesting.h"

using bridge_testing::Orthanc;
using bridge_testing::OrthancOptions;

namespace {

using command_testing::text;

class CheckCommand : public command_testing::Commands {
 protected:
  int check() { return run({text("check")}); }
  void makeSpool(QFile::Permissions more = {}) const {
    QDir().mkpath(spool());
    QFile::setPermissions(spool(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | more);
  }
};

}  // namespace

TEST_F(CheckCommand, SaysOkToEverythingThatIsInOrder) {
  const Orthanc orthanc;
  configure(orthanc.dimse());
  bridge::Spool server(spool());
  ASSERT_EQ(server.open().error(), QString());
  EXPECT_EQ(check(), 0) << qPrintable(output_ + errors_);
  EXPECT_FALSE(output_.contains(text("wrong"))) << qPrintable(output_);
  for (const char* question : {"configuration", "spool", "charts", "session bus", "server", "archive"}) {
    EXPECT_NE(line(qPrintable(text("ok ") + text(question))), QString()) << question;
  }
  EXPECT_EQ(QDir(spool()).entryList({text("*check*")}, QDir::Files | QDir::Hidden), QStringList());
  EXPECT_EQ(orthanc.instances(), QStringList());
}

TEST_F(CheckCommand, TellsWhatAnArchiveOverTheDicomProtocolDoesNotAllow) {
  OrthancOptions options;
  options.checkCalledTitle = true;
  options.strangersMayStore = false;
  options.strangersMayEcho = false;
  const Orthanc orthanc(options);
  bridge::PacsSettings settings = orthanc.dimse();

  configure(settings);
  EXPECT_EQ(check(), 1);  // nothing serves
  EXPECT_TRUE(line("ok archive").endsWith(text("lets us find and store"))) << qPrintable(output_);

  settings.calledAETitle = text("ANOTHER");
  configure(settings);
  EXPECT_EQ(check(), 1);
  EXPECT_TRUE(line("wrong archive").contains(text("ANOTHER"))) << qPrintable(output_);
  const QString wrongTitle = line("wrong archive").section(text(": "), 1);

  settings = orthanc.dimse();
  settings.callingAETitle = text("STRANGER");
  configure(settings);
  EXPECT_EQ(check(), 1);
  EXPECT_TRUE(line("wrong archive").contains(text("STRANGER"))) << qPrintable(output_);
  const QString unknown = line("wrong archive").section(text(": "), 1);

  settings = orthanc.dimse();
  settings.port = bridge_testing::freePort();
  configure(settings);
  EXPECT_EQ(check(), 1);
  const QString nobody = line("wrong archive").section(text(": "), 1);

  // Each of them has a reason of its own.
  EXPECT_NE(wrongTitle, QString());
  EXPECT_NE(unknown, QString());
  EXPECT_NE(nobody, QString());
  EXPECT_NE(wrongTitle, unknown);
  EXPECT_NE(wrongTitle, nobody);
  EXPECT_NE(unknown, nobody);
}

TEST_F(CheckCommand, TellsWhatAnArchiveOverTheWebDoesNotAllow) {
  OrthancOptions options;
  options.dicomWeb = true;
  options.user = text("velmora");
  options.password = text("secret");
  const Orthanc orthanc(options);
  bridge::PacsSettings settings = orthanc.web();

  configure(settings);
  EXPECT_EQ(check(), 1);  // nothing serves
  EXPECT_TRUE(line("ok archive").endsWith(text("lets us find and store"))) << qPrintable(output_);

  settings.password = text("wrong-one");
  configure(settings);
  EXPECT_EQ(check(), 1);
  const QString refused = line("wrong archive").section(text(": "), 1);
  EXPECT_FALSE(output_.contains(text("wrong-one")));

  settings = orthanc.web();
  settings.url = orthanc.url(text("/app"));
  configure(settings);
  EXPECT_EQ(check(), 1);
  const QString noService = line("wrong archive").section(text(": "), 1);

  settings = orthanc.web();
  settings.url.setScheme(text("https"));
  configure(settings);
  EXPECT_EQ(check(), 1);
  const QString noTls = line("wrong archive").section(text(": "), 1);

  EXPECT_NE(refused, QString());
  EXPECT_NE(noService, QString());
  EXPECT_NE(noTls, QString());
  EXPECT_NE(refused, noService);
  EXPECT_NE(refused, noTls);
  EXPECT_NE(noService, noTls);
}

TEST_F(CheckCommand, TellsWhatIsWrongWithTheSpool) {
  check();
  EXPECT_EQ(line("ok spool"), text("ok spool %1 will be made").arg(spool())) << qPrintable(output_);
  EXPECT_FALSE(QFile::exists(spool()));

  makeSpool(QFile::ExeOther);
  EXPECT_EQ(check(), 1);
  EXPECT_TRUE(line("wrong spool").endsWith(text("chmod 700 ") + spool())) << qPrintable(output_);

  ASSERT_TRUE(QDir().rmdir(spool()));
  QFile file(spool());
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  EXPECT_EQ(check(), 1);
  EXPECT_EQ(line("wrong spool"), text("wrong spool %1 is in the way: it is no folder").arg(spool()));
}

TEST_F(CheckCommand, TellsThatSomethingIsSetAside) {
  const Orthanc orthanc;
  configure(orthanc.dimse());
  bridge::Spool server(spool());
  ASSERT_EQ(server.open().error(), QString());
  bridge::SpooledReply reply;
  reply.sopInstanceUID = text("2.25.1");
  reply.arrival = QDateTime::currentDateTime();
  reply.jpeg = "\xff\xd8\xff";
  const QString name = server.newName();
  ASSERT_EQ(server.add(name, reply).error(), QString());
  EXPECT_EQ(check(), 0) << qPrintable(output_ + errors_);
  EXPECT_EQ(line("ok charts"), text("ok charts 1 waiting, 0 set aside"));

  bridge::EntryState aside;
  aside.state = bridge::SpoolState::Aside;
  aside.reason = text("no such study");
  ASSERT_EQ(server.change(name, aside).error(), QString());
  EXPECT_EQ(check(), 1);
  EXPECT_EQ(line("wrong charts"),
            text("wrong charts 0 waiting, 1 set aside; \"velmora-link status\" tells why"));
}

TEST_F(CheckCommand, TellsThatNothingServesAndNothingListens) {
  makeSpool();
  EXPECT_EQ(check(), 1);
  EXPECT_TRUE(line("wrong server").contains(text("is not running"))) << qPrintable(output_);
  EXPECT_TRUE(line("ok session bus").endsWith(text("answers")));
  EXPECT_NE(line("wrong archive"), QString());

  bus_.stop();
  EXPECT_EQ(check(), 1);
  EXPECT_NE(line("wrong session bus"), QString()) << qPrintable(output_);
}

TEST_F(CheckCommand, TellsEveryMistakeInTheConfigurationAndAsksNothingElse) {
  configure(text("host = 127.0.0.1\nport = 0\nhots = x\n"));
  EXPECT_EQ(check(), 2);
  EXPECT_EQ(output_.count(text("wrong")), 2) << qPrintable(output_);
  EXPECT_EQ(output_.count(text("\n")), 2);
  EXPECT_TRUE(output_.contains(config() + text(":3: ")));
  EXPECT_TRUE(output_.contains(config() + text(":4: ")));
}
