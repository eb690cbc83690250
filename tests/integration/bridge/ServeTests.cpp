// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The service as the process that it is, between a bus and an archive that are real.
#include <gtest/gtest.h>

#include <QTcpServer>

#include "tests/integration/bridge/ServeProgram.h"

using namespace serve_testing;
using namespace bridge;
using bridge_testing::inventedStudy;

namespace {

QVariantMap withoutStudyID(QVariantMap values) {
  values[text("OsiriXStudyID")] = QString();
  return values;
}

QVariantMap requestFor(const Study& study) {
  return {{text("Identifier"), study.patientID},
          {text("DateOfStudy"), noon(study.studyDate)},
          {text("OsiriXStudyID"), study.studyInstanceUID}};
}

}  // namespace

TEST(Serve, StoresTheChartsOfTwoApplicationsInTheirStudies) {
  ServeWorld world;
  const Study one = inventedStudy(1);
  Study two = inventedStudy(2);
  two.patientID = text("12/345/6");
  world.put(one);
  world.put(two);
  ServeProgram serve(world.bus, world.config());
  serve.lineWith("listening");
  ASSERT_TRUE(world.reply(replyTo(one), Growth));
  ASSERT_TRUE(world.reply(replyTo(two), Vision));
  ASSERT_TRUE(world.reply(replyTo(two), Growth));
  QStringList stored;
  for (int i = 0; i < 3; ++i) stored.append(uidIn(serve.lineWith("stored")));
  EXPECT_EQ(world.orthanc.instancesOf(one.studyInstanceUID).size(), 2);
  EXPECT_EQ(world.orthanc.instancesOf(two.studyInstanceUID).size(), 3);
  QStringList charts = world.charts({one, two});
  stored.sort();
  EXPECT_EQ(charts, stored);
  // One more server in the same spool is kept out, and a signal ends the first.
  ServeProgram second(world.bus, world.config());
  EXPECT_EQ(second.finish(), 1);
  EXPECT_TRUE(second.errors().contains("another server works in "));
  EXPECT_EQ(serve.terminate(), 0);
  EXPECT_EQ(serve.errors(), QString());
}

TEST(Serve, TellsTwoStudiesOfOneDayApartByTheRequest) {
  ServeWorld world;
  const Study morning = inventedStudy(1);
  Study evening = morning;
  evening.studyInstanceUID = inventedStudy(2).studyInstanceUID;
  world.put(morning);
  world.put(evening);
  ServeProgram serve(world.bus, world.config());
  serve.lineWith("listening");
  // Nobody has asked for either yet.
  ASSERT_TRUE(world.reply(withoutStudyID(replyTo(morning))));
  serve.waitForComplaint("aside");
  ASSERT_TRUE(world.post(Growth, velmora::link::RequestObject, requestFor(morning)));
  ASSERT_TRUE(world.reply(withoutStudyID(replyTo(morning))));
  ASSERT_TRUE(world.post(Growth, velmora::link::RequestObject, requestFor(evening)));
  ASSERT_TRUE(world.reply(withoutStudyID(replyTo(evening))));
  const QString first = uidIn(serve.lineWith("stored"));
  const QString second = uidIn(serve.lineWith("stored"));
  EXPECT_TRUE(world.orthanc.instancesOf(morning.studyInstanceUID).contains(first));
  EXPECT_TRUE(world.orthanc.instancesOf(evening.studyInstanceUID).contains(second));
  EXPECT_EQ(world.orthanc.instances().size(), 4);
}

TEST(Serve, FindsAndStoresOverDicomwebAsWell) {
  ServeWorld world(ServeWorld::Kind::Web);
  const Study study = inventedStudy(1);
  world.put(study);
  ServeProgram serve(world.bus, world.config());
  serve.lineWith("listening");
  ASSERT_TRUE(world.reply(replyTo(study, 1)));
  ASSERT_TRUE(world.reply(withoutStudyID(replyTo(study, 2))));
  QStringList stored{uidIn(serve.lineWith("stored")), uidIn(serve.lineWith("stored"))};
  stored.sort();
  EXPECT_EQ(world.charts({study}), stored);
  EXPECT_EQ(world.orthanc.instancesOf(study.studyInstanceUID).size(), 3);
  EXPECT_EQ(serve.terminate(), 0);
}

