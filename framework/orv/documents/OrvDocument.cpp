// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The data file's form, and printing. Writing the file stands in OrvDocumentSaving.cpp.
#include "orv/documents/OrvDocument.h"

#include <QJsonDocument>
#include <QMainWindow>

#include "orv/updates/OrvChecksum.h"
#include "platform/controls/Alert.h"
#include "platform/bundles/Bundle.h"
#include "platform/text/Localization.h"
#include "platform/printing/Printing.h"
#include "platform/Services.h"
#include "platform/documents/WindowController.h"

using namespace velmora;

using velmora::base::Failure;
using velmora::base::Result;
using velmora::platform::formatted;
using velmora::platform::localizedString;

namespace {

const QString FormatKey = QStringLiteral("format");
const QString VersionKey = QStringLiteral("version");
const QString ApplicationKey = QStringLiteral("application");
const QString ChecksumKey = QStringLiteral("checksum");
const QString ContentKey = QStringLiteral("content");

}  // namespace

OrvDocument::OrvDocument(platform::Services& services)
    : Document(services),
      privateFolder_(services.fileManager, services.mainBundle.bundleIdentifier()),
      keptCopies_(services.fileManager, services.runLoop, services.mainBundle.bundleIdentifier()),
      writtenFolders_(services.fileManager, services.mainBundle.bundleIdentifier()) {}

Result<> OrvDocument::readFromData(const QByteArray& data, const QString&) {
  if (data.isEmpty()) return Failure{localizedString("OrvDocument", "The file is empty.")};
  QJsonParseError parseError;
  const QJsonDocument json = QJsonDocument::fromJson(data, &parseError);
  if (json.isNull()) {
    return Failure{formatted(localizedString("OrvDocument", "The file is damaged (%@ at byte %ld)."),
                             {parseError.errorString(), QString::number(parseError.offset)})};
  }
  const QJsonObject file = json.object();
  const QString format = file.value(FormatKey).toString();
  if (format != services().mainBundle.bundleIdentifier()) {
    return Failure{localizedString("OrvDocument", "The file is not a record of this application.")};
  }
  const int version = file.value(VersionKey).toInt(0);
  if (version < 1 || !file.value(ContentKey).isObject()) {
    return Failure{localizedString("OrvDocument", "The file is damaged (its header is incomplete).")};
  }
  if (version > contentVersion()) {
    return Failure{formatted(
        localizedString("OrvDocument", "The file was written by a newer version of the application (%@)."),
        {file.value(ApplicationKey).toString()})};
  }
  if (!orv::checksumHolds(data)) {
    return Failure{localizedString("OrvDocument", "The file is damaged (its checksum does not match).")};
  }
  return contentFromJson(file.value(ContentKey).toObject(), version);
}

Result<> OrvDocument::dataOfType(const QString&, QByteArray& data) {
  const platform::Bundle& bundle = services().mainBundle;
  const QJsonObject file{
      {FormatKey, bundle.bundleIdentifier()},
      {VersionKey, contentVersion()},
      {ApplicationKey, QStringLiteral("%1 %2").arg(
                           bundle.stringForInfoDictionaryKey(QStringLiteral("CFBundleName")),
                           bundle.stringForInfoDictionaryKey(QStringLiteral("CFBundleShortVersionString")))},
      {ChecksumKey, QString::fromLatin1(orv::emptyChecksum())},
      {ContentKey, contentToJson()},
  };
  data = orv::withChecksum(QJsonDocument(file).toJson(QJsonDocument::Indented));
  return {};
}

QWidget* OrvDocument::printableView() const {
  QWidget* whole = window();
  const auto* mainWindow = dynamic_cast<QMainWindow*>(whole);
  return mainWindow && mainWindow->centralWidget() ? mainWindow->centralWidget() : whole;
}

void OrvDocument::printDocument(const QVariantMap& settings, bool showPrintPanel, DidPrint didPrint) {
  QString error;
  const bool printed = services().printer.printView(printableView(), services().sharedPrintInfo, settings,
                                                    showPrintPanel, &error);
  if (!printed && !error.isEmpty()) {
    services().alerts.runModal({localizedString("OrvDocument", "The document could not be printed."),
                                localizedString("OrvVersion", "OK"), QString(), QString(), error});
  }
  if (didPrint) didPrint(this, printed);
}
