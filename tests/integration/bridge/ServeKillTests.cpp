// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>
#include <unistd.h>

#include <random>

#include "tests/integration/bridge/ServeProgram.h"

using namespace serve_testing;
using namespace bridge;
using bridge_testing::inventedStudy;

namespace {

int kills() {
  bool isNumber = false;
  const int number = qEnvironmentVariable("VELMORA_BRIDGE_KILLS").toInt(&isNumber);
  return isNumber && number > 0 ? number : 25;
}

/// What the spool has taken so far, and what it has stored.
struct Taken {
  QSet<QString> uids;
  int waiting = 0;
  int aside = 0;

  void look(const QString& folder) {
    const auto listing = Spool::list(folder);
    EXPECT_TRUE(listing.ok()) << qPrintable(listing.error());
    waiting = aside = 0;
    for (const SpoolItem& item : *listing) {
      uids.insert(item.sopInstanceUID);
      waiting += item.state == SpoolState::Waiting ? 1 : 0;
      aside += item.state == SpoolState::Aside ? 1 : 0;
    }
  }
};

}  // namespace

TEST(ServeKill, StoresEachReplyExactlyOnceWhenKilledAtRandomMoments) {
  ServeWorld world;
  const QList<Study> studies{inventedStudy(1), inventedStudy(2)};
  for (const Study& study : studies) world.put(study);
  const unsigned seed = std::random_device()();
  RecordProperty("seed", QString::number(seed).toStdString());
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  const auto below = [&random](unsigned most) { return static_cast<useconds_t>(random() % most); };

  Taken taken;
  QSet<QString> announced;
  int number = 0;
  for (int kill = 0; kill < kills(); ++kill) {
    ServeProgram serve(world.bus, world.config());
    if (below(4) == 0) {
      // While it starts, and takes up what the one before has left.
      ::usleep(below(120'000));
    } else {
      serve.lineWith("listening");
      const unsigned replies = 1 + below(3);
      for (unsigned i = 0; i < replies; ++i) {
        ++number;
        const Study& study = studies.at(number % 2);
        ASSERT_TRUE(world.reply(replyTo(study, number), number % 3 == 0 ? Vision : Growth));
      }
      // Nothing tells where on its way a reply is: the moment is drawn.
      ::usleep(below(200'000));
    }
    serve.kill();
    for (const Program::Line& line : serve.lines()) {
      if (line.text.startsWith(text("taken "))) announced.insert(uidIn(line.text));
    }
    taken.look(world.spool());
  }

  EXPECT_TRUE(taken.uids.contains(announced)) << "what was announced is there";
  {
    ServeProgram serve(world.bus, world.config());
    while (taken.look(world.spool()), taken.waiting > 0) {
      serve.lineWith("stored");
    }
    EXPECT_EQ(serve.terminate(), 0);
  }
  EXPECT_EQ(taken.aside, 0);
  QStringList expected(taken.uids.begin(), taken.uids.end());
  expected.sort();
  EXPECT_EQ(world.charts(studies), expected);
  EXPECT_GT(expected.size(), kills() / 4) << "replies get as far as the spool at all";
  RecordProperty("sent", number);
  RecordProperty("taken", static_cast<int>(expected.size()));
}
