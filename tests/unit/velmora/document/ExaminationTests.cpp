// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include <QLabel>
#include <QTest>

#include "testing/application/RecordApplication.h"

using namespace velmora;
using namespace velmora::testkit;

using user::textOf;
using velmora::platform::AlertAlternateReturn;
using velmora::platform::AlertDefaultReturn;
using velmora::platform::AlertOtherReturn;

namespace {

const platform::Alert removeQuestion{"Are you sure you want to remove this exam?", "Remove", "Cancel", "",
                                     ""};

/// A record with three examinations, 1/1/2021 to 1/1/2023.
class Examinations : public testing::Test {
 protected:
  Examinations() {
    application.writeRecord("AB1", {"01/01/2021", "01/01/2022", "01/01/2023"});
    document = &application.openRecord("AB1");
  }
  void show(quint64 index) {
    document->setCurrentExam(index);
    document->synchronizeFromData();
    document->forgetCalls();
  }
  void remove(int answer) {
    application.desktop.alerts.expect(removeQuestion, answer);
    document->doDeleteRecord(nullptr);
    ASSERT_TRUE(application.desktop.alerts.sheetOpen());
    application.desktop.alerts.answerSheet(answer, document->windowForSheet());
  }
  RecordApplication application;
  RecordingDocument* document;
};

}  // namespace

TEST_F(Examinations, AreAddedBetweenStoringAndLoading) {
  document->doNewRecord(nullptr);
  EXPECT_EQ(document->calls,
            (QStringList{"synchronizeToData 0", "addExamination 0", "synchronizeFromData 3"}));
  EXPECT_EQ(document->changedByThen, (QList<bool>{true, true, true}))
      << "marked changed before anything else";
}

TEST_F(Examinations, AreNotMovedToByTheFrameworkWhenAdded) {
  document->showsAddedExamination = false;
  document->doNewRecord(nullptr);
  EXPECT_EQ(document->currentExam(), 0U);
  EXPECT_EQ(document->calls.last(), "synchronizeFromData 0");
}

TEST_F(Examinations, BeginWithTypingTheirDate) {
  user::click(user::button(*document, "nextStudyButton"));
  document->showsAddedExamination = false;
  document->doNewRecord(nullptr);
  const QLineEdit* field = user::field(*document, "examDateField");
  EXPECT_TRUE(field->hasFocus());
  EXPECT_EQ(field->selectedText(), field->text());
  EXPECT_FALSE(field->text().isEmpty());
}

TEST_F(Examinations, AreSteppedThroughByTheButtons) {
  user::click(user::button(*document, "nextStudyButton"));
  EXPECT_EQ(document->calls, (QStringList{"synchronizeToData 0", "synchronizeFromData 1"}));
  EXPECT_EQ(textOf(*document, "examDateField"), "01/01/2022");
  document->forgetCalls();
  user::click(user::button(*document, "previousStudyButton"));
  EXPECT_EQ(document->calls, (QStringList{"synchronizeToData 1", "synchronizeFromData 0"}));
  EXPECT_EQ(textOf(*document, "examDateField"), "01/01/2021");
}

TEST_F(Examinations, AreSteppedThroughByTheArrowKeys) {
  // A button that is pressed by its key shows that before it acts.
  user::pressKey(*document, Qt::Key_Right);
  EXPECT_TRUE(QTest::qWaitFor([&] { return document->currentExam() == 1; }));
  user::pressKey(*document, Qt::Key_Right);
  EXPECT_TRUE(QTest::qWaitFor([&] { return document->currentExam() == 2; }));
  user::pressKey(*document, Qt::Key_Left);
  EXPECT_TRUE(QTest::qWaitFor([&] { return document->currentExam() == 1; }));
}

TEST_F(Examinations, AreNotSteppedThroughByArrowsInAField) {
  QLineEdit* field = user::field(*document, "examDateField");
  user::click(field);
  QTest::keyClick(field, Qt::Key_End);
  QTest::keyClick(field, Qt::Key_Left);
  EXPECT_EQ(document->currentExam(), 0U);
  EXPECT_EQ(field->cursorPosition(), field->text().size() - 1);
}

TEST_F(Examinations, AreNotMarkedChangedByStepping) {
  document->doNextRecord(nullptr);
  document->doPreviousRecord(nullptr);
  EXPECT_FALSE(document->isDocumentEdited());
  EXPECT_FALSE(document->calls.contains("updateDisplay 1"));
}

TEST_F(Examinations, EndAtTheLast) {
  show(2);
  document->doNextRecord(nullptr);
  EXPECT_EQ(document->currentExam(), 2U);
  EXPECT_TRUE(document->calls.isEmpty());
}

TEST_F(Examinations, EndAtTheFirst) {
  document->doPreviousRecord(nullptr);
  EXPECT_EQ(document->currentExam(), 0U);
  EXPECT_TRUE(document->calls.isEmpty());
}

