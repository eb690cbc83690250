// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include <malloc.h>

#include <cstddef>
#include <stdexcept>
#include <thread>

#include "base/log/AssertionFailure.h"
#include "link/protocol/LinkProtocol.h"
#include "platform/text/DateFormatter.h"
#include "testing/application/RecordApplication.h"
#include "testing/standins/LogRecorder.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;
using namespace velmora::testkit;

/// Of the address sanitizer, where it is there.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes() __attribute__((weak));

namespace keys = velmora::link;
namespace settings = velmora::settings;
using user::textOf;

namespace {

QVariantMap without(QVariantMap request, const QString& key) {
  request.remove(key);
  return request;
}

QVariantMap with(QVariantMap request, const QString& key, const QVariant& value) {
  request.insert(key, value);
  return request;
}

}  // namespace

TEST(LinkRequest, FillsTheFrontDocument) {
  RecordApplication application;
  RecordingDocument& back = application.newRecord();
  RecordingDocument& document = application.newRecord();
  application.chooseStudy(study("AB1"));

  EXPECT_EQ(textOf(document, "referenceIDField"), "AB1");
  EXPECT_EQ(textOf(document, "birthDateField"), "30/06/2021");
  EXPECT_EQ(textOf(document, "examDateField"), "29/04/2024");
  EXPECT_EQ(document.patientName(), "Doe^Jane");
  EXPECT_EQ(document.osiriXStudyID(), QVariant("1.2.840.99"));
  EXPECT_TRUE(document.isDocumentEdited());
  EXPECT_EQ(back.identifier(), "");
  EXPECT_EQ(application.controller.documents().size(), 2) << "no document is made for it";
}

TEST(LinkRequest, RefreshesTheDisplayLastAndAfterMarkingTheDocumentChanged) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  application.chooseStudy(study("AB1"));
  EXPECT_EQ(document.calls, (QStringList{"updateDisplay 0", "synchronizeToData 0"}));
  EXPECT_EQ(document.changedByThen, (QList<bool>{true, true}));
  EXPECT_EQ(document.exams, QStringList{"29/04/2024"}) << "stored, so the exam date was there by then";
}

TEST(LinkRequest, FillsADocumentThatIsNotBlankToo) {
  RecordApplication application;
  application.writeRecord("OLD");
  RecordingDocument& document = application.openRecord("OLD");
  application.chooseStudy(study("AB1"));
  EXPECT_EQ(document.identifier(), "AB1");
}

TEST(LinkRequest, WithoutAutoSaveFillsTheFrontDocumentEvenIfThePatientHasAFile) {
  RecordApplication application;
  application.keepRecord("AB1");
  RecordingDocument& document = application.newRecord();
  application.chooseStudy(study("AB1"));
  application.pass(1);
  EXPECT_EQ(application.front(), &document);
  EXPECT_EQ(document.identifier(), "AB1");
  EXPECT_EQ(document.exams.size(), 1);
  EXPECT_TRUE(application.delegate.asked.isEmpty());
}

TEST(LinkRequest, OpensTheFileOfAReturningPatientAndAddsAnExamination) {
  RecordApplication application;
  application.turnOn(settings::AutoSave);
  application.keepRecord("AB1", {"01/02/2023"});
  application.newRecord();
  application.chooseStudy(study("AB1"));

  ASSERT_EQ(application.controller.documents().size(), 1) << "the document that was in front is closed";
  RecordingDocument* record = application.front();
  EXPECT_EQ(record->fileURL().toLocalFile(), application.pathOfRecord("AB1"));
  EXPECT_EQ(record->exams, QStringList{"01/02/2023"});
  EXPECT_FALSE(record->isDocumentEdited());
  application.pass(0.099);
  EXPECT_EQ(record->exams.size(), 1);
  application.pass(0.001);
  EXPECT_EQ(record->exams, (QStringList{"01/02/2023", "29/04/2024"}));
  EXPECT_EQ(record->currentExam(), 1U);
  EXPECT_EQ(record->patientName(), "Doe^Jane");
  EXPECT_EQ(textOf(*record, "examDateField"), "29/04/2024");
  EXPECT_TRUE(record->isDocumentEdited());
  application.pass(10);
  EXPECT_EQ(record->exams.size(), 2) << "one examination for one request";
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
}

