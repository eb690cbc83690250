// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/person/SeenWindow.h"

#include <algorithm>
#include <functional>

namespace velmora::testkit {

namespace {

QJsonObject firstOf(const QJsonArray& descriptions, const std::function<bool(const QJsonObject&)>& holds) {
  const auto found = std::find_if(descriptions.begin(), descriptions.end(),
                                  [&](const QJsonValue& each) { return holds(each.toObject()); });
  return found == descriptions.end() ? QJsonObject() : found->toObject();
}

QJsonObject called(const QJsonArray& descriptions, const QString& name) {
  return firstOf(descriptions,
                 [&](const QJsonObject& each) { return each["name"] == name || each["text"] == name; });
}

}  // namespace

QRect SeenWindow::place() const {
  const QJsonArray geometry = description_["geometry"].toArray();
  return QRect(geometry[0].toInt(), geometry[1].toInt(), geometry[2].toInt(), geometry[3].toInt());
}

QJsonObject SeenWindow::item(const QString& name) const {
  return called(description_["items"].toArray(), name);
}

QJsonObject SeenWindow::menu(const QString& name) const {
  return called(description_["menus"].toArray(), name);
}

QJsonObject SeenWindow::widget(const QString& name) const {
  return firstOf(widgets(), [&](const QJsonObject& each) { return each["name"] == name; });
}

QStringList SeenWindow::texts(const QString& widgetName, const char* member) const {
  return widget(widgetName)[QLatin1String(member)].toVariant().toStringList();
}

QJsonObject SeenWindow::focused() const {
  return firstOf(widgets(), [](const QJsonObject& each) { return each["focus"].toBool(); });
}

QString SeenWindow::letterOf(const QString& widgetName) const {
  return firstOf(widgets(), [&](const QJsonObject& each) { return each["buddy"] == widgetName; })["mnemonic"]
      .toString();
}

QSize SeenWindow::size(const QString& widgetName) const {
  const QJsonArray geometry = widget(widgetName)["geometry"].toArray();
  return QSize(qRound(geometry[2].toInt() * pixelRatio()), qRound(geometry[3].toInt() * pixelRatio()));
}

QStringList SeenWindow::buttons() const {
  QStringList result;
  const QJsonArray all = widgets();
  for (const QJsonValue widget : all)
    if (widget["class"] == "QPushButton" && widget["enabled"].toBool())
      result.append(widget["text"].toString());
  return result;
}

QString SeenWindow::summary() const {
  if (isAlert()) return QString("alert \"%1\" [%2]").arg(alertText(), buttons().join('/'));
  const QString result =
      QString("%1 \"%2\"").arg(name().isEmpty() ? description_["class"].toString() : name(), title());
  QStringList fields;
  const QJsonArray all = widgets();
  for (const QJsonValue widget : all)
    if (widget["name"].toString().endsWith("Field") && !widget["text"].toString().isEmpty())
      fields.append(widget["name"].toString() + '=' + widget["text"].toString());
  return fields.isEmpty() ? result : result + " (" + fields.join(", ") + ')';
}

}  // namespace velmora::testkit
