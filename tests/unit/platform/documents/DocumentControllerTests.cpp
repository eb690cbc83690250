// SPDX-License-Identifier: LGPL-3.0-or-later
#include "platform/documents/DocumentController.h"

#include <QDir>
#include <QTest>

#include "base/log/AssertionFailure.h"
#include "tests/unit/platform/documents/DocumentTesting.h"

using namespace velmora;

using testing_support::TextDocument;
using velmora::platform::Document;
using velmora::platform::DocumentController;

namespace {

class OpenDocuments : public testing_support::TextDocuments {};

TEST_F(OpenDocuments, AreKeptInTheOrderOfOpeningAndInTheOrderOnTheScreen) {
  Document* first = untitled();
  Document* second = untitled();
  Document* third = untitled();
  EXPECT_EQ(controller.documents(), (QList<Document*>{first, second, third}));
  EXPECT_EQ(controller.orderedDocuments(), (QList<Document*>{third, second, first}));
  EXPECT_EQ(controller.currentDocument(), third);
  first->showWindows();
  EXPECT_EQ(controller.orderedDocuments(), (QList<Document*>{first, third, second}));
  EXPECT_EQ(controller.documents(), (QList<Document*>{first, second, third}));
  first->close();
  EXPECT_EQ(controller.currentDocument(), third);
}

TEST_F(OpenDocuments, StandBehindTheOthersWhileTheyAreNotShown) {
  Document* shown = untitled();
  Document* hidden = controller.openUntitledDocument(false);
  EXPECT_EQ(controller.orderedDocuments(), (QList<Document*>{shown, hidden}));
  EXPECT_EQ(hidden->windowForSheet(), nullptr) << "a window that nobody needs is not loaded";
  hidden->showWindows();
  EXPECT_EQ(controller.currentDocument(), hidden);
  EXPECT_NE(hidden->windowForSheet(), nullptr);
}

TEST_F(OpenDocuments, ComeToTheFrontWithTheirWindow) {
  Document* first = untitled();
  untitled();
  ASSERT_TRUE(QTest::qWaitForWindowActive(controller.currentDocument()->window()));
  first->window()->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(first->window()));
  EXPECT_EQ(controller.currentDocument(), first);
}

TEST_F(OpenDocuments, AreGivenBackInsteadOfOpenedTwice) {
  write("a.text", "a");
  Document* document = open("a.text");
  ASSERT_NE(document, nullptr);
  untitled();
  EXPECT_EQ(open("a.text"), document);
  EXPECT_EQ(controller.documents().size(), 2);
  EXPECT_EQ(controller.currentDocument(), document) << "and come to the front";
}

TEST_F(OpenDocuments, AreTheSameByEveryPathToTheirFile) {
  write("a.text", "a");
  QDir().mkpath(path("sub"));
  ASSERT_TRUE(QFile::link(path("a.text"), path("link.text")));
  ASSERT_TRUE(QFile::link(folder.path(), path("sub/up")));
  Document* document = open("a.text");
  for (const char* same : {"link.text", "sub/../a.text", "sub/up/a.text", "./a.text"}) {
    EXPECT_EQ(open(same), document) << same;
    EXPECT_EQ(controller.documentForURL(url(same)), document) << same;
  }
  EXPECT_EQ(controller.documents().size(), 1);
}

TEST_F(OpenDocuments, AreNotFoundByAnotherFileOrNone) {
  write("a.text", "a");
  write("b.text", "b");
  open("a.text");
  untitled();
  EXPECT_EQ(controller.documentForURL(url("b.text")), nullptr);
  EXPECT_EQ(controller.documentForURL(url("absent.text")), nullptr);
  EXPECT_EQ(controller.documentForURL(QUrl()), nullptr) << "having no file is not a file in common";
}

TEST_F(OpenDocuments, AreFoundByTheirFileEvenWhenItIsGone) {
  write("a.text", "a");
  Document* document = open("a.text");
  QFile::remove(path("a.text"));
  EXPECT_EQ(controller.documentForURL(url("./a.text")), document);
}

TEST_F(OpenDocuments, AreNotMadeFromAFileThatCannotBeRead) {
  write("damaged.text", "!cut short");
  const auto opened = controller.openDocumentWithContentsOfURL(url("damaged.text"), true);
  EXPECT_FALSE(opened.ok());
  EXPECT_EQ(opened.error(), "cut short");
  EXPECT_EQ(open("damaged.text"), nullptr) << "without anyone to tell it is silent";
  EXPECT_TRUE(controller.documents().isEmpty());
  EXPECT_TRUE(desktop.alerts.shown().isEmpty());
}

TEST_F(OpenDocuments, ComeFromTheOpenPanel) {
  write("a.text", "a");
  write("b.text", "b");
  write("damaged.text", "!cut short");
  desktop.panels.expectOpen({url("a.text"), url("damaged.text"), url("b.text")});
  desktop.alerts.expect({"The file 'damaged.text' could not be opened.", "OK", "", "", "cut short"},
                        platform::AlertDefaultReturn);
  controller.openDocument();
  EXPECT_EQ(controller.documents().size(), 2) << "the damaged one keeps none of the others away";
  EXPECT_TRUE(desktop.panels.openPanels().first().allowsMultipleSelection);
  desktop.panels.expectOpen({});
  controller.openDocument();
  EXPECT_EQ(controller.documents().size(), 2);
}

