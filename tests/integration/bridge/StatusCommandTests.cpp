// SPDX-License-Identifier: LGPL-3.0-or-later
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "bridge/spool/Spool.h"
#include "testing/files/Files.h"
#include "tests/integration/bridge/CommandTesting.h"

using bridge::EntryState;
using bridge::Spool;
using bridge::SpooledReply;
using bridge::SpoolState;

namespace {

using command_testing::text;

class StatusCommand : public command_testing::Commands {
 protected:
  /// Puts a chart into the spool as a server would; its name.
  QString add(SpoolState state, int number, int tries = 0, const QString& reason = QString()) {
    Spool spool(Commands::spool());
    EXPECT_EQ(spool.open().error(), QString());
    SpooledReply reply;
    reply.sopInstanceUID = text("2.25.%1").arg(1000 + number);
    reply.arrival = QDateTime(QDate(2024, 5, 6), QTime(7, 8, 9)).addSecs(number);
    reply.application = text("org.velmora.growth");
    reply.identifier = text("12-345-%1").arg(number);
    reply.jpeg = "\xff\xd8\xff";
    const QString name = spool.newName();
    EXPECT_EQ(spool.add(name, reply).error(), QString());
    if (state == SpoolState::Waiting && tries == 0) return name;
    EntryState entry;
    entry.state = state;
    entry.changed = QDateTime(QDate(2024, 6, 7), QTime(10, 11, 12));
    entry.tries = tries;
    entry.reason = reason;
    if (state == SpoolState::Stored) {
      entry.sopInstanceUID = reply.sopInstanceUID;
      entry.studyInstanceUID = text("2.25.77");
      entry.application = reply.application;
      entry.arrival = reply.arrival;
    }
    EXPECT_EQ(spool.change(name, entry).error(), QString());
    return name;
  }
  QJsonObject json() const { return QJsonDocument::fromJson(output_.toUtf8()).object(); }
  static QJsonObject firstOf(const QJsonObject& group) {
    return group[text("items")].toArray().first().toObject();
  }
};

}  // namespace

TEST_F(StatusCommand, SaysThatThereIsNothingWhereNothingEverWas) {
  ASSERT_EQ(run({text("status")}), 0) << qPrintable(errors_);
  EXPECT_EQ(output_, text("velmora-link serve is not running\nwaiting: 0\nstored: 0\nset aside: 0\n"));
  EXPECT_FALSE(QFile::exists(spool()));
}

TEST_F(StatusCommand, TellsWhatWaitsWhatIsStoredAndWhatIsSetAside) {
  const QString fresh = add(SpoolState::Waiting, 1);
  const QString tried = add(SpoolState::Waiting, 2, 3, text("nobody listens there"));
  const QString stored = add(SpoolState::Stored, 3);
  const QString aside = add(SpoolState::Aside, 4, 0, text("two studies on that day"));
  Spool server(spool());
  ASSERT_EQ(server.open().error(), QString());
  ASSERT_EQ(run({text("status")}), 0) << qPrintable(errors_);
  EXPECT_EQ(output_, text("velmora-link serve is running\n"
                          "waiting: 2\n"
                          "  %1  arrived 2024-05-06 07:08:10\n"
                          "    patient 12-345-1\n"
                          "    from org.velmora.growth\n"
                          "  %2  arrived 2024-05-06 07:08:11\n"
                          "    patient 12-345-2\n"
                          "    from org.velmora.growth\n"
                          "    tried 3 times, last 2024-06-07 10:11:12: nobody listens there\n"
                          "stored: 1\n"
                          "  %3  arrived 2024-05-06 07:08:12\n"
                          "    from org.velmora.growth\n"
                          "    stored 2024-06-07 10:11:12 as 2.25.1003\n"
                          "    in study 2.25.77\n"
                          "set aside: 1\n"
                          "  %4  arrived 2024-05-06 07:08:13\n"
                          "    patient 12-345-4\n"
                          "    from org.velmora.growth\n"
                          "    set aside 2024-06-07 10:11:12: two studies on that day\n")
                         .arg(fresh, tried, stored, aside));
}

TEST_F(StatusCommand, TellsTheSameAsJson) {
  const QString tried = add(SpoolState::Waiting, 1, 2, text("it was büsy"));
  add(SpoolState::Stored, 2);
  add(SpoolState::Aside, 3, 0, text("no such study"));
  ASSERT_EQ(run({text("status"), text("--json")}), 0) << qPrintable(errors_);
  const QJsonObject all = json();
  EXPECT_EQ(all[text("serving")], QJsonValue(false));
  const QJsonObject expected{{text("name"), tried},
                             {text("arrived"), text("2024-05-06T05:08:10.000Z")},
                             {text("changed"), text("2024-06-07T08:11:12.000Z")},
                             {text("application"), text("org.velmora.growth")},
                             {text("identifier"), text("12-345-1")},
                             {text("sopInstanceUID"), text("2.25.1001")},
                             {text("studyInstanceUID"), QString()},
                             {text("tries"), 2},
                             {text("reason"), text("it was büsy")}};
  EXPECT_EQ(firstOf(all[text("waiting")].toObject()), expected) << qPrintable(output_);
  const QJsonObject stored = firstOf(all[text("stored")].toObject());
  EXPECT_EQ(stored[text("sopInstanceUID")].toString(), text("2.25.1002"));
  EXPECT_EQ(stored[text("studyInstanceUID")].toString(), text("2.25.77"));
  EXPECT_EQ(firstOf(all[text("setAside")].toObject())[text("reason")].toString(), text("no such study"));
}

