// SPDX-License-Identifier: LGPL-3.0-or-later
// The probe in a program that knows nothing of it, which is another process.
#include <gtest/gtest.h>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include "testing/person/PersonWithMouse.h"
#include "testing/person/ProbeClient.h"
#include "testing/person/ProbeInput.h"
#include "testing/process/Program.h"
#include "testing/waiting/Waiting.h"

using velmora::testkit::Differs;
using velmora::testkit::PersonWithMouse;
using velmora::testkit::ProbeClient;
using velmora::testkit::ProbeInput;
using velmora::testkit::Program;
using velmora::testkit::SeenWindow;

namespace {

constexpr double Patience = 30;

class Probe : public testing::Test {
 protected:
  void SetUp() override {
    subject_.start();
    probe_ = std::make_unique<ProbeClient>(trace_, folder_.filePath("socket"), subject_, Patience);
    person_ = std::make_unique<PersonWithMouse>(*probe_, std::make_unique<ProbeInput>(*probe_), Patience);
    window_ = named("Subject");
  }

  QProcessEnvironment environment() const {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    ProbeClient::addProbe(environment, folder_.filePath("socket"));
    return environment;
  }
  SeenWindow named(const QString& name) {
    return person_->waitFor(
        name, [&](const SeenWindow& window) { return window.name() == name; }, Patience);
  }
  SeenWindow alert(const QString& text) {
    return person_->waitFor(
        text, [&](const SeenWindow& window) { return window.alertText() == text; }, Patience);
  }
  QString said() { return named("Subject").text("said"); }
  QString click(const QString& widget) {
    return probe_->command({{"do", "click"}, {"window", window_.id()}, {"widget", widget}});
  }

