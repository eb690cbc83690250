// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The order of events: a batch export with its progress window is, to everything that waits for its time, one
// event in which the posts follow each other.
#include "link/protocol/LinkProtocol.h"
#include "testing/files/Files.h"
#include "testing/standins/LogRecorder.h"
#include "tests/unit/velmora/batch/BatchTesting.h"
#include "velmora/resources/Notifications.h"

using namespace velmora;
using namespace velmora::testkit;

namespace settings = velmora::settings;
using batch_testing::BatchExport;
using batch_testing::sorted;

namespace {

/// A record that writes down when it is opened, exported, closed and destroyed.
class TracedRecord : public RecordingDocument {
 public:
  TracedRecord(platform::Services& services, VelmoraApplicationDelegate& delegate, QStringList& trace)
      : RecordingDocument(services, delegate), trace_(trace), runLoop_(services.runLoop) {}
  ~TracedRecord() override { note("destroyed"); }

  void windowControllerDidLoadNib(platform::WindowController& controller) override {
    RecordingDocument::windowControllerDidLoadNib(controller);
    name_ = displayName();
    note("opened");
  }
  void close() override {
    note("closed");
    RecordingDocument::close();
  }

 private:
  void note(const char* what) {
    trace_.append(QStringLiteral("%1 %2 %3").arg(runLoop_.uptime(), 0, 'f', 3).arg(what, name_));
  }
  QStringList& trace_;
  const platform::RunLoop& runLoop_;
  QString name_;
};

/// An application that writes down everything that happens in it, with the time.
struct TracedApplication {
  TracedApplication() {
    platform::NotificationCenter& local = application.desktop.notificationCenter;
    for (const QString& name : {velmora::notifications::BatchOpen, velmora::notifications::BatchExport}) {
      local.addObserver(&observer, name, [this, name](const platform::Notification& notification) {
        const QString object = notification.object.typeId() == QMetaType::QString
                                   ? QFileInfo(notification.object.toString()).fileName()
                                   : notification.object.toMap().value("Identifier").toString();
        note(name + ' ' + object);
      });
    }
    application.controller.setDocumentFactory([this] {
      return std::make_unique<TracedRecord>(application.desktop.services, application.delegate, trace);
    });
  }
  void note(const QString& what) {
    trace.append(QStringLiteral("%1 %2").arg(application.desktop.runLoop.uptime(), 0, 'f', 3).arg(what));
  }
  /// What came of it all: the trace, the log, what was sent and what was written.
  QStringList whole() {
    QStringList all = trace + log.lines();
    for (const auto& reply : application.replies())
      all.append(QString::number(reply.time, 'f', 3) + ' ' + reply.userInfo.value("Identifier").toString());
    for (const QString& chart : fileNames(application.exportFolder())) all.append(chart);
    for (const platform::Document* document : application.controller.orderedDocuments())
      all.append("still open " + document->displayName());
    return all;
  }

  QObject observer;
  QStringList trace;
  LogRecorder log;
  RecordApplication application;
};

void writeRecent(RecordApplication& application, const QStringList& names) {
  for (const QString& name : names) {
    application.writeRecord(name);
    batch_testing::setModified(application.pathOfRecord(name),
                               application.desktop.runLoop.now().addSecs(-60));
  }
}

class OrderOfEvents : public testing::TestWithParam<bool> {};

}  // namespace

