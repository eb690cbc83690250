// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/activation/ActivationHandler.h"
#include "desktop/activation/Relaunch.h"

#include <QFile>
#include <QTemporaryDir>
#include <memory>
#include <stdexcept>

#include "desktop/alerts/UnattendedAlerts.h"
#include "platform/documents/DocumentController.h"
#include "testing/main/Shown.h"
#include "testing/standins/LogRecorder.h"
#include "testing/standins/TestServices.h"

using namespace velmora;

using velmora::desktop::ActivationHandler;
using velmora::desktop::ActivationRequest;
using velmora::desktop::summaryForLog;
using velmora::testkit::LogRecorder;
using Kind = ActivationRequest::Kind;

namespace {

class TextDocument : public platform::Document {
 public:
  using Document::Document;
  base::Result<> readFromData(const QByteArray& data, const QString&) override {
    return data == "bad" ? base::Failure{"It is damaged."} : base::Result<>();
  }
  base::Result<QByteArray> dataOfType(const QString&) override { return QByteArray(); }
};

/// Says what is asked of it.
class Application : public platform::DocumentController {
 public:
  explicit Application(testkit::TestServices& testServices)
      : DocumentController(testServices.services), desktop(testServices) {
    setDocumentFactory([this] {
      ++made;
      return std::make_unique<TextDocument>(services());
    });
  }
  void awakeFromNib() override { say("awake"); }
  void applicationDidFinishLaunching() override { say("launched"); }
  bool applicationPrintFile(const QString& path) override {
    said.append("prints " + path);
    tokens.append(qEnvironmentVariable("XDG_ACTIVATION_TOKEN"));
    if (jams) throw std::runtime_error("paper jam");
    const bool opens = openDocumentWithContentsOfURL(QUrl::fromLocalFile(path), false).ok();
    if (prints && opens) desktop.printer.jobs.append(testkit::RecordingPrinter::Job());
    return true;
  }
  bool applicationPerformAction(const QString& name) override {
    if (DocumentController::applicationPerformAction(name)) return true;
    said.append("action " + name);
    return name == "known";
  }
  void noteNewRecentDocumentURL(const QUrl& url) override { recents.append(url.toLocalFile()); }
  void say(const QString& what) {
    said.append(QStringLiteral("%1, %2 open").arg(what).arg(documents().size()));
  }

  testkit::TestServices& desktop;
  QStringList said;
  QStringList recents;
  QStringList tokens;
  int made = 0;
  bool prints = true;
  bool jams = false;
};

class Requests : public testing::Test {
 protected:
  QString file(const QString& name, const QByteArray& content = "good") {
    QFile made(folder.filePath(name));
    EXPECT_TRUE(made.open(QIODevice::WriteOnly));
    made.write(content);
    return made.fileName();
  }
  QStringList openFiles() const {
    QStringList files;
    for (const platform::Document* document : controller.documents())
      files.append(document->fileURL().toLocalFile());
    return files;
  }
  void expectOpenError(const QString& name, const QString& reason) {
    desktop.alerts.expect({"The file '" + name + "' could not be opened.", "OK", "", "", reason},
                          platform::AlertDefaultReturn);
  }
  int printAlone(const QStringList& files) {
    return requests.printAlone(files, [this] { return static_cast<int>(desktop.printer.jobs.size()); });
  }