TEST_F(OpenDocuments, CannotBeMadeWithoutAFactory) {
  controller.setDocumentFactory({});
  EXPECT_THROW(controller.newDocument(), base::AssertionFailure);
  EXPECT_TRUE(controller.documents().isEmpty());
}

class ClosingAll : public testing_support::TextDocuments {
 protected:
  /// What closing all documents answers.
  bool closeAll() {
    QList<bool> answers;
    controller.closeAllDocuments([&answers](bool all) { answers.append(all); });
    EXPECT_TRUE(answers.isEmpty()) << "what is being edited ends first, and what that sets going";
    desktop.runLoop.settle();
    EXPECT_EQ(answers.size(), 1);
    return answers.value(0);
  }
};

TEST_F(ClosingAll, ClosesEveryDocument) {
  untitled();
  untitled()->edit("new");
  desktop.alerts.expect(saveQuestion("Untitled 2"), platform::AlertAlternateReturn);
  EXPECT_TRUE(closeAll());
  EXPECT_TRUE(controller.documents().isEmpty());
}

TEST_F(ClosingAll, HasNothingToDoWithoutDocuments) {
  EXPECT_TRUE(closeAll());
  controller.closeAllDocuments({});
}

TEST_F(ClosingAll, StopsAtTheFirstThatStays) {
  TextDocument* back = untitled();
  TextDocument* middle = untitled();
  untitled();
  back->edit("back");
  middle->edit("middle");
  desktop.alerts.expect(saveQuestion("Untitled 2"), platform::AlertOtherReturn);
  EXPECT_FALSE(closeAll());
  EXPECT_EQ(controller.documents(), (QList<Document*>{back, middle}))
      << "front to back, the front one is closed";
  EXPECT_EQ(back->closeQuestions, 0);
}

TEST_F(ClosingAll, ShowsADocumentBeforeItAsksAboutIt) {
  auto* hidden = static_cast<TextDocument*>(controller.openUntitledDocument(false));
  hidden->edit("new");
  bool asked = false;
  hidden->beforeCloseQuestion = [&] {
    asked = true;
    EXPECT_TRUE(hidden->window()->isVisible());
  };
  desktop.alerts.expect(saveQuestion("Untitled"), platform::AlertOtherReturn);
  EXPECT_FALSE(closeAll());
  EXPECT_TRUE(asked);
}

class Quitting : public testing_support::TextDocuments {
 protected:
  class CountingController : public DocumentController {
   public:
    using DocumentController::DocumentController;
    void applicationWillTerminate() override { ++willTerminate; }
    int willTerminate = 0;
  };

  Quitting() {
    counting.setDocumentFactory([this] { return std::make_unique<TextDocument>(desktop.services); });
    counting.setKeepsBlankDocument(true);
  }
  TextDocument* edited() {
    auto* document = static_cast<TextDocument*>(counting.openUntitledDocument(true));
    document->edit("new");
    return document;
  }
  void expectQuit(bool quit) {
    desktop.runLoop.settle();
    EXPECT_EQ(desktop.application.stops, quit ? 1 : 0);
    EXPECT_EQ(counting.willTerminate, quit ? 1 : 0);
    EXPECT_EQ(counting.isTerminating(), quit);
  }
  static platform::Alert reviewQuestion(int count) {
    return {QStringLiteral(
                "You have %1 documents with unsaved changes. Do you want to review these changes before "
                "quitting?")
                .arg(count),
            "Review Changes...", "Discard Changes", "Cancel",
            "If you don't review your documents, all your changes will be lost."};
  }

  CountingController counting{desktop.services};
};

TEST_F(Quitting, AsksNothingWithoutChanges) {
  counting.newDocument();
  counting.newDocument();
  counting.terminate();
  expectQuit(true);
  desktop.runLoop.settle();
  EXPECT_TRUE(counting.documents().isEmpty()) << "no blank document appears on the way out";
}

TEST_F(Quitting, AsksTheOneEditedDocumentItself) {
  edited();
  desktop.alerts.expect(saveQuestion("Untitled"), platform::AlertAlternateReturn);
  counting.terminate();
  expectQuit(true);
}

TEST_F(Quitting, IsGivenUpWhenTheDocumentStays) {
  edited();
  desktop.alerts.expect(saveQuestion("Untitled"), platform::AlertOtherReturn);
  counting.terminate();
  expectQuit(false);
  desktop.alerts.expect(saveQuestion("Untitled"), platform::AlertAlternateReturn);
  counting.terminate();
  expectQuit(true);
}

TEST_F(Quitting, DropsNothingWhenTheProgramEndsInAQuestion) {
  edited();
  edited();
  desktop.alerts.expect(reviewQuestion(2), platform::AlertStopped);
  counting.terminate();
  expectQuit(false);
  EXPECT_EQ(counting.documents().size(), 2);
  desktop.alerts.expect(reviewQuestion(2), platform::AlertDefaultReturn);
  desktop.alerts.expect(saveQuestion("Untitled 2"), platform::AlertStopped);
  counting.terminate();
  expectQuit(false);
  EXPECT_EQ(counting.documents().size(), 2);
}