TEST(LinkRequest, LeavesIdentifierBirthDateAndStudyOfAReturningPatientAlone) {
  RecordApplication application;
  application.turnOn(settings::AutoSave);
  application.keepRecord("AB1");
  application.newRecord();
  application.chooseStudy(study("AB1"));
  application.pass(0.1);
  RecordingDocument* record = application.front();
  EXPECT_EQ(textOf(*record, "referenceIDField"), "AB1");
  EXPECT_EQ(textOf(*record, "birthDateField"), "03/04/2020");
  EXPECT_EQ(record->osiriXStudyID(), QVariant(""));
}

TEST(LinkRequest, AddsTheExaminationBeforeItAppliesNameAndDate) {
  RecordApplication application;
  application.turnOn(settings::AutoSave);
  application.keepRecord("AB1");
  application.newRecord();
  application.chooseStudy(study("AB1"));
  application.front()->forgetCalls();
  application.pass(0.1);
  EXPECT_EQ(application.front()->calls,
            (QStringList{"synchronizeToData 0", "addExamination 0", "synchronizeFromData 1",
                         "updateDisplay 1", "synchronizeToData 1"}));
}

TEST(LinkRequest, WithoutABirthDateLeavesTheFieldAsItWas) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  document.setBirthDate(platform::noonOf(QDate(2019, 1, 2)));
  application.chooseStudy(without(study("AB1"), keys::DateOfBirth));
  EXPECT_EQ(textOf(document, "birthDateField"), "02/01/2019");
}

TEST(LinkRequest, WithoutAStudyDateEmptiesTheExamDate) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  document.setExamDate(platform::noonOf(QDate(2019, 1, 2)));
  application.chooseStudy(without(study("AB1"), keys::DateOfStudy));
  EXPECT_EQ(textOf(document, "examDateField"), "");
}

TEST(LinkRequest, WithoutNameOrStudyKeepsNeither) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  document.setName("Somebody else");
  document.setOsiriXStudyID("1.2");
  application.chooseStudy({{keys::Identifier, "AB1"}});
  EXPECT_EQ(document.identifier(), "AB1");
  EXPECT_EQ(document.patientName(), "");
  EXPECT_FALSE(document.osiriXStudyID().isValid());
}

TEST(LinkRequest, ReplacesEverySlashOfTheIdentifier) {
  RecordApplication application;
  application.turnOn(settings::AutoSave);
  RecordingDocument& document = application.newRecord();
  application.chooseStudy(study("12/345/6"));
  EXPECT_EQ(document.identifier(), "12-345-6");
  EXPECT_EQ(application.delegate.asked, QStringList{"12-345-6"}) << "the look-up sees it so, too";
}

TEST(LinkRequest, WithSlashesFindsTheFileNamedWithDashes) {
  RecordApplication application;
  application.turnOn(settings::AutoSave);
  application.keepRecord("12-345-6");
  application.newRecord();
  application.chooseStudy(study("12/345/6"));
  application.pass(0.1);
  EXPECT_EQ(application.front()->exams.size(), 2);
}

TEST(LinkRequest, WithoutAnIdentifierTouchesNothing) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  const platform::Notification request{"", {}, without(study("AB1"), keys::Identifier)};
  try {
    application.controller.doLinkFromOsirix(request);
    FAIL() << "an identifier is required";
  } catch (const base::AssertionFailure& failure) {
    EXPECT_EQ(failure.message(), "Value==nil");
    EXPECT_EQ(failure.sourceFile(), "VelmoraAppController");
  }
  EXPECT_TRUE(document.calls.isEmpty());
  EXPECT_FALSE(document.isDocumentEdited());
  EXPECT_EQ(textOf(document, "examDateField"), "");
}

TEST(LinkRequest, WithoutAnIdentifierLeavesOneLineInTheLog) {
  RecordApplication application;
  application.newRecord();
  const LogRecorder log;
  application.chooseStudy(without(study("AB1"), keys::Identifier));
  EXPECT_EQ(log.lines(), QStringList{"timed call: VelmoraAppController: Value==nil"});
}

TEST(LinkRequest, WithSomethingThatIsNoIdentifierTouchesNothing) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  const LogRecorder log;
  const QVariantList odd{QVariantMap{{"a", 1}}, QVariantList{"AB1"}, QByteArray("AB1"), 17, true, QVariant()};
  for (const QVariant& identifier : odd) {
    application.chooseStudy(with(study("AB1"), keys::Identifier, identifier));
  }
  EXPECT_EQ(log.lines().size(), odd.size());
  EXPECT_EQ(document.identifier(), "");
  EXPECT_FALSE(document.isDocumentEdited());
}

TEST(LinkRequest, TakesAnEmptyIdentifierAsItIs) {
  RecordApplication application;
  application.turnOn(settings::AutoSave);
  RecordingDocument& document = application.newRecord();
  application.chooseStudy(study(""));
  EXPECT_EQ(document.identifier(), "");
  EXPECT_EQ(textOf(document, "examDateField"), "29/04/2024");
}

