// SPDX-License-Identifier: LGPL-3.0-or-later
#include <QWidget>

#include "orv/documents/OrvDocument.h"

#include <QJsonDocument>

#include "testing/application/SealedFile.h"
#include "tests/unit/orv/documents/NoteDocument.h"

using namespace velmora;
using namespace velmora::testkit;

using testing_support::NoteDocument;
using velmora::base::Failure;
using velmora::base::Result;

namespace {

class DataFiles : public testing_support::NoteDocuments {
 protected:
  /// Why a file of that content is refused; a null string when it is not.
  QString refusal(const QByteArray& data) {
    NoteDocument document(desktop.services);
    const Result<> read = document.readFromData(data, "note");
    EXPECT_EQ(document.isBlank(), !read.ok());
    return read.error();
  }
};

TEST_F(DataFiles, HaveAHeaderAndTheContentAsText) {
  NoteDocument document(desktop.services);
  document.note = QStringLiteral("Größe “gut” 😀\n");
  document.number = 104.3;
  document.newestVersion = 3;
  const QByteArray data = document.dataOfType("note").value();
  const QJsonObject file = QJsonDocument::fromJson(data).object();
  EXPECT_EQ(file.keys(), (QStringList{"application", "checksum", "content", "format", "version"}));
  EXPECT_EQ(file.value("format").toString(), "org.velmora.tests");
  EXPECT_EQ(file.value("version").toInt(), 3);
  EXPECT_EQ(file.value("application").toString(), "Notes 2.1");
  EXPECT_EQ(file.value("content").toObject().value("note").toString(), document.note);
  EXPECT_TRUE(data.contains(QStringLiteral("Größe “gut” 😀").toUtf8())) << "UTF-8, not escapes";
}

TEST_F(DataFiles, GiveBackWhatWasWritten) {
  for (const QString& note : {QString(""), QStringLiteral("Größe “gut” 😀\n\t\"\\/"), QString(100000, 'x'),
                              QString::fromLatin1("null\0inside", 11)}) {
    NoteDocument written(desktop.services);
    written.note = note;
    written.number = 0.1 + 0.2;
    QFile::remove(path("record.note"));
    written.saveToURL(url("record.note"), "note", platform::SaveOperation::SaveAs, {});
    NoteDocument read(desktop.services);
    ASSERT_TRUE(read.readFromURL(url("record.note")).ok());
    EXPECT_TRUE(read.note == note);
    EXPECT_EQ(read.number, written.number) << "to the last digit";
    EXPECT_EQ(read.versionRead, 1);
  }
}

TEST_F(DataFiles, OfAnEarlierFormAreReadAsThatForm) {
  NoteDocument document(desktop.services);
  document.newestVersion = 3;
  const QByteArray old = R"({"format": "org.velmora.tests", "version": 2, "content": {"note": "old"}})";
  ASSERT_TRUE(document.readFromData(sealed(old), "note").ok());
  EXPECT_EQ(document.versionRead, 2);
  EXPECT_EQ(document.note, "old");
}

TEST_F(DataFiles, AreRefusedWithTheReason) {
  struct Case {
    const char* data;
    const char* reason;
  };
  const Case cases[] = {
      {"", "The file is empty."},
      {R"({"format": "org.velmora.other", "version": 1, "content": {"note": ""}})",
       "The file is not a record of this application."},
      {"{}", "The file is not a record of this application."},
      {"[]", "The file is not a record of this application."},
      {R"({"version": 1, "content": {"note": ""}})", "The file is not a record of this application."},
      {R"({"format": "org.velmora.tests", "content": {"note": ""}})",
       "The file is damaged (its header is incomplete)."},
      {R"({"format": "org.velmora.tests", "version": "1", "content": {"note": ""}})",
       "The file is damaged (its header is incomplete)."},
      {R"({"format": "org.velmora.tests", "version": 0, "content": {"note": ""}})",
       "The file is damaged (its header is incomplete)."},
      {R"({"format": "org.velmora.tests", "version": -1, "content": {"note": ""}})",
       "The file is damaged (its header is incomplete)."},
      {R"({"format": "org.velmora.tests", "version": 1})", "The file is damaged (its header is incomplete)."},
      {R"({"format": "org.velmora.tests", "version": 1, "content": []})",
       "The file is damaged (its header is incomplete)."},
      {R"({"format": "org.velmora.tests", "version": 2, "application": "Notes 3.0", "content": {"note": ""}})",
       "The file was written by a newer version of the application (Notes 3.0)."},
      {R"({"format": "org.velmora.tests", "version": 1, "content": {}})", "It has no note."},
      {R"({"format": "org.velmora.tests", "version": 1, "content": {"note": "good"}})", nullptr},
  };
  for (const Case& each : cases) {
    EXPECT_EQ(refusal(sealed(each.data)), QString::fromUtf8(each.reason)) << each.data;
  }
}

TEST_F(DataFiles, AreRefusedAsDamagedWhereTheyAreCutShort) {
  NoteDocument document(desktop.services);
  document.note = "a note";
  const QByteArray data = document.dataOfType("note").value();
  ASSERT_EQ(refusal(data), QString());
  EXPECT_EQ(refusal(data.trimmed()), "The file is damaged (its checksum does not match).");
  for (qsizetype length = 1; length < data.trimmed().size(); ++length) {
    const QString reason = refusal(data.left(length));
    ASSERT_TRUE(reason.startsWith("The file is damaged (") && reason.contains(" at byte ") &&
                reason.endsWith(")."))
        << length << ": " << qPrintable(reason);
  }
}

TEST_F(DataFiles, AreRefusedWhenAnyBitHasFlipped) {
  NoteDocument document(desktop.services);
  document.note = "a note";
  const QByteArray data = document.dataOfType("note").value();
  for (qsizetype byte = 0; byte < data.size(); ++byte) {
    for (int bit = 0; bit < 8; ++bit) {
      QByteArray flipped = data;
      flipped[byte] = static_cast<char>(flipped[byte] ^ (1 << bit));
      ASSERT_FALSE(refusal(flipped).isEmpty()) << "byte " << byte << ", bit " << bit;
    }
  }
}

TEST_F(DataFiles, AreRefusedWhateverTheyHoldInstead) {
  for (const QByteArray& data :
       {QByteArray("a letter"), QByteArray("\xff\xfe{\0}\0", 6), QByteArray(1000, '\0'),
        QByteArray(200000, '['), QByteArray("{\"format\": \"\xff\"}"), QByteArray("%PDF-1.4\n%%EOF")}) {
    EXPECT_FALSE(refusal(data).isEmpty());
  }
}

class BlankDocuments : public testing_support::NoteDocuments {};

TEST_F(BlankDocuments, AreBlankUntilTheyAreTouchedOrRead) {
  NoteDocument document(desktop.services);
  EXPECT_TRUE(document.isBlank());
  document.touch();
  EXPECT_FALSE(document.isBlank());

  NoteDocument read(desktop.services);
  EXPECT_FALSE(read.readFromData("damaged", "note").ok());
  EXPECT_TRUE(read.isBlank()) << "nothing came of it";
  const QByteArray data = document.dataOfType("note").value();
  EXPECT_TRUE(read.readFromData(data, "note").ok());
  EXPECT_FALSE(read.isBlank());
}

TEST_F(BlankDocuments, ShowTheNameThatTheyWouldGiveTheirFile) {
  NoteDocument document(desktop.services);
  EXPECT_EQ(document.OrvAutoNameDocument::preferredFileName(true), "");
  EXPECT_FALSE(document.OrvAutoNameDocument::preferredFileName(false).isNull());
  EXPECT_EQ(document.displayName(), "Untitled");
  document.name = "12-345";
  EXPECT_EQ(document.displayName(), "12-345");
  document.setFileURL(url("another.note"));
  EXPECT_EQ(document.displayName(), "another") << "a file's name is the file's";
}

class Printing : public testing_support::NoteDocuments {
 protected:
  Printing() {
    writeFile(path("NoteDocument.ui"),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?><ui version=\"4.0\"><class>W</class>"
              "<widget class=\"QMainWindow\" name=\"W\"><widget class=\"QWidget\" "
              "name=\"contents\"/></widget></ui>");
    desktop.interfaceFiles.addSearchPath(folder.path());
    document.makeWindowControllers();
    desktop.printer.whilePrinting = [this](QWidget* view) { printed = view; };
  }
  QList<bool> print(const QVariantMap& settings = {}, bool showPanel = false) {
    QList<bool> answers;
    document.printDocument(settings, showPanel,
                           [&answers](platform::Document*, bool didPrint) { answers.append(didPrint); });
    return answers;
  }

