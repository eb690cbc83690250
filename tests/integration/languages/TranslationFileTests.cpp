// SPDX-License-Identifier: LGPL-3.0-or-later
// The .ts files: complete, and in agreement with the texts in the sources.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>

#include "testing/files/Files.h"
#include "tests/integration/languages/TranslationFiles.h"

using languages::Text;

namespace {

const QString Root = QStringLiteral(VELMORA_SOURCES);

std::string named(const Text& text) {
  return (text.context + ": \"" + text.source + "\" -> \"" + text.translation + '"').toStdString();
}

class TranslationFile : public testing::TestWithParam<QString> {
 protected:
  QList<Text> texts_ = languages::textsOf(Root + '/' + GetParam());
};

INSTANTIATE_TEST_SUITE_P(, TranslationFile, testing::ValuesIn(languages::translationFiles()),
                         [](const auto& file) { return QFileInfo(file.param).baseName().toStdString(); });

/// What a text ends with after its last letter, number or place for something, in English form.
QString endOf(QString text) {
  static const QRegularExpression end("(\\.\\.\\.|[.:?!…]|)(\\s*)$");
  const auto match = end.match(text.replace(QChar(0xa0), ' '));
  return match.captured(1) + (match.captured(2).isEmpty() ? "" : " ");
}

}  // namespace

TEST_P(TranslationFile, HasATranslationForEveryText) {
  EXPECT_GT(texts_.size(), 40);
  for (const Text& text : texts_) {
    EXPECT_EQ(text.state.toStdString(), "") << named(text);
    EXPECT_FALSE(text.translation.trimmed().isEmpty()) << named(text);
  }
}

TEST_P(TranslationFile, HasEveryTextOnce) {
  QSet<QPair<QString, QString>> seen;
  for (const Text& text : texts_) {
    EXPECT_FALSE(seen.contains({text.context, text.source})) << named(text);
    seen.insert({text.context, text.source});
  }
}

// What the code fills in, it fills in by order, but for "%1", which is sought by its number.
TEST_P(TranslationFile, KeepsThePlacesForWhatVaries) {
  for (const Text& text : texts_)
    EXPECT_EQ(languages::placeholdersOf(text.source), languages::placeholdersOf(text.translation))
        << named(text);
}

TEST_P(TranslationFile, HasAMnemonicWhereEnglishHasOne) {
  static const QRegularExpression plain("^[a-z0-9]$");
  for (const Text& text : texts_) {
    EXPECT_EQ(text.source.count('&'), text.translation.count('&')) << named(text);
    // A letter that every keyboard of the language has without a dead key.
    const QString mnemonic = languages::mnemonicOf(text.translation);
    EXPECT_TRUE(mnemonic.isEmpty() || plain.match(mnemonic).hasMatch()) << named(text);
  }
}

TEST_P(TranslationFile, EndsAsTheEnglishTextEnds) {
  for (const Text& text : texts_) {
    EXPECT_EQ(endOf(text.source).toStdString(), endOf(text.translation).toStdString()) << named(text);
    EXPECT_EQ(text.source.count('\n'), text.translation.count('\n')) << named(text);
    EXPECT_EQ(text.source.startsWith(' '), text.translation.startsWith(' ')) << named(text);
  }
}

TEST_P(TranslationFile, WritesQuotesAndSpacesAsTheLanguageDoes) {
  const QString language = QFileInfo(GetParam()).baseName().right(2);
  static const QRegularExpression loose("[^\\s\\x{a0}%/] [?!:;»]|« ");
  for (const Text& text : texts_) {
    EXPECT_FALSE(text.translation.contains('\'') || text.translation.contains('"')) << named(text);
    EXPECT_EQ(text.translation.count(QChar(0x201e)), text.translation.count(QChar(0x201c))) << named(text);
    EXPECT_EQ(text.translation.count(QChar(0xab)), text.translation.count(QChar(0xbb))) << named(text);
    EXPECT_EQ(text.source.count("'%@"), text.translation.count(language == "de"   ? QString("„%@")
                                                               : language == "fr" ? QString("«\u00a0%@")
                                                                                  : QString("«%@")))
        << named(text);
    if (language == "fr") {
      EXPECT_FALSE(loose.match(text.translation).hasMatch()) << named(text);
    }
    if (language == "es") {
      EXPECT_EQ(text.translation.count('?'), text.translation.count(QChar(0xbf))) << named(text);
    }
  }
}

TEST(TranslationFiles, AgreeWhereBothKnowAText) {
  for (const QString& language : languages::translated()) {
    QMap<QPair<QString, QString>, QString> known;
    for (const Text& text : languages::textsIn(language)) {
      const QPair<QString, QString> key{text.context, text.source};
      EXPECT_EQ(known.value(key, text.translation), text.translation) << named(text);
      known.insert(key, text.translation);
    }
  }
}

TEST(TranslationFiles, HoldTheTextsThatStandInTheSources) {
  const QTemporaryDir copy;
  ASSERT_TRUE(copy.isValid());
  for (const QString& file : languages::translationFiles()) {
    ASSERT_TRUE(QDir().mkpath(QFileInfo(copy.filePath(file)).path()));
    ASSERT_TRUE(QFile::copy(Root + '/' + file, copy.filePath(file)));
  }
  QProcess update;
  update.start("bash", {Root + "/translations/update.sh", Root, VELMORA_LUPDATE, copy.path()});
  ASSERT_TRUE(update.waitForFinished(60'000));
  ASSERT_EQ(update.exitCode(), 0) << update.readAllStandardError().toStdString();
  for (const QString& file : languages::translationFiles())
    EXPECT_EQ(velmora::testkit::readFile(copy.filePath(file)).toStdString(),
              velmora::testkit::readFile(Root + '/' + file).toStdString())
        << file.toStdString() << ": ./dev translations has something to do";
}

// A text that is put together where it is looked up is one that nobody collects.
TEST(TranslationFiles, AreCollectedFromLookUpsWithLiterals) {
  static const QRegularExpression call("(?:localizedString|QCoreApplication::translate)\\(([^)]{0,200})");
  static const QRegularExpression literals("^\\s*\"[A-Za-z]+\",\\s*\"");
  int found = 0;
  for (const char* folder : {"framework", "apps"}) {
    QStringList folders{Root + '/' + folder};
    while (!folders.isEmpty()) {
      const QDir dir(folders.takeFirst());
      for (const QFileInfo& sub : dir.entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot))
        folders.append(sub.filePath());
      for (const QFileInfo& file : dir.entryInfoList({"*.cpp", "*.h"}, QDir::Files)) {
        if (file.baseName() == "Localization") continue;
        auto matches = call.globalMatch(QString::fromUtf8(velmora::testkit::readFile(file.filePath())));
        for (; matches.hasNext(); ++found) {
          const QString arguments = matches.next().captured(1);
          EXPECT_TRUE(literals.match(arguments).hasMatch())
              << file.filePath().toStdString() << ": " << arguments.toStdString();
        }
      }
    }
  }
  EXPECT_GT(found, 150);
}
