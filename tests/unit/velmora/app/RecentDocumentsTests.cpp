// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include <QAction>
#include <QMenu>

#include "testing/application/RecordApplication.h"
#include "testing/files/Files.h"
#include "velmora/app/RecentDocuments.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;
using namespace velmora::testkit;

namespace settings = velmora::settings;
using velmora::RecentDocuments;

namespace {

QUrl located(const QString& path) { return QUrl::fromLocalFile(path); }

class Recents : public testing::Test {
 protected:
  Recents() { recents.setRemembers(true); }
  QString stored() const {
    return application.desktop.defaults.stored().value(settings::RecentDocuments).toString();
  }
  /// The menu of recent documents, as it is when it opens.
  QMenu* menu(RecordingDocument& document) {
    auto* menu = document.window()->findChild<QMenu*>("openRecentMenu");
    Q_EMIT menu->aboutToShow();
    return menu;
  }
  QStringList titles(RecordingDocument& document) {
    QStringList titles;
    for (const QAction* action : menu(document)->actions())
      titles.append(action->isSeparator() ? QStringLiteral("-") : action->text());
    return titles;
  }

  RecordApplication application;
  RecentDocuments& recents = application.controller.recentDocuments();
};

}  // namespace

TEST(RecentDocumentsByDefault, RememberNothing) {
  RecordApplication application;
  application.writeRecord("AB1");
  EXPECT_TRUE(application.controller.openDocuments({located(application.pathOfRecord("AB1"))}));
  EXPECT_FALSE(application.controller.recentDocuments().remembers());
  EXPECT_TRUE(application.controller.recentDocuments().paths().isEmpty());
  EXPECT_FALSE(application.desktop.defaults.stored().contains(settings::RecentDocuments));
}

TEST_F(Recents, ListTheNewestFirstAndEachOnce) {
  for (const char* path : {"/r/1.rec", "/r/2.rec", "/r/1.rec", "/r/x/../2.rec"})
    recents.note(located(QString::fromLatin1(path)));
  EXPECT_EQ(recents.paths(), (QStringList{"/r/2.rec", "/r/1.rec"}));
}

TEST_F(Recents, ListTenAtMost) {
  for (int i = 1; i <= 12; ++i) recents.note(located(QStringLiteral("/r/%1.rec").arg(i)));
  EXPECT_EQ(recents.paths().size(), 10);
  EXPECT_EQ(recents.paths().first(), "/r/12.rec");
  EXPECT_EQ(recents.paths().last(), "/r/3.rec");
  EXPECT_FALSE(stored().contains("/r/2.rec")) << "the eleventh is not kept either";
}

TEST_F(Recents, KeepAnyNameThatAFileCanHave) {
  const QString odd = QStringLiteral("/r/a\nb\"c;d, é[1].rec");
  recents.note(located(odd));
  EXPECT_EQ(RecentDocuments(application.desktop.defaults).paths(), QStringList{odd});
}

TEST_F(Recents, AreForgottenWhenClearedAndWhenSwitchedOff) {
  recents.note(located("/r/AB1.rec"));
  EXPECT_TRUE(stored().contains("AB1"));
  recents.clear();
  EXPECT_EQ(stored(), "");
  recents.note(located("/r/AB1.rec"));
  recents.setRemembers(false);
  EXPECT_EQ(stored(), "");
  recents.note(located("/r/AB1.rec"));
  EXPECT_EQ(stored(), "");
  recents.setRemembers(true);
  EXPECT_TRUE(recents.paths().isEmpty());
}

TEST_F(Recents, ReadNothingFromASettingThatSomebodyHasSpoilt) {
  for (const char* value : {"", "{}", "[", "[1,null,{}]", "[\"relative.rec\"]", "\"/r/1.rec\""}) {
    application.desktop.defaults.setObject(QString::fromLatin1(value), settings::RecentDocuments);
    EXPECT_TRUE(recents.paths().isEmpty()) << value;
  }
  application.desktop.defaults.setObject(QStringLiteral("[1,\"/r/1.rec\"]"), settings::RecentDocuments);
  EXPECT_EQ(recents.paths(), QStringList{"/r/1.rec"});
}

