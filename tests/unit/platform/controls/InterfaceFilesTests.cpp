// SPDX-License-Identifier: LGPL-3.0-or-later
#include <QLineEdit>
#include <QTemporaryDir>

#include "platform/controls/InterfaceFiles.h"
#include "testing/files/Files.h"
#include "testing/main/Shown.h"
#include "testing/standins/LogRecorder.h"

using velmora::platform::InterfaceFiles;
using velmora::testkit::LogRecorder;

namespace {

class GaugeView : public QWidget {
 public:
  using QWidget::QWidget;
};

class InterfaceFilesInTwoFolders : public testing::Test {
 protected:
  InterfaceFilesInTwoFolders() {
    files.addSearchPath(framework.path());
    files.addSearchPath(own.path());
  }
  void write(const QTemporaryDir& folder, const QString& name, const QByteArray& title,
             const QByteArray& inside = {}) const {
    writeRaw(folder, name,
             "<?xml version=\"1.0\" encoding=\"UTF-8\"?><ui version=\"4.0\"><class>W</class>"
             "<widget class=\"QWidget\" name=\"W\"><property name=\"windowTitle\"><string>" +
                 title + "</string></property>" + inside + "</widget></ui>");
  }
  void writeRaw(const QTemporaryDir& folder, const QString& name, const QByteArray& contents) const {
    velmora::testkit::writeFile(folder.path() + '/' + name + ".ui", contents);
  }

  QTemporaryDir framework;
  QTemporaryDir own;
  InterfaceFiles files;
};

TEST_F(InterfaceFilesInTwoFolders, ComeFromTheApplicationBeforeTheFramework) {
  write(framework, "Preferences", "of the framework");
  write(own, "Preferences", "of the application");
  write(framework, "About", "about, of the framework");
  const auto preferences = files.load("Preferences");
  ASSERT_TRUE(preferences);
  EXPECT_EQ(preferences->windowTitle(), "of the application");
  const auto about = files.load("About");
  ASSERT_TRUE(about);
  EXPECT_EQ(about->windowTitle(), "about, of the framework");
}

TEST_F(InterfaceFilesInTwoFolders, MakeANewWindowEachTime) {
  write(own, "Document", "a document");
  EXPECT_NE(files.load("Document"), files.load("Document"));
}

TEST_F(InterfaceFilesInTwoFolders, GiveTheirWidgetsByName) {
  write(own, "Document", "a document", "<widget class=\"QLineEdit\" name=\"referenceIDField\"/>");
  const auto window = files.load("Document");
  ASSERT_TRUE(window);
  EXPECT_NE(window->findChild<QLineEdit*>("referenceIDField"), nullptr);
  EXPECT_EQ(window->findChild<QLineEdit*>("absentField"), nullptr);
}

TEST_F(InterfaceFilesInTwoFolders, MayNameAClassOfTheProgramsOwn) {
  files.registerWidget("GaugeView", [](QWidget* parent) { return new GaugeView(parent); });
  writeRaw(own, "Document", R"(<?xml version="1.0" encoding="UTF-8"?><ui version="4.0"><class>W</class>
    <widget class="QWidget" name="W"><widget class="GaugeView" name="gauge"/></widget>
    <customwidgets><customwidget><class>GaugeView</class><extends>QWidget</extends></customwidget></customwidgets>
    </ui>)");
  const auto window = files.load("Document");
  ASSERT_TRUE(window);
  auto* gauge = window->findChild<QWidget*>("gauge");
  ASSERT_NE(gauge, nullptr);
  EXPECT_NE(dynamic_cast<GaugeView*>(gauge), nullptr);
  EXPECT_EQ(gauge->parent(), window.get());
}

TEST_F(InterfaceFilesInTwoFolders, AreMissedInOneLogLine) {
  const LogRecorder log;
  EXPECT_EQ(files.load("Absent"), nullptr);
  EXPECT_EQ(log.lines(), QStringList{"Interface file Absent not found"});
}

TEST_F(InterfaceFilesInTwoFolders, FallBackToTheFrameworksWhenTheOwnIsDamaged) {
  write(framework, "About", "of the framework");
  writeRaw(own, "About", "<ui><widget");
  const LogRecorder log;
  const auto about = files.load("About");
  ASSERT_TRUE(about);
  EXPECT_EQ(about->windowTitle(), "of the framework");
  ASSERT_EQ(log.lines().size(), 1);
  EXPECT_TRUE(log.lines().first().startsWith("Interface file " + own.path() + "/About.ui: "))
      << qPrintable(log.lines().first());
}

}  // namespace
