// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <memory>

#include "orv/documents/OrvAutoNameDocument.h"
#include "platform/controls/Alert.h"
#include "testing/files/EnvironmentVariable.h"
#include "testing/files/Files.h"
#include "testing/main/Shown.h"
#include "testing/standins/LogRecorder.h"
#include "testing/standins/TestServices.h"

namespace testing_support {

/// A record of one number and one note.
class NoteDocument : public OrvAutoNameDocument {
 public:
  using OrvAutoNameDocument::OrvAutoNameDocument;

  QString note;
  double number = 0;
  int newestVersion = 1;
  int versionRead = 0;
  QString name;
  QWidget* view = nullptr;

  QString preferredFileName(bool forExport) const override {
    return name.isEmpty() ? OrvAutoNameDocument::preferredFileName(forExport) : name;
  }
  QWidget* printableView() const override { return view ? view : OrvAutoNameDocument::printableView(); }
  QString windowNibName() const override { return "NoteDocument"; }
  void edit(const QString& newNote) {
    note = newNote;
    updateChangeCount(velmora::platform::ChangeType::Done);
  }
  void touch() { docIsBlank_ = false; }
  using OrvAutoNameDocument::keepRescueCopy;

 protected:
  int contentVersion() const override { return newestVersion; }
  QJsonObject contentToJson() const override { return {{"note", note}, {"number", number}}; }
  velmora::base::Result<> contentFromJson(const QJsonObject& content, int version) override {
    if (!content.value("note").isString()) return velmora::base::Failure{"It has no note."};
    note = content.value("note").toString();
    number = content.value("number").toDouble();
    versionRead = version;
    return {};
  }
};

/// Stand-ins for the desktop, and folders of the test's own for records and for what is kept of them.
class NoteDocuments : public testing::Test {
 protected:
  QString path(const QString& name) const { return folder.path() + '/' + name; }
  QUrl url(const QString& name) const { return QUrl::fromLocalFile(path(name)); }
  /// The folder of the application's kept copies.
  QString kept() const { return userData.path() + "/org.velmora.tests"; }

  QTemporaryDir folder;
  QTemporaryDir userData;
  velmora::testkit::TestServices desktop{{{"CFBundleIdentifier", "org.velmora.tests"},
                                          {"CFBundleName", "Notes"},
                                          {"CFBundleShortVersionString", "2.1"}}};

 private:
  velmora::testkit::EnvironmentVariable dataHome_{"XDG_DATA_HOME", QFile::encodeName(userData.path())};
};

}  // namespace testing_support
