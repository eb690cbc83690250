// SPDX-License-Identifier: LGPL-3.0-or-later
//
// An exception in any callback costs one log line, and the program goes on.
#include <gtest/gtest.h>

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <stdexcept>

#include "desktop/notifications/QtDistributedNotificationCenter.h"
#include "orv/chart/OrvGraphView.h"
#include "testing/bus/PrivateBus.h"
#include "testing/desktop/DesktopApplication.h"
#include "testing/waiting/Waiting.h"
#include "testing/window/DialogAnswers.h"
#include "velmora/document/VelmoraGraphView.h"

using namespace velmora;
using namespace velmora::testkit;

namespace {

const QString Boom = QStringLiteral("boom");

/// A record whose hooks throw while it is armed.
class ThrowingDocument : public RecordingDocument {
 public:
  using RecordingDocument::RecordingDocument;
  bool armed = false;

  void synchronizeToData() override {
    check();
    RecordingDocument::synchronizeToData();
  }
  void setCurrentRecordFromClick(const QPointF& point) override {
    check();
    RecordingDocument::setCurrentRecordFromClick(point);
  }
  void canCloseDocument(ShouldClose shouldClose) override {
    check();
    RecordingDocument::canCloseDocument(std::move(shouldClose));
  }
  bool controlTextShouldBeginEditing(QLineEdit* control) override {
    check();
    return RecordingDocument::controlTextShouldBeginEditing(control);
  }
  void controlTextDidEndEditing(QLineEdit* control) override {
    check();
    RecordingDocument::controlTextDidEndEditing(control);
  }

 private:
  void check() const {
    if (armed) throw std::runtime_error("boom");
  }
};

}  // namespace

class Exceptions : public ::testing::Test {
 protected:
  Exceptions() {
    application_.controller.setDocumentFactory([this]() -> std::unique_ptr<platform::Document> {
      if (factoryThrows_) throw std::runtime_error("boom");
      return std::make_unique<ThrowingDocument>(application_.desktop.services, application_.delegate);
    });
    record_ = static_cast<ThrowingDocument*>(&application_.newRecord());
    record_->exams = {QString(), QString()};  // so that there is a next one
    application_.log.clear();
  }
  /// One line says so, and the run loop still turns.
  void expectOneLineAndLife() {
    waitUntil([&] { return !application_.log.lines().filter(Boom).isEmpty(); });
    bool turned = false;
    application_.desktop.runLoop.performAfterDelay(&application_.controller, 0, [&] { turned = true; });
    waitUntil([&] { return turned; });
    EXPECT_EQ(application_.log.lines().filter(Boom).size(), 1)
        << qPrintable(application_.log.lines().join(QLatin1Char('\n')));
  }

  DesktopApplication application_;
  DialogAnswers answers_;
  ThrowingDocument* record_ = nullptr;
  bool factoryThrows_ = false;
};

TEST_F(Exceptions, InATimedCall) {
  application_.desktop.runLoop.performAfterDelay(record_, 0.001, [] { throw std::runtime_error("boom"); });
  expectOneLineAndLife();
}

TEST_F(Exceptions, InAHandOffThatIsNoStandardException) {
  application_.desktop.runLoop.performOnMainThread(record_, [] { throw 5; });
  waitUntil([&] { return !application_.log.lines().filter(QStringLiteral("unknown failure")).isEmpty(); });
}

TEST_F(Exceptions, InAButton) {
  record_->armed = true;
  user::click(user::button(*record_, "nextStudyButton"));
  expectOneLineAndLife();
}

TEST_F(Exceptions, InAMenu) {
  factoryThrows_ = true;
  record_->window()->findChild<QAction*>(QStringLiteral("doNewDocument"))->trigger();
  expectOneLineAndLife();
}

TEST_F(Exceptions, InAMenuCommandOnTheDocument) {
  record_->armed = true;
  record_->window()->findChild<QAction*>(QStringLiteral("doNewRecord"))->trigger();
  expectOneLineAndLife();
}

TEST_F(Exceptions, InATextFieldsDelegateBeforeTheEdit) {
  record_->armed = true;
  user::click(user::field(*record_, "referenceIDField"));
  expectOneLineAndLife();
  // The field can still be edited afterwards.
  record_->armed = false;
  user::enter(user::field(*record_, "referenceIDField"), QStringLiteral("7"));
  EXPECT_EQ(record_->identifier(), QStringLiteral("7"));
}

