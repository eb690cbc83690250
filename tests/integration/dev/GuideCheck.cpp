// SPDX-License-Identifier: LGPL-3.0-or-later
#include "tests/integration/dev/GuideCheck.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include "testing/files/Files.h"

namespace guide {

namespace {

// What browsers would fetch or run; a guide needs none of it.
const QSet<QString> Forbidden{"script", "style", "iframe", "object", "embed", "form", "input", "base"};

class Reader {
 public:
  explicit Reader(const QByteArray& html) : xml_(html) {}

  Page read() {
    while (!xml_.atEnd()) {
      xml_.readNext();
      if (xml_.isStartElement()) begin();
      if (xml_.isEndElement()) end();
      if (xml_.isCharacters()) take(xml_.text().toString());
    }
    if (xml_.hasError()) fault(xml_.errorString());
    return page_;
  }

 private:
  void fault(const QString& what) {
    page_.faults.append(QString("line %1: %2").arg(xml_.lineNumber()).arg(what));
  }
  QString attribute(const char* name) const {
    return xml_.attributes().value(QLatin1String(name)).toString();
  }

  void begin() {
    const QString name = xml_.name().toString();
    if (Forbidden.contains(name)) fault("there is an element " + name);
    if (name == "html") page_.language = attribute("lang");
    if (name == "b") quoted_ = QString("");
    if (name == "title") inTitle_ = true;
    takeId(name);
    for (const char* target : {"href", "src"}) takeTarget(name, attribute(target));
    if (name == "img" && attribute("alt").isEmpty()) fault("an image without a description");
    for (const auto& each : xml_.attributes())
      if (each.name() == QLatin1String("style") || each.name().startsWith(QLatin1String("on")))
        fault("an attribute " + each.name().toString());
  }

  void takeId(const QString& name) {
    const QString id = attribute("id");
    if (name == "section") page_.sections.append(id);
    if (id.isEmpty()) return;
    if (page_.ids.contains(id)) fault("the id \"" + id + "\" for a second time");
    page_.ids.insert(id);
  }

  void takeTarget(const QString& name, const QString& target) {
    if (target.isEmpty()) return;
    if (target.contains(':') || target.startsWith('/')) fault("\"" + target + "\" is not of this guide");
    (name == "img" ? page_.images : page_.links).append(target);
  }

  void end() {
    if (xml_.name() == QLatin1String("title")) inTitle_ = false;
    if (xml_.name() != QLatin1String("b")) return;
    page_.programTexts.append(quoted_->simplified());
    quoted_.reset();
  }

  void take(const QString& text) {
    if (quoted_) *quoted_ += text;
    if (inTitle_) page_.title += text;
    page_.words += static_cast<int>(text.simplified().split(' ', Qt::SkipEmptyParts).size());
  }

  QXmlStreamReader xml_;
  Page page_;
  std::optional<QString> quoted_;
  bool inTitle_ = false;
};

// Neighbouring literals are one text.
void addLiterals(const QString& source, QSet<QString>& texts) {
  static const QRegularExpression literals(
      "\"((?:[^\"\\\\\n]|\\\\.)*)\"((?:\\s*\"(?:[^\"\\\\\n]|\\\\.)*\")*)");
  static const QRegularExpression seam("\"\\s*\"");
  auto matches = literals.globalMatch(source);
  while (matches.hasNext()) {
    const auto match = matches.next();
    QString rest = match.captured(2).trimmed();
    rest.replace(seam, QString());
    if (rest.size() >= 2) rest = rest.mid(1, rest.size() - 2);
    texts.insert(QString(match.captured(1) + rest).replace("\\\"", "\""));
  }
}

void addStrings(const QByteArray& interfaceFile, QSet<QString>& texts) {
  QXmlStreamReader xml(interfaceFile);
  while (!xml.atEnd())
    if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == QLatin1String("string"))
      texts.insert(xml.readElementText());
}

// Without the dots that announce a question.
QString withoutDots(QString text) {
  static const QRegularExpression dots("\\s*(\\.\\.\\.|…)$");
  return text.remove(dots).simplified();
}

// As it is read on the screen.
QString shown(QString text) {
  static const QRegularExpression mark("&(.)");
  return withoutDots(text.replace(mark, "\\1"));
}

QRegularExpression patternOf(const QString& programText) {
  static const QRegularExpression placeHolder("%(?:@|ld|s|[0-9])");
  QString pattern;
  qsizetype from = 0;
  auto holders = placeHolder.globalMatch(programText);
  while (holders.hasNext()) {
    const auto holder = holders.next();
    pattern += QRegularExpression::escape(programText.mid(from, holder.capturedStart() - from)) + ".+";
    from = holder.capturedEnd();
  }
  return QRegularExpression("^" + pattern + QRegularExpression::escape(programText.mid(from)) + "$");
}

}  // namespace

Page readPage(const QByteArray& html) { return Reader(html).read(); }

QStringList missingTargets(const Page& page, const QString& folder) {
  QStringList missing;
  for (const QString& target : page.links + page.images) {
    const QString file = target.section('#', 0, 0);
    const bool there =
        file.isEmpty() ? page.ids.contains(target.mid(1)) : QFileInfo(folder + '/' + file).isFile();
    if (!there) missing.append(target);
  }
  return missing;
}

QSet<QString> textsOfSources(const QStringList& folders) {
  QSet<QString> texts;
  for (const QString& folder : folders) {
    QDirIterator files(folder, {"*.cpp", "*.ui"}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
      const QString path = files.next();
      if (path.endsWith(".ui"))
        addStrings(velmora::testkit::readFile(path), texts);
      else
        addLiterals(QString::fromUtf8(velmora::testkit::readFile(path)), texts);
    }
  }
  return texts;
}

QSet<QString> textsOfTranslation(const QByteArray& ts) {
  QSet<QString> texts;
  QXmlStreamReader xml(ts);
  while (!xml.atEnd())
    if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == QLatin1String("translation") &&
        !xml.attributes().hasAttribute("type"))
      texts.insert(xml.readElementText(QXmlStreamReader::IncludeChildElements));
  return texts;
}

QStringList unknownTexts(const Page& page, const QSet<QString>& programTexts) {
  QSet<QString> known;
  QList<QRegularExpression> patterns;
  for (const QString& text : programTexts) {
    known.insert(shown(text));
    // A text of place holders alone would be every text.
    static const QRegularExpression words("\\p{L}{2,}");
    if (text.contains('%') && QString(text).remove("%ld").contains(words))
      patterns.append(patternOf(shown(text)));
  }
  QStringList unknown;
  for (const QString& text : page.programTexts) {
    const QString wanted = withoutDots(text);
    const bool fits = known.contains(wanted) ||
                      std::any_of(patterns.cbegin(), patterns.cend(), [&](const QRegularExpression& pattern) {
                        return pattern.match(wanted).hasMatch();
                      });
    if (!fits) unknown.append(text);
  }
  return unknown;
}

}  // namespace guide
