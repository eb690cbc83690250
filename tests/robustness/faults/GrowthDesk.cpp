// SPDX-License-Identifier: LGPL-3.0-or-later
#include "tests/robustness/faults/GrowthDesk.h"
#include "apps/growth/resources/GrowthResources.h"

#include <QLineEdit>
#include <QRegularExpression>
#include <stdexcept>

#include "platform/controls/Alert.h"
#include "testing/files/Files.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;

namespace faults {

int AnsweringAlerts::runModal(const platform::Alert& alert) {
  const platform::RunLoop::ModalSession session(runLoop_);
  shown.append(alert);
  if (answer) return answer(alert);
  return alert.defaultButton == QStringLiteral("Save Elsewhere...") ? platform::AlertAlternateReturn
                                                                    : platform::AlertDefaultReturn;
}

void AnsweringAlerts::beginSheetModalForWindow(const platform::Alert& alert, QWidget*, const QObject*,
                                               DidEnd didEnd) {
  didEnd(runModal(alert));
}

GrowthDesk::GrowthDesk() {
  desktop.defaults.setObject(saveFolder(), velmora::settings::SaveDirectory);
  desktop.defaults.setObject(exportFolder(), velmora::settings::ExportDirectory);
  desktop.defaults.setObject(true, velmora::settings::AutoSave);
  desktop.defaults.setInteger(31, velmora::settings::VersionCheckInterval);
}

QString GrowthDesk::rescueFolder() const {
  return home.path(QStringLiteral(".local/share/%1/Rescued").arg(growth::GrowthIdentifier));
}

QString GrowthDesk::earlierVersionsFolder() const {
  return home.path(QStringLiteral(".local/share/%1/Earlier Versions").arg(growth::GrowthIdentifier));
}

QStringList GrowthDesk::rescued() const {
  return desktop.fileManager.contentsOfDirectoryAtPath(rescueFolder());
}

QLineEdit& GrowthDesk::field(GrowthDocument& document, const char* name) const {
  auto* found = document.window()->findChild<QLineEdit*>(QString::fromLatin1(name));
  if (!found) throw std::runtime_error(std::string("the window has no ") + name);
  return *found;
}

GrowthDocument& GrowthDesk::newRecord(const QString& identifier) {
  auto* document = dynamic_cast<GrowthDocument*>(controller.openUntitledDocument(false));
  if (!document) throw std::runtime_error("no new document");
  document->window();
  field(*document, "birthDateField").setText(QStringLiteral("01/01/2022"));
  field(*document, "examDateField").setText(QStringLiteral("01/01/2024"));
  document->setIdentifier(identifier);
  enterWeight(*document, QStringLiteral("10"));
  return *document;
}

GrowthDocument& GrowthDesk::savedRecord(const QString& identifier) {
  newRecord(identifier).saveDocument();
  desktop.runLoop.settle();
  return opened(pathOfRecord(identifier));
}

GrowthDocument& GrowthDesk::opened(const QString& path) {
  const auto opened = controller.openDocumentWithContentsOfURL(QUrl::fromLocalFile(path), false);
  auto* document = dynamic_cast<GrowthDocument*>(opened.valueOr(nullptr));
  if (!document) throw std::runtime_error("does not open: " + opened.error().toStdString());
  document->window();
  return *document;
}

QString GrowthDesk::whyNotOpened(const QString& path) {
  const auto before = controller.documents().size();
  const auto opened = controller.openDocumentWithContentsOfURL(QUrl::fromLocalFile(path), false);
  if (opened.ok()) {
    (*opened)->close();
    desktop.runLoop.settle();
    return {};
  }
  if (controller.documents().size() != before) throw std::runtime_error("something was opened all the same");
  if (opened.error().isEmpty()) throw std::runtime_error("nothing was opened, and nobody was told why");
  return opened.error();
}

void GrowthDesk::enterWeight(GrowthDocument& document, const QString& weight) {
  field(document, "weightField").setText(weight);
  document.directUpdateDisplayAndSetDirty(nullptr);
}

void GrowthDesk::closeAll() {
  for (platform::Document* document : controller.documents()) document->close();
  desktop.runLoop.settle();
}

void GrowthDesk::start() {
  controller.applicationDidFinishLaunching();
  desktop.runLoop.advance(2);
}

void GrowthDesk::letWritesGrowOld() const {
  constexpr qint64 Seconds = 2LL * 60 * base::FileManager::AbandonedAfterMinutes;
  for (const QString& name : files()) {
    if (name.endsWith(QStringLiteral(".unfinished")))
      testkit::setModified(home.path(name), QDateTime::currentDateTime().addSecs(-Seconds));
  }
}

QStringList GrowthDesk::files() const { return testkit::filesBelow(home.path()); }

QStringList GrowthDesk::strayFiles() const {
  static const QRegularExpression expected(
      QStringLiteral("\\A(Records/[^/]+\\.growth|\\.local/share/[^/]+/Earlier "
                     "Versions/[^/]+/[0-9]{8}-[0-9]{6}-[0-9]{3}( another)?\\.growth|"
                     "\\.local/share/[^/]+/Rescued/[^/]+ [0-9]{8}-[0-9]{6}-[0-9]{3}\\.growth|"
                     "\\.local/share/[^/]+/Written Folders\\.json)\\z"));
  static const QRegularExpression unfinished(QStringLiteral("unfinished|\\.growth\\.[A-Za-z]{6}\\z"));
  QStringList strays = files();
  strays.removeIf([](const QString& file) {
    return expected.match(file).hasMatch() && !unfinished.match(file).hasMatch();
  });
  return strays;
}

growth::GrowthRecord recordIn(GrowthDesk& desk, const QString& path) {
  GrowthDocument reader(desk.services, desk.controller, desk.references);
  const base::Result<> read = reader.readFromURL(QUrl::fromLocalFile(path));
  if (!read.ok()) throw std::runtime_error(path.toStdString() + ": " + read.error().toStdString());
  return reader.record();
}

QString firstWeight(const growth::GrowthRecord& record) {
  return growth::textOf(record.examinations.first().of(growth::Measure::Weight));
}

bool tortures() { return qEnvironmentVariableIntValue("VELMORA_TORTURE") > 0; }

}  // namespace faults
