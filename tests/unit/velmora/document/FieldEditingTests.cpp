// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>

#include "testing/application/RecordApplication.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;
using namespace velmora::testkit;

namespace settings = velmora::settings;
using user::textOf;
using velmora::platform::AlertAlternateReturn;
using velmora::platform::AlertDefaultReturn;
using velmora::platform::AlertOtherReturn;

namespace {

const platform::Alert alreadyDefined{"This entry has already been defined", "Modify", "Cancel", "",
                                     "Are you sure you want to modify this item?"};

}  // namespace

TEST(GuardedField, AsksBeforeAFilledIdentifierOrBirthDateIsEdited) {
  RecordApplication application;
  application.writeRecord("AB1");
  RecordingDocument& document = application.openRecord("AB1");
  for (const char* name : {"referenceIDField", "birthDateField"}) {
    application.desktop.alerts.expect(alreadyDefined, AlertDefaultReturn);
    user::click(user::field(document, name));
    EXPECT_TRUE(application.desktop.alerts.allCame()) << name;
    EXPECT_TRUE(user::field(document, name)->hasFocus()) << name;
  }
}

TEST(GuardedField, NeverAsksWhileItIsEmpty) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  user::click(user::field(document, "referenceIDField"));
  user::click(user::field(document, "birthDateField"));
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
}

TEST(GuardedField, IsNoneOfTheOthers) {
  RecordApplication application;
  application.writeRecord("AB1");
  RecordingDocument& document = application.openRecord("AB1");
  user::click(user::field(document, "examDateField"));
  EXPECT_FALSE(textOf(document, "examDateField").isEmpty());
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
}

TEST(GuardedField, KeepsItsTextWhenTheEditIsCancelled) {
  RecordApplication application;
  application.writeRecord("AB1");
  RecordingDocument& document = application.openRecord("AB1");
  QLineEdit* field = user::field(document, "referenceIDField");
  application.desktop.alerts.expect(alreadyDefined, platform::AlertStopped);
  user::click(field);
  EXPECT_FALSE(field->hasFocus()) << "nobody has said Modify";
  application.desktop.alerts.expect(alreadyDefined, AlertAlternateReturn);
  user::click(field);
  EXPECT_FALSE(field->hasFocus());
  QTest::keyClicks(QApplication::focusWidget(), "XY");
  EXPECT_EQ(field->text(), "AB1");
  EXPECT_FALSE(document.isDocumentEdited());
}

TEST(GuardedField, IsPassedByTheKeyboardAndAsksAtTheFirstChange) {
  RecordApplication application;
  application.writeRecord("AB1");
  RecordingDocument& document = application.openRecord("AB1");
  QLineEdit* field = user::field(document, "referenceIDField");
  field->setFocus(Qt::TabFocusReason);
  EXPECT_FALSE(document.isDocumentEdited());
  application.desktop.alerts.expect(alreadyDefined, AlertAlternateReturn);
  QTest::keyClicks(field, "X");
  EXPECT_TRUE(application.desktop.alerts.allCame());
  EXPECT_EQ(field->text(), "AB1");
}

TEST(GuardedField, IsNotChangedByAPasteOrADropThatIsRefused) {
  RecordApplication application;
  application.writeRecord("AB1");
  RecordingDocument& document = application.openRecord("AB1");
  QLineEdit* field = user::field(document, "referenceIDField");
  application.desktop.alerts.expect(alreadyDefined, AlertAlternateReturn);
  field->insert("pasted");  // as the context menu and a drop do, past every key
  EXPECT_TRUE(application.desktop.alerts.allCame());
  EXPECT_EQ(field->text(), "AB1");
  EXPECT_FALSE(document.isDocumentEdited());
}

TEST(GuardedField, LetsAnyOtherAnswerThrough) {
  RecordApplication application;
  application.writeRecord("AB1");
  RecordingDocument& document = application.openRecord("AB1");
  for (const int answer : {+AlertDefaultReturn, +AlertOtherReturn, 7}) {
    application.desktop.alerts.expect(alreadyDefined, answer);
    EXPECT_TRUE(document.controlTextShouldBeginEditing(user::field(document, "referenceIDField")));
  }
  application.desktop.alerts.expect(alreadyDefined, AlertAlternateReturn);
  EXPECT_FALSE(document.controlTextShouldBeginEditing(user::field(document, "referenceIDField")));
}

TEST(FieldEditing, MarksTheDocumentChangedAtAMereClick) {
  for (const char* name : {"referenceIDField", "birthDateField", "examDateField"}) {
    RecordApplication application;
    RecordingDocument& document = application.newRecord();
    EXPECT_FALSE(document.isDocumentEdited());
    user::click(user::field(document, name));
    EXPECT_TRUE(document.isDocumentEdited()) << name;
  }
}

TEST(FieldEditing, PutsTheFirstIdentifierIntoUpperCaseWithDashes) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  user::enter(user::field(document, "referenceIDField"), "ab/12/c");
  EXPECT_EQ(textOf(document, "referenceIDField"), "AB-12-C");
  EXPECT_FALSE(document.isBlank());
}

TEST(FieldEditing, LeavesLaterIdentifiersAsTheyAreTyped) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  user::enter(user::field(document, "referenceIDField"), "ab1");
  application.desktop.alerts.expect(alreadyDefined, AlertDefaultReturn);
  user::enter(user::field(document, "referenceIDField"), "cd/2");
  EXPECT_EQ(textOf(document, "referenceIDField"), "cd/2");
}

