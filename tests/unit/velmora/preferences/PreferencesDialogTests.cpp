// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The preferences window as a dialog: keyboard, names, sizes, languages.
#include <QAccessible>
#include <QFontMetrics>
#include <QLayout>
#include <QTest>
#include <QTranslator>

#include "tests/unit/velmora/preferences/PreferencesTesting.h"

using namespace velmora::testkit;

namespace settings = velmora::settings;
using preferences_testing::PreferencesWindow;

namespace {

/// A language in which every text of the window is much longer.
class LongWinded : public QTranslator {
 public:
  bool isEmpty() const override { return false; }
  QString translate(const char* context, const char* source, const char*, int) const override {
    if (QLatin1String(context) != QLatin1String("Preferences")) return {};
    QString text = QString::fromUtf8(source);
    return text + QStringLiteral(" ww").repeated(static_cast<int>(text.size() / 6 + 1));
  }
};

class Translated {
 public:
  Translated() { QCoreApplication::installTranslator(&language_); }
  ~Translated() { QCoreApplication::removeTranslator(&language_); }

 private:
  LongWinded language_;
};

/// The name of the widget, or of the one it belongs to.
QString nameOf(const QWidget* widget) {
  for (; widget; widget = widget->parentWidget()) {
    if (!widget->objectName().isEmpty() && !widget->objectName().startsWith("qt_"))
      return widget->objectName();
  }
  return {};
}

/// The controls that show text, on the page that is open.
QList<QWidget*> controls(QWidget* window) {
  QList<QWidget*> found;
  for (QWidget* each : window->findChildren<QWidget*>()) {
    const bool control = dynamic_cast<QAbstractButton*>(each) || dynamic_cast<QComboBox*>(each) ||
                         dynamic_cast<QLineEdit*>(each) || dynamic_cast<QPlainTextEdit*>(each) ||
                         dynamic_cast<QLabel*>(each);
    if (control && each->isVisible()) found.append(each);
  }
  return found;
}

QString mnemonicOf(const QWidget* control) {
  QString text;
  if (const auto* button = dynamic_cast<const QAbstractButton*>(control)) text = button->text();
  if (const auto* label = dynamic_cast<const QLabel*>(control)) {
    if (label->buddy()) text = label->text();
  }
  const qsizetype mark = text.indexOf('&');
  return mark < 0 ? QString() : text.mid(mark + 1, 1).toLower();
}

class PreferencesDialog : public PreferencesWindow {
 protected:
  /// Both pages, one after the other.
  void onEachPage(const std::function<void()>& look) {
    open();
    for (const int page : {0, 1}) {
      choose("exportToPopUp", page);
      look();
    }
  }
  /// The names of what Tab leads to, from the window itself around to the first again.
  QStringList tabOrder() {
    QStringList order;
    window()->setFocus();
    for (int i = 0; i < 40; ++i) {
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
      const QString name = nameOf(QApplication::focusWidget());
      if (!order.isEmpty() && name == order.first()) break;
      order.append(name);
    }
    return order;
  }
  void expectNothingCut() {
    for (QWidget* control : controls(window())) {
      const auto* label = dynamic_cast<QLabel*>(control);
      if (dynamic_cast<QLineEdit*>(control) || dynamic_cast<QPlainTextEdit*>(control)) continue;
      if (label && label->wordWrap()) {
        EXPECT_GE(control->height(), label->heightForWidth(control->width())) << qPrintable(nameOf(control));
      } else {
        EXPECT_GE(control->width(), control->sizeHint().width()) << qPrintable(nameOf(control));
        EXPECT_GE(control->height(), control->minimumSizeHint().height()) << qPrintable(nameOf(control));
      }
    }
  }
};

}  // namespace

TEST_F(PreferencesDialog, LeadsThroughItsControlsInOrder) {
  open();
  const QStringList before{"defaultSaveFolderField", "chooseSaveFolderButton", "showSaveFolderButton",
                           "autoSaveCheckBox", "exportToPopUp"};
  const QStringList after{"launchScriptField", "checkSyntaxButton", "autoCheckVersionCheckBox",
                          "checkVersionIntervalPopUp", "updateButton"};
  const QStringList folder{"defaultExportFolderField", "chooseExportFolderButton", "showExportFolderButton"};
  QStringList order = tabOrder();
  EXPECT_EQ(order.mid(0, 13), before + folder + after);
  EXPECT_EQ(order.size(), 15) << "and OK and Cancel: " << qPrintable(order.join(' '));
  choose("exportToPopUp", 1);
  order = tabOrder();
  EXPECT_EQ(order.mid(0, 11), before + QStringList{"installOsirixPluginButton"} + after);
}

TEST_F(PreferencesDialog, LeavesTheScriptWithTab) {
  open();
  user::click(script()->viewport());
  QTest::keyClick(script(), Qt::Key_Tab);
  EXPECT_EQ(nameOf(QApplication::focusWidget()), "checkSyntaxButton");
  EXPECT_EQ(script()->toPlainText(), "");
}

TEST_F(PreferencesDialog, HasAKeyForEachControlAndNoKeyTwice) {
  onEachPage([&] {
    QMap<QString, QString> keys;
    for (const QWidget* control : controls(window())) {
      const QString key = mnemonicOf(control);
      if (key.isEmpty()) continue;
      EXPECT_FALSE(keys.contains(key)) << qPrintable(key + ": " + keys.value(key) + ", " + nameOf(control));
      keys.insert(key, nameOf(control));
    }
    EXPECT_GE(keys.size(), 10);
  });
}