TEST_P(OrderOfEvents, IsThatOfThePostsAloneInOneEvent) {
  const bool toOsirix = GetParam();
  const QStringList names{"A", "B", "C", "D", "E"};
  QStringList order;
  QStringList withWindow;
  {
    TracedApplication traced;
    if (toOsirix) traced.application.turnOn(settings::ExportToOsiriX);
    writeRecent(traced.application, names);
    traced.application.newRecord().setIdentifier("in work");
    traced.application.controller.doBatchExport(nullptr);
    QObject observer;
    traced.application.desktop.notificationCenter.addObserver(
        &observer, velmora::notifications::BatchOpen, [&](const platform::Notification& request) {
          order.append(QFileInfo(request.object.toString()).completeBaseName());
        });
    // Real paints and activations take place between the files, as on a desktop.
    traced.application.desktop.runLoop.whileProcessingEvents = [] { QCoreApplication::processEvents(); };
    traced.trace.clear();
    traced.application.controller.batchExportController()->doOK(nullptr);
    EXPECT_EQ(traced.trace.filter("closed").size(), 0) << "nothing timed runs within";
    traced.application.pass(30);
    withWindow = traced.whole();
  }
  EXPECT_EQ(sorted(order), names);
  QStringList postsAlone;
  {
    TracedApplication traced;
    if (toOsirix) traced.application.turnOn(settings::ExportToOsiriX);
    writeRecent(traced.application, names);
    traced.application.newRecord().setIdentifier("in work");
    traced.trace.clear();
    for (const QString& name : order) {
      traced.application.desktop.notificationCenter.postNotificationName(
          velmora::notifications::BatchOpen, traced.application.pathOfRecord(name));
    }
    traced.application.pass(30);
    postsAlone = traced.whole();
  }
  EXPECT_EQ(withWindow, postsAlone) << qPrintable(withWindow.join('\n') + "\n---\n" + postsAlone.join('\n'));
  EXPECT_EQ(withWindow.filter("opened").size(), 5);
  EXPECT_EQ(withWindow.filter(" closed").size(), 5);
}

INSTANTIATE_TEST_SUITE_P(EachDestination, OrderOfEvents, testing::Bool(), [](const auto& toOsirix) {
  return std::string(toOsirix.param ? "ToOsirix" : "ToTheExportFolder");
});

TEST_F(BatchExport, LetsNothingTimedRunBetweenTwoFilesHoweverLongTheyTake) {
  for (const char* name : {"A", "B", "C"}) write(name, 60);
  bool timedCallRan = false;
  application.desktop.runLoop.performAfterDelay(&application.controller, 0.5, [&] { timedCallRan = true; });
  int turn = 0;
  betweenFiles([&] {
    application.pass(5);
    application.settle();
    EXPECT_FALSE(timedCallRan);
    EXPECT_EQ(application.controller.documents().size(), turn++);
    EXPECT_TRUE(application.controller.batchArray().isEmpty()) << "each is opened within its own post";
  });
  exportDays("7");
  EXPECT_EQ(turn, 3);
  EXPECT_FALSE(timedCallRan);
  EXPECT_EQ(application.controller.documents().size(), 3);
  application.settle();
  EXPECT_TRUE(timedCallRan);
}

TEST_F(BatchExport, ClosesEachRecordOneSecondAfterItsExport) {
  for (const char* name : {"A", "B", "C"}) write(name, 60);
  QList<qsizetype> open;
  betweenFiles([&] { application.pass(0.4); });
  exportDays("7");
  open.append(application.controller.documents().size());
  // Exported at 0.4, 0.8 and 1.2 seconds; it is 1.2 now.
  for (int i = 0; i < 4; ++i) {
    application.pass(0.25);
    open.append(application.controller.documents().size());
  }
  EXPECT_EQ(open, (QList<qsizetype>{3, 2, 2, 1, 0}));
}

TEST_F(BatchExport, KeepsAStudyThatTheViewerChoosesMeanwhileForAfterwards) {
  RecordingDocument& front = application.newRecord();
  for (const char* name : {"A", "B"}) write(name, 60);
  int turn = 0;
  betweenFiles([&] {
    if (++turn == 2) application.chooseStudy(study("P1"));
    EXPECT_EQ(front.identifier(), "");
  });
  exportDays("7");
  EXPECT_EQ(posted.size(), 2);
  for (platform::Document* each : application.controller.documents())
    EXPECT_NE(dynamic_cast<RecordingDocument*>(each)->identifier(), "P1");
  application.settle();
  ASSERT_NE(application.front(), nullptr);
  EXPECT_EQ(application.front()->identifier(), "P1");
}

TEST_F(BatchExport, SendsTheChartsFourSecondsApartAfterwards) {
  application.turnOn(settings::ExportToOsiriX);
  for (const char* name : {"A", "B", "C"}) write(name, 60);
  betweenFiles([&] { application.pass(2); });
  open();
  const double start = application.desktop.runLoop.uptime();
  user::click(ok());
  EXPECT_TRUE(application.replies().isEmpty());
  application.pass(30);
  // Exported at 2, 4 and 6 seconds; the first reply was due at 3 and leaves when the work is over.
  QList<double> times;
  for (const auto& reply : application.replies()) times.append(qRound((reply.time - start) * 1000) / 1000.0);
  EXPECT_EQ(times, (QList<double>{6, 10, 14}));
}
