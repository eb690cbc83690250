// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The real program on a virtual screen, from the first start on an empty home to quit.
#include <gtest/gtest.h>

#include "testing/person/PersonWithKeyboard.h"
#include "testing/person/PersonWithMouse.h"
#include "testing/person/ScreenInput.h"
#include "tests/integration/journey/Journey.h"

using journey::Journey;
using namespace velmora::testkit;

namespace {

void recordAndStep(Journey& journey) {
  journey.answerTheFirstQuestions();
  journey.recordTwoExaminations();
  journey.moveBetweenExaminations();
}

void goOnToTheEnd(Journey& journey) {
  journey.deleteAnExamination();
  journey.changeTheTab();
  journey.rememberRecentDocuments();
  journey.save();
  journey.changeThePreferences();
  journey.abandonThePreferences();
  journey.cancelPageSetupAndPrinting();
  journey.readAbout();
  journey.exportABatch();
  journey.openTheRecent();
  journey.quit();
  journey.lookAtTheDisk();
}

// Outside a field the arrows step through the examinations.
void stepWithTheArrows(Journey& journey, PersonWithKeyboard& person) {
  const auto document = [&] { return person.active("VelmoraDocument"); };
  const auto stroke = [&](const QString& key) {
    document();
    person.key(key);
  };
  person.push(document(), "previousStudyButton");
  journey.waitForExamination("1 of 2", "14.6");
  stroke("Right");
  journey.waitForExamination("2 of 2", "17.6");
  stroke("Left");
  journey.waitForExamination("1 of 2", "14.6");
  stroke("Right");
  journey.waitForExamination("2 of 2", "17.6");
}

void stepWithTheArrows(Journey&, PersonWithMouse&) {}

/// Fails with what was on the screen when a leg of the journey went otherwise.
template <typename PersonKind>
void travel() {
  Journey journey;
  try {
    ProbeClient& probe = journey.start().probe();
    PersonKind person(probe, std::make_unique<ScreenInput>(probe, journey.stage().environment()),
                      Patience.count());
    journey.goOnWith(person);
    recordAndStep(journey);
    stepWithTheArrows(journey, person);
    goOnToTheEnd(journey);
  } catch (const std::exception& error) {
    ADD_FAILURE() << error.what() << '\n' << journey.account().toStdString();
  }
}

TEST(Journey, FromFirstStartToQuitByKeyboardAlone) { travel<PersonWithKeyboard>(); }

TEST(Journey, FromFirstStartToQuitByMouseAlone) { travel<PersonWithMouse>(); }

}  // namespace
