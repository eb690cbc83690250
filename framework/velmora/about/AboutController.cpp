// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/about/AboutController.h"

#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPushButton>
#include <QShortcut>

#include "base/log/AssertionFailure.h"
#include "base/log/Guard.h"
#include "platform/Services.h"
#include "platform/bundles/Bundle.h"
#include "platform/documents/Application.h"
#include "platform/runloop/RunLoop.h"
#include "platform/text/Localization.h"

using namespace velmora;

namespace {

/// How long the splash stays, in seconds.
constexpr double SplashTime = 3.0;
/// A drag that ends within this time of its mouse-down is still a click, in seconds.
constexpr double ClickTime = 0.1;

/// When the framework was built, as "Jul 15 2015".
QString buildDate() { return QString::fromLatin1(__DATE__).simplified(); }

}  // namespace

AboutController::AboutController(platform::Services& services)
    : WindowController(services, QStringLiteral("About")) {}

void AboutController::windowDidLoad() {
  nameField_ = outlet<QLabel>(QStringLiteral("nameField"));
  versionField_ = outlet<QLabel>(QStringLiteral("versionField"));
  copyrightField_ = outlet<QLabel>(QStringLiteral("copyrightField"));
  statusField_ = outlet<QLabel>(QStringLiteral("statusField"));
  if (auto* help = outlet<QPushButton>(QStringLiteral("helpButton"))) {
    QObject::connect(help, &QPushButton::clicked, this,
                     [this, help] { base::guarded("button", [&] { doHelp(help); }); });
  }

  auto* escape = new QShortcut(Qt::Key_Escape, window());
  QObject::connect(escape, &QShortcut::activated, this,
                   [this] { base::guarded("about", [this] { close(); }); });

  setBackgroundGradient();
  const platform::Bundle& bundle = services().mainBundle;
  const auto information = [&bundle](const char* key) {
    return bundle.stringForInfoDictionaryKey(QString::fromLatin1(key));
  };
  if (nameField_) {
    nameField_->setText(platform::formatted(
        QStringLiteral("%@ %@"), {information("CFBundleName"), information("CFBundleShortVersionString")}));
  }
  if (versionField_) {
    QString format = platform::localizedString("SplashController", "Build %@ (%s)");
    format.replace(QStringLiteral("%s"), QStringLiteral("%@"));
    versionField_->setText(platform::formatted(format, {information("CFBundleVersion"), buildDate()}));
  }
  if (copyrightField_) copyrightField_->setText(information("NSHumanReadableCopyright"));
  centerWindow();
  services().runLoop.performAfterDelay(this, SplashTime, [this] { mouseUp(nullptr); });
}

void AboutController::setBackgroundGradient() {
  QLinearGradient gradient(0, 0, 0, 1);
  gradient.setCoordinateMode(QGradient::ObjectMode);
  gradient.setColorAt(0.0, QColor::fromRgbF(0.8f, 0.8f, 0.8f));
  gradient.setColorAt(0.1, QColor::fromRgbF(0.7f, 0.7f, 0.7f));
  gradient.setColorAt(1.0, QColor::fromRgbF(0.5f, 0.5f, 0.5f));

  QImage image(window()->frameSize(), QImage::Format_RGB32);
  base::requireValue(!image.isNull(), "AboutController");
  {
    QPainter painter(&image);
    painter.fillRect(image.rect(), gradient);
  }
  // The grey is fixed, so the text on it is too, whatever the desktop's palette.
  QPalette palette = window()->palette();
  palette.setBrush(QPalette::Window, QBrush(image));
  palette.setColor(QPalette::WindowText, Qt::black);
  window()->setPalette(palette);
  window()->setAutoFillBackground(true);
}

void AboutController::mouseDown(const platform::MouseEvent& event) {
  mouseDownTime_ = event.timestamp;
  dragging_ = false;
  dragFrom_ = event.screenLocation - window()->pos();
}

void AboutController::mouseDragged(const platform::MouseEvent& event) {
  dragging_ = true;
  window()->move((event.screenLocation - dragFrom_).toPoint());
}

void AboutController::mouseUp(const platform::MouseEvent* event) {
  const double timestamp = event ? event->timestamp : 0;
  if (dragging_ && timestamp - mouseDownTime_ > ClickTime) return;
  close();
}

void AboutController::windowDidBecomeKey() { showStatusString(QStringLiteral("")); }

void AboutController::showStatusString(const QString& status) {
  if (statusField_) statusField_->setText(status);
}

void AboutController::doHelp(const QObject*) { services().application.showHelp(); }
