// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QTest>
#include <QTextEdit>

#include "testing/application/RecordApplication.h"

using namespace velmora::testkit;

namespace {

/// A document window that has every kind of text field beside its own.
class EditMenu : public testing::Test {
 protected:
  EditMenu() : document(application.newRecord()), window(document.window()) {
    QApplication::clipboard()->clear();
  }
  template <typename Field>
  Field* add() {
    auto* field = new Field(window);
    field->show();
    return field;
  }
  void focus(QWidget* field) {
    field->setFocus();
    ASSERT_EQ(QApplication::focusWidget(), field);
  }
  QAction* item(const char* name) const { return window->findChild<QAction*>(name); }
  void choose(const char* name) { item(name)->trigger(); }
  /// The text items that are enabled when the menu opens.
  QStringList enabled() {
    auto* menu = window->findChild<QMenu*>("editMenu");
    Q_EMIT menu->aboutToShow();
    QStringList names;
    for (const QAction* action : menu->actions()) {
      if (!action->isSeparator() && action->isEnabled()) names.append(action->objectName());
    }
    Q_EMIT menu->aboutToHide();
    names.removeAll("doPreferences");
    return names;
  }

  RecordApplication application;
  RecordingDocument& document;
  QWidget* window;
};

TEST_F(EditMenu, OffersNothingForTextWithoutATextField) {
  window->setFocus();
  EXPECT_EQ(enabled(), QStringList());
  EXPECT_TRUE(item("doPreferences")->isEnabled()) << "that one is the application's";
}

TEST_F(EditMenu, OffersWhatTheFieldCanDo) {
  auto* field = add<QLineEdit>();
  focus(field);
  EXPECT_EQ(enabled(), QStringList());
  field->setText("ab");
  EXPECT_EQ(enabled(), QStringList{"doSelectAll"});
  field->selectAll();
  EXPECT_EQ(enabled(), (QStringList{"doCut", "doCopy", "doDelete", "doSelectAll"}));
  QTest::keyClick(field, Qt::Key_X);
  EXPECT_EQ(enabled(), (QStringList{"doUndo", "doSelectAll"}));
  field->undo();
  EXPECT_TRUE(enabled().contains("doRedo"));
  QApplication::clipboard()->setText("c");
  EXPECT_TRUE(enabled().contains("doPaste"));
  field->setReadOnly(true);
  field->selectAll();
  EXPECT_FALSE(enabled().contains("doPaste"));
  EXPECT_FALSE(enabled().contains("doCut"));
  EXPECT_TRUE(enabled().contains("doCopy"));
}

template <typename Field>
void doesNotChangeByKeys(Field* field) {
  QApplication::clipboard()->setText("pasted");
  field->setFocus();
  for (const auto& [key, modifiers] :
       std::initializer_list<std::pair<Qt::Key, Qt::KeyboardModifiers>>{{Qt::Key_V, Qt::ControlModifier},
                                                                        {Qt::Key_X, Qt::ControlModifier},
                                                                        {Qt::Key_Delete, Qt::NoModifier}}) {
    field->selectAll();
    QTest::keyClick(field, key, modifiers);
  }
}

TEST_F(EditMenu, ChangesNoReadOnlyFieldByItsKeys) {
  auto* line = add<QLineEdit>();
  auto* plain = add<QPlainTextEdit>();
  auto* rich = add<QTextEdit>();
  line->setText("ab");
  plain->setPlainText("ab");
  rich->setPlainText("ab");
  line->setReadOnly(true);
  plain->setReadOnly(true);
  rich->setReadOnly(true);
  doesNotChangeByKeys(line);
  doesNotChangeByKeys(plain);
  doesNotChangeByKeys(rich);
  EXPECT_EQ(line->text(), "ab");
  EXPECT_EQ(plain->toPlainText(), "ab");
  EXPECT_EQ(rich->toPlainText(), "ab");
  EXPECT_EQ(QApplication::clipboard()->text(), "pasted") << "nothing was cut";
}

TEST_F(EditMenu, GivesAHiddenTextToNobody) {
  auto* field = add<QLineEdit>();
  field->setEchoMode(QLineEdit::Password);
  field->setText("secret");
  field->selectAll();
  focus(field);
  EXPECT_EQ(enabled(), (QStringList{"doDelete", "doSelectAll"}));
}

template <typename Area>
void worksOn(QAction* cut, QAction* paste, QAction* undo, QAction* selectAll, QAction* remove, Area* area) {
  area->setPlainText("ab");
  selectAll->trigger();
  cut->trigger();
  EXPECT_EQ(area->toPlainText(), "");
  EXPECT_EQ(QApplication::clipboard()->text(), "ab");
  paste->trigger();
  paste->trigger();
  EXPECT_EQ(area->toPlainText(), "abab");
  undo->trigger();
  EXPECT_EQ(area->toPlainText(), "ab");
  selectAll->trigger();
  remove->trigger();
  EXPECT_EQ(area->toPlainText(), "");
}

TEST_F(EditMenu, WorksOnAreasOfText) {
  auto* plain = add<QPlainTextEdit>();
  auto* rich = add<QTextEdit>();
  focus(plain);
  worksOn(item("doCut"), item("doPaste"), item("doUndo"), item("doSelectAll"), item("doDelete"), plain);
  focus(rich);
  worksOn(item("doCut"), item("doPaste"), item("doUndo"), item("doSelectAll"), item("doDelete"), rich);
  EXPECT_TRUE(enabled().contains("doUndo"));
  rich->setReadOnly(true);
  EXPECT_FALSE(enabled().contains("doUndo"));
}

TEST_F(EditMenu, WorksOnALineOfText) {
  auto* field = add<QLineEdit>();
  focus(field);
  QTest::keyClicks(field, "ab");
  choose("doSelectAll");
  choose("doCopy");
  EXPECT_EQ(QApplication::clipboard()->text(), "ab");
  choose("doDelete");
  EXPECT_EQ(field->text(), "");
  choose("doUndo");
  EXPECT_EQ(field->text(), "ab");
  choose("doRedo");
  EXPECT_EQ(field->text(), "");
  choose("doDelete");
  EXPECT_EQ(field->text(), "") << "without a selection nothing is deleted";
}

TEST_F(EditMenu, WorksOnTheFieldInsideANumberAndAMenu) {
  auto* number = add<QSpinBox>();
  number->setValue(42);
  focus(number);
  choose("doSelectAll");
  choose("doCopy");
  EXPECT_EQ(QApplication::clipboard()->text(), "42");
  auto* box = add<QComboBox>();
  box->setEditable(true);
  box->setEditText("entry");
  focus(box);
  choose("doSelectAll");
  choose("doCopy");
  EXPECT_EQ(QApplication::clipboard()->text(), "entry");
}

TEST_F(EditMenu, KeepsItsFieldWhileTheUserWalksThroughTheMenuBarByKeys) {
  auto* field = add<QLineEdit>();
  field->setText("ab");
  focus(field);
  auto* bar = window->findChild<QMenuBar*>();
  bar->setFocusPolicy(Qt::StrongFocus);
  focus(bar);
  EXPECT_EQ(enabled(), QStringList{"doSelectAll"});
  choose("doSelectAll");
  EXPECT_EQ(field->selectedText(), "ab");
}

TEST_F(EditMenu, ForgetsAFieldThatIsLeftOrGone) {
  auto* field = add<QLineEdit>();
  field->setText("ab");
  focus(field);
  delete field;
  EXPECT_EQ(enabled(), QStringList());
  choose("doSelectAll");
  auto* other = add<QLineEdit>();
  other->setText("cd");
  focus(other);
  window->setFocus();
  EXPECT_EQ(enabled(), QStringList());
}

TEST_F(EditMenu, LeavesTheFieldsOfOtherWindowsAlone) {
  RecordingDocument& other = application.newRecord();
  auto* field = new QLineEdit(other.window());
  field->show();
  field->setText("ab");
  field->setFocus();
  ASSERT_EQ(QApplication::focusWidget(), field);
  EXPECT_EQ(enabled(), QStringList()) << "in the menu of the first window";
}

}  // namespace
