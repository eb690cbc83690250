// SPDX-License-Identifier: LGPL-3.0-or-later
#include "platform/controls/TextFieldEditing.h"

#include <QContextMenuEvent>
#include <QInputMethodEvent>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>
#include <memory>
#include <stdexcept>

#include "testing/main/Shown.h"
#include "testing/standins/LogRecorder.h"

using namespace velmora;

using velmora::platform::TextFieldDelegate;
using velmora::platform::TextFieldEditing;

namespace {

/// Keeps what it is told as "asks name", "begins name", "ends name".
class RecordingDelegate : public TextFieldDelegate {
 public:
  bool controlTextShouldBeginEditing(QLineEdit* field) override {
    said.append("asks " + field->objectName());
    return allows;
  }
  void controlTextDidBeginEditing(QLineEdit* field) override { said.append("begins " + field->objectName()); }
  void controlTextDidEndEditing(QLineEdit* field) override {
    said.append("ends " + field->objectName());
    if (whenEnded) whenEnded();
  }
  QStringList take() { return std::exchange(said, {}); }

  QStringList said;
  bool allows = true;
  std::function<void()> whenEnded;
};

/// A window with two watched fields and a button, as a person has it in front of them.
class TextFields : public testing::Test {
 protected:
  TextFields() {
    auto* layout = new QVBoxLayout(&window);
    for (QWidget* widget :
         {static_cast<QWidget*>(name), static_cast<QWidget*>(date), static_cast<QWidget*>(next)}) {
      layout->addWidget(widget);
    }
    name->setObjectName("name");
    date->setObjectName("date");
    next->setFocusPolicy(Qt::NoFocus);
    window.setFocusPolicy(Qt::ClickFocus);
    window.setFocus();
    window.show();
    window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
  }
  static void click(QWidget* widget) { QTest::mouseClick(widget, Qt::LeftButton); }

