// SPDX-License-Identifier: LGPL-3.0-or-later
#include "tests/model/Player.h"

#include <QAction>
#include <QApplication>
#include <QPushButton>
#include <QTest>
#include <cstdio>
#include <cstdlib>

#include "link/protocol/LinkProtocol.h"
#include "platform/text/DateFormatter.h"
#include "testing/files/Files.h"
#include "tests/model/Comparison.h"
#include "velmora/about/AboutController.h"
#include "velmora/document/VelmoraGraphView.h"
#include "velmora/resources/Notifications.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;

namespace model {

namespace settings = velmora::settings;

namespace {

/// The platform without a screen remarks on every window that it has none.
void withoutRemarks(QtMsgType type, const QMessageLogContext&, const QString& message) {
  if (message.startsWith(QLatin1String("This plugin does not support"))) return;
  std::fprintf(stderr, "%s\n", qPrintable(message));
  if (type == QtFatalMsg) std::abort();
}

}  // namespace

Player::Quiet::Quiet() : before_(qInstallMessageHandler(withoutRemarks)) {}
Player::Quiet::~Quiet() { qInstallMessageHandler(before_); }

Player::Player() {
  QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
  for (const char* folder : {"Records", "Charts", "Elsewhere"}) home_.makeFolder(QString::fromLatin1(folder));
  for (const auto& [file, record] : firstFiles()) testkit::writeFile(home_.path(file), encoded(record));
  desktop_.defaults.registerDefaults({{settings::DataFileExtension, Extension}});
  desktop_.defaults.setObject(QStringLiteral("~/Records"), settings::SaveDirectory);
  desktop_.defaults.setObject(QStringLiteral("~/Charts"), settings::ExportDirectory);
  desktop_.defaults.setObject(true, settings::AutoSave);
  desktop_.defaults.setInteger(31, settings::VersionCheckInterval);
  desktop_.runLoop.afterTurn = [this] { settleWindows(); };
  desktop_.runLoop.stopped = [this] { return desktop_.application.stops > 0; };
  desktop_.alerts.happens = [this](const Event& event) { happens(event); };
  start();
}

Player::~Player() {
  controller_.reset();
  QLocale::setDefault(localeBefore_);
}

void Player::start() {
  controller_.reset();
  desktop_.application.stops = 0;
  controller_ = std::make_unique<VelmoraAppController>(desktop_.services);
  controller_->setDocumentFactory([this] {
    return std::make_unique<TracedDocument>(desktop_.services, *controller_, [this] { return ++lastToken_; });
  });
  controller_->setKeepsBlankDocument(keepsBlank_);
  controller_->awakeFromNib();
  controller_->applicationDidFinishLaunching();
  controller_->aboutController()->close();  // the user clicks the splash away
  controller_->openUntitledDocument(true);
  settleWindows();
}

QList<TracedDocument*> Player::frontToBack() const {
  QList<TracedDocument*> all;
  for (platform::Document* document : controller_->orderedDocuments()) {
    all.append(dynamic_cast<TracedDocument*>(document));
  }
  return all;
}

bool Player::sheetIsOn(const TracedDocument& document) const {
  return desktop_.alerts.sheetIsOn(document.windowForSheet());
}

QStringList Player::failuresLogged() const {
  QStringList failures;
  for (const QString& line : log_.lines()) {
    for (const char* place : {"timed call: ", "text field: ", "menu: ", "button: ", "window close: ",
                              "chart click: ", "window activation: ", "mouse: "}) {
      if (line.startsWith(QLatin1String(place))) failures.append(line);
    }
  }
  return failures;
}

void Player::settleWindows() {
  QCoreApplication::processEvents();
  // The window in front has the keyboard.
  platform::Document* front = controller_->currentDocument();
  if (!front || !front->windowForSheet() || QApplication::activeWindow() == front->windowForSheet()) return;
  front->windowForSheet()->activateWindow();
  QCoreApplication::processEvents();
}

void Player::happens(const Event& event) {
  if (event.kind == Kind::Pass) return desktop_.runLoop.pass(event.text.toDouble());
  QVariantMap request;
  if (!event.text.isEmpty()) {
    request.insert(velmora::link::Identifier, event.text);
    request.insert(velmora::link::Name, QStringLiteral("Name^") + event.text);
    request.insert(velmora::link::OsiriXStudyID, QStringLiteral("1.2.%1").arg(event.number));
  }
  if (event.number & 1) request.insert(velmora::link::DateOfBirth, platform::noonOf(QDate(2021, 6, 30)));
  if (event.number & 2) {
    request.insert(velmora::link::DateOfStudy, platform::noonOf(QDate(2024, 6, 1).addDays(event.number / 4)));
  }
  desktop_.distributedCenter.deliver(velmora::link::notificationName(BundleIdentifier),
                                     velmora::link::RequestObject, request);
}

void Player::play(const Step& step, const Model& model) {
  restarted_ = false;
  log_.clear();
  desktop_.alerts.expect(model.questions, home_.path());
  userStep(step, model);
  settleWindows();
  if (desktop_.application.stops > 0) {
    restarted_ = true;
    start();
  }
}

void Player::userStep(const Step& step, const Model& model) {
  switch (step.kind) {
    case Kind::Link:
    case Kind::Pass:
      return happens(step);
    case Kind::AutoSave:
      return desktop_.defaults.setObject(step.number == 1, settings::AutoSave);
    case Kind::ToOsirix:
      return desktop_.defaults.setObject(step.number == 1, settings::ExportToOsiriX);
    case Kind::FailingWrites:
      return setFull(QStringLiteral("Records"), step.number == 1);
    case Kind::FailingCopies:
      return setFull(QStringLiteral(".local/share/") + BundleIdentifier, step.number == 1);
    case Kind::ForeignRace:
      desktop_.fileManager.meanwhile = [this](const QString& path) { somebodySaves(path); };
      return;
    case Kind::KeepsBlank:
      keepsBlank_ = step.number % 2 == 1;
      return controller_->setKeepsBlankDocument(keepsBlank_);
    case Kind::ForeignChange:
    case Kind::ForeignRemove:
    case Kind::ForeignDamage:
      return foreign(step, home_.path(model.fileMeant));
    case Kind::SessionEnd:
      controller_->sessionMayEnd(false);
      ++desktop_.application.stops;
      return;
    case Kind::Quit:
      controller_->terminate();
      break;
    case Kind::CloseAll:
      controller_->closeAllDocuments({});
      break;
    case Kind::NewDocument:
      controller_->newDocument();
      break;
    case Kind::OpenFile:
      controller_->openDocument();
      break;
    case Kind::OpenKept:
      if (model.keptMeant) controller_->openDocuments({QUrl::fromLocalFile(pathOfKept(*model.keptMeant))});
      break;
    case Kind::BatchOpen:
      desktop_.notificationCenter.postNotificationName(velmora::notifications::BatchOpen,
                                                       home_.path(model.fileMeant));
      break;
    case Kind::Front: {
      const auto documents = frontToBack();
      if (documents.isEmpty()) return;
      documents.at(step.number % documents.size())->showWindows();
      settleWindows();
      break;
    }
    case Kind::AnswerSheet: {
      const TracedDocument* front = frontToBack().value(0);
      if (!front || !sheetIsOn(*front)) return;
      desktop_.alerts.answerSheet(front->windowForSheet(), step.number % 2 == 1
                                                               ? platform::AlertDefaultReturn
                                                               : platform::AlertAlternateReturn);
      break;
    }
    default: {
      TracedDocument* front = frontToBack().value(0);
      if (!front || sheetIsOn(*front)) return;
      inFrontWindow(step, *front);
      break;
    }
  }
  desktop_.runLoop.pass(0);
}

void Player::inFrontWindow(const Step& step, TracedDocument& document) {
  const bool pressReturn = step.number == 1;
  switch (step.kind) {
    case Kind::TypeIdentifier:
      return type(document.identifierField(), step.text, pressReturn);
    case Kind::TypeBirth:
      return type(document.birthField(), step.text, pressReturn);
    case Kind::TypeDate:
      return type(document.dateField(), step.text, pressReturn);
    case Kind::TypeMeasure:
      return type(document.measureField(), step.text, pressReturn);
    case Kind::TypeOn:
      return typeOn(document, step.text, pressReturn);
    case Kind::NewExam:
      return trigger(document, "doNewRecord");
    case Kind::DeleteExam:
      return trigger(document, "doDeleteRecord");
    case Kind::Next:
    case Kind::Previous: {
      const char* name = step.kind == Kind::Next ? "nextStudyButton" : "previousStudyButton";
      return QTest::mouseClick(document.window()->findChild<QPushButton*>(QString::fromLatin1(name)),
                               Qt::LeftButton);
    }
    case Kind::Click: {
      VelmoraGraphView* chart = document.chart();
      const int exam = step.number % static_cast<int>(document.record().exams.size());
      return QTest::mouseClick(chart, Qt::LeftButton, {},
                               chart->pointForCoordinate(QPointF(exam, 1)).toPoint());
    }
    case Kind::Save:
      return trigger(document, "doSave");
    case Kind::SaveAs:
      return trigger(document, "doSaveAs");
    case Kind::Close:
      document.window()->close();
      return;
    case Kind::Export:
      return trigger(document, "doExport");
    default:
      return;
  }
}

void Player::trigger(TracedDocument& document, const char* action) {
  document.window()->findChild<QAction*>(QString::fromLatin1(action))->trigger();
}

void Player::type(QLineEdit* field, const QString& text, bool pressReturn) {
  QTest::mouseClick(field, Qt::LeftButton);
  if (!field->hasFocus()) return;  // the edit was refused
  QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
  if (text.isEmpty()) QTest::keyClick(field, Qt::Key_Delete);
  for (const QChar key : text) {
    QTest::keyClick(field, key.toLatin1());
    if (!field->hasFocus()) return;
  }
  if (pressReturn) QTest::keyClick(field, Qt::Key_Return);
}

void Player::typeOn(const TracedDocument& document, const QString& text, bool pressReturn) {
  auto* field = dynamic_cast<QLineEdit*>(QApplication::focusWidget());
  if (!field || field->window() != document.window()) return;
  for (const QChar key : text) {
    QTest::keyClick(field, key.toLatin1());
    if (!field->hasFocus()) return;  // the edit was refused
  }
  if (pressReturn) QTest::keyClick(field, Qt::Key_Return);
}

void Player::setFull(const QString& folder, bool full) {
  QSet<QString>& folders = desktop_.fileManager.fullFolders;
  if (full) {
    folders.insert(home_.path(folder));
  } else {
    folders.remove(home_.path(folder));
  }
}

void Player::somebodySaves(const QString& path) {
  const Record record = QFile::exists(path) ? changedByAnother(decoded(testkit::readFile(path)), ++lastToken_)
                                            : madeByAnother(++lastToken_);
  testkit::writeFile(path, encoded(record));
}

QString Player::pathOfKept(const Record& record) const {
  const QString folder = home_.path(QStringLiteral(".local/share/") + BundleIdentifier);
  for (const auto& [file, copy] : filesBelow(folder)) {
    if (copy == record) return folder + QLatin1Char('/') + file;
  }
  return folder + QStringLiteral("/nowhere");
}

void Player::foreign(const Step& step, const QString& path) {
  if (!QFile::exists(path)) return;
  if (step.kind == Kind::ForeignRemove) {
    QFile::remove(path);
  } else if (step.kind == Kind::ForeignDamage) {
    testkit::writeFile(path, encoded({{}, {}, {}, true}));
  } else {
    const Record record = changedByAnother(decoded(testkit::readFile(path)), ++lastToken_);
    testkit::writeFile(path, encoded(record));
  }
}

}  // namespace model
