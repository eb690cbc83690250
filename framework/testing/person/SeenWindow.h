// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QRect>
#include <QSize>
#include <QString>
#include <QStringList>

namespace velmora::testkit {

/// One visible window of another program, as it was when it was looked at.
class SeenWindow {
 public:
  explicit SeenWindow(const QJsonObject& description = {}) : description_(description) {}

  bool exists() const { return !description_.isEmpty(); }
  int id() const { return description_["id"].toInt(); }
  QString name() const { return description_["name"].toString(); }
  /// Whether it is the window of that name; an alert and a system panel go by their classes.
  bool isCalled(const QString& name) const { return this->name() == name || description_["class"] == name; }
  QString title() const { return description_["title"].toString(); }
  bool active() const { return description_["active"].toBool(); }
  /// Whether it has changes that are not saved.
  bool edited() const { return description_["edited"].toBool(); }
  /// Where it is on the screen, without its frame.
  QRect place() const;

  /// A popped-up list or menu.
  bool isPopup() const { return description_["popup"].toBool(); }
  bool isMenu() const { return isPopup() && description_.contains("items"); }
  /// The description of a popped-up menu's entry, or of a menu in the menu bar, by its text or its object
  /// name; empty when there is none.
  QJsonObject item(const QString& name) const;
  QJsonObject menu(const QString& name) const;
  bool isAlert() const { return description_.contains("alert"); }
  QString alertText() const { return description_["alert"]["text"].toString(); }
  QString alertInformation() const { return description_["alert"]["information"].toString(); }

  /// A visible widget's description; empty when there is none of that name.
  QJsonObject widget(const QString& name) const;
  QString text(const QString& widgetName) const { return widget(widgetName)["text"].toString(); }
  bool hasFocus(const QString& widgetName) const { return widget(widgetName)["focus"].toBool(); }
  /// The entries of a pop-up list, the labels of tabs.
  QStringList entries(const QString& list) const { return texts(list, "items"); }
  QStringList labels(const QString& tabs) const { return texts(tabs, "tabs"); }
  /// The label of the tab that is in front.
  QString tabInFront(const QString& tabs) const { return widget(tabs)["current"].toString(); }
  /// The description of the widget that has the keyboard; empty when none has it.
  QJsonObject focused() const;
  /// The underlined letter of a widget's label, which leads to it with Alt; empty when there is none.
  QString letterOf(const QString& widgetName) const;
  /// In pixels of the screen.
  QSize size(const QString& widgetName) const;
  /// Pixels of the screen for one unit of the window's coordinates.
  double pixelRatio() const { return description_["pixelRatio"].toDouble(1); }
  /// The texts of the buttons that can be pressed.
  QStringList buttons() const;

  /// In a few words, for a message.
  QString summary() const;
  /// All of it, as the probe says it.
  const QJsonObject& description() const { return description_; }

 private:
  QJsonArray widgets() const { return description_["widgets"].toArray(); }
  QStringList texts(const QString& widgetName, const char* member) const;

  QJsonObject description_;
};

}  // namespace velmora::testkit