  QTemporaryDir folder;
  testkit::TestServices desktop{{{"CFBundleIdentifier", "org.velmora.texts"}}};
  Application controller{desktop};
  ActivationHandler requests{desktop.printer, controller};
};

TEST(DesktopRequestInTheLog, NamesNoFile) {
  using Kind = ActivationRequest::Kind;
  const QStringList files{"/records/12-345.growth", "/records/12-346.growth"};
  EXPECT_EQ(summaryForLog({Kind::Open, files, {}, {}}), "open files (2)");
  EXPECT_EQ(summaryForLog({Kind::Print, files, {}, {}}), "print files (2)");
  EXPECT_EQ(summaryForLog({Kind::Action, {}, "new", {}}), "an action");
  EXPECT_EQ(summaryForLog({Kind::Activate, {}, {}, {}}), "come to the front");
}

// What an application that ends has left undone.

TEST(ALeftRequest, BecomesTheCommandLineThatAsksForIt) {
  using Kind = ActivationRequest::Kind;
  using desktop::argumentsFor;
  EXPECT_EQ(argumentsFor({Kind::Activate, {}, {}, "token"}), QStringList());
  EXPECT_EQ(argumentsFor({Kind::Open, {"/a", "/--b"}, {}, {}}), (QStringList{"--", "/a", "/--b"}));
  EXPECT_EQ(argumentsFor({Kind::Print, {"/a", "/b"}, {}, {}}), (QStringList{"--print", "--", "/a", "/b"}));
  EXPECT_EQ(argumentsFor({Kind::Action, {}, "new", {}}), QStringList{"--action=new"});
}

TEST(LeftRequests, StartTheProgramOnceToComeToTheFrontUnlessAWindowComesAnyway) {
  using Kind = ActivationRequest::Kind;
  using desktop::startsFor;
  using List = QList<ActivationRequest>;
  const ActivationRequest activate;
  const ActivationRequest open{Kind::Open, {"/a"}, {}, {}};
  const ActivationRequest print{Kind::Print, {"/a"}, {}, {}};
  const ActivationRequest action{Kind::Action, {}, "new", {}};
  EXPECT_EQ(startsFor({}), List());
  EXPECT_EQ(startsFor({activate}), List{activate});
  EXPECT_EQ(startsFor({activate, activate}), List{activate});
  EXPECT_EQ(startsFor({activate, open, activate}), List{open});
  EXPECT_EQ(startsFor({action, activate}), List{action});
  EXPECT_EQ(startsFor({print, activate}), (List{print, activate})) << "printing shows no window";
  EXPECT_EQ(startsFor({open, open, action}), (List{open, open, action}));
}

TEST_F(Requests, StartWithABlankDocumentWhenNothingIsNamed) {
  requests.start({});
  EXPECT_EQ(controller.said, (QStringList{"awake, 0 open", "launched, 1 open"}));
  EXPECT_EQ(openFiles(), QStringList{QString()});
}

TEST_F(Requests, StartWithTheFilesNamedAndNoBlankDocument) {
  requests.start({Kind::Open, {file("a"), file("b")}, {}, {}});
  EXPECT_EQ(openFiles(), (QStringList{folder.filePath("a"), folder.filePath("b")}));
  EXPECT_EQ(controller.said.last(), "launched, 2 open");
  EXPECT_EQ(controller.recents, openFiles());
}

TEST_F(Requests, StartWithABlankDocumentWhenNoFileOpens) {
  expectOpenError("a", "It is damaged.");
  requests.start({Kind::Open, {file("a", "bad")}, {}, {}});
  EXPECT_EQ(openFiles(), QStringList{QString()});
  EXPECT_TRUE(controller.recents.isEmpty());
}

TEST_F(Requests, StartWithAnActionOnceTheApplicationIsThere) {
  requests.start({Kind::Action, {}, "known", {}});
  EXPECT_EQ(controller.said, (QStringList{"awake, 0 open", "launched, 1 open", "action known"}));
}

TEST_F(Requests, OpenFilesInPlaceOfTheBlankDocument) {
  requests.start({});
  EXPECT_TRUE(requests.carryOut({Kind::Open, {file("a"), file("b")}, {}, {}}));
  EXPECT_EQ(openFiles(), (QStringList{folder.filePath("a"), folder.filePath("b")}));
}

TEST_F(Requests, KeepTheBlankDocumentWhenNothingOpens) {
  requests.start({});
  expectOpenError("a", "It is damaged.");
  requests.carryOut({Kind::Open, {file("a", "bad")}, {}, {}});
  EXPECT_EQ(openFiles(), QStringList{QString()});
}

TEST_F(Requests, GiveAnActivatedApplicationADocument) {
  requests.carryOut({});
  EXPECT_EQ(openFiles(), QStringList{QString()});
  requests.carryOut({});
  EXPECT_EQ(openFiles().size(), 1) << "the one that is there comes to the front";
}

TEST_F(Requests, MakeANewDocument) {
  requests.start({});
  requests.carryOut({Kind::Action, {}, "new", {}});
  EXPECT_EQ(controller.documents().size(), 2);
}

TEST_F(Requests, LogAnActionThatThereIsNot) {
  const LogRecorder log;
  requests.carryOut({Kind::Action, {}, "dance", {}});
  ASSERT_EQ(log.lines().size(), 1);
  EXPECT_TRUE(log.lines().first().contains("'dance'"));
}

TEST_F(Requests, PrintEachFileWithTheLeaveToComeToTheFrontForThisOnce) {
  requests.carryOut({Kind::Print, {"/a", "/b"}, {}, "token-7"});
  EXPECT_EQ(controller.said, (QStringList{"prints /a", "prints /b"}));
  EXPECT_EQ(controller.tokens, (QStringList{"token-7", "token-7"}));
  EXPECT_FALSE(qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
}

TEST_F(Requests, PrintTheNextFileWhenOneGoesWrong) {
  const LogRecorder log;
  controller.jams = true;
  requests.carryOut({Kind::Print, {"/a", "/b"}, {}, {}});
  EXPECT_EQ(controller.said.size(), 2);
  EXPECT_EQ(log.lines().size(), 2);
}

TEST_F(Requests, WaitWhileTheApplicationIsEnding) {
  requests.start({});
  controller.terminate();
  EXPECT_FALSE(requests.carryOut({Kind::Open, {file("a")}, {}, {}}));
  EXPECT_EQ(openFiles(), QStringList{QString()});
  EXPECT_EQ(requests.carryOut({}), false);
}

// A program that only prints.

TEST_F(Requests, PrintAloneWithoutAnythingElseOfAStart) {
  EXPECT_EQ(printAlone({file("a"), file("b")}), 0);
  EXPECT_EQ(controller.said,
            (QStringList{"prints " + folder.filePath("a"), "prints " + folder.filePath("b")}));
  EXPECT_TRUE(controller.recents.isEmpty());
  EXPECT_EQ(controller.made, 2) << "no file is opened twice";
}

TEST_F(Requests, PrintNothingAloneWithoutAPrinterAndSaySo) {
  desktop.printer.available = false;
  testing::internal::CaptureStderr();
  EXPECT_EQ(printAlone({file("a")}), 1);
  EXPECT_NE(testing::internal::GetCapturedStderr().find("There is no printer."), std::string::npos);
  EXPECT_TRUE(controller.said.isEmpty());
}

TEST_F(Requests, SayWhichFileWasNotPrintedAloneAndPrintTheOthers) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(printAlone({file("a", "bad"), folder.filePath("none"), file("b")}), 1);
  const std::string told = testing::internal::GetCapturedStderr();
  EXPECT_NE(told.find("The file 'a' was not printed. It is damaged."), std::string::npos) << told;
  EXPECT_NE(told.find("The file 'none' was not printed."), std::string::npos) << told;
  EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 2) << told;
  EXPECT_EQ(desktop.printer.jobs.size(), 1);
  EXPECT_EQ(controller.said.last(), "prints " + folder.filePath("b"));
}

