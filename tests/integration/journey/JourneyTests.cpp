// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The real program on a virtual screen, from the first start on an empty home to quit.
#include <gtest/gtest.h>

#include "tests/integration/journey/Journey.h"
#include "tests/integration/journey/KeyboardHands.h"
#include "tests/integration/journey/MouseHands.h"

using journey::Journey;
using journey::KeyboardHands;
using journey::MouseHands;

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
void stepWithTheArrows(Journey& journey, KeyboardHands& hands) {
  hands.push("VelmoraDocument", "previousStudyButton");
  journey.waitForExamination("1 of 2", "14.6");
  hands.stroke("VelmoraDocument", "Right");
  journey.waitForExamination("2 of 2", "17.6");
  hands.stroke("VelmoraDocument", "Left");
  journey.waitForExamination("1 of 2", "14.6");
  hands.stroke("VelmoraDocument", "Right");
  journey.waitForExamination("2 of 2", "17.6");
}

void stepWithTheArrows(Journey&, MouseHands&) {}

/// Fails with what was on the screen when a leg of the journey went otherwise.
template <typename HandsKind>
void travel() {
  Journey journey;
  try {
    journey.start();
    HandsKind hands(journey.application(), journey.screen());
    journey.goOnWith(hands);
    recordAndStep(journey);
    stepWithTheArrows(journey, hands);
    goOnToTheEnd(journey);
  } catch (const std::exception& error) {
    ADD_FAILURE() << error.what() << '\n' << journey.account().toStdString();
  }
}

TEST(Journey, FromFirstStartToQuitByKeyboardAlone) { travel<KeyboardHands>(); }

TEST(Journey, FromFirstStartToQuitByMouseAlone) { travel<MouseHands>(); }

}  // namespace
