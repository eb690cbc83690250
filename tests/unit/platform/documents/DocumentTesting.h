// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <memory>

#include "platform/controls/Alert.h"
#include "platform/controls/Panels.h"
#include "platform/documents/Document.h"
#include "platform/documents/DocumentController.h"
#include "platform/documents/WindowController.h"
#include "testing/files/Files.h"
#include "testing/main/Shown.h"
#include "testing/standins/LogRecorder.h"
#include "testing/standins/TestServices.h"

namespace testing_support {

/// A document that is nothing but its text. A file that begins with "!" is refused with what follows.
class TextDocument : public velmora::platform::Document {
 public:
  using Document::Document;
  ~TextDocument() override {
    if (whenDestroyed) whenDestroyed();
  }

  velmora::base::Result<> readFromData(const QByteArray& data, const QString&) override {
    if (data.startsWith('!')) return velmora::base::Failure{QString::fromUtf8(data.mid(1))};
    if (data.startsWith('?')) throw std::runtime_error(data.mid(1).toStdString());
    text = QString::fromUtf8(data);
    return {};
  }
  velmora::base::Result<QByteArray> dataOfType(const QString& typeName) override {
    typeWritten = typeName;
    if (text.startsWith('!')) return velmora::base::Failure{text.mid(1)};
    if (text.startsWith('?')) throw std::runtime_error(text.mid(1).toStdString());
    return text.toUtf8();
  }
  QString windowNibName() const override { return nibName; }
  bool prepareSavePanel(velmora::platform::SavePanel& panel) override { return !prepare || prepare(panel); }
  QString fileTypeFromLastRunSavePanel() const override { return "text"; }
  void canCloseDocument(ShouldClose shouldClose) override {
    ++closeQuestions;
    if (beforeCloseQuestion) beforeCloseQuestion();
    Document::canCloseDocument(std::move(shouldClose));
  }

  void edit(const QString& newText) {
    text = newText;
    updateChangeCount(velmora::platform::ChangeType::Done);
  }

  QString text;
  QString typeWritten;
  QString nibName = "TextDocument";
  int closeQuestions = 0;
  std::function<bool(velmora::platform::SavePanel&)> prepare;
  std::function<void()> beforeCloseQuestion;
  std::function<void()> whenDestroyed;
};

/// Stand-ins for the desktop, a controller of text documents, and a folder for their files.
class TextDocuments : public testing::Test {
 protected:
  TextDocuments() {
    write("TextDocument.ui",
          "<?xml version=\"1.0\" encoding=\"UTF-8\"?><ui version=\"4.0\"><class>W</class>"
          "<widget class=\"QMainWindow\" name=\"W\"><property "
          "name=\"windowTitle\"><string>?</string></property>"
          "<widget class=\"QWidget\" name=\"contents\"><widget class=\"QLineEdit\" "
          "name=\"textField\"/></widget>"
          "</widget></ui>");
    desktop.interfaceFiles.addSearchPath(folder.path());
    controller.setDocumentFactory([this] { return std::make_unique<TextDocument>(desktop.services); });
  }

  QString path(const QString& name) const { return folder.path() + '/' + name; }
  QUrl url(const QString& name) const { return QUrl::fromLocalFile(path(name)); }
  void write(const QString& name, const QByteArray& contents) const {
    velmora::testkit::writeFile(path(name), contents);
  }
  QByteArray contents(const QString& name) const { return velmora::testkit::readFile(path(name)); }
  TextDocument* untitled() { return static_cast<TextDocument*>(controller.openUntitledDocument(true)); }
  TextDocument* open(const QString& name) {
    return static_cast<TextDocument*>(
        controller.openDocumentWithContentsOfURL(url(name), true).valueOr(nullptr));
  }
  /// The question that closing a document with changes asks.
  static velmora::platform::Alert saveQuestion(const QString& name) {
    return {"Do you want to save the changes to '" + name + "'?", "Save", "Don't Save", "Cancel",
            "Your changes will be lost if you don't save them."};
  }

  QTemporaryDir folder;
  velmora::testkit::TestServices desktop{{{"CFBundleIdentifier", "org.velmora.tests"}}};
  velmora::platform::DocumentController controller{desktop.services};
};

}  // namespace testing_support
