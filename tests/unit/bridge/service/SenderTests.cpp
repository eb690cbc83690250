// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <stdexcept>

#include "bridge/dicom/Capture.h"
#include "bridge/service/Sender.h"
#include "bridge/testing/Replies.h"
#include "bridge/testing/ScriptedPacs.h"
#include "testing/files/Files.h"
#include "testing/files/FullDisk.h"
#include "testing/files/UnreadableFile.h"
#include "testing/main/Shown.h"

using namespace bridge_testing;
using namespace velmora::testkit;
using namespace bridge;
using namespace std::chrono_literals;
using Milliseconds = Sender::Milliseconds;

/// A spool, a scripted archive and a clock that goes when the test says so.
class SenderTest : public ::testing::Test {
 protected:
  SenderTest() {
    EXPECT_EQ(spool_->open().error(), QString());
    newSender();
    pacs_.studies = {study("1.1", "A"), study("1.2", "B"), study("1.3", "C")};
  }

  static QDateTime timeOfDay() { return QDateTime(QDate(2024, 5, 2), QTime(10, 0), Qt::UTC); }
  void newSender() {
    sender_ = std::make_unique<Sender>(*spool_, pacs_,
                                       Sender::Report{[this](const QString& line) { lines_.append(line); },
                                                      [this](const QString& line) { lines_.append(line); }},
                                       timeOfDay, QStringList{Vision});
  }
  void restart() {
    sender_.reset();
    spool_.reset();
    spool_ = std::make_unique<Spool>(temporary_.filePath(text("spool")), timeOfDay);
    ASSERT_EQ(spool_->open().error(), QString());
    newSender();
  }
  /// A reply for a study; its SOP Instance UID.
  QString arrive(const Study& study, const QString& application = Growth) {
    return arrive(replyTo(study), application);
  }
  QString arrive(const QVariantMap& values, const QString& application = Growth) {
    const auto reply = spooledReply(values, application, QDateTime(QDate(2024, 5, 2), QTime(9, 0), Qt::UTC));
    name_ = spool_->newName();
    EXPECT_EQ(spool_->add(name_, *reply).error(), QString());
    return reply->sopInstanceUID;
  }
  /// Works until nothing is due any more.
  std::optional<Milliseconds> work() {
    for (int i = 0; i < 1000; ++i) {
      const auto wait = sender_->step(now_);
      if (!wait || *wait > 0ms) return wait;
    }
    ADD_FAILURE() << "works without end";
    return std::nullopt;
  }
  void fail(const QString& uid) {
    pacs_.storeResult = [uid](const QString& each) { return each == uid ? Away : PacsResult<>(); };
  }
  SpoolItem item(const QString& name) const {
    for (const SpoolItem& each : Spool::list(spool_->folder()).valueOr({})) {
      if (each.name == name) return each;
    }
    return {};
  }

  QTemporaryDir temporary_;
  std::unique_ptr<Spool> spool_ = std::make_unique<Spool>(temporary_.filePath(text("spool")), timeOfDay);
  ScriptedPacs pacs_;
  QStringList lines_;
  std::unique_ptr<Sender> sender_;
  Milliseconds now_{0};
  QString name_;  // of the last reply
};

TEST_F(SenderTest, StoresInTheOrderOfArrival) {
  const QStringList uids{arrive(study("1.1", "A")), arrive(study("1.2", "B")), arrive(study("1.1", "A"))};
  EXPECT_EQ(work(), std::nullopt);
  EXPECT_EQ(pacs_.storedUids().size(), 3);
  EXPECT_LT(pacs_.storedUids().indexOf(uids.at(0)), pacs_.storedUids().indexOf(uids.at(2)));
  EXPECT_TRUE(pacs_.storedUids().contains(uids.at(1)));
  EXPECT_TRUE(spool_->waiting().isEmpty());
  EXPECT_EQ(item(name_).state, SpoolState::Stored);
  EXPECT_EQ(item(name_).sopInstanceUID, uids.at(2));
}

TEST_F(SenderTest, TriesAgainAfterGrowingDelays) {
  arrive(study("1.1", "A"));
  pacs_.storeResult = [](const QString&) { return Away; };
  QList<int> delays;
  for (int i = 0; i < 10; ++i) {
    const auto wait = work();
    ASSERT_TRUE(wait.has_value());
    delays.append(static_cast<int>(*wait / 1s));
    now_ += *wait - 1ms;
    const int stores = pacs_.stores;
    EXPECT_EQ(work(), 1ms);
    EXPECT_EQ(pacs_.stores, stores);
    now_ += 1ms;
  }
  EXPECT_EQ(delays, (QList<int>{5, 10, 20, 40, 80, 160, 320, 600, 600, 600}));
  EXPECT_EQ(item(name_).tries, 10);
  EXPECT_EQ(item(name_).reason, text("nobody there"));
  pacs_.storeResult = {};
  EXPECT_EQ(work(), std::nullopt);
  EXPECT_EQ(pacs_.stored.size(), 1);
}

