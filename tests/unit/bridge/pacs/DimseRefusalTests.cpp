// SPDX-License-Identifier: LGPL-3.0-or-later
//
// DIMSE with archives that refuse, and with such that do not keep to the rules.
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QtEndian>
#include <chrono>
#include <string>

#include "bridge/pacs/DimsePacs.h"
#include "bridge/pacs/DimseStatus.h"
#include "bridge/testing/LoopbackPeer.h"
#include "bridge/testing/PacsOutcome.h"
#include "bridge/testing/SyntheticStudy.h"
#include "tests/unit/bridge/pacs/DimseScriptedArchive.h"

using namespace bridge_testing;
using bridge::DimsePacs;
using bridge::Outcome;
using bridge::outcomeOf;
using bridge::PacsResult;
using bridge::studiesOf;
using bridge::Study;
using bridge::StudyQuery;

namespace {

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

PacsResult<> check(const Script& script) {
  const ScriptedArchive archive(script);
  return DimsePacs(archive.settings()).check();
}

PacsResult<> store(const Script& script) {
  const ScriptedArchive archive(script);
  const Study study = inventedStudy();
  return DimsePacs(archive.settings())
      .store(syntheticStudy(study), SecondaryCaptureClass, syntheticUID(study));
}

PacsResult<QList<Study>> find(const Script& script) {
  const ScriptedArchive archive(script);
  StudyQuery query;
  query.patientID = text("P-1");
  return DimsePacs(archive.settings()).findStudies(query);
}

PacsResult<QList<Study>> askFor(const char* patient, int port, std::chrono::seconds timeout) {
  bridge::PacsSettings settings;
  settings.host = text("127.0.0.1");
  settings.port = port;
  settings.timeout = timeout;
  StudyQuery query;
  query.patientID = text(patient);
  return DimsePacs(settings).findStudies(query);
}

/// What an archive says that accepts the first context of an association, in this transfer syntax (PS3.8
/// table 9-17).
std::string acceptance(const char* transferSyntax = UID_LittleEndianImplicitTransferSyntax) {
  const auto item = [](char type, const std::string& value) {
    return std::string{type, '\0', '\0', static_cast<char>(value.size())} + value;
  };
  const std::string variable = item(0x10, "1.2.840.10008.3.1.1.1") +
                               item(0x21, std::string("\x01\0\0\0", 4) + item(0x40, transferSyntax)) +
                               item(0x50, item(0x51, std::string("\0\0\x40\0", 4)) + item(0x52, "2.25.1"));
  const std::string fixed = std::string("\0\x01\0\0", 4) + std::string(64, ' ');
  const std::string all = fixed + variable;
  return std::string("\x02\0\0\0\0", 5) + static_cast<char>(all.size()) + all;
}

/// A part of a command set, after which there is more (PS3.8 9.3.5 and annex E).
std::string commandFragment(const std::string& bytes) {
  const auto length = [](std::size_t size) {
    std::string big(4, '\0');
    qToBigEndian(static_cast<quint32>(size), big.data());
    return big;
  };
  return std::string("\x04\0", 2) + length(bytes.size() + 6) + length(bytes.size() + 2) + "\x01\x01" + bytes;
}

/// An archive that says so to a store.
Script storing(quint16 status) {
  Script script;
  script.storeStatus = status;
  return script;
}

}  // namespace

TEST(DimseStatus, IsDoneTriedAgainOrGivenUpByWhatItMeans) {
  struct Row {
    quint16 status;
    Outcome store;
    Outcome find;
  };
  for (const Row& row : {Row{0x0000, Outcome::Done, Outcome::Done},
                         {0x0111, Outcome::Done, Outcome::TryAgain},
                         {0xb000, Outcome::Done, Outcome::TryAgain},
                         {0xb006, Outcome::Done, Outcome::TryAgain},
                         {0xb007, Outcome::Done, Outcome::TryAgain},
                         {0xa700, Outcome::TryAgain, Outcome::TryAgain},
                         {0xa702, Outcome::TryAgain, Outcome::TryAgain},
                         {0xa900, Outcome::Never, Outcome::Never},
                         {0xa9ff, Outcome::Never, Outcome::Never},
                         {0xc000, Outcome::Never, Outcome::TryAgain},
                         {0xcfff, Outcome::Never, Outcome::TryAgain},
                         {0x0110, Outcome::TryAgain, Outcome::TryAgain},
                         {0x0117, Outcome::Never, Outcome::TryAgain},
                         {0x0122, Outcome::Never, Outcome::Never},
                         {0x0124, Outcome::TryAgain, Outcome::TryAgain},
                         {0xfe00, Outcome::TryAgain, Outcome::TryAgain},
                         {0x1234, Outcome::TryAgain, Outcome::TryAgain}}) {
    EXPECT_EQ(outcomeOf(bridge::storeOutcome(row.status)), row.store) << std::hex << row.status;
    EXPECT_EQ(outcomeOf(bridge::findOutcome(row.status)), row.find) << std::hex << row.status;
    EXPECT_EQ(bridge::storeOutcome(row.status).error().isEmpty(), row.store == Outcome::Done);
  }
}