TEST(FieldEditing, LeavesTheIdentifierOfAnOpenedRecordAsItIs) {
  RecordApplication application;
  application.writeRecord("ab1");
  RecordingDocument& document = application.openRecord("ab1");
  EXPECT_FALSE(document.isBlank());
  user::enter(user::field(document, "examDateField"), "3/4/2020");
  EXPECT_EQ(textOf(document, "referenceIDField"), "ab1");
}

TEST(FieldEditing, ClearsBlankWhicheverFieldWasFirst) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  document.setIdentifier("ab/1");
  user::enter(user::field(document, "examDateField"), "3/4/2020");
  EXPECT_FALSE(document.isBlank());
  EXPECT_EQ(textOf(document, "referenceIDField"), "AB-1");
}

TEST(FieldEditing, BringsTheExaminationsIntoTheirOrder) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  user::enter(user::field(document, "examDateField"), "3/4/2020");
  EXPECT_EQ(document.calls, QStringList{"updateArrayOrder 0"});
}

TEST(FieldEditing, WithALookUpDueBringsNothingIntoOrder) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  document.setLookUpRequired(true);
  user::enter(user::field(document, "referenceIDField"), "ab1");
  EXPECT_TRUE(document.calls.isEmpty());
  EXPECT_FALSE(document.lookUpRequired());
}

TEST(FieldEditing, WithALookUpDueLooksForTheUpperCaseNameOnce) {
  RecordApplication application;
  application.turnOn(settings::AutoSave);
  RecordingDocument& document = application.newRecord();
  document.setLookUpRequired(true);
  user::enter(user::field(document, "referenceIDField"), "ab/1");
  EXPECT_EQ(application.delegate.asked, QStringList{"AB-1"});
  user::enter(user::field(document, "examDateField"), "3/4/2020");
  EXPECT_EQ(application.delegate.asked.size(), 1);
}

TEST(FieldEditing, WithoutAnIdentifierKeepsTheLookUpForLater) {
  RecordApplication application;
  application.turnOn(settings::AutoSave);
  RecordingDocument& document = application.newRecord();
  document.setLookUpRequired(true);
  user::enter(user::field(document, "examDateField"), "3/4/2020");
  EXPECT_TRUE(application.delegate.asked.isEmpty());
  EXPECT_EQ(document.calls, QStringList{"updateArrayOrder 0"});
  EXPECT_TRUE(document.lookUpRequired());
}

TEST(FieldEditing, EndsAtTheTabToTheNextFieldOnce) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  user::type(user::field(document, "referenceIDField"), "ab1");
  user::pressKey(document, Qt::Key_Tab);
  EXPECT_TRUE(user::field(document, "birthDateField")->hasFocus());
  EXPECT_EQ(textOf(document, "referenceIDField"), "AB1");
  EXPECT_EQ(document.calls, QStringList{"updateArrayOrder 0"});
}

// A study chosen in the viewer while the user is in the middle of a field.

TEST(FieldInEdit, IsLeftBeforeTheViewerFillsIt) {
  for (const char* name : {"referenceIDField", "birthDateField", "examDateField"}) {
    RecordApplication application;
    application.turnOn(settings::AutoSave);
    RecordingDocument& document = application.newRecord();
    QLineEdit* field = user::field(document, name);
    user::click(field);  // empty: nothing is asked, and the edit is open
    application.chooseStudy(study("A1"));
    const QString filled = field->text();
    EXPECT_FALSE(field->hasFocus()) << name;
    EXPECT_FALSE(field->hasSelectedText()) << name;
    user::pressKey(document, Qt::Key_7);
    EXPECT_EQ(field->text(), filled) << name << ": what the user types was meant for what stood there before";
  }
}

TEST(FieldInEdit, IsLeftWithoutTheConsequencesOfAnEdit) {
  RecordApplication application;
  application.turnOn(settings::AutoSave);
  application.keepRecord("OTHER");
  RecordingDocument& document = application.newRecord();
  user::type(user::field(document, "referenceIDField"), "other");
  document.setLookUpRequired(true);
  document.forgetCalls();
  application.chooseStudy(study("A1"));
  EXPECT_EQ(document.identifier(), "A1");
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty()) << "no look-up of what was typed by half";
  EXPECT_EQ(document.calls, (QStringList{"updateDisplay 0", "synchronizeToData 0"}));
}

TEST(FieldInEdit, AsksAnewWhenTheUserComesBackToWhatTheViewerFilled) {
  RecordApplication application;
  application.turnOn(settings::AutoSave);
  RecordingDocument& document = application.newRecord();
  QLineEdit* field = user::field(document, "referenceIDField");
  user::click(field);
  application.chooseStudy(study("A1"));
  application.desktop.alerts.expect(alreadyDefined, AlertAlternateReturn);
  user::click(field);
  EXPECT_TRUE(application.desktop.alerts.allCame());
  EXPECT_EQ(document.identifier(), "A1");
}

TEST(FieldInEdit, WhoseTextTheViewerDoesNotBringKeepsItInProperForm) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  user::type(user::field(document, "birthDateField"), "1/2/2020");
  QVariantMap request = study("A1");
  request.remove("DateOfBirth");
  application.chooseStudy(request);
  EXPECT_EQ(textOf(document, "birthDateField"), "01/02/2020");
}
