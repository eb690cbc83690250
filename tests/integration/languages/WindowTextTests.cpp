// SPDX-License-Identifier: LGPL-3.0-or-later
// What the windows say in each language, and whether there is room for it.
#include <gtest/gtest.h>

#include <QApplication>
#include <QFont>
#include <QLabel>
#include <QSet>
#include <QTest>
#include <QTranslator>

#include "tests/integration/languages/ShownTexts.h"
#include "tests/integration/languages/TranslationFiles.h"
#include "tests/integration/languages/WindowsInLanguage.h"

using languages::WindowsInLanguage;

namespace {

/// Keeps what is looked up while it lives, and answers nothing.
class LookedUp : public QTranslator {
 public:
  LookedUp() { QCoreApplication::installTranslator(this); }
  ~LookedUp() override { QCoreApplication::removeTranslator(this); }
  bool isEmpty() const override { return false; }
  QString translate(const char* context, const char* source, const char*, int) const override {
    keys.insert({QString::fromUtf8(context), QString::fromUtf8(source)});
    return {};
  }
  mutable QSet<QPair<QString, QString>> keys;
};

/// The application's letters are bold while it lives.
class BoldLetters {
 public:
  BoldLetters() : before_(QApplication::font()) {
    QFont bold = before_;
    bold.setBold(true);
    QApplication::setFont(bold);
  }
  ~BoldLetters() { QApplication::setFont(before_); }

 private:
  QFont before_;
};

/// Wrapped lines find their height in several rounds of the layouts around them.
QStringList cutTextsOnceSettled(const QWidget& window) {
  (void)QTest::qWaitFor([&window] { return languages::cutTexts(window).isEmpty(); }, 1000);
  return languages::cutTexts(window);
}

std::string list(const QStringList& lines) { return lines.join('\n').toStdString(); }

class ShownTexts : public testing::TestWithParam<QString> {};

INSTANTIATE_TEST_SUITE_P(, ShownTexts, testing::ValuesIn(languages::all()),
                         [](const auto& language) { return language.param.toStdString(); });

}  // namespace

TEST_P(ShownTexts, HaveTheRoomThatTheyNeed) {
  int windows = 0;
  WindowsInLanguage(GetParam()).each([&](const QString& what, QWidget& window) {
    ++windows;
    const QStringList cut = cutTextsOnceSettled(window);
    EXPECT_TRUE(cut.isEmpty()) << what.toStdString() << ":\n" << list(cut);
  });
  EXPECT_EQ(windows, 19);
}

TEST_P(ShownTexts, HaveTheRoomThatTheyNeedInBold) {
  const BoldLetters bold;
  WindowsInLanguage(GetParam()).each([](const QString& what, QWidget& window) {
    const QStringList cut = cutTextsOnceSettled(window);
    EXPECT_TRUE(cut.isEmpty()) << what.toStdString() << ":\n" << list(cut);
  });
}

TEST_P(ShownTexts, GiveNoMnemonicTwice) {
  WindowsInLanguage(GetParam()).each([](const QString& what, QWidget& window) {
    const QStringList shared = languages::sharedMnemonics(window);
    EXPECT_TRUE(shared.isEmpty()) << what.toStdString() << ":\n" << list(shared);
  });
}

TEST_P(ShownTexts, AreAllTranslated) {
  // English texts are their own translation, but they, too, must have been collected.
  QSet<QPair<QString, QString>> known;
  for (const languages::Text& text : languages::textsIn(GetParam() == "en" ? "de" : GetParam()))
    known.insert({text.context, text.source});

  WindowsInLanguage windows(GetParam());
  const LookedUp looks;
  windows.each([](const QString&, QWidget&) {});
  int ours = 0;
  for (const auto& [context, source] : looks.keys) {
    // Qt's own, which come with it.
    if (context.startsWith('Q') || source.isEmpty()) continue;
    ++ours;
    EXPECT_TRUE(known.contains({context, source}))
        << context.toStdString() << ": \"" << source.toStdString() << '"';
  }
  EXPECT_GT(ours, 120);
}

TEST(ShownTextsOfQt, AreTranslatedToo) {
  for (const QString& language : languages::translated()) {
    const WindowsInLanguage windows(language);
    for (const char* text : {"Cancel", "Save", "Close"})
      EXPECT_NE(QCoreApplication::translate("QPlatformTheme", text), text) << language.toStdString();
  }
}

TEST(ShownTextsCheck, SeesWhatIsCutAndWhatIsClaimedTwice) {
  QWidget window;
  auto* label = new QLabel("&A text of some length", &window);
  label->setBuddy(&window);
  label->setGeometry(0, 0, 30, 20);
  auto* second = new QLabel("&Another", &window);
  second->setBuddy(&window);
  second->setGeometry(0, 30, 300, 40);
  window.resize(400, 100);
  window.show();
  EXPECT_EQ(languages::cutTexts(window).size(), 1);
  EXPECT_EQ(languages::sharedMnemonics(window).size(), 1);
  label->resize(label->sizeHint());
  second->setText("A&nother");
  EXPECT_EQ(languages::cutTexts(window).size(), 0);
  EXPECT_EQ(languages::sharedMnemonics(window).size(), 0);
  second->move(390, 30);
  EXPECT_EQ(languages::cutTexts(window).size(), 1) << "outside the window";
}