  NoteDocument document{desktop.services};
  QWidget* printed = nullptr;
};

TEST_F(Printing, PrintsTheContentsOfTheWindow) {
  EXPECT_EQ(print(), QList<bool>{true});
  ASSERT_NE(printed, nullptr);
  EXPECT_EQ(printed->objectName(), "contents");
  EXPECT_EQ(printed->window(), document.window());
}

TEST_F(Printing, PrintsTheViewThatTheDocumentChooses) {
  QWidget chart;
  chart.setWindowTitle("12-345");
  document.view = &chart;
  print();
  EXPECT_EQ(printed, &chart);
  EXPECT_EQ(desktop.printer.jobs.first().title, "12-345");
}

TEST_F(Printing, PassesSettingsLayoutAndPanelOn) {
  desktop.sharedPrintInfo.orientation = platform::PrintInfo::Orientation::Landscape;
  print({{"OutputFile", "/tmp/page.pdf"}}, true);
  ASSERT_EQ(desktop.printer.jobs.size(), 1);
  const auto& job = desktop.printer.jobs.first();
  EXPECT_EQ(job.settings, (QVariantMap{{"OutputFile", "/tmp/page.pdf"}}));
  EXPECT_EQ(job.info.orientation, platform::PrintInfo::Orientation::Landscape);
  EXPECT_TRUE(job.showPrintPanel);
}

/// A printer that fails, or that the user cancels.
class FailingPrinter : public platform::Printer {
 public:
  QString reason;
  base::Result<bool> printView(QWidget*, const platform::PrintInfo&, const QVariantMap&, bool) override {
    if (!reason.isEmpty()) return base::Failure{reason};
    return false;
  }
};

TEST_F(Printing, TellsTheUserWhyItFailedUnlessItWasTheUser) {
  FailingPrinter printer;
  platform::Services failing = testkit::with(desktop.services, printer);
  NoteDocument onPaper(failing);
  onPaper.makeWindowControllers();
  QList<bool> answers;
  const auto keep = [&answers](platform::Document*, bool didPrint) { answers.append(didPrint); };
  printer.reason = "There is no printer.";
  desktop.alerts.expect({"The document could not be printed.", "OK", "", "", "There is no printer."},
                        platform::AlertDefaultReturn);
  onPaper.printDocument({}, false, keep);
  EXPECT_TRUE(desktop.alerts.allCame());
  printer.reason.clear();
  onPaper.printDocument({}, true, keep);
  onPaper.printDocument({}, true);
  EXPECT_EQ(answers, (QList<bool>{false, false}));
  EXPECT_EQ(desktop.alerts.shown().size(), 1);
}

}  // namespace