TEST_F(StatusCommand, ShowsAtMostFiftyOfAKindUnlessAskedForAll) {
  for (int i = 1; i <= 52; ++i) add(SpoolState::Stored, i);
  ASSERT_EQ(run({text("status")}), 0);
  EXPECT_NE(line("stored: 52"), QString());
  EXPECT_EQ(output_.count(text(" as 2.25.")), 50);
  EXPECT_NE(line("and 2 more"), QString());
  EXPECT_TRUE(output_.contains(text("2.25.1052\n")));  // the newest are shown
  EXPECT_FALSE(output_.contains(text("2.25.1001\n")));

  ASSERT_EQ(run({text("status"), text("--all"), text("--json")}), 0);
  const QJsonObject stored = json()[text("stored")].toObject();
  EXPECT_EQ(stored[text("count")].toInt(), 52);
  EXPECT_EQ(stored[text("items")].toArray().size(), 52);
}

TEST_F(StatusCommand, LetsNobodyCommandTheTerminal) {
  add(SpoolState::Aside, 1, 0, text("no\x1b[2Jpe\nset aside: 7 \u202eabc"));
  ASSERT_EQ(run({text("status")}), 0);
  EXPECT_FALSE(output_.contains(QChar(0x1b)));
  EXPECT_FALSE(output_.contains(QChar(0x202e)));
  EXPECT_EQ(output_.count(QLatin1Char('\n')), 8) << qPrintable(output_);
  EXPECT_TRUE(output_.contains(text("no\\u001b[2Jpe\\u000aset aside: 7 \\u202eabc")));
}

TEST_F(StatusCommand, SaysWhenTheConfigurationIsWrong) {
  configure(text("nonsense\n"));
  EXPECT_EQ(run({text("status")}), 2);
  EXPECT_TRUE(errors_.contains(config() + text(":2: "))) << qPrintable(errors_);
}

using RetryCommand = StatusCommand;

TEST_F(RetryCommand, PutsBackWhatIsNamedAndNothingElse) {
  const QString first = add(SpoolState::Aside, 1, 0, text("no such study"));
  const QString second = add(SpoolState::Aside, 2, 0, text("no such study"));
  ASSERT_EQ(run({text("retry"), first}), 0) << qPrintable(errors_);
  EXPECT_NE(line(qPrintable(first + text(" waits again"))), QString());
  EXPECT_TRUE(output_.contains(text("serve is not running")));
  Spool server(spool());
  ASSERT_EQ(server.open().error(), QString());
  EXPECT_EQ(server.takeRetryRequests(), QStringList{first});

  ASSERT_EQ(run({text("retry"), text("--all")}), 0) << qPrintable(errors_);
  EXPECT_EQ(output_, second + text(" waits again\n"));
  EXPECT_EQ(server.takeRetryRequests(), QStringList{second});

  ASSERT_EQ(run({text("retry"), text("--all")}), 0);
  EXPECT_EQ(output_, text("nothing is set aside\n"));
}

TEST_F(RetryCommand, LeavesWhatIsDamagedWhenAllAreMeant) {
  const QString damaged = add(SpoolState::Waiting, 1);
  const QString whole = add(SpoolState::Aside, 2, 0, text("no such study"));
  velmora::testkit::writeFile(spool() + text("/replies/") + damaged + text(".reply"), "noise");
  Spool server(spool());
  ASSERT_EQ(server.open().error(), QString());
  EXPECT_EQ(run({text("retry"), text("--all")}), 0) << qPrintable(errors_);
  EXPECT_EQ(output_, text("1 damaged, left set aside\n") + whole + text(" waits again\n"));
  EXPECT_EQ(run({text("retry"), damaged}), 1) << "named, it is told why not";
}

TEST_F(RetryCommand, RefusesWhatIsNotSetAside) {
  const QString waiting = add(SpoolState::Waiting, 1);
  const QString stored = add(SpoolState::Stored, 2);
  for (const QString& name : {waiting, stored, text("nothing"), text("../spool/lock")}) {
    EXPECT_EQ(run({text("retry"), name}), 1) << qPrintable(name);
    EXPECT_EQ(errors_, text("velmora-link: %1: nothing of that name is set aside\n").arg(name));
  }
  EXPECT_EQ(run({text("retry")}), 2);
  EXPECT_EQ(run({text("retry"), text("--all"), waiting}), 2);
}