TEST_F(Requests, SayThatAFileWasNotPrintedAloneWhenThePrinterFails) {
  controller.prints = false;
  testing::internal::CaptureStderr();
  EXPECT_EQ(printAlone({file("a")}), 1);
  EXPECT_NE(testing::internal::GetCapturedStderr().find("'a' was not printed"), std::string::npos);
}

// Alerts with nobody before them.

TEST(UnattendedAlerts, AreShownWhileSomebodyIsThere) {
  testkit::VirtualRunLoop runLoop;
  testkit::ScriptedAlerts shown(runLoop);
  desktop::UnattendedAlerts alerts(shown);
  shown.expect({"Save?", "Save", "Don't Save", "Cancel", ""}, platform::AlertDefaultReturn);
  EXPECT_EQ(alerts.runModal({"Save?", "Save", "Don't Save", "Cancel", ""}), platform::AlertDefaultReturn);
}

TEST(UnattendedAlerts, AreWrittenInOneLineAndAnsweredByWhatChangesLeast) {
  testkit::VirtualRunLoop runLoop;
  testkit::ScriptedAlerts shown(runLoop);
  desktop::UnattendedAlerts alerts(shown);
  alerts.setUnattended(true);
  testing::internal::CaptureStderr();
  EXPECT_EQ(alerts.runModal({"Save\n?", "Save", "Don't Save", "Cancel", "All\nlost."}),
            platform::AlertOtherReturn);
  EXPECT_EQ(alerts.runModal({"Open?", "Open", "Cancel", "", ""}), platform::AlertAlternateReturn);
  EXPECT_EQ(alerts.runModal({"Note", "OK", "", "", ""}), platform::AlertDefaultReturn);
  QObject owner;
  int sheet = 99;
  alerts.beginSheetModalForWindow({"Delete?", "Delete", "Cancel", "", ""}, nullptr, &owner,
                                  [&sheet](int answer) { sheet = answer; });
  EXPECT_EQ(sheet, platform::AlertAlternateReturn);
  const std::string told = testing::internal::GetCapturedStderr();
  EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 4) << told;
  EXPECT_NE(told.find("Save ? All lost."), std::string::npos) << told;
}

}  // namespace