TEST_F(Recents, NoteWhatTheUserOpensAndSaves) {
  application.turnOn(settings::AutoSave);
  application.writeRecord("AB1");
  application.desktop.panels.expectOpen({located(application.pathOfRecord("AB1"))});
  application.controller.openDocument();
  EXPECT_EQ(recents.paths(), QStringList{application.pathOfRecord("AB1")});
  RecordingDocument& document = application.newRecord();
  document.setIdentifier("CD2");
  document.saveDocument();
  application.settle();
  EXPECT_EQ(recents.paths(), (QStringList{application.pathOfRecord("CD2"), application.pathOfRecord("AB1")}));
}

TEST_F(Recents, DoNotNoteWhatDidNotOpen) {
  writeFile(application.pathOfRecord("bad"), "no record");
  application.desktop.alerts.expect({"The file 'bad.rec' could not be opened.", "OK", "", "",
                                     "The file is damaged (illegal value at byte 1)."},
                                    platform::AlertDefaultReturn);
  EXPECT_FALSE(application.controller.openDocuments({located(application.pathOfRecord("bad"))}));
  EXPECT_TRUE(recents.paths().isEmpty());
}

TEST_F(Recents, DoNotNoteWhatIsOnlyPrintedOrExportedInABatch) {
  application.writeRecord("AB1");
  application.writeRecord("CD2");
  application.controller.applicationPrintFile(application.pathOfRecord("AB1"));
  application.desktop.notificationCenter.postNotificationName("BatchOpen", application.pathOfRecord("CD2"));
  application.pass(10);
  EXPECT_TRUE(recents.paths().isEmpty());
}

TEST_F(Recents, AreInTheMenuByName) {
  RecordingDocument& document = application.newRecord();
  recents.note(located("/r/A&B.rec"));
  recents.note(located("/r/12.rec"));
  EXPECT_EQ(titles(document), (QStringList{"12", "A&&B", "-", "&Clear Menu", "&Remember Recent Documents"}));
}

TEST_F(Recents, OfOneNameAreToldApartByTheirFolders) {
  RecordingDocument& document = application.newRecord();
  recents.note(located("/r/12.rec"));
  recents.note(located(application.home.path("Records/12.rec")));
  EXPECT_EQ(titles(document).mid(0, 2), (QStringList{"12 (~/Records)", "12 (/r)"}));
}

TEST_F(Recents, OpenFromTheMenu) {
  application.writeRecord("AB1");
  recents.note(located(application.pathOfRecord("AB1")));
  RecordingDocument& document = application.newRecord();
  document.updateChangeCount(platform::ChangeType::Done);
  menu(document)->actions().first()->trigger();
  application.settle();
  ASSERT_NE(application.front(), nullptr);
  EXPECT_EQ(application.front()->fileURL().toLocalFile(), application.pathOfRecord("AB1"));
}

TEST_F(Recents, OpenInPlaceOfAnUntouchedDocument) {
  application.writeRecord("AB1");
  recents.note(located(application.pathOfRecord("AB1")));
  RecordingDocument& document = application.newRecord();
  menu(document)->actions().first()->trigger();
  application.settle();
  EXPECT_EQ(application.controller.documents().size(), 1);
}

TEST_F(Recents, ThatAreGoneLeaveTheMenuWithAWord) {
  recents.note(located("/r/gone.rec"));
  recents.note(located("/r/12.rec"));
  application.desktop.alerts.expect(
      {"The file 'gone.rec' is no longer there.", "OK", "", "",
       "It may have been moved or renamed. The menu of recent documents no longer names it."},
      platform::AlertDefaultReturn);
  application.controller.openRecentDocument("/r/gone.rec");
  EXPECT_EQ(recents.paths(), QStringList{"/r/12.rec"});
}

TEST_F(Recents, AreClearedAndSwitchedOffFromTheMenu) {
  RecordingDocument& document = application.newRecord();
  recents.note(located("/r/12.rec"));
  menu(document);
  document.window()->findChild<QAction*>("doClearRecentDocuments")->trigger();
  EXPECT_EQ(stored(), "");
  EXPECT_EQ(titles(document), (QStringList{"&Clear Menu", "&Remember Recent Documents"}));
  auto* remember = document.window()->findChild<QAction*>("doRememberRecentDocuments");
  EXPECT_TRUE(remember->isChecked());
  remember->trigger();
  EXPECT_FALSE(recents.remembers());
  menu(document);
  EXPECT_FALSE(document.window()->findChild<QAction*>("doRememberRecentDocuments")->isChecked());
}
