// SPDX-License-Identifier: LGPL-3.0-or-later
#include "orv/updates/OrvAppcast.h"

#include <QXmlStreamReader>
#include <compare>

#include "orv/updates/FeedText.h"
#include "orv/updates/OrvVersionNumber.h"
#include "platform/text/Localization.h"
#include "platform/workspace/Web.h"

namespace velmora::orv {

namespace {

using Token = QXmlStreamReader::TokenType;

const QString SparkleNamespace = QStringLiteral("http://www.andymatuschak.org/xml-namespaces/sparkle");
const QString ThisSystem = QStringLiteral("linux");
constexpr int MostItems = 1000;
constexpr int DeepestElement = 32;
constexpr qsizetype LongestVersion = 40;
constexpr qsizetype LongestAddress = 2000;

QUrl webAddress(const QString& text) {
  if (text.size() > LongestAddress) return {};
  const QUrl url(text.trimmed(), QUrl::StrictMode);
  return platform::isWebAddress(url) ? url : QUrl();
}

/// One item as it stands in the feed.
struct Entry {
  QString version;
  QString shortVersion;
  QString description;
  QUrl link;
  QUrl download;
  QUrl releaseNotes;
  bool forOthers = false;
};

/// Reads the feed from its first element to its last.
class Reader {
 public:
  explicit Reader(const QString& feed) : xml_(feed) {}

  /// False when it is no such feed.
  bool read() {
    if (!enter() || xml_.name() != QLatin1String("rss")) return false;
    bool channelSeen = false;
    forEachChild([&] {
      if (xml_.name() != QLatin1String("channel") || !xml_.namespaceUri().isEmpty()) return skip();
      channelSeen = true;
      readChannel();
    });
    // What follows the last element must be well-formed, too: else the answer is not all there.
    while (!xml_.atEnd()) next();
    return channelSeen && !xml_.hasError();
  }

  const QList<Entry>& entries() const { return entries_; }
  const QUrl& link() const { return link_; }

 private:
  Token next() {
    const Token token = xml_.readNext();
    if (token == QXmlStreamReader::StartElement && ++depth_ > DeepestElement) refuse();
    if (token == QXmlStreamReader::EndElement) --depth_;
    return xml_.tokenType();
  }
  void refuse() { xml_.raiseError(QStringLiteral("refused")); }
  /// Goes to the first element.
  bool enter() {
    while (!xml_.atEnd()) {
      if (next() == QXmlStreamReader::StartElement) return true;
    }
    return false;
  }
  /// Calls `visit` at each child of the current element; `visit` leaves the reader at the child's end.
  template <typename Visit>
  void forEachChild(Visit visit) {
    while (!xml_.atEnd()) {
      const Token token = next();
      if (token == QXmlStreamReader::EndElement) return;
      if (token == QXmlStreamReader::StartElement) visit();
    }
  }
  void skip() {
    forEachChild([this] { skip(); });
  }
  /// The text in the current element and all within it.
  QString text() {
    QString result;
    while (!xml_.atEnd()) {
      const Token token = next();
      if (token == QXmlStreamReader::EndElement) break;
      if (token == QXmlStreamReader::Characters) result += xml_.text();
      if (token == QXmlStreamReader::StartElement) result += text();
    }
    return result;
  }

  void readChannel() {
    forEachChild([this] {
      const bool rss = xml_.namespaceUri().isEmpty();
      if (rss && xml_.name() == QLatin1String("item")) return readItem();
      if (rss && xml_.name() == QLatin1String("link")) {
        link_ = webAddress(text());
        return;
      }
      skip();
    });
  }

