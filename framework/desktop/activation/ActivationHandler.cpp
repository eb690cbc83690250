// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/activation/ActivationHandler.h"

#include <QApplication>
#include <QFileInfo>
#include <QScopeGuard>
#include <QUrl>
#include <QWidget>

#include "base/log/Guard.h"
#include "base/log/Log.h"
#include "desktop/alerts/UnattendedAlerts.h"
#include "platform/documents/DocumentController.h"
#include "platform/printing/Printing.h"
#include "platform/text/Localization.h"

namespace velmora::desktop {

namespace {

QList<QUrl> locationsOf(const QStringList& files) {
  QList<QUrl> locations;
  for (const QString& file : files) locations.append(QUrl::fromLocalFile(file));
  return locations;
}

/// The leave to come to the front is passed on where Qt looks for it: in the environment, for the windows
/// that are shown next (xdg-activation protocol). It is good for once.
constexpr const char* TokenVariable = "XDG_ACTIVATION_TOKEN";

}  // namespace

void ActivationHandler::start(const ActivationRequest& first) {
  // Each step by itself: a file that cannot be opened must not take the rest of the start with it.
  base::guarded("start", [this] { controller_.awakeFromNib(); });
  if (first.kind == ActivationRequest::Kind::Open)
    base::guarded("open", [&] { controller_.openDocuments(locationsOf(first.files)); });
  if (controller_.documents().isEmpty())
    base::guarded("open", [this] { controller_.openUntitledDocument(true); });
  base::guarded("start", [this] { controller_.applicationDidFinishLaunching(); });
  if (first.kind == ActivationRequest::Kind::Action) carryOut(first);
}

bool ActivationHandler::carryOut(const ActivationRequest& request) {
  if (controller_.isTerminating()) return false;
  if (!request.activationToken.isEmpty()) qputenv(TokenVariable, request.activationToken.toLatin1());
  const auto used = qScopeGuard([] { qunsetenv(TokenVariable); });
  base::guarded("desktop request", [&] {
    switch (request.kind) {
      case ActivationRequest::Kind::Activate:
        bringToFront();
        break;
      case ActivationRequest::Kind::Open:
        controller_.openDocuments(locationsOf(request.files));
        break;
      case ActivationRequest::Kind::Print:
        for (const QString& file : request.files)
          base::guarded("print", [&] { controller_.applicationPrintFile(file); });
        break;
      case ActivationRequest::Kind::Action:
        if (!controller_.applicationPerformAction(request.action))
          base::logLine(QStringLiteral("The desktop asks for '%1', which is no action of this application")
                            .arg(request.action));
        break;
    }
  });
  return true;
}

void ActivationHandler::bringToFront() {
  if (platform::Document* front = controller_.currentDocument()) {
    front->showWindows();
  } else {
    controller_.openUntitledDocument(true);
  }
}

int ActivationHandler::printAlone(const QStringList& files, const std::function<int()>& printedViews) {
  if (!printer_.hasPrinter()) {
    tellOnStandardError(platform::localizedString("Document", "There is no printer."));
    return 1;
  }
  int status = 0;
  for (const QString& file : files) {
    QString error;
    const int before = printedViews();
    base::guarded("print", [&] { controller_.applicationPrintFile(file); });
    if (printedViews() > before) continue;
    status = 1;
    // Whoever prints says nothing of a file that does not open: asked here again for the reason.
    base::guarded("print", [&] {
      const auto opened = controller_.openDocumentWithContentsOfURL(QUrl::fromLocalFile(file), false);
      if (opened.ok())
        (*opened)->close();
      else
        error = opened.error();
    });
    tellOnStandardError(
        platform::formatted(platform::localizedString("Document", "The file '%@' was not printed."),
                            {QFileInfo(file).fileName()}) +
        QLatin1Char(' ') + error);
  }
  return status;
}

void raiseWhatIsAsked() {
  QWidget* dialog = QApplication::activeModalWidget();
  if (!dialog) return;
  dialog->raise();
  dialog->activateWindow();
  QApplication::alert(dialog);
}

}  // namespace velmora::desktop
