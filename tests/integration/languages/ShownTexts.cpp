// SPDX-License-Identifier: LGPL-3.0-or-later
#include "tests/integration/languages/ShownTexts.h"

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QStyleOptionFrame>
#include <QStyleOptionGroupBox>
#include <QTabBar>
#include <QToolButton>

#include "tests/integration/languages/TranslationFiles.h"

namespace languages {

namespace {

/// What a part of a window needs and what it has.
struct Room {
  QString text;
  QSize needed;
  QSize given;
};

Room roomOf(const QLabel& label) {
  QSize needed = label.sizeHint();
  if (label.wordWrap()) needed = QSize(label.minimumSizeHint().width(), label.heightForWidth(label.width()));
  // A label that takes whatever room there is shortens its text itself.
  if (label.sizePolicy().horizontalPolicy() == QSizePolicy::Ignored) needed.setWidth(0);
  return {label.text(), needed, label.size()};
}

Room roomOf(const QLineEdit& field) {
  QStyleOptionFrame option;
  option.initFrom(&field);
  option.lineWidth = field.style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, &field);
  QSize given = field.style()->subElementRect(QStyle::SE_LineEditContents, &option, &field).size();
  // The field keeps two pixels on each side of its text.
  given.rwidth() -= 4;
  const QString text = field.text().isEmpty() ? field.placeholderText() : field.text();
  return {text, QSize(field.fontMetrics().horizontalAdvance(text), 0), given};
}

QList<Room> roomsOf(const QComboBox& menu) {
  QStyleOptionComboBox option;
  option.initFrom(&menu);
  const QSize given =
      menu.style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &menu).size();
  QList<Room> rooms;
  for (int i = 0; i < menu.count(); ++i)
    rooms.append({menu.itemText(i), QSize(menu.fontMetrics().horizontalAdvance(menu.itemText(i)), 0), given});
  return rooms;
}

QList<Room> roomsOf(const QTabBar& tabs) {
  QList<Room> rooms;
  int end = 0;
  for (int i = 0; i < tabs.count(); ++i) {
    const QSize needed = tabs.fontMetrics().size(Qt::TextShowMnemonic, tabs.tabText(i));
    rooms.append({tabs.tabText(i), needed, tabs.tabRect(i).size()});
    end = tabs.tabRect(i).right();
  }
  rooms.append({"all tabs", QSize(end, 0), tabs.size()});
  return rooms;
}

QList<Room> roomsOf(const QMenuBar& bar) {
  QList<Room> rooms;
  for (QAction* action : bar.actions()) {
    const QRect place = bar.actionGeometry(action);
    const QSize needed = bar.fontMetrics().size(Qt::TextShowMnemonic, action->text());
    rooms.append({action->text(), needed, bar.rect().contains(place) ? place.size() : QSize(0, 0)});
  }
  return rooms;
}

QList<Room> roomsOf(const QWidget& widget) {
  if (const auto* label = dynamic_cast<const QLabel*>(&widget)) return {roomOf(*label)};
  if (const auto* field = dynamic_cast<const QLineEdit*>(&widget)) return {roomOf(*field)};
  if (const auto* menu = dynamic_cast<const QComboBox*>(&widget)) return roomsOf(*menu);
  if (const auto* tabs = dynamic_cast<const QTabBar*>(&widget)) return roomsOf(*tabs);
  if (const auto* bar = dynamic_cast<const QMenuBar*>(&widget)) return roomsOf(*bar);
  if (dynamic_cast<const QToolButton*>(&widget)) return {};
  if (const auto* button = dynamic_cast<const QAbstractButton*>(&widget))
    return {{button->text(), button->sizeHint(), button->size()}};
  if (const auto* box = dynamic_cast<const QGroupBox*>(&widget))
    return {{box->title(), QSize(box->minimumSizeHint().width(), 0), box->size()}};
  return {};
}

}  // namespace

QStringList cutTexts(const QWidget& window) {
  QStringList cut;
  const QRect inside = window.rect();
  for (const QWidget* widget : window.findChildren<QWidget*>()) {
    if (!widget->isVisible()) continue;
    for (const Room& room : roomsOf(*widget)) {
      if (room.text.isEmpty()) continue;
      const QRect place(widget->mapTo(&window, QPoint()), widget->size());
      if (room.needed.width() <= room.given.width() && room.needed.height() <= room.given.height() &&
          inside.contains(place))
        continue;
      cut.append(QString("%1 \"%2\" needs %3 x %4 and has %5 x %6")
                     .arg(widget->objectName(), room.text)
                     .arg(room.needed.width())
                     .arg(room.needed.height())
                     .arg(room.given.width())
                     .arg(room.given.height()));
    }
  }
  return cut;
}

QStringList sharedMnemonics(const QWidget& window) {
  QMap<QString, QStringList> claims;
  const auto claim = [&claims](const QString& text) {
    const QString letter = mnemonicOf(text);
    if (!letter.isEmpty()) claims[letter].append(text);
  };
  for (const QWidget* widget : window.findChildren<QWidget*>()) {
    if (!widget->isVisible()) continue;
    if (const auto* label = dynamic_cast<const QLabel*>(widget); label && label->buddy())
      claim(label->text());
    if (const auto* button = dynamic_cast<const QAbstractButton*>(widget)) claim(button->text());
    if (const auto* box = dynamic_cast<const QGroupBox*>(widget)) claim(box->title());
    if (const auto* tabs = dynamic_cast<const QTabBar*>(widget)) {
      for (int i = 0; i < tabs->count(); ++i) claim(tabs->tabText(i));
    }
    if (const auto* bar = dynamic_cast<const QMenuBar*>(widget)) {
      for (const QAction* action : bar->actions()) claim(action->text());
    }
  }
  QStringList shared;
  for (auto each = claims.cbegin(); each != claims.cend(); ++each)
    if (each->size() > 1) shared.append(each.key() + ": " + each->join(", "));
  return shared;
}

}  // namespace languages
