// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Documents and controllers that end in the middle of something. Also run under valgrind (valgrind.sh).
#include <gtest/gtest.h>

#include <QCloseEvent>
#include <thread>

#include "testing/desktop/DesktopApplication.h"
#include "testing/standins/TestServices.h"
#include "testing/waiting/Waiting.h"
#include "testing/window/DialogAnswers.h"
#include "velmora/resources/Notifications.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;
using namespace velmora::testkit;

namespace {

enum class Open { Alert, Sheet, Panel };
enum class End { Timer, User, Quit, LookUp };

const char* nameOf(Open open) {
  return open == Open::Alert ? "Alert" : open == Open::Sheet ? "Sheet" : "Panel";
}
const char* nameOf(End end) {
  return end == End::Timer ? "Timer" : end == End::User ? "User" : end == End::Quit ? "Quit" : "LookUp";
}

void PrintTo(Open open, std::ostream* out) { *out << nameOf(open); }
void PrintTo(End end, std::ostream* out) { *out << nameOf(end); }

}  // namespace

/// A record that is closed while something of its own is open.
class Destruction : public ::testing::TestWithParam<std::tuple<Open, End>> {
 protected:
  Destruction() {
    application_.keepRecord(QStringLiteral("1"));
    application_.keepRecord(QStringLiteral("2"));
    record_ = &application_.openRecord(QStringLiteral("1"));
  }

  /// Sets the end of the record going.
  void beginTheEnd(End end) {
    switch (end) {
      case End::Timer:
        // As the batch window does with a file that is open already.
        application_.desktop.notificationCenter.postNotificationName(
            velmora::notifications::BatchOpen, application_.pathOfRecord(QStringLiteral("1")));
        break;
      case End::User: {
        QCloseEvent close;
        QCoreApplication::sendEvent(record_->window(), &close);
        break;
      }
      case End::Quit:
        application_.controller.terminate();
        break;
      case End::LookUp:
        application_.chooseStudy(QStringLiteral("2"));
        break;
    }
  }

  /// Opens it, and sets the end going while it is open.
  void openAndEnd(Open open, End end) {
    const bool sheet = open == Open::Sheet;
    const auto act = [this, end, sheet] {
      beginTheEnd(end);
      letEventsPass();
      // An alert or a panel of the application holds everything up. A sheet goes with its window.
      if (!sheet) {
        EXPECT_TRUE(record_ && !record_->isClosed());
      }
      if (sheet) waitUntil([this] { return !record_; });
    };
    switch (open) {
      case Open::Alert:
        answers_.expect(QStringLiteral("This entry has already been defined"), act, QStringLiteral("Cancel"));
        user::click(user::field(*record_, "birthDateField"));
        break;
      case Open::Sheet:
        answers_.expect(QStringLiteral("Are you sure you want to remove this exam?"), act, QString());
        record_->doDeleteRecord(nullptr);
        break;
      case Open::Panel:
        application_.desktop.defaults.setObject(false, velmora::settings::AutoSave);
        answers_.expect(QStringLiteral("Save"), act, QStringLiteral("Cancel"));
        record_->saveDocumentAs();
        application_.desktop.defaults.setObject(true, velmora::settings::AutoSave);
        break;
    }
  }

  DesktopApplication application_;
  DialogAnswers answers_;
  QPointer<RecordingDocument> record_;
};

TEST_P(Destruction, OfARecordUnderSomethingOfItsOwnLeavesEverythingWhole) {
  const auto [open, end] = GetParam();
  openAndEnd(open, end);
  waitUntil([this] { return !record_; });
  EXPECT_TRUE(answers_.done());
  if (end == End::LookUp) {
    // The other patient's record is open, and has the examination of the study.
    waitUntil([this] {
      return application_.identifierInFront() == QStringLiteral("2") &&
             application_.front()->exams.size() == 3;
    });
  }
  if (end == End::Quit) {
    waitUntil([this] { return application_.desktop.application.stops == 1; });
  }
  // The program goes on.
  letEventsPass();
  application_.newRecord();
  application_.chooseStudy(QStringLiteral("3"));
  if (end != End::Quit) waitUntil([this] { return application_.identifierInFront() == QStringLiteral("3"); });
}

INSTANTIATE_TEST_SUITE_P(Of, Destruction,
                         ::testing::Combine(::testing::Values(Open::Alert, Open::Sheet, Open::Panel),
                                            ::testing::Values(End::Timer, End::User, End::Quit, End::LookUp)),
                         [](const auto& each) {
                           return std::string(nameOf(std::get<0>(each.param))) + "EndedBy" +
                                  nameOf(std::get<1>(each.param));
                         });

TEST(DestructionOfTheController, DropsEveryCallThatIsPending) {
  RecordApplication application;
  application.turnOn(velmora::settings::AutoSave);
  // A controller beside the application's own, with calls of every kind pending.
  auto controller = std::make_unique<VelmoraAppController>(application.desktop.services);
  controller->awakeFromNib();
  controller->setDocumentFactory([&] {
    return std::make_unique<RecordingDocument>(application.desktop.services, application.delegate);
  });
  application.desktop.defaults.setInteger(31, velmora::settings::VersionCheckInterval);
  controller->applicationDidFinishLaunching();
  controller->batchExportToOsirix({velmora::notifications::BatchExport, QVariantMap(), {}});
  controller->batchOpen({velmora::notifications::BatchOpen, QStringLiteral("/none"), {}});
  controller->newDocument();
  QPointer<platform::Document> document = controller->currentDocument();
  document->performClose();
  std::thread viewer([&] { controller->notifiedOfLinkFromOsirix({{}, {}, study(QStringLiteral("1"))}); });
  viewer.join();
  controller->closeAllDocuments({});
  controller->terminate();
  controller.reset();
  application.desktop.services.documentController = &application.controller;
  EXPECT_FALSE(document);
  application.pass(100);
  EXPECT_TRUE(application.replies().isEmpty());
  EXPECT_EQ(application.desktop.application.stops, 0);
}

TEST(DestructionOfTheController, WithARealRunLoopDropsEveryCallThatIsPending) {
  DesktopApplication application;
  application.keepRecord(QStringLiteral("1"));
  application.openRecord(QStringLiteral("1")).performClose();
  application.newRecord();
  application.chooseStudy(QStringLiteral("1"));
  application.controller.cacheDatabaseFiles();
  application.controller.closeAllDocuments({});
  application.destroyController();
  bool passed = false;
  QObject owner;
  application.desktop.runLoop.performAfterDelay(&owner, 0.2, [&] { passed = true; });
  waitUntil([&] { return passed; });
}

TEST(DestructionOfTheController, UnderASheetOfADocumentTakesTheSheetWithIt) {
  DesktopApplication application;
  DialogAnswers answers;
  application.keepRecord(QStringLiteral("1"));
  RecordingDocument& record = application.openRecord(QStringLiteral("1"));
  bool gone = false;
  answers.expect(
      QStringLiteral("Are you sure you want to remove this exam?"),
      [&] {
        application.destroyController();
        gone = true;
      },
      QString());
  record.doDeleteRecord(nullptr);
  waitUntil([&] { return gone; });
  letEventsPass();
}

TEST(DestructionOfTheRunLoop, DropsWhatOtherThreadsHandedOver) {
  QObject owner;
  for (int i = 0; i < 20; ++i) {
    auto runLoop = std::make_unique<desktop::QtRunLoop>();
    std::thread other([&] {
      for (int call = 0; call < 50; ++call) runLoop->performOnMainThread(&owner, [] { FAIL(); });
    });
    other.join();
    runLoop.reset();
    letEventsPass();
  }
}