TEST_F(SenderTest, KeepsTheOrderOfAPatientAndLetsOthersPass) {
  const QString first = arrive(study("1.1", "A"));
  const QString second = arrive(study("1.1", "A"));
  const QString other = arrive(study("1.2", "B"));
  fail(first);
  EXPECT_EQ(work(), 5s);
  EXPECT_EQ(pacs_.storedUids(), QStringList{other});
  fail(QString());
  now_ += 5s;
  EXPECT_EQ(work(), std::nullopt);
  EXPECT_EQ(pacs_.storedUids(), (QStringList{other, first, second}));
}

TEST_F(SenderTest, SendsEverythingAtOnceWhenThePacsIsBack) {
  arrive(study("1.1", "A"));
  arrive(study("1.2", "B"));
  pacs_.findResult = Away;
  for (int i = 0; i < 6; ++i) now_ += work().value_or(0ms);
  arrive(study("1.3", "C"));
  pacs_.findResult = {};
  now_ -= 1ms;  // A and B have long to wait
  EXPECT_EQ(work(), std::nullopt);
  EXPECT_EQ(pacs_.stored.size(), 3);
}

TEST_F(SenderTest, SendsTheSameObjectAgain) {
  const QString uid = arrive(study("1.1", "A"));
  pacs_.storeResult = [](const QString&) { return Away; };
  work();
  const Decision decided = *spool_->state(name_).decision;
  restart();
  pacs_.storeResult = {};
  EXPECT_EQ(work(), std::nullopt);
  ASSERT_EQ(pacs_.storedUids(), QStringList{uid});
  const CaptureIdentity identity{uid, decided.seriesInstanceUID, 1, decided.seriesNumber,
                                 QDateTime(QDate(2024, 5, 2), QTime(9, 0), Qt::UTC)};
  const auto first = secondaryCapture(study("1.1", "A"), {jpeg(), text("Growth Chart"), Growth}, identity);
  ASSERT_TRUE(first.ok()) << qPrintable(first.error());
  EXPECT_EQ(pacs_.stored.first().file, *first);
}

TEST_F(SenderTest, MarksEveryChartAsOneThatMayTellThePatientUnlessItIsKnownThatItDoesNot) {
  const auto mark = [this](qsizetype place) {
    // Explicit VR, little endian: tag (0028,0301), CS, two bytes of length, the value.
    const QByteArray& file = pacs_.stored.at(place).file;
    return file.mid(file.indexOf(QByteArray::fromHex("280001034353")) + 8, 3).trimmed();
  };
  arrive(study("1.1", "A"), Growth);
  arrive(study("1.1", "A"), Vision);
  work();
  ASSERT_EQ(pacs_.stored.size(), 2);
  EXPECT_EQ(mark(0), "YES");
  EXPECT_EQ(mark(1).left(2), "NO");
}

TEST_F(SenderTest, TakesOverWhatWasCorrectedInThePacsMeanwhile) {
  const QString uid = arrive(study("1.1", "A"));
  pacs_.storeResult = [](const QString&) { return Away; };
  work();
  const Decision before = *spool_->state(name_).decision;
  pacs_.studies.first().patientName = text("Muster^Maximilian");
  restart();
  pacs_.storeResult = [&](const QString&) {
    Decision now = *spool_->state(name_).decision;
    EXPECT_EQ(now.study.patientName, text("Muster^Maximilian")) << "on the disk before it is sent";
    now.study = before.study;
    EXPECT_EQ(now, before) << "the same object otherwise";
    return PacsResult<>();
  };
  EXPECT_EQ(work(), std::nullopt);
  EXPECT_EQ(pacs_.storedUids(), QStringList{uid});
  EXPECT_TRUE(pacs_.stored.first().file.contains("Muster^Maximilian"));
}