TEST(DimseRefusal, TellsTheReasonsOfARefusedAssociationApart) {
  struct Row {
    T_ASC_RejectParametersReason reason;
    const char* words;
  };
  for (const Row& row :
       {Row{ASC_REASON_SU_CALLEDAETITLENOTRECOGNIZED, "does not go by the AE title \"ANY-SCP\""},
        {ASC_REASON_SU_CALLINGAETITLENOTRECOGNIZED, "does not know our AE title \"VELMORALINK\""},
        {ASC_REASON_SP_PRES_TEMPORARYCONGESTION, "too busy"},
        {ASC_REASON_SP_PRES_LOCALLIMITEXCEEDED, "too busy"},
        {ASC_REASON_SU_NOREASON, "without saying why"}}) {
    Script script;
    script.rejection = row.reason;
    const PacsResult<> result = check(script);
    EXPECT_EQ(outcomeOf(result), Outcome::TryAgain);
    EXPECT_TRUE(result.error().contains(text(row.words))) << qPrintable(result.error());
  }
}

TEST(DimseRefusal, GivesUpWhenTheArchiveDoesNotTakeTheObjectAtAll) {
  Script script;
  script.transferSyntaxes = {UID_LittleEndianImplicitTransferSyntax};
  PacsResult<> result = store(script);
  EXPECT_EQ(outcomeOf(result), Outcome::Never);
  EXPECT_TRUE(result.error().contains(text("does not take"))) << qPrintable(result.error());
  script = Script();
  script.classes.removeLast();
  result = store(script);
  EXPECT_EQ(outcomeOf(result), Outcome::Never);
  EXPECT_TRUE(result.error().contains(text("does not support"))) << qPrintable(result.error());
}

TEST(DimseRefusal, ChecksThatChartsAndQuestionsWouldBeTaken) {
  EXPECT_TRUE(check(Script()).ok());
  Script script;
  script.transferSyntaxes.removeLast();
  EXPECT_FALSE(check(script).ok());
  script = Script();
  script.classes.removeAt(1);
  EXPECT_FALSE(check(script).ok());
  script = Script();
  script.findStatus = 0x0124;
  EXPECT_TRUE(check(script).error().contains(text("not authorised")));
}

TEST(DimseRefusal, GoesByTheStatusOfAStore) {
  EXPECT_TRUE(store(storing(0x0000)).ok());
  EXPECT_TRUE(store(storing(0xb000)).ok());
  EXPECT_EQ(outcomeOf(store(storing(0xa700))), Outcome::TryAgain);
  EXPECT_EQ(outcomeOf(store(storing(0xc000))), Outcome::Never);
}

TEST(DimseRefusal, BelievesNoArchiveThatNamesAnotherObject) {
  Script script;
  script.storedUid = "2.25.1";
  EXPECT_EQ(outcomeOf(store(script)), Outcome::TryAgain);
}

TEST(DimseRefusal, BelievesAnArchiveThatConfirmsWithoutNamingTheObject) {
  Script script;
  script.storedUid = "";
  const PacsResult<> result = store(script);
  EXPECT_TRUE(result.ok()) << qPrintable(result.error());
  script.storeStatus = 0xa700;
  EXPECT_EQ(outcomeOf(store(script)), Outcome::TryAgain);
}

TEST(DimseRefusal, SaysThatTheArchiveBrokeOff) {
  Script script;
  script.aborts = true;
  const PacsResult<> result = check(script);
  EXPECT_EQ(outcomeOf(result), Outcome::TryAgain);
  EXPECT_TRUE(result.error().contains(text("broke off"))) << qPrintable(result.error());
}

TEST(DimseRefusal, WaitsNoLongerForAnAnswerThanItIsToldTo) {
  Script script;
  script.isMute = true;
  const ScriptedArchive archive(script);
  bridge::PacsSettings settings = archive.settings();
  settings.timeout = std::chrono::seconds(1);
  const PacsResult<> result = DimsePacs(settings).check();
  EXPECT_EQ(outcomeOf(result), Outcome::TryAgain);
  EXPECT_TRUE(result.error().contains(text("does not answer within 1 s"))) << qPrintable(result.error());
}

