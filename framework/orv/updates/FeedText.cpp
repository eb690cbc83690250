// SPDX-License-Identifier: LGPL-3.0-or-later
#include "orv/updates/FeedText.h"

#include <QRegularExpression>
#include <QStringDecoder>
#include <QTextDocumentFragment>

namespace velmora::orv {

namespace {

constexpr qsizetype LongestTag = 4096;
constexpr qsizetype XmlDeclaration = 200;            // it stands within so many first bytes
constexpr qsizetype LongestDescription = 16 * 1024;  // of HTML
constexpr qsizetype LongestPlainText = 1200;
constexpr qsizetype MostLines = 20;

QStringDecoder decoderFor(const QByteArray& feed) {
  static const QRegularExpression declared(
      QStringLiteral("^\\s*<\\?xml[^>]*\\sencoding\\s*=\\s*[\"']([A-Za-z0-9._-]+)[\"']"));
  if (const auto marked = QStringConverter::encodingForData(feed)) return QStringDecoder(*marked);
  const auto named = declared.match(QString::fromLatin1(feed.left(XmlDeclaration)));
  if (!named.hasMatch()) return QStringDecoder(QStringConverter::Utf8);
  return QStringDecoder(named.captured(1).toLatin1().constData());
}

/// Where the tag that begins at `start` ends, past its last character; −1 when that is too far. What stands
/// in quotes ends no tag.
qsizetype endOfTag(const QString& text, qsizetype start) {
  QChar quote;
  for (qsizetype i = start + 1; i < text.size() && i - start < LongestTag; ++i) {
    const QChar c = text.at(i);
    if (!quote.isNull()) {
      if (c == quote) quote = QChar();
    } else if (c == QLatin1Char('"') || c == QLatin1Char('\'')) {
      quote = c;
    } else if (c == QLatin1Char('>')) {
      return i + 1;
    }
  }
  return -1;
}

/// Whether a reader can be let loose on it: every tag short, no declaration.
bool isHarmless(const QString& text) {
  struct Section {
    QLatin1String start;
    QLatin1String end;
  };
  constexpr Section Sections[] = {{QLatin1String("<!--"), QLatin1String("-->")},
                                  {QLatin1String("<![CDATA["), QLatin1String("]]>")},
                                  {QLatin1String("<?"), QLatin1String("?>")}};
  qsizetype at = 0;
  while ((at = text.indexOf(QLatin1Char('<'), at)) >= 0) {
    const QStringView rest = QStringView(text).sliced(at);
    const Section* section = nullptr;
    for (const Section& candidate : Sections) {
      if (rest.startsWith(candidate.start)) section = &candidate;
    }
    if (section) {
      const qsizetype end = text.indexOf(section->end, at + section->start.size());
      if (end < 0) return false;
      at = end + section->end.size();
    } else {
      if (rest.startsWith(QLatin1String("<!"))) return false;
      at = endOfTag(text, at);
      if (at < 0) return false;
    }
  }
  return true;
}

/// The first so many characters, and no half of one.
QString beginning(const QString& text, qsizetype longest) {
  const bool halved = text.size() > longest && text.at(longest).isLowSurrogate();
  return text.left(halved ? longest - 1 : longest);
}

/// HTML with its lines and nothing else: no tag but the one that ends a line, and that without attributes. A
/// single table cell that claims to be a thousand million wide and high keeps a document busy for seconds.
QString linesOf(QString html) {
  constexpr auto Html =
      QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption;
  static const QRegularExpression unshown(
      QStringLiteral("<!--.*?(-->|$)|<(script|style|head|title)\\b.*?(</\\2\\s*>|$)"), Html);
  static const QRegularExpression endsLine(
      QStringLiteral("</?(p|br|div|li|ul|ol|dl|dt|dd|tr|table|h[1-6]|hr|pre|blockquote)\\b[^>]*(>|$)"), Html);
  static const QRegularExpression tag(QStringLiteral("<[/!?]?[a-z][^>]*(>|$)"), Html);
  static const QRegularExpression breaks(QStringLiteral("(\\s*\\n)+\\s*"));
  html.remove(unshown);
  html = html.simplified();
  html.replace(endsLine, QStringLiteral("\n")).remove(tag);
  html.replace(QLatin1Char('<'), QLatin1String("&lt;"));
  return html.trimmed().replace(breaks, QStringLiteral("<br>"));
}

}  // namespace

std::optional<QString> feedText(const QByteArray& feed) {
  QStringDecoder decoder = decoderFor(feed);
  if (!decoder.isValid()) return std::nullopt;
  QString text = decoder(feed);
  if (decoder.hasError() || !isHarmless(text)) return std::nullopt;
  return text;
}

QString oneLine(const QString& text, qsizetype longest) {
  static const QRegularExpression unseen(QStringLiteral("[\\p{Cc}\\p{Cf}]"));
  return beginning(text.simplified().remove(unseen), longest);
}

QString plainText(const QString& html) {
  // What would turn the direction of all the text behind it.
  static const QRegularExpression turns(QStringLiteral("[\\x{202A}-\\x{202E}\\x{2066}-\\x{2069}]"));
  const QString lines = linesOf(beginning(html, LongestDescription));
  const QString text = QTextDocumentFragment::fromHtml(lines).toPlainText().remove(turns).trimmed();
  const QString cut =
      beginning(text, LongestPlainText).section(QLatin1Char('\n'), 0, MostLines - 1).trimmed();
  return cut.size() < text.size() ? cut + QStringLiteral(" …") : cut;
}

}  // namespace velmora::orv
