// SPDX-License-Identifier: LGPL-3.0-or-later
#include "tests/integration/languages/TranslationFiles.h"

#include <QFile>
#include <QRegularExpression>
#include <QXmlStreamReader>
#include <stdexcept>

namespace languages {

QStringList translated() { return {"de", "es", "fr"}; }

QStringList all() { return QStringList{"en"} + translated(); }

QStringList translationFiles(const QString& language) {
  QStringList files;
  for (const QString& each : language == "*" ? translated() : QStringList{language}) {
    files.append("translations/velmora_" + each + ".ts");
    files.append("apps/growth/translations/growth_" + each + ".ts");
  }
  return files;
}

QList<Text> textsOf(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) throw std::runtime_error(path.toStdString() + " cannot be read");
  QXmlStreamReader xml(&file);
  QList<Text> texts;
  QString context;
  while (!xml.atEnd()) {
    if (xml.readNext() != QXmlStreamReader::StartElement) continue;
    if (xml.name() == QLatin1String("name")) context = xml.readElementText();
    if (xml.name() == QLatin1String("source")) texts.append({context, xml.readElementText(), {}, "missing"});
    if (xml.name() != QLatin1String("translation") || texts.isEmpty()) continue;
    texts.last().state = xml.attributes().value("type").toString();
    texts.last().translation = xml.readElementText(QXmlStreamReader::IncludeChildElements);
  }
  if (xml.hasError()) throw std::runtime_error(path.toStdString() + ": " + xml.errorString().toStdString());
  return texts;
}

QList<Text> textsIn(const QString& language) {
  QList<Text> texts;
  for (const QString& file : translationFiles(language)) texts += textsOf(VELMORA_SOURCES "/" + file);
  return texts;
}

QString mnemonicOf(const QString& text) {
  static const QRegularExpression mark("&([^&])");
  return mark.match(QString(text).remove("&&")).captured(1).toLower();
}

QStringList placeholdersOf(const QString& text) {
  static const QRegularExpression placeholder("%(?:@|ld|s|[0-9])");
  QStringList found;
  auto matches = placeholder.globalMatch(text);
  while (matches.hasNext()) found.append(matches.next().captured());
  return found;
}

}  // namespace languages