TEST(LinkRequest, WithDatesThatAreNoDatesIsARequestWithoutDates) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  document.setBirthDate(platform::noonOf(QDate(2019, 1, 2)));
  for (const QVariant& odd :
       QVariantList{"2021-06-30", 20210630, QVariantMap{}, QByteArray("x"), QDateTime()}) {
    application.chooseStudy(with(with(study("AB1"), keys::DateOfBirth, odd), keys::DateOfStudy, odd));
    EXPECT_EQ(textOf(document, "birthDateField"), "02/01/2019");
    EXPECT_EQ(textOf(document, "examDateField"), "");
  }
}

TEST(LinkRequest, KeepsAStudyIdentifierOfAnyTypeAsItCame) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  for (const QVariant& studyID :
       QVariantList{42, QByteArray("\x01\x02"), QVariantList{"a", 1}, QVariantMap{{"a", 1}}}) {
    application.chooseStudy(with(study("AB1"), keys::OsiriXStudyID, studyID));
    EXPECT_EQ(document.osiriXStudyID(), studyID);
  }
}

TEST(LinkRequest, WithANameThatIsNoTextHasNoName) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  application.chooseStudy(with(study("AB1"), keys::Name, QVariantMap{{"a", 1}}));
  EXPECT_EQ(document.patientName(), "");
  EXPECT_EQ(document.identifier(), "AB1");
}

TEST(LinkRequest, ShowsTheCalendarDayOfAPointInTime) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  const QDateTime lateEvening(QDate(2021, 6, 30), QTime(23, 59));
  const QDateTime midnight(QDate(2024, 4, 29), QTime(0, 0));
  application.chooseStudy(
      with(with(study("AB1"), keys::DateOfBirth, lateEvening), keys::DateOfStudy, midnight));
  EXPECT_EQ(textOf(document, "birthDateField"), "30/06/2021");
  EXPECT_EQ(textOf(document, "examDateField"), "29/04/2024");
}

TEST(LinkRequest, WithNoDocumentOpenChangesNothing) {
  RecordApplication application;
  EXPECT_THROW(application.controller.doLinkFromOsirix({"", {}, study("AB1")}), std::out_of_range);
  const LogRecorder log;
  application.chooseStudy(study("AB1"));
  EXPECT_EQ(log.lines().size(), 1);
  EXPECT_TRUE(application.controller.documents().isEmpty());
  application.pass(1);
  EXPECT_EQ(log.lines().size(), 1);
}

TEST(LinkRequest, IsOnlyHandedToTheMainThreadByTheThreadThatHearsIt) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  std::thread([&] { application.controller.notifiedOfLinkFromOsirix({"", {}, study("AB1")}); }).join();
  EXPECT_EQ(document.identifier(), "");
  application.settle();
  EXPECT_EQ(document.identifier(), "AB1");
}

TEST(LinkRequest, WaitsWhileAnAlertIsOpen) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  const platform::Alert notice{"Notice", "OK", "", "", ""};
  application.desktop.alerts.expect(notice, platform::AlertDefaultReturn, [&] {
    application.chooseStudy(study("AB1"));
    EXPECT_EQ(document.identifier(), "");
  });
  application.desktop.alerts.runModal(notice);
  application.settle();
  EXPECT_EQ(document.identifier(), "AB1");
}

TEST(LinkRequest, IsHandledInTheOrderOfArrival) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  const QString name = keys::notificationName("org.velmora.recorder");
  application.desktop.distributedCenter.deliver(name, keys::RequestObject, study("FIRST"));
  application.desktop.distributedCenter.deliver(name, keys::RequestObject, study("SECOND"));
  application.settle();
  EXPECT_EQ(document.identifier(), "SECOND");
  EXPECT_EQ(document.calls.count("updateDisplay 0"), 2);
}

TEST(LinkRequest, TakesTheStudyOfAnEarlierRequestFromARecordThatIsOpen) {
  RecordApplication application;
  application.turnOn(settings::AutoSave);
  application.newRecord();
  application.chooseStudy(with(study("AB1"), keys::OsiriXStudyID, "STUDY-1"));
  application.front()->saveDocument();
  application.settle();
  ASSERT_EQ(application.front()->osiriXStudyID(), "STUDY-1") << "the record as the user goes on with it";
  application.newRecord();
  application.chooseStudy(with(study("AB1"), keys::OsiriXStudyID, "STUDY-2"));
  application.pass(0.1);
  ASSERT_EQ(application.front()->exams.size(), 2);
  application.turnOn(settings::ExportToOsiriX);
  application.front()->autoExport();
  application.pass(1);
  ASSERT_EQ(application.replies().size(), 1);
  EXPECT_EQ(application.replies().first().userInfo.value(keys::OsiriXStudyID), QVariant(""))
      << "the chart of the second study must not go into the first";
}