TEST_F(Quitting, ReviewsSeveralEditedDocumentsOneByOne) {
  edited();
  edited();
  counting.newDocument();
  desktop.alerts.expect(reviewQuestion(2), platform::AlertDefaultReturn);
  desktop.alerts.expect(saveQuestion("Untitled 2"), platform::AlertAlternateReturn);
  desktop.alerts.expect(saveQuestion("Untitled"), platform::AlertAlternateReturn);
  counting.terminate();
  expectQuit(true);
}

TEST_F(Quitting, StopsTheReviewAtTheDocumentThatStays) {
  edited();
  edited();
  desktop.alerts.expect(reviewQuestion(2), platform::AlertDefaultReturn);
  desktop.alerts.expect(saveQuestion("Untitled 2"), platform::AlertOtherReturn);
  counting.terminate();
  expectQuit(false);
  EXPECT_EQ(counting.documents().size(), 2);
}

TEST_F(Quitting, DiscardsAllChangesWhenTheUserWantsIt) {
  edited();
  edited();
  desktop.alerts.expect(reviewQuestion(2), platform::AlertAlternateReturn);
  counting.terminate();
  expectQuit(true);
  EXPECT_TRUE(counting.documents().isEmpty()) << "no window is left that could refuse to close";
}

TEST_F(Quitting, IsGivenUpWhenTheUserCancelsTheReview) {
  edited();
  edited();
  desktop.alerts.expect(reviewQuestion(2), platform::AlertOtherReturn);
  counting.terminate();
  expectQuit(false);
  EXPECT_EQ(counting.documents().size(), 2);
}

TEST_F(Quitting, IsNotBegunASecondTimeWhileTheQuestionIsOpen) {
  edited();
  desktop.alerts.expect(saveQuestion("Untitled"), platform::AlertOtherReturn,
                        [this] { counting.terminate(); });
  counting.terminate();
  expectQuit(false);
}

class TheBlankDocument : public Quitting {};

TEST_F(TheBlankDocument, AppearsWhenTheUserHasClosedTheLastOne) {
  write("a.text", "a");
  Document* document = counting.openDocumentWithContentsOfURL(url("a.text"), true).value();
  document->performClose();
  desktop.runLoop.settle();
  ASSERT_EQ(counting.documents().size(), 1);
  EXPECT_TRUE(counting.currentDocument()->fileURL().isEmpty());
  EXPECT_TRUE(counting.currentDocument()->window()->isVisible());
  expectQuit(false);
}

TEST_F(TheBlankDocument, AppearsWhenTheProgramHasClosedTheLastOne) {
  counting.openUntitledDocument(true)->close();
  desktop.runLoop.settle();
  EXPECT_EQ(counting.documents().size(), 1);
  expectQuit(false);
}

TEST_F(TheBlankDocument, QuitsWhenItIsClosedUntouchedAsTheLast) {
  counting.openUntitledDocument(true)->performClose();
  desktop.runLoop.settle();
  EXPECT_TRUE(counting.documents().isEmpty());
  expectQuit(true);
}

TEST_F(TheBlankDocument, AppearsWhenWhatWasClosedHadChanges) {
  edited()->performClose();
  desktop.alerts.expect(saveQuestion("Untitled"), platform::AlertAlternateReturn);
  desktop.runLoop.settle();
  ASSERT_EQ(counting.documents().size(), 1);
  EXPECT_FALSE(counting.currentDocument()->isDocumentEdited());
  expectQuit(false);
}

TEST_F(TheBlankDocument, LeavesTheOthersAloneWhenItIsClosed) {
  Document* other = counting.openUntitledDocument(true);
  counting.openUntitledDocument(true)->performClose();
  desktop.runLoop.settle();
  EXPECT_EQ(counting.documents(), QList<Document*>{other});
  expectQuit(false);
}

TEST_F(TheBlankDocument, DoesNotAppearWhenADocumentIsReplacedWithinTheEvent) {
  write("a.text", "a");
  counting.openUntitledDocument(true)->close();
  Document* replacement = counting.openDocumentWithContentsOfURL(url("a.text"), true).value();
  desktop.runLoop.settle();
  EXPECT_EQ(counting.documents(), QList<Document*>{replacement});
}

TEST_F(TheBlankDocument, IsKeptOnlyWhereTheApplicationWantsIt) {
  counting.setKeepsBlankDocument(false);
  counting.openUntitledDocument(true)->performClose();
  desktop.runLoop.settle();
  EXPECT_TRUE(counting.documents().isEmpty());
  expectQuit(false);
}

TEST(DocumentControllerAndServices, KnowEachOtherWhileTheControllerLives) {
  testkit::TestServices desktop({});
  {
    DocumentController controller(desktop.services);
    EXPECT_EQ(desktop.services.documentController, &controller);
  }
  EXPECT_EQ(desktop.services.documentController, nullptr);
}

}  // namespace
