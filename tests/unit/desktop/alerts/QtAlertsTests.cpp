// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/alerts/QtAlerts.h"

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QWindow>
#include <memory>
#include <stdexcept>

#include "desktop/runloop/QtRunLoop.h"
#include "testing/main/Shown.h"
#include "testing/standins/LogRecorder.h"
#include "testing/window/WhenOpen.h"

using namespace velmora;
using namespace velmora::testkit;

using velmora::desktop::QtAlerts;
using velmora::platform::Alert;

namespace {

const Alert SaveQuestion{"Save changes to document?", "Save", "Don't Save", "Cancel",
                         "They are lost otherwise."};

class RealAlerts : public testing::Test {
 protected:
  static QStringList titles(const QMessageBox& box) {
    QStringList all;
    for (const QAbstractButton* button : box.buttons()) all.append(button->text());
    all.sort();
    return all;
  }
  static void press(QMessageBox& box, const QString& title) {
    for (QAbstractButton* button : box.buttons()) {
      if (button->text() == title) return button->click();
    }
    ADD_FAILURE() << "no button " << qPrintable(title);
    box.done(0);
  }

  desktop::QtRunLoop runLoop;
  QtAlerts alerts{runLoop};
};

TEST_F(RealAlerts, ShowTheirTextsAndButtons) {
  whenOpen<QMessageBox>([](QMessageBox& box) {
    EXPECT_EQ(box.text(), "Save changes to document?");
    EXPECT_EQ(box.informativeText(), "They are lost otherwise.");
    EXPECT_EQ(titles(box), (QStringList{"Cancel", "Don't Save", "Save"}));
    EXPECT_EQ(box.defaultButton()->text(), "Save");
    EXPECT_TRUE(box.isModal());
    press(box, "Save");
  });
  EXPECT_EQ(alerts.runModal(SaveQuestion), platform::AlertDefaultReturn);
}

TEST_F(RealAlerts, AnswerWithTheButtonThatWasPressed) {
  struct Case {
    const char* button;
    int answer;
  };
  for (const Case& each : {Case{"Save", 1}, Case{"Don't Save", 0}, Case{"Cancel", -1}}) {
    whenOpen<QMessageBox>([&each](QMessageBox& box) { press(box, each.button); });
    EXPECT_EQ(alerts.runModal(SaveQuestion), each.answer) << each.button;
  }
}

TEST_F(RealAlerts, ShowNoButtonWithoutATitle) {
  whenOpen<QMessageBox>([](QMessageBox& box) {
    EXPECT_EQ(titles(box), QStringList{"OK"});
    press(box, "OK");
  });
  EXPECT_EQ(alerts.runModal({"Recently Printed", "OK", "", "", ""}), platform::AlertDefaultReturn);
  whenOpen<QMessageBox>([](QMessageBox& box) {
    EXPECT_EQ(titles(box), (QStringList{"Check", "Don't Check"}));
    press(box, "Don't Check");
  });
  EXPECT_EQ(alerts.runModal({"Check?", "Check", "Don't Check", "", ""}), platform::AlertAlternateReturn);
}

TEST_F(RealAlerts, TakeReturnForTheDefaultButton) {
  whenOpen<QMessageBox>([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); });
  EXPECT_EQ(alerts.runModal(SaveQuestion), platform::AlertDefaultReturn);
}