TEST(DimseRefusal, WaitsNoLongerForAnArchiveThatDripsItsAnswer) {
  const std::string terms("\x02\0\0\0\x02\0", 6);   // of an association, 512 bytes
  const std::string answer("\x04\0\0\0\x02\0", 6);  // data, 512 bytes
  for (const std::string& beginning : {terms, acceptance() + answer}) {
    const PouringPeer archive(beginning, std::string(1, '\0'), std::chrono::milliseconds(100));
    QElapsedTimer clock;
    clock.start();
    const auto result = askFor("P-1", archive.port(), std::chrono::seconds(1));
    EXPECT_EQ(outcomeOf(result), Outcome::TryAgain);
    EXPECT_TRUE(result.error().contains(text("does not answer within 1 s"))) << qPrintable(result.error());
    EXPECT_LT(clock.elapsed(), 20000);  // the 512 bytes would take 51 seconds
  }
}

TEST(DimseRefusal, SendsNothingInAnEncodingThatWasNotOffered) {
  const PouringPeer archive(acceptance(UID_BigEndianExplicitTransferSyntax), std::string(1, '\0'),
                            std::chrono::milliseconds(100));
  const auto result = askFor("P-1", archive.port(), std::chrono::seconds(1));
  EXPECT_EQ(outcomeOf(result), Outcome::Never);
  EXPECT_TRUE(result.error().contains(text("was not offered"))) << qPrintable(result.error());
}

TEST(DimseRefusal, ReadsNoAnswerWithoutEnd) {
  // A command set whose error comment has two gigabytes.
  const PouringPeer archive(acceptance() + commandFragment(std::string("\0\0\x02\x09\0\xff\xff\x7f", 8)),
                            commandFragment(std::string(30000, ' ')), std::chrono::milliseconds(0));
  const auto result = askFor("P-1", archive.port(), std::chrono::seconds(600));
  EXPECT_EQ(outcomeOf(result), Outcome::TryAgain);
  EXPECT_TRUE(result.error().contains(text("broke off"))) << qPrintable(result.error());
  EXPECT_LT(archive.poured(), 200U << 20);
}

TEST(DimseRefusal, CountsNoStudiesWhenOneOfThemCannotBeRead) {
  Script script;
  script.answers = 2;
  script.lastIsNameless = true;
  EXPECT_EQ(outcomeOf(find(script)), Outcome::TryAgain);
}

TEST(DimseRefusal, LooksAtSoManyStudiesAndNoMore) {
  Script script;
  script.answers = bridge::Pacs::MostStudies;
  EXPECT_EQ(studiesOf(find(script)).size(), bridge::Pacs::MostStudies);
  script.answers += 1;
  EXPECT_EQ(outcomeOf(find(script)), Outcome::Never);
}

TEST(DimseRefusal, ReadsNoAnswerThatIsTooLarge) {
  Script script;
  script.answers = 1;
  script.answerSize = 60 * 1024;
  EXPECT_EQ(studiesOf(find(script)).size(), 1);
  script.answers = 2;
  script.answerSize = 70 * 1000;  // with an Explicit VR that cannot be so long, the toolkit writes UN
  EXPECT_EQ(outcomeOf(find(script)), Outcome::TryAgain);
}

TEST(DimseQuestion, SaysInWhichCharactersItIsWritten) {
  for (const auto& [patient, question] : {std::pair{"ÅÄÖ-7", "ISO_IR 192 ÅÄÖ-7"}, std::pair{"P-7", " P-7"}}) {
    ScriptedArchive archive{Script()};
    StudyQuery query;
    query.patientID = text(patient);
    studiesOf(DimsePacs(archive.settings()).findStudies(query));
    EXPECT_EQ(archive.question(), QByteArray(question));
  }
}

TEST(DimseStore, AsksNobodyToStoreAFileWhoseBeginningIsBroken) {
  const Study study = inventedStudy();
  const QByteArray file = syntheticStudy(study);
  DimsePacs pacs(bridge::PacsSettings{});
  // Up to the first element of the data set, its character set.
  const qsizetype header = file.indexOf(QByteArray("\x08\0\x05\0CS", 6));
  ASSERT_GT(header, 132);
  for (qsizetype size = 0; size <= header; ++size) {
    const PacsResult<> result = pacs.store(file.left(size), SecondaryCaptureClass, syntheticUID(study));
    EXPECT_EQ(outcomeOf(result), Outcome::Never) << size;
  }
}