TEST_F(PreferencesDialog, GivesTheKeyboardToAFieldByTheKeyOfItsLabel) {
  open();
  for (QWidget* target :
       {static_cast<QWidget*>(field("defaultSaveFolderField")),
        static_cast<QWidget*>(field("defaultExportFolderField")),
        static_cast<QWidget*>(the<QComboBox>("exportToPopUp")), static_cast<QWidget*>(script()),
        static_cast<QWidget*>(the<QComboBox>("checkVersionIntervalPopUp"))}) {
    bool labelled = false;
    for (const QLabel* label : window()->findChildren<QLabel*>()) labelled |= label->buddy() == target;
    EXPECT_TRUE(labelled) << qPrintable(nameOf(target));
  }
}

TEST_F(PreferencesDialog, NamesEveryControlForThoseWhoDoNotSeeIt) {
  onEachPage([&] {
    QStringList names;
    for (QWidget* control : controls(window())) {
      if (control->focusPolicy() == Qt::NoFocus) continue;
      // A label that says nothing has nothing to be called by.
      if (const auto* label = dynamic_cast<QLabel*>(control); label && label->text().isEmpty()) continue;
      QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(control);
      ASSERT_NE(accessible, nullptr);
      const QString name = accessible->text(QAccessible::Name);
      EXPECT_FALSE(name.isEmpty()) << qPrintable(nameOf(control));
      EXPECT_FALSE(names.contains(name)) << qPrintable(name);
      names.append(name);
    }
  });
}

TEST_F(PreferencesDialog, TellsItsFolderButtonsApartByName) {
  open();
  EXPECT_EQ(the<QPushButton>("chooseSaveFolderButton")->accessibleName(), "Choose the save folder");
  EXPECT_EQ(the<QPushButton>("showSaveFolderButton")->accessibleName(), "Show the save folder");
  EXPECT_EQ(the<QPushButton>("chooseExportFolderButton")->accessibleName(), "Choose the export folder");
  EXPECT_EQ(the<QPushButton>("showExportFolderButton")->accessibleName(), "Show the export folder");
}

TEST_F(PreferencesDialog, HasOkAsItsDefaultButton) {
  open();
  EXPECT_TRUE(ok()->isDefault());
  EXPECT_FALSE(cancel()->isDefault());
  EXPECT_EQ(ok()->text(), "OK");
  EXPECT_EQ(cancel()->text(), "Cancel");
}

TEST_F(PreferencesDialog, GivesTheRoomThatItGainsToTheScript) {
  open();
  window()->resize(window()->sizeHint());
  window()->layout()->activate();
  QCoreApplication::processEvents();
  const QSize scriptBefore = script()->size();
  const int fieldBefore = field("defaultSaveFolderField")->height();
  const QSize before = window()->size();
  window()->resize(before + QSize(100, 120));
  QCoreApplication::processEvents();
  EXPECT_EQ(script()->height(), scriptBefore.height() + 120);
  EXPECT_EQ(script()->width(), scriptBefore.width() + 100);
  EXPECT_EQ(field("defaultSaveFolderField")->height(), fieldBefore);
}

TEST_F(PreferencesDialog, CutsNoText) {
  onEachPage([&] { expectNothingCut(); });
  window()->resize(1, 1);
  QCoreApplication::processEvents();
  expectNothingCut();
}

TEST_F(PreferencesDialog, CutsNoTextInALanguageOfLongWords) {
  const Translated translated;
  onEachPage([&] {
    EXPECT_TRUE(the<QLabel>("defaultSaveFolderLabel")->text().contains(" ww"));
    expectNothingCut();
  });
}

TEST_F(PreferencesDialog, UnderstandsItsIntervalsInEveryLanguage) {
  const Translated translated;
  store(settings::VersionCheckInterval, 7);
  open();
  EXPECT_EQ(the<QComboBox>("checkVersionIntervalPopUp")->currentIndex(), 1);
  choose("checkVersionIntervalPopUp", 0);
  user::click(ok());
  EXPECT_EQ(application.desktop.defaults.integerForKey(settings::VersionCheckInterval), 1);
  EXPECT_TRUE(text("versionLastCheckedField").startsWith("Never ww"));
}

TEST_F(PreferencesDialog, ShowsTheScriptInLettersOfOneWidthUnderAWarning) {
  open();
  const QFontMetrics letters(script()->font());
  EXPECT_EQ(letters.horizontalAdvance(QStringLiteral("iiii")),
            letters.horizontalAdvance(QStringLiteral("WWWW")));
  EXPECT_TRUE(text("launchScriptLabel").contains("each time the application starts"));
  EXPECT_TRUE(text("launchScriptLabel").contains("all of your rights"));
}

TEST_F(PreferencesDialog, IgnoresTheWheelOverAPopUpThatHasNotTheKeyboard) {
  open();
  window()->setFocus();
  auto* popUp = the<QComboBox>("checkVersionIntervalPopUp");
  const QPointF middle = popUp->rect().center();
  QWheelEvent turn(middle, popUp->mapToGlobal(middle), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                   Qt::NoScrollPhase, false);
  QApplication::sendEvent(popUp, &turn);
  EXPECT_EQ(popUp->currentText(), "Monthly");
}
