// SPDX-License-Identifier: LGPL-3.0-or-later
// Questions and notices as the desktop shows them, in each language.
#include <gtest/gtest.h>

#include <QMessageBox>
#include <QTest>

#include "desktop/alerts/QtAlerts.h"
#include "platform/text/Localization.h"
#include "testing/standins/VirtualRunLoop.h"
#include "tests/integration/languages/ShownTexts.h"
#include "tests/integration/languages/TranslationFiles.h"
#include "tests/integration/languages/WindowsInLanguage.h"

using namespace velmora;

namespace {

using velmora::platform::localizedString;

/// The texts of the tables from which alerts take theirs, with something in the places for what varies.
QStringList sentences(const QString& language) {
  QStringList sentences;
  // English has no file of its own; the keys of any other are its texts.
  for (const languages::Text& text : languages::textsIn(language == "en" ? "de" : language)) {
    QString sentence = language == "en" ? text.source : text.translation;
    if (sentence.size() < 20 || sentence.contains('&')) continue;
    sentence.replace("%@", "PATIENT-0042 of a longer name.growth").replace("%ld", "9999");
    sentences.append(sentence);
  }
  return sentences;
}

class AlertTexts : public testing::TestWithParam<QString> {};

INSTANTIATE_TEST_SUITE_P(, AlertTexts, testing::ValuesIn(languages::all()),
                         [](const auto& language) { return language.param.toStdString(); });

}  // namespace

TEST_P(AlertTexts, HaveTheRoomThatTheyNeed) {
  const languages::WindowsInLanguage application(GetParam());
  testkit::VirtualRunLoop runLoop;
  desktop::QtAlerts alerts(runLoop);
  QWidget window;
  window.show();
  const QStringList all = sentences(GetParam());
  EXPECT_GT(all.size(), 100);
  for (qsizetype i = 0; i + 1 < all.size(); i += 2) {
    int answers = 0;
    alerts.beginSheetModalForWindow({all.at(i), localizedString("OrvDocument", "Save Elsewhere..."),
                                     localizedString("Document", "Review Changes..."),
                                     localizedString("OrvVersion", "Cancel"), all.at(i + 1)},
                                    &window, &window, [&answers](int) { ++answers; });
    auto* box = window.findChild<QMessageBox*>();
    ASSERT_TRUE(box && QTest::qWaitForWindowExposed(box));
    const QStringList cut = languages::cutTexts(*box);
    EXPECT_TRUE(cut.isEmpty()) << cut.join('\n').toStdString();
    EXPECT_LE(box->width(), 800);
    QTest::keyClick(box, Qt::Key_Escape);
    EXPECT_EQ(answers, 1) << "the way back has no name";
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
}