TEST_F(RealAlerts, TakeEscapeForCancelWhereverItStands) {
  for (const Alert& alert : {SaveQuestion, Alert{"Modify?", "Modify", "Cancel", "", ""},
                             Alert{"Replace?", "Cancel", "Replace", "", ""},
                             Alert{"Get it?", "Download", "Cancel", "Later", ""}}) {
    whenOpen<QMessageBox>([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
    const int expected = alert.defaultButton == "Cancel"     ? platform::AlertDefaultReturn
                         : alert.alternateButton == "Cancel" ? platform::AlertAlternateReturn
                                                             : platform::AlertOtherReturn;
    EXPECT_EQ(alerts.runModal(alert), expected) << qPrintable(alert.messageText);
  }
}

TEST_F(RealAlerts, TakeEscapeForTheOnlyButton) {
  whenOpen<QMessageBox>([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
  EXPECT_EQ(alerts.runModal({"Recently Printed", "OK", "", "", ""}), platform::AlertDefaultReturn);
}

TEST_F(RealAlerts, TakeEscapeForTheOtherChoiceWhereThereIsNoCancel) {
  whenOpen<QMessageBox>([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
  EXPECT_EQ(alerts.runModal({"Check?", "Check", "Don't Check", "", ""}), platform::AlertAlternateReturn);
}

TEST_F(RealAlerts, AreStoppedWhenTheProgramEnds) {
  const Alert twoButtons{"Check?", "Check", "Don't Check", "", ""};
  const Alert notice{"Recently Printed", "OK", "", "", ""};
  for (const auto end : {+[] { QCoreApplication::quit(); }, +[] { QCoreApplication::exit(0); }}) {
    for (const Alert& alert : {SaveQuestion, twoButtons, notice}) {
      int answer = 7;
      QTimer::singleShot(0, qApp, [&] {
        whenOpen<QMessageBox>([end](QMessageBox&) { end(); });
        answer = alerts.runModal(alert);
        QCoreApplication::exit(0);
      });
      QApplication::exec();
      EXPECT_EQ(answer, platform::AlertStopped) << qPrintable(alert.messageText);
    }
  }
}

TEST_F(RealAlerts, AreNotShownAnyMoreAfterTheProgramWasEnded) {
  QList<int> answers;
  QTimer::singleShot(0, qApp, [&] {
    whenOpen<QMessageBox>([](QMessageBox&) { QCoreApplication::exit(0); });
    answers.append(alerts.runModal(SaveQuestion));
    answers.append(alerts.runModal(SaveQuestion));
  });
  QApplication::exec();
  EXPECT_EQ(answers, (QList<int>{platform::AlertStopped, platform::AlertStopped}));
}

TEST_F(RealAlerts, TakeTheCloseButtonOfTheirWindowForEscape) {
  whenOpen<QMessageBox>([](QMessageBox& box) { box.windowHandle()->close(); });
  EXPECT_EQ(alerts.runModal(SaveQuestion), platform::AlertOtherReturn);
}

TEST_F(RealAlerts, ReadNoTextAsMarkup) {
  const QString hostile = "<b>bold</b> <img src=\"file:///etc/passwd\"> <a href=\"http://x\">x</a>";
  whenOpen<QMessageBox>([&hostile](QMessageBox& box) {
    int labels = 0;
    for (const QLabel* label : box.findChildren<QLabel*>()) {
      if (label->text() != hostile) continue;
      ++labels;
      EXPECT_EQ(label->textFormat(), Qt::PlainText) << qPrintable(label->objectName());
    }
    EXPECT_EQ(labels, 2) << "message and information";
    press(box, "OK");
  });
  alerts.runModal({hostile, "OK", "", "", hostile});
}

TEST_F(RealAlerts, HoldTimedCallsWhileTheyAreOpen) {
  QObject owner;
  QStringList said;
  runLoop.performAfterDelay(&owner, 0, [&said] { said.append("timed call"); });
  whenOpen<QMessageBox>([&](QMessageBox& box) {
    EXPECT_TRUE(runLoop.inModalSession());
    runLoop.performAfterDelay(&owner, 0, [&said] { said.append("made while open"); });
    // The box stays open for a while in which Qt's own timers do fire.
    QTimer::singleShot(30, &box, [&] {
      said.append("pressed");
      press(box, "Save");
    });
  });
  alerts.runModal(SaveQuestion);
  EXPECT_EQ(said, QStringList{"pressed"});
  ASSERT_TRUE(QTest::qWaitFor([&said] { return said.size() == 3; }));
  EXPECT_EQ(said, (QStringList{"pressed", "timed call", "made while open"}));
  EXPECT_FALSE(runLoop.inModalSession());
}

TEST_F(RealAlerts, AsASheetAnswerLater) {
  QWidget window;
  window.show();
  QObject owner;
  int answer = 7;
  alerts.beginSheetModalForWindow({"Remove?", "Remove", "Cancel", "", ""}, &window, &owner,
                                  [&answer](int returnCode) { answer = returnCode; });
  EXPECT_EQ(answer, 7);
  EXPECT_FALSE(runLoop.inModalSession());
  const QPointer<QMessageBox> box = window.findChild<QMessageBox*>();
  ASSERT_FALSE(box.isNull());
  EXPECT_EQ(box->windowModality(), Qt::WindowModal);
  press(*box, "Cancel");
  EXPECT_EQ(answer, platform::AlertAlternateReturn);
  ASSERT_TRUE(QTest::qWaitFor([&box] { return box.isNull(); })) << "a sheet that was answered goes";
}

TEST_F(RealAlerts, AsASheetTakeTheCloseButtonOfTheirWindowForEscape) {
  QWidget window;
  window.show();
  QObject owner;
  int answer = 7;
  alerts.beginSheetModalForWindow({"Remove?", "Remove", "Cancel", "", ""}, &window, &owner,
                                  [&answer](int returnCode) { answer = returnCode; });
  window.findChild<QMessageBox*>()->windowHandle()->close();
  EXPECT_EQ(answer, platform::AlertAlternateReturn);
}

TEST_F(RealAlerts, AsASheetAreStoppedWhenTheProgramEnds) {
  int answer = 7;
  QTimer::singleShot(0, qApp, [&answer, this] {
    QWidget window;
    window.show();
    QObject owner;
    alerts.beginSheetModalForWindow({"Remove?", "Remove", "Cancel", "", ""}, &window, &owner,
                                    [&answer](int returnCode) { answer = returnCode; });
    QCoreApplication::quit();
    QCoreApplication::exit(0);
  });
  QApplication::exec();
  EXPECT_EQ(answer, platform::AlertStopped);
}

TEST_F(RealAlerts, AsASheetAnswerNobodyWhenTheOwnerIsGone) {
  QWidget window;
  window.show();
  auto owner = std::make_unique<QObject>();
  bool answered = false;
  alerts.beginSheetModalForWindow(SaveQuestion, &window, owner.get(), [&answered](int) { answered = true; });
  owner.reset();
  press(*window.findChild<QMessageBox*>(), "Save");
  EXPECT_FALSE(answered);
}

TEST_F(RealAlerts, AsASheetSurviveAnAnswerThatThrows) {
  QWidget window;
  window.show();
  QObject owner;
  const LogRecorder log;
  alerts.beginSheetModalForWindow(SaveQuestion, &window, &owner,
                                  [](int) { throw std::runtime_error("no record"); });
  press(*window.findChild<QMessageBox*>(), "Save");
  EXPECT_EQ(log.lines(), QStringList{"sheet: no record"});
}

}  // namespace
