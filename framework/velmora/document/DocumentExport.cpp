// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The chart as a picture: to a file, or to OsiriX.
#include <QCoreApplication>
#include <QHoverEvent>
#include <QLineEdit>
#include <QScopeGuard>
#include <QTabBar>
#include <QTabWidget>
#include <tuple>

#include "platform/controls/Alert.h"
#include "platform/bundles/Bundle.h"
#include "platform/text/DateFormatter.h"
#include "base/files/FileManager.h"
#include "platform/printing/GraphicsContext.h"
#include "orv/chart/JpegEncoder.h"
#include "platform/text/Localization.h"
#include "platform/notifications/NotificationCenter.h"
#include "platform/controls/Panels.h"
#include "platform/Services.h"
#include "platform/settings/UserDefaults.h"
#include "velmora/document/ChartFileName.h"
#include "velmora/document/VelmoraDocument.h"
#include "link/protocol/LinkPayload.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;

using velmora::platform::localizedString;

namespace {

constexpr int BestQuality = 100;

}  // namespace

void VelmoraDocument::displayTabView() {
  if (!tabView_) return;
  tabView_->repaint();
  // A chart covers what is behind it, so it is not painted with it.
  for (QWidget* inside : tabView_->findChildren<QWidget*>()) {
    if (inside->isVisible()) inside->repaint();
  }
}

QByteArray VelmoraDocument::getJPEGData() {
  if (!currentDataPointsVisible_) return {};
  showGraphHilite_ = false;
  const auto showAgain = qScopeGuard([this] {
    showGraphHilite_ = true;
    displayTabView();
  });
  displayTabView();
  QImage picture;
  if (tabView_) {
    // Where mouse and keyboard happen to be is no part of the chart.
    QTabBar* tabs = tabView_->tabBar();
    QHoverEvent leave(QEvent::HoverLeave, QPointF(-1, -1), QPointF(-1, -1), QPointF(-1, -1));
    QCoreApplication::sendEvent(tabs, &leave);
    const bool focused = tabs->hasFocus();
    if (focused) tabs->clearFocus();
    const auto focusAgain = qScopeGuard([tabs, focused] {
      if (focused) tabs->setFocus(Qt::OtherFocusReason);
    });
    const platform::GraphicsContext::OffScreen offScreen(services().graphics);
    picture = tabView_->grab().toImage();
  }
  return platform::encodeJpeg(picture, BestQuality);
}

void VelmoraDocument::doExport(bool interactive) {
  const platform::UserDefaults& defaults = services().defaults;
  if (defaults.boolForKey(velmora::settings::ExportToOsiriX)) {
    doExportToOsirix();
    return;
  }
  const QByteArray picture = getJPEGData();
  if (picture.isEmpty()) return;

  if (interactive && !savesAutomatically()) {
    platform::SavePanel panel;
    panel.prompt = localizedString("VelmoraAppController", "Export");
    panel.title = localizedString("VelmoraAppController", "Export");
    if (services().panels.runModal(panel) == platform::PanelOKButton) {
      std::ignore = writeFile(panel.url.toLocalFile(), picture);
    }
    return;
  }

  const QStringList tabs = velmora::tabLabels(tabView_);
  const QString fileName =
      velmora::chartFileName(preferredFileName(true), tabs, tabView_ ? tabView_->currentIndex() : -1);
  QString folder = base::expandingTildeInPath(defaults.stringForKey(velmora::settings::ExportDirectory));
  if (!services().fileManager.fileExistsAtPath(folder)) {
    folder = base::expandingTildeInPath(QStringLiteral("~/Desktop/"));
  }
  const QString path = folder + QLatin1Char('/') + fileName;
  if (services().fileManager.fileExistsAtPath(path)) {
    const int answer = services().alerts.runModal(
        {localizedString("VelmoraDocument", "A file with that name already exists"),
         localizedString("VelmoraDocument", "Overwrite"), localizedString("VelmoraDocument", "Skip"),
         QString(),
         platform::formatted(
             localizedString("VelmoraDocument", "A file named '%@' is already present in '%@/'."),
             {fileName, folder})});
    if (answer == platform::AlertAlternateReturn || answer == platform::AlertStopped) return;
  }
  std::ignore = writeFile(path, picture);
}

void VelmoraDocument::doExportToOsirix() {
  const QByteArray picture = getJPEGData();
  if (picture.isEmpty()) return;
  platform::DateFormatter formatter;
  formatter.setDateStyle(platform::DateFormatter::Style::Short);
  velmora::link::ChartExport chart;
  chart.name = patientName_;
  chart.studyID = osiriXStudyID_;
  chart.identifier = identifier();
  chart.description =
      platform::formatted(localizedString("VelmoraDocument", "%@ Chart"),
                          {services().mainBundle.stringForInfoDictionaryKey(QStringLiteral("CFBundleName"))});
  const auto dateIn = [&formatter](const QLineEdit* field) {
    return field ? formatter.dateFromString(field->text()) : QDateTime();
  };
  chart.birthDate = dateIn(birthDateField_);
  chart.examDate = dateIn(examDateField_);
  chart.jpeg = picture;
  services().notificationCenter.postNotificationName(velmora::link::BatchExportNotification,
                                                     velmora::link::replyPayload(chart));
}
