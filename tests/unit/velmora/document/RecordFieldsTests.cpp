// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/document/RecordFields.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <algorithm>

#include "platform/controls/Alert.h"
#include "platform/controls/TextFieldEditing.h"
#include "testing/standins/Scripted.h"
#include "testing/standins/VirtualRunLoop.h"
#include "velmora/document/ShortDates.h"

using namespace velmora;

namespace {

/// A record that notes what its window tells it.
struct Record : QObject, RecordFields, platform::TextFieldDelegate {
  using RecordFields::birthDateField_;
  using RecordFields::identifier;
  using RecordFields::letGo;
  using RecordFields::mayEdit;
  using RecordFields::placeOfExamNumber;
  using RecordFields::setBirthDate;
  using RecordFields::setExamDate;
  using RecordFields::setIdentifier;
  using RecordFields::watchTextFields;

  void connectTo(QWidget& window) {
    const auto note = [this](const char* command) {
      return [this, command](const QObject* sender) { told.append(command + (':' + sender->objectName())); };
    };
    connectWindow(window, this, {note("previous"), note("next"), note("add"), note("remove")});
  }
  void controlTextDidBeginEditing(QLineEdit* field) override { told.append("edits:" + field->objectName()); }

  QStringList told;
};

class FieldsOfARecord : public testing::Test {
 protected:
  template <typename Widget>
  Widget* add(const char* name) {
    auto* widget = new Widget(&window);
    widget->setObjectName(QString::fromLatin1(name));
    return widget;
  }

  QWidget window;
  Record record;
  testkit::VirtualRunLoop clock;
  const ShortDates dates{clock};
};

TEST_F(FieldsOfARecord, TellTheRecordWhichButtonWasPressed) {
  QList<QPushButton*> buttons;
  for (const char* name : {"previousStudyButton", "nextStudyButton", "newStudyButton", "deleteStudyButton"})
    buttons.append(add<QPushButton>(name));
  record.connectTo(window);
  for (QPushButton* button : buttons) button->click();
  EXPECT_EQ(record.told, (QStringList{"previous:previousStudyButton", "next:nextStudyButton",
                                      "add:newStudyButton", "remove:deleteStudyButton"}));
  EXPECT_EQ(buttons.at(0)->shortcut(), QKeySequence(Qt::Key_Left));
  EXPECT_EQ(buttons.at(1)->shortcut(), QKeySequence(Qt::Key_Right));
}

TEST_F(FieldsOfARecord, TellItNothingAfterItHasLetGo) {
  auto* button = add<QPushButton>("newStudyButton");
  auto* field = add<QLineEdit>("referenceIDField");
  record.connectTo(window);
  record.watchTextFields(window, &record, dates);
  Record::letGo(window, &record);
  button->click();
  platform::TextFieldEditing::selectText(field);
  EXPECT_EQ(record.told, QStringList());
}

TEST_F(FieldsOfARecord, AreWatchedWhereTheUserCanEditThemAndNobodyElseDoes) {
  auto* own = add<QLineEdit>("notes");
  add<QLineEdit>("shown")->setReadOnly(true);
  add<QLineEdit>("elsewhere")->setProperty("ownDelegate", true);
  record.connectTo(window);
  record.watchTextFields(window, &record, dates);
  for (QLineEdit* field : window.findChildren<QLineEdit*>()) {
    const QObjectList& parts = field->children();
    const bool watched = std::any_of(parts.begin(), parts.end(), [](QObject* part) {
      return dynamic_cast<platform::TextFieldEditing*>(part) != nullptr;
    });
    EXPECT_EQ(watched, field == own) << qPrintable(field->objectName());
  }
}

TEST_F(FieldsOfARecord, MayAllBeMissing) {
  record.connectTo(window);
  record.watchTextFields(window, &record, dates);
  record.setIdentifier("12-345");
  record.setBirthDate(clock.now());
  record.setExamDate(clock.now());
  EXPECT_TRUE(record.identifier().isNull());
  EXPECT_EQ(record.placeOfExamNumber(nullptr), QPoint());
}

TEST_F(FieldsOfARecord, ShowTheDayOfADate) {
  add<QLineEdit>("birthDateField");
  record.connectTo(window);
  record.setBirthDate(clock.now());
  EXPECT_EQ(record.birthDateField_->text(), ShortDates::text(clock.now().date()));
  record.setBirthDate({});
  EXPECT_EQ(record.birthDateField_->text(), "");
}

TEST_F(FieldsOfARecord, AskBeforeAPatientThatStandsThereIsEdited) {
  auto* identifier = add<QLineEdit>("referenceIDField");
  auto* examDate = add<QLineEdit>("examDateField");
  record.connectTo(window);
  testkit::ScriptedAlerts alerts(clock);
  EXPECT_TRUE(record.mayEdit(identifier, alerts)) << "nothing stands there";
  identifier->setText("12-345");
  examDate->setText("02/05/2024");
  EXPECT_TRUE(record.mayEdit(examDate, alerts));
  const platform::Alert question{"This entry has already been defined", "Modify", "Cancel", "",
                                 "Are you sure you want to modify this item?"};
  for (const auto& [answer, may] :
       {std::pair{platform::AlertDefaultReturn, true}, std::pair{platform::AlertAlternateReturn, false},
        std::pair{platform::AlertStopped, false}}) {
    alerts.expect(question, answer);
    EXPECT_EQ(record.mayEdit(identifier, alerts), may) << answer;
  }
  EXPECT_TRUE(alerts.allCame());
}

}  // namespace
