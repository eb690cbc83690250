// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include "testing/application/RecordApplication.h"

using namespace velmora;
using namespace velmora::testkit;

using user::textOf;

namespace {

const platform::Alert recentlyPrinted{"Recently Printed", "OK", "", "",
                                      "This document was printed in the last 30 seconds."};

/// A record of three examinations, the first of them shown.
class Printing : public testing::Test {
 protected:
  Printing() {
    application.writeRecord("12-345", {"01/01/2021", "01/01/2022", "01/01/2023"});
    document = &application.openRecord("12-345");
  }
  qsizetype printed() const { return application.desktop.printer.jobs.size(); }
  RecordApplication application;
  RecordingDocument* document;
};

}  // namespace

TEST_F(Printing, ShowsNoNoticeTheFirstTime) {
  document->printDocument({}, true);
  EXPECT_EQ(printed(), 1);
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
}

TEST_F(Printing, AgainWithinThirtySecondsShowsTheNoticeOncePerPrintAndStillPrints) {
  document->printDocument({}, true);
  application.pass(29.999);
  application.desktop.alerts.expect(recentlyPrinted, platform::AlertDefaultReturn,
                                    [&] { EXPECT_EQ(printed(), 1) << "the notice comes first"; });
  document->printDocument({}, true);
  EXPECT_EQ(printed(), 2);
  application.pass(1);
  application.desktop.alerts.expect(recentlyPrinted, platform::AlertOtherReturn);
  document->printDocument({}, true);
  EXPECT_EQ(printed(), 3);
}

TEST_F(Printing, AgainAfterThirtySecondsShowsNoNotice) {
  document->printDocument({}, true);
  application.pass(30);
  document->printDocument({}, true);
  EXPECT_EQ(printed(), 2);
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
}

TEST_F(Printing, CountsTheThirtySecondsForEachDocument) {
  document->printDocument({}, true);
  application.newRecord().printDocument({}, true);
  EXPECT_EQ(printed(), 2);
}

TEST_F(Printing, ShowsTheLastExamination) {
  user::field(*document, "examDateField")->setText("05/05/2021");
  QString shown;
  application.desktop.printer.whilePrinting = [&](QWidget*) { shown = textOf(*document, "examDateField"); };
  document->printDocument({}, true);
  EXPECT_EQ(shown, "01/01/2023");
  EXPECT_EQ(document->currentExam(), 2U);
  EXPECT_EQ(document->calls, (QStringList{"synchronizeToData 0", "synchronizeFromData 2"}));
  EXPECT_EQ(document->exams.first(), "05/05/2021") << "what the fields held was stored first";
}

TEST_F(Printing, CarriesTheIdentifierInTheTitle) {
  user::field(*document, "referenceIDField")->setText("12/345");
  document->printDocument({}, true);
  QString title = application.desktop.printer.jobs.first().title;
  EXPECT_EQ(title.remove("[*]"), "12-345");
}

TEST_F(Printing, PassesSettingsAndPanelOn) {
  document->printDocument({{"OutputFile", "/tmp/x.pdf"}}, false);
  document = &application.newRecord();
  document->printDocument({}, true);
  ASSERT_EQ(printed(), 2);
  EXPECT_EQ(application.desktop.printer.jobs.at(0).settings, (QVariantMap{{"OutputFile", "/tmp/x.pdf"}}));
  EXPECT_FALSE(application.desktop.printer.jobs.at(0).showPrintPanel);
  EXPECT_TRUE(application.desktop.printer.jobs.at(1).showPrintPanel);
  EXPECT_EQ(application.desktop.printer.jobs.at(0).info.orientation,
            platform::PrintInfo::Orientation::Portrait);
}

TEST_F(Printing, TellsTheCallersCallback) {
  bool printedWell = false;
  document->printDocument({}, false, [&](platform::Document* told, bool didPrint) {
    EXPECT_EQ(told, document);
    printedWell = didPrint;
  });
  EXPECT_TRUE(printedWell);
}

TEST_F(Printing, DoesNotMarkTheDocumentChanged) {
  document->printDocument({}, true);
  EXPECT_FALSE(document->isDocumentEdited());
}

TEST_F(Printing, CountsTheThirtySecondsFromTheLastPrint) {
  document->printDocument({}, true);
  application.pass(29);
  application.desktop.alerts.expect(recentlyPrinted, platform::AlertDefaultReturn);
  document->printDocument({}, true);
  application.pass(29);
  application.desktop.alerts.expect(recentlyPrinted, platform::AlertDefaultReturn);
  document->printDocument({}, true);
  EXPECT_EQ(printed(), 3);
}
