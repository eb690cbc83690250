// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/alerts/QtPanels.h"

#include <QAbstractButton>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>

#include "desktop/runloop/QtRunLoop.h"
#include "testing/main/Shown.h"
#include "testing/window/WhenOpen.h"

using namespace velmora;
using namespace velmora::testkit;

using velmora::desktop::QtPanels;
using velmora::platform::OpenPanel;
using velmora::platform::SavePanel;

namespace {

class RealPanels : public testing::Test {
 protected:
  QString path(const QString& name) const {
    return QFileInfo(folder.path()).canonicalFilePath() + '/' + name;
  }
  void make(const QString& name) const {
    QFile file(path(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  }
  static void type(QFileDialog& dialog, const QString& name) {
    auto* field = dialog.findChild<QLineEdit*>("fileNameEdit");
    ASSERT_NE(field, nullptr);
    field->setText(name);
  }
  SavePanel savePanel() const {
    SavePanel panel;
    panel.title = "Save";
    panel.prompt = "Save";
    panel.directoryURL = QUrl::fromLocalFile(folder.path());
    panel.nameFieldStringValue = "12-345";
    panel.requiredFileType = "growth";
    return panel;
  }

  QTemporaryDir folder;
  desktop::QtRunLoop runLoop;
  QtPanels panels{runLoop};
};

TEST_F(RealPanels, ToSaveProposeANameAndAddTheExtension) {
  SavePanel panel = savePanel();
  whenOpen<QFileDialog>([this](QFileDialog& dialog) {
    EXPECT_EQ(dialog.windowTitle(), "Save");
    EXPECT_EQ(dialog.findChild<QLineEdit*>("fileNameEdit")->text(), "12-345");
    EXPECT_TRUE(runLoop.inModalSession());
    dialog.findChild<QLineEdit*>("fileNameEdit")->setFocus();
    QTest::keyClick(dialog.findChild<QLineEdit*>("fileNameEdit"), Qt::Key_Return);
  });
  ASSERT_EQ(panels.runModal(panel), platform::PanelOKButton);
  EXPECT_EQ(panel.url, QUrl::fromLocalFile(path("12-345.growth")));
  EXPECT_FALSE(QFileInfo::exists(path("12-345.growth"))) << "a panel writes nothing";
  EXPECT_FALSE(runLoop.inModalSession());
}

TEST_F(RealPanels, ToSaveLeaveATypedExtensionAndAppendToAnother) {
  struct Case {
    const char* typed;
    const char* name;
  };
  for (const Case& each :
       {Case{"a.growth", "a.growth"}, Case{"a.text", "a.text.growth"}, Case{"v1.2", "v1.2.growth"}}) {
    SavePanel panel = savePanel();
    whenOpen<QFileDialog>([&each](QFileDialog& dialog) {
      type(dialog, each.typed);
      QTest::keyClick(dialog.findChild<QLineEdit*>("fileNameEdit"), Qt::Key_Return);
    });
    ASSERT_EQ(panels.runModal(panel), platform::PanelOKButton);
    EXPECT_EQ(panel.url, QUrl::fromLocalFile(path(each.name)));
  }
}

TEST_F(RealPanels, ToSaveAskBeforeAFileIsReplaced) {
  make("12-345.growth");
  SavePanel panel = savePanel();
  whenOpen<QFileDialog>([](QFileDialog& dialog) {
    // The name as it will be, not as typed, is what exists.
    whenOpen<QMessageBox>([](QMessageBox& box) {
      EXPECT_EQ(box.text(), "'12-345.growth' already exists. Do you want to replace it?");
      EXPECT_EQ(box.textFormat(), Qt::PlainText);
      // Refused, the panel opens again: another name is given.
      whenOpen<QFileDialog>([](QFileDialog& again) {
        type(again, "other");
        QTest::keyClick(again.findChild<QLineEdit*>("fileNameEdit"), Qt::Key_Return);
      });
      QTest::keyClick(&box, Qt::Key_Escape);
    });
    QTest::keyClick(dialog.findChild<QLineEdit*>("fileNameEdit"), Qt::Key_Return);
  });
  ASSERT_EQ(panels.runModal(panel), platform::PanelOKButton);
  EXPECT_EQ(panel.url, QUrl::fromLocalFile(path("other.growth")));
}

TEST_F(RealPanels, ToSaveTakeAnExistingNameWhenTheUserWantsIt) {
  make("12-345.growth");
  SavePanel panel = savePanel();
  whenOpen<QFileDialog>([](QFileDialog& dialog) {
    whenOpen<QMessageBox>([](QMessageBox& box) {
      for (QAbstractButton* button : box.buttons()) {
        if (button->text() == "Replace") return button->click();
      }
      ADD_FAILURE() << "no button to replace";
      box.done(0);
    });
    QTest::keyClick(dialog.findChild<QLineEdit*>("fileNameEdit"), Qt::Key_Return);
  });
  ASSERT_EQ(panels.runModal(panel), platform::PanelOKButton);
  EXPECT_EQ(panel.url, QUrl::fromLocalFile(path("12-345.growth")));
}

TEST_F(RealPanels, ChooseNothingWhenTheyAreCancelled) {
  SavePanel save = savePanel();
  whenOpen<QFileDialog>([](QFileDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
  EXPECT_EQ(panels.runModal(save), platform::PanelCancelButton);
  EXPECT_TRUE(save.url.isEmpty());
  OpenPanel open;
  whenOpen<QFileDialog>([](QFileDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
  EXPECT_EQ(panels.runModal(open), platform::PanelCancelButton);
  EXPECT_TRUE(open.urls.isEmpty());
}

TEST_F(RealPanels, ToOpenGiveTheChosenFiles) {
  make("a.growth");
  make("b.growth");
  OpenPanel panel;
  panel.title = "Open";
  panel.directoryURL = QUrl::fromLocalFile(folder.path());
  panel.allowedFileTypes = QStringList{"growth"};
  panel.allowsMultipleSelection = true;
  whenOpen<QFileDialog>([](QFileDialog& dialog) {
    EXPECT_EQ(dialog.fileMode(), QFileDialog::ExistingFiles);
    EXPECT_EQ(dialog.nameFilters(), (QStringList{"Records (*.growth)", "All files (*)"}));
    type(dialog, "\"a.growth\" \"b.growth\"");
    QTest::keyClick(dialog.findChild<QLineEdit*>("fileNameEdit"), Qt::Key_Return);
  });
  ASSERT_EQ(panels.runModal(panel), platform::PanelOKButton);
  EXPECT_EQ(panel.urls,
            (QList<QUrl>{QUrl::fromLocalFile(path("a.growth")), QUrl::fromLocalFile(path("b.growth"))}));
}

TEST_F(RealPanels, ToOpenGiveTheChosenFolder) {
  QDir().mkpath(path("records"));
  OpenPanel panel;
  panel.directoryURL = QUrl::fromLocalFile(folder.path());
  panel.canChooseFiles = false;
  panel.canChooseDirectories = true;
  panel.canCreateDirectories = true;
  whenOpen<QFileDialog>([](QFileDialog& dialog) {
    EXPECT_EQ(dialog.fileMode(), QFileDialog::Directory);
    EXPECT_FALSE(dialog.testOption(QFileDialog::ReadOnly));
    type(dialog, "records");
    QTest::keyClick(dialog.findChild<QLineEdit*>("fileNameEdit"), Qt::Key_Return);
  });
  ASSERT_EQ(panels.runModal(panel), platform::PanelOKButton);
  EXPECT_EQ(panel.urls, QList<QUrl>{QUrl::fromLocalFile(path("records"))});
  EXPECT_EQ(panel.directoryURL, QUrl::fromLocalFile(path("records"))) << "not the folder above it";
}

}  // namespace