TEST_F(Exceptions, InATextFieldsDelegateAfterTheEdit) {
  user::type(user::field(*record_, "referenceIDField"), QStringLiteral("7"));
  record_->armed = true;
  user::pressReturn(user::field(*record_, "referenceIDField"));
  expectOneLineAndLife();
}

TEST_F(Exceptions, InAClickOnTheChart) {
  VelmoraGraphView chart;
  chart.setOwningDocument(record_);
  chart.resize(200, 200);
  chart.show();
  record_->armed = true;
  QTest::mouseClick(&chart, Qt::LeftButton, {}, QPoint(100, 100));
  expectOneLineAndLife();
}

TEST_F(Exceptions, InPainting) {
  OrvGraphView chart;
  chart.setHighlightVisibility([]() -> bool { throw std::runtime_error("boom"); });
  chart.resize(300, 200);
  chart.setAttribute(Qt::WA_DontShowOnScreen);
  chart.show();
  application_.log.clear();
  chart.repaint();
  expectOneLineAndLife();
}

TEST_F(Exceptions, AtTheEndOfASheet) {
  answers_.expect(QStringLiteral("Question?"), {}, QStringLiteral("Yes"));
  application_.desktop.alerts.beginSheetModalForWindow(
      {QStringLiteral("Question?"), QStringLiteral("Yes"), {}, {}, {}}, record_->window(), record_,
      [](int) { throw std::runtime_error("boom"); });
  expectOneLineAndLife();
}

TEST_F(Exceptions, UnderAnAlertLeaveItOpenAndAnswerable) {
  answers_.expect(
      QStringLiteral("Question?"),
      [&] {
        record_->armed = true;
        // Qt's own events go on under an alert, and so do the callbacks that they bring.
        QMetaObject::invokeMethod(user::button(*record_, "nextStudyButton"), &QAbstractButton::click);
        record_->armed = false;
      },
      QStringLiteral("Yes"));
  EXPECT_EQ(application_.desktop.alerts.runModal(
                {QStringLiteral("Question?"), QStringLiteral("Yes"), QStringLiteral("No"), {}, {}}),
            platform::AlertDefaultReturn);
  EXPECT_FALSE(application_.desktop.runLoop.inModalSession());
  expectOneLineAndLife();
}

TEST_F(Exceptions, WhenAWindowClosesLeaveItClosable) {
  record_->armed = true;
  record_->window()->close();
  expectOneLineAndLife();
  EXPECT_FALSE(record_->isClosed());
  record_->armed = false;
  const QPointer<ThrowingDocument> record(record_);
  record_->window()->close();
  waitUntil([&] { return !record; });
}

TEST_F(Exceptions, WhenTheProgramQuitsLeaveItAbleToQuit) {
  record_->armed = true;
  application_.controller.terminate();
  expectOneLineAndLife();
  EXPECT_FALSE(application_.controller.isTerminating());
  record_->armed = false;
  application_.controller.terminate();
  waitUntil([&] { return application_.desktop.application.stops == 1; });
}

TEST_F(Exceptions, InALinkRequest) {
  record_->armed = true;
  application_.chooseStudy(QStringLiteral("1"));
  expectOneLineAndLife();
  record_->armed = false;
  application_.chooseStudy(QStringLiteral("2"));
  waitUntil([&] { return application_.identifierInFront() == QStringLiteral("2"); });
}

TEST_F(Exceptions, InTheHandlerOfANotificationFromTheBus) {
  PrivateBus bus;
  desktop::QtDistributedNotificationCenter centre(bus.address());
  QObject observer;
  std::atomic<int> heard{0};
  centre.addObserver(&observer, QStringLiteral("name"), QStringLiteral("object"),
                     [&](const platform::Notification&) {
                       if (++heard == 1) throw std::runtime_error("boom");
                     });
  centre.postNotificationName(QStringLiteral("name"), QStringLiteral("object"), {});
  centre.postNotificationName(QStringLiteral("name"), QStringLiteral("object"), {});
  waitUntil([&] { return heard == 2; });
  expectOneLineAndLife();
}
