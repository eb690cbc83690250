// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Escape under the real alerts and panels: who presses it has decided nothing, so nothing is written and
// nothing is lost.
#include <gtest/gtest.h>

#include <QDialog>
#include <QDir>
#include <QTest>

#include "testing/desktop/DesktopApplication.h"
#include "testing/files/Files.h"
#include "testing/waiting/Waiting.h"
#include "testing/window/DialogAnswers.h"

using namespace velmora::testkit;

namespace {

class Escape : public ::testing::Test {
 protected:
  Escape() {
    application_.keepRecord(QStringLiteral("B2"));
    record_ = &application_.openRecord(QStringLiteral("B2"));
  }
  void expectAndEscape(const QString& text) {
    answers_.expect(text, [] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape); }, {});
  }
  /// A folder stands in the place of the record, and a file in that of the folder of copies.
  void fillTheDisk() {
    QFile::remove(file());
    QDir().mkpath(file());
    writeFile(application_.home.path(QStringLiteral(".local/share/org.velmora.recorder")), "a file");
  }
  QString file() const { return application_.pathOfRecord(QStringLiteral("B2")); }
  void closeAndSave() {
    record_->directUpdateDisplayAndSetDirty(nullptr);
    fillTheDisk();
    answers_.expect(QStringLiteral("Save changes to document?"), {}, QStringLiteral("Save"));
  }
  void expectTheRecordStays() {
    waitUntil([this] { return answers_.done(); });
    letEventsPass();
    ASSERT_EQ(application_.front(), record_);
    EXPECT_FALSE(record_->isClosed());
    EXPECT_TRUE(record_->isDocumentEdited());
  }

  DesktopApplication application_;
  DialogAnswers answers_;
  RecordingDocument* record_;
};

}  // namespace

TEST_F(Escape, AtTheQuestionOfAChangedIdentifierWritesOnePatientOverNoOther) {
  const QByteArray before = readFile(file());
  application_.chooseStudy(QStringLiteral("A1"));
  waitUntil([this] { return application_.identifierInFront() == QStringLiteral("A1"); });
  expectAndEscape(QStringLiteral("The identifier of this record has changed"));
  record_->saveDocument();
  expectTheRecordStays();
  EXPECT_EQ(readFile(file()), before);
  EXPECT_FALSE(QFile::exists(application_.pathOfRecord(QStringLiteral("A1"))));
}

TEST_F(Escape, AtARecordThatCanBeSavedNowhereLeavesItOpen) {
  closeAndSave();
  expectAndEscape(QStringLiteral("The record 'B2.rec' could not be saved."));
  record_->performClose();
  expectTheRecordStays();
}

TEST_F(Escape, InThePanelForAnotherPlaceLeavesTheRecordOpen) {
  closeAndSave();
  answers_.expect(QStringLiteral("The record 'B2.rec' could not be saved."), {},
                  QStringLiteral("Save Elsewhere..."));
  expectAndEscape(QStringLiteral("Save Elsewhere"));
  record_->performClose();
  expectTheRecordStays();
}

TEST_F(Escape, AtChangesThatAreAboutToBeDroppedLeavesThemWhereTheyAre) {
  application_.keepRecord(QStringLiteral("C3"));
  record_->directUpdateDisplayAndSetDirty(nullptr);
  fillTheDisk();
  expectAndEscape(QStringLiteral("Unsaved changes to 'B2' are about to be dropped."));
  application_.chooseStudy(QStringLiteral("C3"));
  waitUntil([this] { return answers_.done() && application_.identifierInFront() == QStringLiteral("C3"); });
  letEventsPass();
  EXPECT_FALSE(record_->isClosed());
  EXPECT_TRUE(record_->isDocumentEdited());
}
