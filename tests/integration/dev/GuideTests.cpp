// SPDX-License-Identifier: LGPL-3.0-or-later
// The user guide as it stands in the tree and beside the application, and the check that reads it.
#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QImage>

#include "testing/files/Files.h"
#include "tests/integration/dev/GuideCheck.h"

namespace {

const QString Root = QStringLiteral(VELMORA_SOURCES);
const QString Guide = Root + "/docs/guide";
const QStringList ProgramFolders{Root + "/framework", Root + "/apps"};

std::string lines(const QStringList& list) { return list.join('\n').toStdString(); }

guide::Page page(const QByteArray& body) {
  return guide::readPage("<!DOCTYPE html>\n<html lang=\"en\"><head><title>T</title></head><body>" + body +
                         "</body></html>");
}

class GuideInEachLanguage : public testing::TestWithParam<const char*> {
 protected:
  QString folder_ = Guide + '/' + GetParam();
  guide::Page page_ = guide::readPage(velmora::testkit::readFile(folder_ + "/index.html"));
};

INSTANTIATE_TEST_SUITE_P(, GuideInEachLanguage, testing::Values("en", "de", "fr", "es"),
                         [](const auto& language) { return std::string(language.param); });

TEST_P(GuideInEachLanguage, IsWellFormedAndNeedsNothingFromElsewhere) {
  EXPECT_TRUE(page_.faults.isEmpty()) << lines(page_.faults);
  EXPECT_EQ(page_.language, QString(GetParam()));
  EXPECT_TRUE(page_.title.contains("Growth"));
}

TEST_P(GuideInEachLanguage, HasEveryLinkAndImageThatItNames) {
  EXPECT_TRUE(guide::missingTargets(page_, folder_).isEmpty())
      << lines(guide::missingTargets(page_, folder_));
  for (const QString& image : page_.images)
    EXPECT_FALSE(QImage(folder_ + '/' + image).isNull()) << image.toStdString();
}

TEST_P(GuideInEachLanguage, HasTheSectionsAndImagesOfTheEnglishOne) {
  const guide::Page english = guide::readPage(velmora::testkit::readFile(Guide + "/en/index.html"));
  EXPECT_EQ(page_.sections, english.sections);
  EXPECT_EQ(page_.images, english.images);
  EXPECT_EQ(page_.programTexts.size(), english.programTexts.size());
  EXPECT_GT(page_.words, english.words * 3 / 4) << "a page that leaves something out";
}

TEST_P(GuideInEachLanguage, LinksToEverySectionAndToEveryOtherLanguage) {
  for (const QString& section : page_.sections)
    EXPECT_TRUE(page_.links.contains('#' + section)) << section.toStdString();
  for (const char* other : {"en", "de", "fr", "es"})
    EXPECT_EQ(page_.links.contains(QString("../%1/index.html").arg(other)), QString(other) != GetParam());
}

TEST_P(GuideInEachLanguage, HasNoImageThatNoPageShows) {
  const QStringList files = velmora::testkit::fileNames(folder_ + "/images");
  for (const QString& file : files)
    EXPECT_TRUE(page_.images.contains("images/" + file)) << file.toStdString();
}

TEST_P(GuideInEachLanguage, QuotesTheProgramAsItIs) {
  QSet<QString> texts = guide::textsOfSources(ProgramFolders);
  const QString language = GetParam();
  if (language != "en") {
    texts.clear();
    for (const char* of : {"/translations/velmora_", "/apps/growth/translations/growth_"})
      texts += guide::textsOfTranslation(velmora::testkit::readFile(Root + of + language + ".ts"));
  }
  EXPECT_TRUE(guide::unknownTexts(page_, texts).isEmpty()) << lines(guide::unknownTexts(page_, texts));
  EXPECT_GT(page_.programTexts.size(), 50);
}

TEST(Guide, IsSmallEnoughToShip) {
  qint64 size = 0;
  for (const char* language : {"en", "de", "fr", "es"})
    for (const QFileInfo& file : QDir(Guide + '/' + language + "/images").entryInfoList(QDir::Files))
      size += file.size();
  EXPECT_LT(size, 3'000'000);
  EXPECT_GT(size, 0);
}

TEST(Guide, StandsBesideTheApplication) {
  for (const char* file : {"guide.css", "en/index.html", "de/index.html", "fr/index.html", "es/index.html"})
    EXPECT_EQ(velmora::testkit::readFile(QStringLiteral(GROWTH_HELP) + '/' + file),
              velmora::testkit::readFile(Guide + '/' + file))
        << file;
}

TEST(GuideCheck, FindsWhatIsNotWellFormed) {
  EXPECT_TRUE(page("<p>a</p>").faults.isEmpty());
  EXPECT_FALSE(page("<p>a").faults.isEmpty());
  EXPECT_FALSE(page("<p>a&nbsp;b</p>").faults.isEmpty());
  EXPECT_FALSE(guide::readPage("").faults.isEmpty());
}

TEST(GuideCheck, FindsWhatComesFromElsewhereOrRuns) {
  for (const char* body :
       {"<script>x</script>", "<p style=\"color:red\">a</p>", "<p onclick=\"x\">a</p>",
        "<img src=\"http://example.org/a.png\" alt=\"a\"/>", "<a href=\"//example.org\">a</a>",
        "<a href=\"/etc\">a</a>", "<img src=\"a.png\"/>", "<p id=\"a\"/><p id=\"a\"/>"})
    EXPECT_FALSE(page(body).faults.isEmpty()) << body;
}

TEST(GuideCheck, FindsMissingTargets) {
  const guide::Page read = page(
      "<section id=\"here\"/><a href=\"#here\"/><a href=\"#nowhere\"/><a href=\"../en/index.html\"/>"
      "<a href=\"none.html\"/><img src=\"none.png\" alt=\"a\"/>");
  EXPECT_EQ(guide::missingTargets(read, Guide + "/de"), (QStringList{"#nowhere", "none.html", "none.png"}));
  EXPECT_EQ(read.sections, QStringList{"here"});
}

TEST(GuideCheck, FindsTextsThatTheProgramDoesNotHave) {
  const guide::Page read = page(
      "<b>Save As...</b><b>Save\nas</b><b>About Growth</b><b>The file 'x' could not be "
      "opened.</b><b>Nothing</b>"
      "<b>Tools &amp; More</b><b/>");
  EXPECT_EQ(guide::unknownTexts(read, {"Save &As...", "&About %@", "The file '%@' could not be opened.",
                                       "%ld of %ld", "Tools && More"}),
            (QStringList{"Save as", "Nothing", ""}));
}

TEST(GuideCheck, ReadsFinishedTranslationsAlone) {
  EXPECT_EQ(guide::textsOfTranslation(
                "<TS><context><message><source>a</source><translation>b</translation></message>"
                "<message><source>c</source><translation type=\"unfinished\">d</translation>"
                "</message></context></TS>"),
            QSet<QString>{"b"});
}

TEST(GuideCheck, ReadsTheTextsOfTheProgram) {
  const QSet<QString> texts = guide::textsOfSources(ProgramFolders);
  // A menu's, one in several pieces, an interface file's.
  for (const char* text :
       {"Save &As...", "Identifier",
        "A previously saved data file is available for patient '%@'.  Would you like to open it?"})
    EXPECT_TRUE(texts.contains(text)) << text;
}

}  // namespace