  void readItem() {
    if (entries_.size() == MostItems) return refuse();
    Entry entry;
    bool enclosureTaken = false;
    bool enclosureRefused = false;
    forEachChild([&] {
      const QString name = xml_.name().toString();
      if (xml_.namespaceUri() == SparkleNamespace) return readSparkle(name, entry);
      if (!xml_.namespaceUri().isEmpty()) return skip();
      if (name == QLatin1String("link")) {
        entry.link = webAddress(text());
      } else if (name == QLatin1String("description")) {
        entry.description = text();
      } else if (name == QLatin1String("enclosure")) {
        const bool ours = isThisSystem(xml_.attributes().value(SparkleNamespace, QStringLiteral("os")));
        (ours ? enclosureTaken : enclosureRefused) = true;
        if (ours) readEnclosure(entry);
        skip();
      } else {
        skip();
      }
    });
    if (enclosureRefused && !enclosureTaken) entry.forOthers = true;
    entries_.append(entry);
  }

  static bool isThisSystem(QStringView system) {
    return system.trimmed().isEmpty() || system.trimmed().compare(ThisSystem, Qt::CaseInsensitive) == 0;
  }

  void readSparkle(const QString& name, Entry& entry) {
    const QString value = text();
    if (name == QLatin1String("version")) entry.version = oneLine(value, LongestVersion);
    if (name == QLatin1String("shortVersionString")) entry.shortVersion = oneLine(value, LongestVersion);
    if (name == QLatin1String("releaseNotesLink")) entry.releaseNotes = webAddress(value);
    if (name == QLatin1String("os") && !isThisSystem(value)) entry.forOthers = true;
    if (name == QLatin1String("channel") && !value.trimmed().isEmpty()) entry.forOthers = true;
  }

  /// An element of the item says the same as an attribute here, and goes first.
  void readEnclosure(Entry& entry) {
    const QXmlStreamAttributes attributes = xml_.attributes();
    const auto value = [&](const char* name) {
      return oneLine(attributes.value(SparkleNamespace, QString::fromLatin1(name)).toString(),
                     LongestVersion);
    };
    if (entry.version.isEmpty()) entry.version = value("version");
    if (entry.shortVersion.isEmpty()) entry.shortVersion = value("shortVersionString");
    if (entry.download.isEmpty())
      entry.download = webAddress(attributes.value(QLatin1String("url")).toString());
  }

  QXmlStreamReader xml_;
  int depth_ = 0;
  QUrl link_;
  QList<Entry> entries_;
};

/// The newest of those that can be compared: by version where there is one, since numbers of the two kinds
/// say nothing about each other.
const Entry* newestOf(const QList<Entry>& entries) {
  for (const auto number : {&Entry::version, &Entry::shortVersion}) {
    const Entry* newest = nullptr;
    for (const Entry& entry : entries) {
      if (entry.forOthers || (entry.*number).isEmpty()) continue;
      if (!newest || compareVersions(entry.*number, newest->*number) > 0) newest = &entry;
    }
    if (newest) return newest;
  }
  return nullptr;
}

QUrl firstOf(const QList<QUrl>& addresses) {
  for (const QUrl& address : addresses) {
    if (!address.isEmpty()) return address;
  }
  return {};
}

}  // namespace

base::Result<std::optional<AppcastItem>> readAppcast(const QByteArray& feed) {
  const std::optional<QString> text = feedText(feed);
  Reader reader(text.value_or(QString()));
  if (!text || !reader.read())
    return base::Failure{
        platform::localizedString("OrvVersion", "The list of versions could not be understood.")};
  const Entry* newest = newestOf(reader.entries());
  if (newest) {
    return std::optional(
        AppcastItem{newest->version, newest->shortVersion,
                    firstOf({newest->link, newest->download, newest->releaseNotes, reader.link()}),
                    plainText(newest->description)});
  }
  for (const Entry& entry : reader.entries()) {
    // It offers something, and does not say what.
    if (!entry.forOthers)
      return base::Failure{platform::localizedString("OrvVersion", "The list of versions names no version.")};
  }
  return std::optional<AppcastItem>();
}

}  // namespace velmora::orv