TEST_F(Examinations, GoOnFromBeyondTheLast) {
  show(5);
  document->doNextRecord(nullptr);
  document->doNextRecord(nullptr);
  EXPECT_EQ(document->currentExam(), 7U);
  for (int i = 0; i < 10; ++i) document->doPreviousRecord(nullptr);
  EXPECT_EQ(document->currentExam(), 0U);
}

TEST_F(Examinations, AreRemovedOnlyAfterAQuestionInASheet) {
  show(1);
  remove(AlertDefaultReturn);
  EXPECT_EQ(document->exams, (QStringList{"01/01/2021", "01/01/2023"}));
  EXPECT_TRUE(document->isDocumentEdited());
}

TEST_F(Examinations, AreLoadedNotStoredBeforeTheyAreRemoved) {
  show(1);
  user::field(*document, "examDateField")->setText("typed into what goes");
  remove(AlertDefaultReturn);
  EXPECT_EQ(document->calls,
            (QStringList{"synchronizeFromData 1", "deleteCurrentExamination 1", "synchronizeFromData 0"}));
  EXPECT_EQ(document->changedByThen, (QList<bool>{true, true, true}));
  EXPECT_FALSE(document->exams.contains("typed into what goes"));
}

TEST_F(Examinations, MoveToTheNewLastWhenTheLastIsRemoved) {
  show(2);
  remove(AlertDefaultReturn);
  EXPECT_EQ(document->currentExam(), 1U);
  EXPECT_EQ(document->lastExam(), 1U);
  EXPECT_EQ(textOf(*document, "examDateField"), "01/01/2022");
}

TEST_F(Examinations, StayAtTheFirstWhenTheFirstIsRemoved) {
  remove(AlertDefaultReturn);
  EXPECT_EQ(document->currentExam(), 0U);
  EXPECT_EQ(textOf(*document, "examDateField"), "01/01/2022") << "the one that took its place";
}

TEST_F(Examinations, StayAsTheyAreWhenTheSheetIsCancelled) {
  show(1);
  for (const int answer : {+AlertAlternateReturn, +AlertOtherReturn, 2, 1000}) remove(answer);
  EXPECT_EQ(document->exams.size(), 3);
  EXPECT_EQ(document->currentExam(), 1U);
  EXPECT_TRUE(document->calls.isEmpty());
  EXPECT_FALSE(document->isDocumentEdited());
  EXPECT_TRUE(application.desktop.feedback.poofs.isEmpty());
}

TEST_F(Examinations, GoUpInAPuffOfSmokeAtTheirNumber) {
  const QLabel* number = document->window()->findChild<QLabel*>("examNumberField");
  const QPoint rightMiddle = number->mapToGlobal(QPoint(number->width(), number->height() / 2));
  remove(AlertDefaultReturn);
  EXPECT_EQ(application.desktop.feedback.poofs, QList<QPoint>{rightMiddle});
}

TEST_F(Examinations, ClosedWithTheSheetOpenAreNotRemoved) {
  application.desktop.alerts.expect(removeQuestion, AlertDefaultReturn);
  document->doDeleteRecord(nullptr);
  document->close();
  application.settle();
  application.desktop.alerts.answerSheet(AlertDefaultReturn);
  EXPECT_TRUE(application.desktop.feedback.poofs.isEmpty());
}

TEST(OnlyExamination, IsNeverRemoved) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  document.doDeleteRecord(nullptr);
  EXPECT_EQ(application.desktop.feedback.beeps, 1);
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
  EXPECT_TRUE(document.calls.isEmpty());
  EXPECT_FALSE(document.isDocumentEdited());
}

TEST(OnlyExamination, IsNumberedOneOfOneAndNotLeft) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  document.updateDisplay();
  EXPECT_EQ(textOf(document, "examNumberField"), "1 of 1");
  user::click(user::button(document, "nextStudyButton"));
  user::click(user::button(document, "previousStudyButton"));
  EXPECT_EQ(document.currentExam(), 0U);
  EXPECT_EQ(document.calls, (QStringList{"updateDisplay 0", "synchronizeToData 0"}));
}

TEST_F(Examinations, AreCountedFromOne) {
  show(1);
  document->updateDisplay();
  EXPECT_EQ(textOf(*document, "examNumberField"), "2 of 3");
}

TEST_F(Examinations, AreStoredBeforeTheDisplayIsRefreshed) {
  document->updateDisplay();
  EXPECT_EQ(document->calls, (QStringList{"updateDisplay 0", "synchronizeToData 0"}));
  EXPECT_FALSE(document->isDocumentEdited());
}

TEST_F(Examinations, AreMarkedChangedBeforeADirectUpdate) {
  document->directUpdateDisplayAndSetDirty(nullptr);
  EXPECT_EQ(document->calls, (QStringList{"updateDisplay 0", "synchronizeToData 0"}));
  EXPECT_EQ(document->changedByThen, (QList<bool>{true, true}));
}

TEST_F(Examinations, AreNotMarkedChangedByADirectUpdateAlone) {
  document->directUpdateDisplay(nullptr);
  EXPECT_EQ(document->calls, (QStringList{"updateDisplay 0", "synchronizeToData 0"}));
  EXPECT_FALSE(document->isDocumentEdited());
}