  RecordingDelegate delegate;
  QWidget window;
  QLineEdit* name = new QLineEdit(&window);
  QLineEdit* date = new QLineEdit(&window);
  QPushButton* next = new QPushButton("Next", &window);
  TextFieldEditing* nameEditing = new TextFieldEditing(name, &delegate);
  TextFieldEditing* dateEditing = new TextFieldEditing(date, &delegate);
};

const QStringList NameBegins{"asks name", "begins name"};
const QStringList EndsName{"ends name"};

TEST_F(TextFields, AreNotEditedWhenTheirWindowOpens) {
  EXPECT_EQ(delegate.take(), QStringList());
  EXPECT_EQ(window.focusWidget(), &window);
}

TEST_F(TextFields, BeginAnEditWithAClickAndEndItByGoingElsewhere) {
  click(name);
  EXPECT_EQ(delegate.take(), NameBegins);
  EXPECT_TRUE(nameEditing->isEditing());
  QTest::keyClicks(name, "12");
  EXPECT_EQ(delegate.take(), QStringList());
  click(date);
  EXPECT_EQ(delegate.take(), (QStringList{"ends name", "asks date", "begins date"}));
  EXPECT_FALSE(nameEditing->isEditing());
  EXPECT_EQ(name->text(), "12");
}

TEST_F(TextFields, AreWalkedThroughWithTab) {
  click(name);
  QTest::keyClick(name, Qt::Key_Tab);
  EXPECT_EQ(delegate.take(), (NameBegins + QStringList{"ends name"})) << "passing through edits nothing";
  EXPECT_TRUE(date->hasFocus());
  QTest::keyClicks(date, "1");
  EXPECT_EQ(delegate.take(), (QStringList{"asks date", "begins date"}));
  QTest::keyClick(date, Qt::Key_Backtab);
  EXPECT_EQ(delegate.take(), QStringList{"ends date"});
  EXPECT_TRUE(name->hasFocus());
}

TEST_F(TextFields, BeginAnEditByAPasteOrADropWithoutAKey) {
  name->insert("dropped");
  EXPECT_EQ(delegate.take(), NameBegins);
  EXPECT_TRUE(name->hasFocus()) << "an edit ends by leaving the field, so the user must be in it";
  click(date);
  EXPECT_EQ(delegate.take().first(), "ends name");
}

TEST_F(TextFields, TakeNoEditFromAnEmptyInputMethodEvent) {
  QTest::keyClick(&window, Qt::Key_Tab);
  ASSERT_TRUE(name->hasFocus());
  QInputMethodEvent empty;
  QApplication::sendEvent(name, &empty);
  EXPECT_EQ(delegate.take(), QStringList());
  QInputMethodEvent typed;
  typed.setCommitString(QStringLiteral("é"));
  QApplication::sendEvent(name, &typed);
  EXPECT_EQ(delegate.take(), NameBegins);
}

TEST_F(TextFields, EndAnEditByAClickIntoTheEmptyWindow) {
  click(name);
  delegate.take();
  QTest::mouseClick(&window, Qt::LeftButton, {}, QPoint(1, 1));
  EXPECT_EQ(delegate.take(), EndsName);
}

TEST_F(TextFields, EndTheirEditBeforeAButtonThatIsPressedActs) {
  QObject::connect(next, &QPushButton::clicked, &window, [this] { delegate.said.append("next"); });
  click(name);
  delegate.take();
  click(next);
  EXPECT_EQ(delegate.take(), (QStringList{"ends name", "next"}));
}

class TextFieldsWithEitherReturnKey : public TextFields, public testing::WithParamInterface<Qt::Key> {};

TEST_P(TextFieldsWithEitherReturnKey, EndAnEditWithReturnAndBeginAnewWithTyping) {
  click(name);
  QTest::keyClicks(name, "1");
  QTest::keyClick(name, GetParam());
  EXPECT_EQ(delegate.take(), NameBegins + EndsName);
  QTest::keyClick(name, GetParam());
  EXPECT_EQ(delegate.take(), QStringList()) << "there is no edit to end";
  QTest::keyClicks(name, "23");
  EXPECT_EQ(delegate.take(), NameBegins);
  EXPECT_EQ(name->text(), "123");
  click(date);
  EXPECT_EQ(delegate.take().first(), "ends name");
}

INSTANTIATE_TEST_SUITE_P(Keys, TextFieldsWithEitherReturnKey, testing::Values(Qt::Key_Return, Qt::Key_Enter));

TEST_F(TextFields, BeginNoEditAfterReturnWithKeysThatChangeNothing) {
  name->setText("12");
  click(name);
  QTest::keyClick(name, Qt::Key_Return);
  delegate.take();
  for (const Qt::Key key :
       {Qt::Key_Left, Qt::Key_Right, Qt::Key_Home, Qt::Key_End, Qt::Key_Escape, Qt::Key_Shift}) {
    QTest::keyClick(name, key);
  }
  QTest::keyClick(name, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(name, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(delegate.take(), QStringList());
  QTest::keyClick(name, Qt::Key_Backspace);
  EXPECT_EQ(delegate.take(), NameBegins);
  EXPECT_EQ(name->text(), "");
}

TEST_F(TextFields, GiveTheKeyboardBackToTheWindowWhenTheDelegateRefuses) {
  delegate.allows = false;
  name->setText("12");
  click(name);
  EXPECT_EQ(delegate.take(), QStringList{"asks name"});
  EXPECT_FALSE(nameEditing->isEditing());
  EXPECT_EQ(window.focusWidget(), &window);
  EXPECT_FALSE(name->hasSelectedText());
  click(date);
  EXPECT_EQ(delegate.take(), QStringList{"asks date"}) << "what never began does not end";
}

TEST_F(TextFields, TakeNoKeyThatTheDelegateRefuses) {
  name->setText("12");
  click(name);
  QTest::keyClick(name, Qt::Key_Return);
  delegate.take();
  delegate.allows = false;
  QTest::keyClick(name, Qt::Key_3);
  EXPECT_EQ(delegate.take(), QStringList{"asks name"});
  EXPECT_EQ(name->text(), "12");
}

TEST_F(TextFields, AreNotEditedWhenTheyAreReadOnly) {
  name->setReadOnly(true);
  click(name);
  QTest::keyClicks(name, "1");
  QTest::keyClick(name, Qt::Key_Tab);
  EXPECT_EQ(delegate.take(), QStringList());
}

TEST_F(TextFields, GoOnWithTheirEditWhenTheWindowLosesAndRegainsTheKeyboard) {
  click(name);
  QTest::keyClicks(name, "1");
  delegate.take();
  {
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    EXPECT_FALSE(name->hasFocus());
  }
  window.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  ASSERT_TRUE(name->hasFocus());
  EXPECT_EQ(delegate.take(), QStringList());
  EXPECT_TRUE(nameEditing->isEditing());
  QTest::keyClicks(name, "2");
  EXPECT_EQ(delegate.take(), QStringList());
  EXPECT_EQ(name->text(), "12");
}

TEST_F(TextFields, GoOnWithTheirEditWhenTheirContextMenuOpensAndCloses) {
  click(name);
  delegate.take();
  QContextMenuEvent contextMenu(QContextMenuEvent::Mouse, QPoint(3, 3), name->mapToGlobal(QPoint(3, 3)));
  QApplication::sendEvent(name, &contextMenu);
  auto* menu = dynamic_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(menu, nullptr);
  menu->close();
  EXPECT_EQ(delegate.take(), QStringList());
  EXPECT_TRUE(nameEditing->isEditing());
}

TEST_F(TextFields, BeginAnEditWithTheKeyThatPastes) {
  click(name);
  QTest::keyClick(name, Qt::Key_Return);
  delegate.take();
  QTest::keyClick(name, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(delegate.take(), NameBegins);
}

TEST_F(TextFields, MoveTheirCursorWithTheArrowsThatAButtonHasAsItsKey) {
  int pressed = 0;
  next->setShortcut(Qt::Key_Left);
  QObject::connect(next, &QPushButton::pressed, &window, [&pressed] { ++pressed; });
  QTest::keyClick(&window, Qt::Key_Left);
  ASSERT_EQ(pressed, 1) << "with no field in use the key is the button's";

  name->setText("12");
  click(name);
  name->setCursorPosition(2);
  QTest::keyClick(name, Qt::Key_Left);
  EXPECT_EQ(name->cursorPosition(), 1);
  name->setReadOnly(true);
  QTest::keyClick(name, Qt::Key_Left);
  EXPECT_EQ(name->cursorPosition(), 0);
  EXPECT_EQ(pressed, 1);
}

TEST_F(TextFields, EndTheEditOnDemand) {
  TextFieldEditing::endEditing(&window);
  EXPECT_EQ(delegate.take(), QStringList());
  click(name);
  QTest::keyClicks(name, "1");
  delegate.take();
  TextFieldEditing::endEditing(&window);
  EXPECT_EQ(delegate.take(), EndsName);
  TextFieldEditing::endEditing(&window);
  click(date);
  EXPECT_EQ(delegate.take(), (QStringList{"asks date", "begins date"})) << "an edit ends once";
  TextFieldEditing::endEditing(nullptr);
}

TEST_F(TextFields, TellADetachedDelegateNothingMore) {
  click(name);
  delegate.take();
  TextFieldEditing::detach(&window);
  QTest::keyClicks(name, "1");
  click(date);
  QTest::keyClick(date, Qt::Key_Return);
  TextFieldEditing::endEditing(&window);
  EXPECT_EQ(delegate.take(), QStringList());
  TextFieldEditing::detach(nullptr);
}

TEST_F(TextFields, OutliveADelegateThatDetachesThemInTheMiddleOfAnEdit) {
  delegate.whenEnded = [this] { TextFieldEditing::detach(&window); };
  click(name);
  click(date);
  EXPECT_EQ(delegate.take(), NameBegins + EndsName);
}

TEST_F(TextFields, AreSelectedWholeOnDemand) {
  name->setText("12-345");
  TextFieldEditing::selectText(name);
  EXPECT_EQ(name->selectedText(), "12-345");
  EXPECT_EQ(delegate.take(), NameBegins) << "once, though the keyboard comes as well";
  TextFieldEditing::selectText(nullptr);
}

TEST_F(TextFields, AreNotSelectedWhenTheDelegateRefuses) {
  delegate.allows = false;
  name->setText("12-345");
  TextFieldEditing::selectText(name);
  EXPECT_FALSE(name->hasSelectedText());
  EXPECT_FALSE(nameEditing->isEditing());
}

TEST_F(TextFields, BringWhatWasTypedIntoItsProperForm) {
  nameEditing->setFormatter(
      [](const QString& text) { return text.startsWith('?') ? std::nullopt : std::optional(text.toUpper()); },
      "No such name");
  click(name);
  QTest::keyClicks(name, "ada");
  QTest::keyClick(name, Qt::Key_Return);
  EXPECT_EQ(name->text(), "ADA");
  EXPECT_EQ(name->toolTip(), "");

  QTest::keyClick(name, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(name, "?ada");
  QTest::keyClick(name, Qt::Key_Return);
  EXPECT_EQ(name->text(), "?ada") << "what has no proper form stays for the user to mend";
  EXPECT_EQ(name->toolTip(), "No such name");
  EXPECT_FALSE(name->styleSheet().isEmpty());

  QTest::keyClick(name, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(name, "  ");
  QTest::keyClick(name, Qt::Key_Return);
  EXPECT_EQ(name->text(), "");
  EXPECT_EQ(name->toolTip(), "");
  EXPECT_TRUE(name->styleSheet().isEmpty());
}

TEST_F(TextFields, HaveTheirProperFormBeforeTheDelegateIsTold) {
  nameEditing->setFormatter([](const QString& text) { return text.toUpper(); }, {});
  QString told;
  delegate.whenEnded = [&] { told = name->text(); };
  click(name);
  QTest::keyClicks(name, "ada");
  QTest::keyClick(name, Qt::Key_Return);
  EXPECT_EQ(told, "ADA");
}

TEST_F(TextFields, MarkWhatAFormatterThrowsAt) {
  const testkit::LogRecorder log;
  nameEditing->setFormatter([](const QString&) -> QString { throw std::runtime_error("no calendar"); },
                            "No such name");
  click(name);
  QTest::keyClicks(name, "ada");
  click(date);
  EXPECT_EQ(name->text(), "ada");
  EXPECT_EQ(name->toolTip(), "No such name");
  EXPECT_TRUE(log.lines().contains("text field: no calendar"));
}

TEST_F(TextFields, SurviveADelegateThatThrows) {
  const testkit::LogRecorder log;
  delegate.whenEnded = [] { throw std::runtime_error("no record"); };
  click(name);
  click(date);
  EXPECT_EQ(log.lines(), QStringList{"text field: no record"});
  EXPECT_TRUE(dateEditing->isEditing());
}

TEST_F(TextFields, AreLetGoOfWithTheirWindowInTheMiddleOfAnEdit) {
  auto other = std::make_unique<QWidget>();
  auto* field = new QLineEdit(other.get());
  field->setObjectName("short-lived");
  new TextFieldEditing(field, &delegate);
  other->show();
  other->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(other.get()));
  click(field);
  delegate.take();
  TextFieldEditing::detach(other.get());
  other.reset();
  EXPECT_EQ(delegate.take(), QStringList());
}

}  // namespace