// What waits while the program is busy or asks a question.

namespace {

/// The memory that this process holds, in MiB.
long memoryHeld() {
  // The address sanitizer keeps what was freed, for a while, in the process: only it knows what is still
  // held.
  if (__sanitizer_get_current_allocated_bytes)
    return static_cast<long>(__sanitizer_get_current_allocated_bytes() / (1024 * 1024));
  const struct mallinfo2 heap = ::mallinfo2();
  return static_cast<long>((heap.uordblks + heap.hblkhd) / (1024 * 1024));
}

}  // namespace

TEST(WaitingRequest, HoldsNoMoreThanItsKeys) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  const long before = memoryHeld();
  {
    const platform::RunLoop::ModalSession alert(application.desktop.runLoop);
    for (int i = 0; i < 40; ++i) {
      const QByteArray image(8 * 1024 * 1024, static_cast<char>('a' + i % 20));
      application.controller.notifiedOfLinkFromOsirix({"", {}, with(study("AB1"), "JPEG", image)});
    }
    EXPECT_LT(memoryHeld() - before, 50) << "MiB held by 40 requests of 8 MiB";
  }
  application.settle();
  EXPECT_EQ(document.identifier(), "AB1");
  EXPECT_EQ(document.calls.count("updateDisplay 0"), 40);
}

TEST(WaitingRequest, OfAbsurdLengthIsRefusedWhenItComes) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  const LogRecorder log;
  const QString tooLong(1025, 'x');
  const QList<QVariantMap> refused{
      study(tooLong),
      with(study("AB1"), keys::Name, tooLong),
      with(study("AB1"), keys::OsiriXStudyID, QByteArray(65 * 1024, 'x')),
      with(study("AB1"), keys::OsiriXStudyID, QVariantList{QVariantMap{{"a", QString(40 * 1024, 'x')}}}),
      with(study("AB1"), keys::Name, QByteArray(65 * 1024, 'x')),
      with(study("AB1"), keys::DateOfBirth, QVariantMap{{"a", QByteArray(65 * 1024, 'x')}})};
  for (const QVariantMap& request : refused) {
    application.controller.notifiedOfLinkFromOsirix({"", {}, request});
  }
  EXPECT_EQ(log.lines().size(), refused.size()) << "one line each, at once";
  application.settle();
  EXPECT_EQ(log.lines().size(), refused.size());
  EXPECT_EQ(document.identifier(), "");
  EXPECT_FALSE(document.isDocumentEdited());
}

TEST(WaitingRequest, OfTheGreatestLengthIsTaken) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  const QString longest(1024, 'x');
  application.chooseStudy(
      with(with(study(longest), keys::Name, longest), keys::OsiriXStudyID, QByteArray(32 * 1024, 'x')));
  EXPECT_EQ(document.identifier(), longest);
  EXPECT_EQ(document.patientName(), longest);
}

TEST(WaitingRequest, BeyondWhatAProgramHoldsIsDroppedWithOneLine) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  const LogRecorder log;
  const QVariantMap large = with(study("LARGE"), keys::OsiriXStudyID, QByteArray(60 * 1024, 'x'));
  for (int turn = 1; turn <= 2; ++turn) {
    document.forgetCalls();
    for (int i = 0; i < 400; ++i) application.controller.notifiedOfLinkFromOsirix({"", {}, large});
    application.settle();
    const auto handled = document.calls.count("updateDisplay 0");
    EXPECT_GT(handled, 200) << "about 16 MiB of them";
    EXPECT_LT(handled, 300);
    EXPECT_EQ(log.lines().size(), turn) << "a line each time that it begins";
    application.chooseStudy(study("NEXT"));
    EXPECT_EQ(document.identifier(), "NEXT") << "there is room again";
  }
}

TEST(WaitingRequest, IsOneOfManyThatMayWait) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  const LogRecorder log;
  for (int i = 0; i < 20001; ++i) application.controller.notifiedOfLinkFromOsirix({"", {}, study("AB1")});
  application.settle();
  EXPECT_EQ(document.calls.count("updateDisplay 0"), 20000);
  EXPECT_EQ(log.lines().size(), 1);
}
