// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/application/RecordApplication.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "link/protocol/LinkProtocol.h"
#include "platform/text/DateFormatter.h"
#include "testing/application/SealedFile.h"
#include "testing/files/Files.h"
#include "velmora/resources/SettingsKeys.h"

namespace velmora::testkit {

bool RecordingDelegate::fileIsInCachedDatabaseFiles(const QString& name) const {
  const_cast<RecordingDelegate*>(this)->asked.append(name);
  return controller->fileIsInCachedDatabaseFiles(name);
}

void RecordingDelegate::addToCachedDatabaseFiles(const QString& fileName) {
  added.append(fileName);
  controller->addToCachedDatabaseFiles(fileName);
  if (whenAdded) whenAdded();
}

QVariantMap recorderInformation(const QString& bundleIdentifier) {
  return {{QStringLiteral("CFBundleIdentifier"), bundleIdentifier},
          {QStringLiteral("CFBundleName"), QStringLiteral("Recorder")},
          {QStringLiteral("CFBundleShortVersionString"), QStringLiteral("2.1")},
          {QStringLiteral("CFBundleVersion"), QStringLiteral("345")},
          {QStringLiteral("NSHumanReadableCopyright"), QStringLiteral("Copyright 2024 the makers")}};
}

void writeRecordFile(const QString& path, const QString& identifier, const QStringList& exams,
                     const QString& birthDate) {
  const QJsonObject content{{QStringLiteral("identifier"), identifier},
                            {QStringLiteral("birthDate"), birthDate},
                            {QStringLiteral("exams"), QJsonArray::fromStringList(exams)}};
  const QJsonObject file{{QStringLiteral("format"), RecorderIdentifier},
                         {QStringLiteral("version"), 1},
                         {QStringLiteral("application"), QStringLiteral("Recorder 2.1")},
                         {QStringLiteral("content"), content}};
  writeFile(path, sealed(QJsonDocument(file).toJson()));
}

QVariantMap study(const QString& identifier) {
  return {{velmora::link::Identifier, identifier},
          {velmora::link::Name, QStringLiteral("Doe^Jane")},
          {velmora::link::DateOfBirth, platform::noonOf(QDate(2021, 6, 30))},
          {velmora::link::DateOfStudy, platform::noonOf(QDate(2024, 4, 29))},
          {velmora::link::OsiriXStudyID, QStringLiteral("1.2.840.99")}};
}

platform::Alert closedWithChanges(RecordApplication& application, const QString& name) {
  const QString copy = application.home.path(".local/share/org.velmora.recorder/Rescued/") + name + ' ' +
                       application.desktop.runLoop.now().toUTC().toString("yyyyMMdd-HHmmss-zzz") + ".rec";
  return {"'" + name + "' was closed with unsaved changes", "OK", "", "",
          "A copy with the changes was kept as '" + copy + "'."};
}

}  // namespace velmora::testkit