TEST(Serve, KeepsTheOrderWhileThePacsIsDown) {
  ServeWorld world;
  const Study study = inventedStudy(1);
  world.put(study);
  QStringList taken, stored;
  {
    ServeProgram serve(world.bus, world.config());
    serve.lineWith("listening");
    world.orthanc.stop();
    for (int i = 1; i <= 3; ++i) {
      ASSERT_TRUE(world.reply(replyTo(study, i)));
      taken.append(uidIn(serve.lineWith("taken")));
    }
    serve.waitForComplaint("waiting");
    world.orthanc.start();
    // It comes back of its own accord; the last one only for the next server.
    for (int i = 1; i <= 3; ++i) stored.append(uidIn(serve.lineWith("stored")));
  }
  EXPECT_EQ(stored, taken);
  taken.sort();
  EXPECT_EQ(world.charts({study}), taken);
}

TEST(Serve, LosesNothingWhenThePacsIsKilledInTheMiddleOfAStore) {
  ServeWorld world;
  const Study study = inventedStudy(1);
  world.put(study);
  QStringList taken;
  {
    ServeProgram serve(world.bus, world.config());
    serve.lineWith("listening");
    for (int i = 1; i <= 12; ++i) {
      ASSERT_TRUE(world.reply(replyTo(study, i)));
      taken.append(uidIn(serve.lineWith("taken")));
      if (i == 6) {
        serve.lineWith("stored");
      }
    }
    world.orthanc.kill();  // several are still on their way
    EXPECT_EQ(serve.terminate(), 0);
  }
  world.orthanc.start();
  ServeProgram serve(world.bus, world.config());
  const QString last = taken.last();
  while (!world.charts({study}).contains(last)) serve.lineWith("stored");
  taken.sort();
  EXPECT_EQ(world.charts({study}), taken);
}

TEST(Serve, EndsInTheMiddleOfAnExchangeAndTakesItUpAgain) {
  ServeWorld world;
  const Study study = inventedStudy(1);
  world.put(study);
  QTcpServer silent;  // takes the connection, and says nothing
  ASSERT_TRUE(silent.listen(QHostAddress::LocalHost));
  const QString elsewhere = world.spool() + text(".conf");
  writeFile(elsewhere, text("[pacs]\nhost = 127.0.0.1\nport = %1\ntimeout = 60\n[link]\n"
                            "applications = %2\n[spool]\nfolder = %3\n")
                           .arg(silent.serverPort())
                           .arg(Growth, world.spool())
                           .toUtf8());
  {
    ServeProgram serve(world.bus, elsewhere);
    serve.lineWith("listening");
    ASSERT_TRUE(world.reply(replyTo(study)));
    ASSERT_TRUE(silent.waitForNewConnection(Limit));
    EXPECT_EQ(serve.terminate(), 0);
    EXPECT_TRUE(serve.errors().contains("ended in the middle of an exchange"));
  }
  ServeProgram serve(world.bus, world.config());
  const QString uid = uidIn(serve.lineWith("stored"));
  EXPECT_EQ(world.charts({study}), QStringList{uid});
}

TEST(Serve, TakesBackWhatWasSetAsideWhileItRuns) {
  ServeWorld world;
  const Study study = inventedStudy(1);
  ServeProgram serve(world.bus, world.config());
  serve.lineWith("listening");
  ASSERT_TRUE(world.reply(replyTo(study)));
  const QString name = nameIn(serve.lineWith("taken"));
  serve.waitForComplaint("aside");
  world.put(study);
  ASSERT_EQ(Spool::requestRetry(world.spool(), name).error(), QString());
  EXPECT_EQ(nameIn(serve.lineWith("stored")), name);
  EXPECT_EQ(world.charts({study}).size(), 1);
}

TEST(Serve, WaitsForABusThatIsNotThereYetAndEndsAllTheSame) {
  ServeWorld world;
  world.bus.stop();
  ServeProgram serve(world.bus, world.config());
  serve.waitForComplaint("");
  EXPECT_EQ(serve.terminate(), 0);
}