  QTemporaryDir folder_;
  Program::Trace trace_ = [](const QString&, const QString&) {};
  Program subject_{"subject", PROBE_SUBJECT, environment(), trace_};
  std::unique_ptr<ProbeClient> probe_;
  std::unique_ptr<PersonWithMouse> person_;
  SeenWindow window_;
};

TEST_F(Probe, ClicksWhatAPersonCanReach) {
  EXPECT_EQ(click("plain"), QString());
  EXPECT_EQ(said(), "plain");
}

TEST_F(Probe, RefusesWhatIsDisabledHiddenCoveredOrNotThere) {
  EXPECT_EQ(click("disabled"), "\"disabled\" is disabled");
  EXPECT_EQ(click("hidden"), "\"hidden\" is hidden");
  EXPECT_EQ(click("covered"), "\"covered\" is covered by \"cover\"");
  EXPECT_EQ(click("nothing"), "no widget \"nothing\"");
  EXPECT_EQ(probe_->command({{"do", "click"}, {"window", 999}, {"widget", "plain"}}), "no such window");
  EXPECT_EQ(said(), QString());
}

TEST_F(Probe, WorksInsideAModalDialogAndRefusesWhatIsBehindIt) {
  EXPECT_EQ(click("opensDialog"), QString());
  const SeenWindow box = alert("Really?");
  EXPECT_EQ(box.alertInformation(), "Because.");
  EXPECT_EQ(box.buttons(), (QStringList{"Yes", "Cancel"}));
  EXPECT_TRUE(click("plain").contains("is before it")) << click("plain").toStdString();
  EXPECT_EQ(said(), QString());
  person_->answer("Really?", "Yes");
  EXPECT_EQ(said(), "Really? yes");
}

TEST_F(Probe, RefusesTheWindowUnderASheetButNotAnother) {
  EXPECT_EQ(click("opensSheet"), QString());
  alert("A sheet?");
  EXPECT_TRUE(click("plain").contains("is before it"));
  const SeenWindow other = named("Other");
  EXPECT_EQ(probe_->command({{"do", "click"}, {"window", other.id()}, {"widget", "Other"}}), QString());
  person_->answer("A sheet?", "Close it");
  EXPECT_EQ(click("plain"), QString());
  EXPECT_EQ(said(), "plain");
}

TEST_F(Probe, EscapeReachesTheDialogThatHasTheKeyboard) {
  click("opensDialog");
  person_->waitFor("the dialog",
                   [](const SeenWindow& window) { return window.isAlert() && window.active(); });
  EXPECT_EQ(probe_->command({{"do", "key"}, {"key", "Escape"}}), QString());
  EXPECT_EQ(said(), "Really? cancelled");
}

TEST_F(Probe, TypesIntoTheFieldThatWasClicked) {
  person_->enter(window_, "field", "Ab 1.5/ü");
  const SeenWindow after = named("Subject");
  EXPECT_EQ(after.text("field"), "Ab 1.5/ü");
  EXPECT_TRUE(after.hasFocus("secondField"));
  EXPECT_EQ(after.text("secondField"), QString());
}

TEST_F(Probe, ReadsAndFillsAnAreaOfText) {
  EXPECT_EQ(window_.text("area"), "one\ntwo");
  person_->push(window_, "area");
  person_->key("Ctrl+A");
  EXPECT_EQ(probe_->command({{"do", "type"}, {"text", "if; >&2"}}), QString());
  EXPECT_EQ(named("Subject").text("area"), "if; >&2");
}

TEST_F(Probe, GoesOnInsideADialogThatAKeyOpened) {
  person_->enter(window_, "field", "ask");
  person_->answer("On leaving?", "Cancel");
  EXPECT_EQ(said(), "On leaving? cancelled");
}

TEST_F(Probe, PressesShortcuts) {
  click("field");
  EXPECT_EQ(probe_->command({{"do", "key"}, {"key", "Ctrl+D"}}), QString());
  EXPECT_EQ(said(), "done");
}

TEST_F(Probe, OpensAMenuAndPicksFromIt) {
  person_->choose(window_, {"Things", "Do"});
  EXPECT_EQ(said(), "done");
  person_->choose(window_, {"Things", "Ask..."});
  person_->answer("From the menu?", "Yes");
  EXPECT_EQ(said(), "From the menu? yes");
}

TEST_F(Probe, FindsMenusAndEntriesByTheirObjectNamesToo) {
  person_->choose(window_, {"thingsMenu", "doThing"});
  EXPECT_EQ(said(), "done");
}

TEST_F(Probe, GivesAnOpenMenuAndWhereItIs) {
  const SeenWindow menu = person_->open(window_, "Things");
  EXPECT_TRUE(menu.isMenu());
  EXPECT_TRUE(window_.place().contains(menu.place().topLeft()));
  person_->key("Escape");
  EXPECT_EQ(click("plain"), QString());
}

TEST_F(Probe, RefusesADisabledMenuEntryAndWhatLiesBehindAnOpenMenu) {
  EXPECT_THROW(person_->choose(window_, {"Things", "Never"}), Differs);
  EXPECT_EQ(click("plain"), "a menu is open before it");
  EXPECT_EQ(said(), QString());
}

TEST_F(Probe, PicksFromAListAndChoosesATab) {
  person_->pick(window_, "list", "Male");
  EXPECT_EQ(named("Subject").text("list"), "Male");
  // At once again, by another way round.
  person_->pick(window_, "list", "Female");
  EXPECT_EQ(named("Subject").text("list"), "Female");
  person_->pick(window_, "list", "Male");
  EXPECT_EQ(named("Subject").text("list"), "Male");
  EXPECT_THROW(person_->pick(window_, "list", "Neither"), Differs);
  person_->turnTo(window_, "tabs", "Two");
  EXPECT_EQ(named("Subject").tabInFront("tabs"), "Two");
  person_->turnTo(window_, "tabs", "One");
}

TEST_F(Probe, TellsWhichWindowsCameAndWent) {
  click("opensDialog");
  person_->answer("Really?", "Yes");
  QStringList seen;
  for (const ProbeClient::News& news : probe_->news())
    seen.append(news.window["class"].toString() + (news.shown ? " shown" : " hidden"));
  EXPECT_EQ(seen,
            (QStringList{"QMainWindow shown", "QWidget shown", "QMessageBox shown", "QMessageBox hidden"}))
      << seen.join(", ").toStdString();
}

TEST_F(Probe, DrawsEveryWindowAndOneWidget) {
  click("opensDialog");
  alert("Really?");
  const QJsonObject answer = probe_->ask({{"do", "shots"}, {"folder", folder_.path()}, {"prefix", "07-"}});
  QStringList files = answer["files"].toVariant().toStringList();
  files.sort();
  EXPECT_EQ(files, (QStringList{"07-Other.png", "07-QMessageBox.png", "07-Subject.png"}));
  EXPECT_EQ(QImage(folder_.filePath("07-Subject.png")).width(), 400);
  probe_->picture(window_, folder_.filePath("tabs.png"), "tabs");
  EXPECT_EQ(QImage(folder_.filePath("tabs.png")).size(), window_.size("tabs"));
  probe_->picture(window_, folder_.filePath("whole.png"));
  EXPECT_EQ(QImage(folder_.filePath("whole.png")).size(), window_.place().size());
}

TEST_F(Probe, SaysWhenThePictureCannotBeWritten) {
  const QJsonObject answer = probe_->ask({{"do", "shots"}, {"folder", "/nowhere"}, {"prefix", "07-"}});
  EXPECT_FALSE(answer["ok"].toBool());
}

TEST_F(Probe, AnApplicationThatEndsIsNoticedAtOnce) {
  subject_.terminate();
  EXPECT_THROW(person_->look(), Differs);
}

}  // namespace