TEST_F(SenderTest, SetsAsideWhatThePacsHasGivenToAnotherPatientMeanwhile) {
  const QList<Study> right = pacs_.studies;
  for (const QList<Study>& wrong : {QList<Study>{study("1.1", "Z")}, QList<Study>{}}) {
    const QString uid = arrive(study("1.1", "A"));
    pacs_.storeResult = [](const QString&) { return Away; };
    work();
    pacs_.storeResult = {};
    pacs_.studies = wrong;
    now_ += 1h;
    EXPECT_EQ(work(), std::nullopt);
    EXPECT_EQ(item(name_).state, SpoolState::Aside);
    EXPECT_FALSE(pacs_.storedUids().contains(uid));
    // Whoever puts that right has it decided anew.
    EXPECT_FALSE(spool_->state(name_).decision.has_value());
    pacs_.studies = right;
    ASSERT_EQ(Spool::requestRetry(spool_->folder(), name_).error(), QString());
    EXPECT_EQ(work(), std::nullopt);
    EXPECT_EQ(pacs_.storedUids().count(uid), 1);
  }
}

TEST_F(SenderTest, SetsAsideWhatItCouldNotReadAgain) {
  pacs_.studies.first().description = QString(300'000, QLatin1Char('x'));
  arrive(study("1.1", "A"));
  EXPECT_EQ(work(), std::nullopt);
  EXPECT_EQ(item(name_).reason, text("what the PACS says of its study is too long"));
  restart();
  EXPECT_TRUE(spool_->warnings().isEmpty());
}

TEST_F(SenderTest, CarriesOutARequestToRetryWhenTheDiskHasRoomAgain) {
  arrive(study("1.1", "A"));
  pacs_.storeResult = [](const QString&) { return Refused; };
  work();
  pacs_.storeResult = {};
  ASSERT_EQ(Spool::requestRetry(spool_->folder(), name_).error(), QString());
  {
    const FullDisk full(20);
    EXPECT_EQ(work(), Sender::FirstDelay) << "nothing else would call it again";
  }
  EXPECT_EQ(work(), std::nullopt);
  EXPECT_EQ(item(name_).state, SpoolState::Stored);
}

TEST_F(SenderTest, GivesEachImageOfASeriesItsOwnNumberAcrossRestarts) {
  QList<int> numbers;
  QStringList series;
  pacs_.storeResult = [](const QString&) { return Refused; };  // leaves the decisions to look at
  for (int i = 0; i < 3; ++i) {
    arrive(study("1.1", "A"));
    work();
    numbers.append(spool_->state(name_).decision->instanceNumber);
    series.append(spool_->state(name_).decision->seriesInstanceUID);
    restart();
  }
  EXPECT_EQ(numbers, (QList<int>{1, 2, 3}));
  EXPECT_EQ(series.count(series.first()), 3);
  arrive(study("1.1", "A"), Vision);
  work();
  EXPECT_NE(spool_->state(name_).decision->seriesInstanceUID, series.first());
  EXPECT_EQ(spool_->state(name_).decision->instanceNumber, 1);
  EXPECT_NE(chartSeriesNumber(Growth), chartSeriesNumber(Vision));
}

TEST_F(SenderTest, SetsAsideWhatThePacsWillNeverTakeAndTakesItBack) {
  const QString uid = arrive(study("1.1", "A"));
  pacs_.storeResult = [](const QString&) { return Refused; };
  EXPECT_EQ(work(), std::nullopt);
  EXPECT_EQ(item(name_).state, SpoolState::Aside);
  EXPECT_EQ(item(name_).reason, text("not wanted"));
  EXPECT_TRUE(lines_.contains(text("aside %1: not wanted").arg(name_)));
  pacs_.storeResult = {};
  restart();
  EXPECT_EQ(work(), std::nullopt);
  EXPECT_TRUE(pacs_.stored.isEmpty());
  ASSERT_EQ(Spool::requestRetry(spool_->folder(), name_).error(), QString());
  EXPECT_EQ(work(), std::nullopt);
  EXPECT_EQ(pacs_.storedUids(), QStringList{uid});
}

TEST_F(SenderTest, SetsAsideWhatCannotBeSent) {
  const auto asideWith = [&](const QVariantMap& values) {
    arrive(values);
    EXPECT_EQ(work(), std::nullopt);
    EXPECT_EQ(item(name_).state, SpoolState::Aside);
    return item(name_).reason;
  };
  QVariantMap values = replyTo(study("1.1", "A"));
  values[text("Identifier")] = 5;
  EXPECT_EQ(asideWith(values), text("Identifier is not a string"));
  values = replyTo(study("1.77", "A"));
  EXPECT_EQ(asideWith(values), text("the PACS does not know its study"));
  values = replyTo(study("1.1", "A"));
  values[text("JPEG")] = QByteArray("\xff\xd8\xff\xe0 and no more");
  EXPECT_FALSE(asideWith(values).isEmpty());
  EXPECT_EQ(pacs_.stores, 0);
}

TEST_F(SenderTest, FindsTheStudyOfAReplyWhoseStudyIdIsNoText) {
  QVariantMap values = replyTo(study("1.1", "A"));
  values[text("OsiriXStudyID")] = QVariantMap{{text("row"), 7}};
  const QString uid = arrive(values);
  EXPECT_EQ(work(), std::nullopt);
  EXPECT_EQ(pacs_.storedUids(), QStringList{uid}) << qPrintable(item(name_).reason);
}

TEST_F(SenderTest, GoesOnWhenAReplyWasDamagedOnTheDisk) {
  arrive(study("1.1", "A"));
  const QString damaged = name_;
  const QString path = spool_->folder() + text("/replies/") + damaged + text(".reply");
  QByteArray file = readFile(path);
  file[file.size() - 1] = static_cast<char>(file.back() ^ 1);
  writeFile(path, file);
  const QString uid = arrive(study("1.1", "A"));
  EXPECT_EQ(work(), std::nullopt);
  EXPECT_EQ(pacs_.storedUids(), QStringList{uid});
  EXPECT_EQ(item(damaged).state, SpoolState::Aside);
  EXPECT_EQ(readFile(spool_->folder() + text("/damaged/") + damaged + text(".reply")), file);
}

TEST_F(SenderTest, SendsNothingWhoseStateTheDiskDoesNotGive) {
  arrive(study("1.1", "A"));
  pacs_.storeResult = [](const QString&) { return Refused; };
  work();
  const int stores = pacs_.stores;
  pacs_.storeResult = {};
  const QString state = spool_->folder() + text("/replies/") + name_ + text(".state");
  {
    const UnreadableFile unreadable(state);
    restart();
    for (int i = 0; i < 3; ++i) now_ += work().value_or(0ms);
    EXPECT_EQ(item(name_).state, SpoolState::Waiting);
    EXPECT_EQ(pacs_.stores, stores);
    const QString other = arrive(study("1.1", "A"));
    work();
    EXPECT_EQ(pacs_.storedUids(), QStringList{other}) << "others go on";
    name_ = name_.replace(0, 8, text("00000001"));
    EXPECT_TRUE(unreadable.isUntouched());
  }
  now_ += 1h;
  EXPECT_EQ(work(), std::nullopt);
  EXPECT_EQ(pacs_.stored.size(), 1);
  EXPECT_EQ(item(name_).state, SpoolState::Aside);
  EXPECT_EQ(item(name_).reason, text("not wanted"));
}

TEST_F(SenderTest, SendsInItsPatientsOrderWhatTheDiskGivesAgain) {
  const QString first = arrive(study("1.1", "A"));
  const QString path = spool_->folder() + text("/replies/") + name_ + text(".reply");
  {
    const UnreadableFile unreadable(path);
    restart();
    EXPECT_EQ(work(), 5s);
    EXPECT_TRUE(unreadable.isUntouched());
  }
  const QString second = arrive(study("1.1", "A"));
  pacs_.findResult = Away;
  now_ += 5s;
  work();
  pacs_.findResult = {};
  now_ += 1h;
  EXPECT_EQ(work(), std::nullopt);
  EXPECT_EQ(pacs_.storedUids(), (QStringList{first, second}));
}

TEST_F(SenderTest, TellsNothingOfThePatientInItsLines) {
  pacs_.studies.append(study("1.4", "Secret-77"));
  QVariantMap values = replyTo(study("1.4", "Secret-77"));
  values[text("OsiriXStudyID")] = QString();
  arrive(values);
  pacs_.findResult = PacsFailure::never(text("no match for Secret-77 or Secret/77, called\nMAX MUSTER"));
  work();
  ASSERT_EQ(lines_.size(), 1);
  for (const QString& line : lines_) {
    EXPECT_FALSE(line.contains(text("Secret"))) << qPrintable(line);
    EXPECT_FALSE(line.contains(text("Muster"), Qt::CaseInsensitive)) << qPrintable(line);
    EXPECT_FALSE(line.contains(QLatin1Char('\n')));
  }
}

TEST_F(SenderTest, TakesAnExceptionForAFailureThatMayPass) {
  arrive(study("1.1", "A"));
  pacs_.storeResult = [](const QString&) -> PacsResult<> { throw std::runtime_error("broken"); };
  EXPECT_EQ(work(), 5s);
  EXPECT_EQ(item(name_).state, SpoolState::Waiting);
}

TEST_F(SenderTest, WritesOneLineForAFailureThatStaysTheSame) {
  arrive(study("1.1", "A"));
  pacs_.findResult = Away;
  for (int i = 0; i < 5; ++i) now_ += work().value_or(0ms);
  EXPECT_EQ(lines_, QStringList{text("waiting %1: nobody there").arg(name_)});
}
