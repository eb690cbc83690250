// SPDX-License-Identifier: LGPL-3.0-or-later
#include "orv/updates/OrvAppcast.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QRandomGenerator>

#include "testing/main/Shown.h"

using velmora::orv::AppcastItem;
using velmora::orv::readAppcast;

namespace {

/// A feed with those items.
QByteArray feed(const QByteArray& items) {
  return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
         "<rss version=\"2.0\" xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\">\n"
         "<channel><title>Growth</title><link>https://growth.example/</link>" +
         items + "</channel></rss>\n";
}

QByteArray item(const QByteArray& content) { return "<item><title>x</title>" + content + "</item>"; }

/// An item that says its version in the attributes of the enclosure.
QByteArray enclosed(const QByteArray& version, const QByteArray& attributes = {}) {
  return item("<enclosure url=\"https://growth.example/" + version + ".tar\" sparkle:version=\"" + version +
              "\" length=\"1\" type=\"application/octet-stream\" " + attributes + "/>");
}

/// The newest version that a feed offers; none as well when it cannot be read.
std::optional<AppcastItem> offered(const QByteArray& whole) { return readAppcast(whole).valueOr({}); }

/// The version of the newest item, in words when there is none.
QString newest(const QByteArray& items) {
  const auto found = readAppcast(feed(items));
  if (!found.ok()) return found.error();
  return *found ? (*found)->version + "/" + (*found)->shortVersion : "none";
}

QString page(const QByteArray& content) {
  const auto found = readAppcast(feed(item("<sparkle:version>2</sparkle:version>" + content)));
  return found.ok() ? found.value()->page.toString() : found.error();
}

QString whatIsNew(const QByteArray& description) {
  const auto found = readAppcast(
      feed(item("<sparkle:version>2</sparkle:version><description>" + description + "</description>")));
  return found.ok() ? found.value()->whatIsNew : found.error();
}

const QString NotUnderstood = "The list of versions could not be understood.";

}  // namespace

TEST(VersionFeed, GivesVersionsFromTheAttributesOfTheEnclosure) {
  EXPECT_EQ(newest(enclosed("42", "sparkle:shortVersionString=\"1.2\"")), "42/1.2");
  EXPECT_EQ(newest(enclosed("42")), "42/");
}

TEST(VersionFeed, GivesVersionsFromElements) {
  const QByteArray elements =
      "<sparkle:version> 42 </sparkle:version><sparkle:shortVersionString>1.2</sparkle:shortVersionString>";
  EXPECT_EQ(newest(item(elements)), "42/1.2");
  EXPECT_EQ(newest(item(elements + "<enclosure url=\"https://x/\" sparkle:version=\"7\"/>")), "42/1.2");
  EXPECT_EQ(newest(item("<enclosure url=\"https://x/\" sparkle:version=\"7\"/>" + elements)), "42/1.2");
}

TEST(VersionFeed, KnowsTheVersionNamespaceByItsNameNotItsPrefix) {
  const QByteArray other =
      "<rss xmlns:s=\"http://www.andymatuschak.org/xml-namespaces/sparkle\" "
      "xmlns:sparkle=\"urn:other\"><channel>"
      "<item><s:version>5</s:version><sparkle:version>9</sparkle:version></item></channel></rss>";
  ASSERT_TRUE(offered(other));
  EXPECT_EQ(offered(other)->version, "5");
}

TEST(VersionFeed, GivesTheNewestWhereverItStands) {
  EXPECT_EQ(newest(enclosed("9") + enclosed("10") + enclosed("8")), "10/");
  EXPECT_EQ(newest(enclosed("1.0") + enclosed("1.0b2")), "1.0/");
  EXPECT_EQ(newest(enclosed("3", "sparkle:shortVersionString=\"first\"") +
                   enclosed("3.0", "sparkle:shortVersionString=\"second\"")),
            "3/first");
}

TEST(VersionFeed, ComparesShortVersionsOnlyWhereThereAreNoOthers) {
  const auto shortOnly = [](const QByteArray& version) {
    return item("<sparkle:shortVersionString>" + version + "</sparkle:shortVersionString>");
  };
  EXPECT_EQ(newest(shortOnly("1.9") + shortOnly("1.10")), "/1.10");
  EXPECT_EQ(newest(shortOnly("2.0") + enclosed("1")), "1/");
}

TEST(VersionFeed, PassesOverEntriesForOtherSystems) {
  EXPECT_EQ(newest(enclosed("9", "sparkle:os=\"macos\"") + enclosed("8", "sparkle:os=\"windows\"") +
                   enclosed("7", "sparkle:os=\"Linux\"") + enclosed("6")),
            "7/");
  EXPECT_EQ(newest(enclosed("9", "sparkle:os=\"macos\"")), "none");
  EXPECT_EQ(newest(item("<sparkle:os>windows</sparkle:os><sparkle:version>9</sparkle:version>")), "none");
  EXPECT_EQ(newest(item("<sparkle:version>9</sparkle:version>"
                        "<enclosure url=\"https://x/a\" sparkle:os=\"macos\"/>"
                        "<enclosure url=\"https://x/b\" sparkle:os=\"linux\"/>")),
            "9/");
  EXPECT_EQ(page("<enclosure url=\"https://x/a\" sparkle:os=\"macos\"/>"
                 "<enclosure url=\"https://x/b\" sparkle:os=\"linux\"/>"),
            "https://x/b");
}

TEST(VersionFeed, PassesOverChannelsThatOneHasToAskFor) {
  EXPECT_EQ(newest(item("<sparkle:version>9</sparkle:version><sparkle:channel>beta</sparkle:channel>") +
                   enclosed("8")),
            "8/");
  EXPECT_EQ(newest(item("<sparkle:version>9</sparkle:version><sparkle:channel/>") + enclosed("8")), "9/");
}

TEST(VersionFeed, WithoutEntriesOffersNothing) { EXPECT_EQ(newest(""), "none"); }

TEST(VersionFeed, WhoseEntriesHaveNoVersionIsNone) {
  EXPECT_EQ(newest(item("<description>Buy now</description>")), "The list of versions names no version.");
  EXPECT_EQ(newest(item("<sparkle:version> </sparkle:version>")), "The list of versions names no version.");
  EXPECT_EQ(newest(item("<version>9</version>")), "The list of versions names no version.");
  EXPECT_EQ(newest(item("") + enclosed("8")), "8/");
}

TEST(VersionFeed, NamesThePageOfTheItemFirst) {
  const QByteArray enclosure = "<enclosure url=\"https://growth.example/file\"/>";
  const QByteArray notes =
      "<sparkle:releaseNotesLink>https://growth.example/notes</sparkle:releaseNotesLink>";
  EXPECT_EQ(page(notes + enclosure + "<link>https://growth.example/page</link>"),
            "https://growth.example/page");
  EXPECT_EQ(page(notes + enclosure), "https://growth.example/file");
  EXPECT_EQ(page(notes), "https://growth.example/notes");
  EXPECT_EQ(page(""), "https://growth.example/");
  EXPECT_EQ(page("<link>\n  http://growth.example/a?b=1&amp;c=2\n</link>"),
            "http://growth.example/a?b=1&c=2");
}

TEST(VersionFeed, LeadsOnlyToTheWeb) {
  for (const char* address :
       {"file:///etc/passwd", "javascript:alert(1)", "ftp://growth.example/", "data:text/html,x", "/download",
        "growth.example", "https://", "mailto:a@b", "https://growth.example/ a b", "smb://host/share", ""}) {
    EXPECT_EQ(page("<link>" + QByteArray(address) + "</link>"), "https://growth.example/") << address;
    EXPECT_EQ(page("<enclosure url=\"" + QByteArray(address) + "\"/>"), "https://growth.example/") << address;
  }
  EXPECT_EQ(page("<link>https://growth.example/" + QByteArray(5000, 'x') + "</link>"),
            "https://growth.example/");
}

TEST(VersionFeed, SaysWhatIsNewInPlainText) {
  EXPECT_EQ(whatIsNew("<![CDATA[<h1>Growth 2</h1><ul><li>Faster</li><li>Safer &amp; sounder</li></ul>]]>"),
            "Growth 2\nFaster\nSafer & sounder");
  EXPECT_EQ(whatIsNew("&lt;p&gt;One&lt;/p&gt;&lt;p&gt;Two&lt;/p&gt;"), "One\nTwo");
  EXPECT_EQ(whatIsNew("Just text"), "Just text");
  EXPECT_EQ(whatIsNew("<p>Not <b>wrapped</b></p>"), "Not wrapped");
  EXPECT_EQ(whatIsNew(""), "");
  EXPECT_EQ(
      whatIsNew("<![CDATA[<p>Read\n  <a href=\"https://growth.example/\">more</a>,<br/>or less.</p>]]>"),
      "Read more,\nor less.");
  EXPECT_EQ(whatIsNew("<![CDATA[Weights < 2 kg, H<sub>2</sub>O &lt;b&gt; &euro; &#8364; A&nbsp;B]]>"),
            QString::fromUtf8("Weights < 2 kg, H2O <b> € € A B"));
  EXPECT_EQ(newest(item("<sparkle:version>2</sparkle:version>")), "2/");
}

TEST(VersionFeed, ShowsNothingButText) {
  EXPECT_EQ(whatIsNew("<![CDATA[<script>alert('x')</script><style>p{color:red}</style><p>New</p>]]>"), "New");
  EXPECT_EQ(whatIsNew("<![CDATA[<p>See<img src=\"file:///etc/passwd\"/> this</p>]]>"), "See this");
  EXPECT_EQ(whatIsNew("<![CDATA[<!-- not <b>this</b> --><head><title>nor this</title></head><p>New]]>"),
            "New");
  EXPECT_EQ(whatIsNew("<![CDATA[<p>New<p title=\"cut off in the]]>"), "New");
  EXPECT_EQ(whatIsNew("<![CDATA[<p>A\u202etxet lamron\u202c B</p>]]>"), "Atxet lamron B");
}

TEST(VersionFeed, IsNoLongerThanAnAlert) {
  const QString manyWords = whatIsNew(QByteArray("word ").repeated(100000));
  EXPECT_LE(manyWords.size(), 1202);
  EXPECT_TRUE(manyWords.endsWith(QString::fromUtf8(" …"))) << qPrintable(manyWords.right(20));
  const QString manyLines = whatIsNew("<![CDATA[" + QByteArray("<p>line</p>").repeated(50) + "]]>");
  EXPECT_EQ(manyLines.count("line"), 20);
  EXPECT_TRUE(manyLines.endsWith(QString::fromUtf8("line …")));
  EXPECT_EQ(newest(item("<sparkle:version>" + QByteArray(5000, '7') + "</sparkle:version>")),
            QString(40, '7') + "/");
}

TEST(VersionFeed, CutsNoCharacterInHalf) {
  const QByteArray face = "\xf0\x9f\x99\x82";
  const QString cut = whatIsNew("x" + face.repeated(2000));
  EXPECT_TRUE(cut.isValidUtf16());
  EXPECT_EQ(cut.size(), 1199 + 2);
}

TEST(VersionFeed, VersionsStandOnOneLine) {
  EXPECT_EQ(newest(item("<sparkle:version>1.0\n\n\n rc\u202e1</sparkle:version>")), "1.0 rc1/");
}

TEST(VersionFeed, IsReadInEveryEncodingThatItNames) {
  const QByteArray latin1 =
      "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?><rss "
      "xmlns:s=\"http://www.andymatuschak.org/xml-namespaces/sparkle\"><channel><item><s:version>2</"
      "s:version>"
      "<description>f\xfcr Sie</description></item></channel></rss>";
  ASSERT_TRUE(offered(latin1));
  EXPECT_EQ(offered(latin1)->whatIsNew, QString::fromUtf8("für Sie"));
  const QString text = QString::fromUtf8(feed(enclosed("2"))).replace("utf-8", "utf-16");
  const auto* units = reinterpret_cast<const char*>(text.utf16());
  EXPECT_TRUE(offered(QByteArray("\xff\xfe", 2) + QByteArray(units, text.size() * 2)));
  EXPECT_TRUE(offered("\xef\xbb\xbf" + feed(enclosed("2"))));
  EXPECT_EQ(readAppcast(feed(enclosed("2")).replace("utf-8", "klingon")).error(), NotUnderstood);
}

TEST(VersionFeed, ThatIsNoneIsRefused) {
  const QByteArray whole = feed(enclosed("9"));
  const QByteArray declaration = "<!DOCTYPE rss [<!ENTITY a \"b\">]>";
  for (const QByteArray& bad :
       {QByteArray(""), QByteArray(" "), QByteArray("{\"version\": 9}"),
        QByteArray("<html><body>Log in</body></html>"), QByteArray("<!DOCTYPE html><html></html>"),
        QByteArray("<rss></rss>"), QByteArray("<rss/>"),
        QByteArray("<feed xmlns=\"http://www.w3.org/2005/Atom\"/>"), whole + "<rss/>", whole + "x",
        whole.chopped(3), whole.left(whole.size() / 2), QByteArray(whole).replace("</item>", ""),
        QByteArray(whole).replace("Growth", "Growth & Co"),
        QByteArray(whole).replace("Growth", "Growth &nbsp;"),
        QByteArray(whole).replace("Growth", "Gr\xfcwth"), declaration + whole.mid(whole.indexOf("<rss")),
        QByteArray(100000, '<'), QByteArray(1000, '\0')}) {
    EXPECT_EQ(readAppcast(bad).error(), NotUnderstood) << bad.left(100).constData();
  }
}

TEST(VersionFeed, ExpandsNoEntitiesOfItsOwn) {
  QByteArray bomb = "<?xml version=\"1.0\"?><!DOCTYPE rss [<!ENTITY e0 \"ha\">";
  for (int i = 1; i < 30; ++i) {
    const QByteArray before = "&e" + QByteArray::number(i - 1) + ";";
    bomb += "<!ENTITY e" + QByteArray::number(i) + " \"" + before + before + "\">";
  }
  bomb += "]>" + feed(item("<description>&e29;</description>")).mid(39);
  EXPECT_EQ(readAppcast(bomb).error(), NotUnderstood);
  EXPECT_EQ(readAppcast("<!DOCTYPE rss [<!ENTITY f SYSTEM \"file:///etc/passwd\">]>" +
                        feed(item("<description>&f;</description>")).mid(39))
                .error(),
            NotUnderstood);
}

TEST(VersionFeed, HasABoundedNumberOfItems) {
  EXPECT_EQ(newest(enclosed("1").repeated(999) + enclosed("2")), "2/");
  EXPECT_EQ(newest(enclosed("1").repeated(1000) + enclosed("2")), NotUnderstood);
}

TEST(VersionFeed, HasABoundedDepth) {
  const auto nested = [](int levels) {
    return QByteArray("<a>").repeated(levels) + QByteArray("</a>").repeated(levels) + enclosed("2");
  };
  EXPECT_EQ(newest(nested(30)), "2/");
  EXPECT_EQ(newest(nested(31)), NotUnderstood);
  EXPECT_EQ(newest(nested(100000)), NotUnderstood);
  EXPECT_EQ(newest(item("<description>" + QByteArray("<b>").repeated(100000))), NotUnderstood);
}

TEST(VersionFeed, HasTagsOfBoundedLength) {
  const auto withAttribute = [](qsizetype length) {
    return "<a b='" + QByteArray(length - 9, '>') + "'/>" + enclosed("2");
  };
  EXPECT_EQ(newest(withAttribute(4096)), "2/");
  EXPECT_EQ(newest(withAttribute(4097)), NotUnderstood);
  EXPECT_EQ(
      newest("<!-- " + QByteArray(10000, '<') + " --><?note " + QByteArray(10000, '<') + "?>" +
             item("<description><![CDATA[" + QByteArray(10000, '<') + "]]></description>") + enclosed("2")),
      "2/");
}

TEST(VersionFeed, IsReadInAMomentWhateverItHolds) {
  constexpr qsizetype Largest = 1024 * 1024;
  QByteArray attributes = "<rss";
  QByteArray quoted = "<rss q='>'";
  QByteArray declarations = "<!DOCTYPE rss [";
  QByteArray namespaces = "<rss>";
  for (int i = 0; attributes.size() < Largest; ++i) {
    const QByteArray number = QByteArray::number(i);
    attributes += " a" + number + "=''";
    quoted += " a" + number + "='>'";
    declarations += "<!ATTLIST rss a" + number + " CDATA 'b'>";
  }
  for (int level = 0; level < 30; ++level) {
    namespaces += "<a";
    for (int i = 0; i < 200; ++i) namespaces += " xmlns:n" + QByteArray::number(level * 200 + i) + "='u'";
    namespaces += ">";
  }
  namespaces += QByteArray("<n0:a/>").repeated(Largest / 7);
  for (const QByteArray& text :
       {attributes + "/>", quoted + "/>", declarations + "]><rss/>", namespaces,
        QByteArray("<a>").repeated(Largest / 3), "<rss>" + QByteArray("<a/>").repeated(Largest / 4),
        "<rss>" + QByteArray("<!---->").repeated(Largest / 7),
        "<rss>" + QByteArray("&amp;").repeated(Largest / 5),
        QByteArray("<?xml version='1.0' encoding='UTF-7'?>") + attributes}) {
    QElapsedTimer time;
    time.start();
    EXPECT_EQ(readAppcast(text.left(Largest)).error(), NotUnderstood);
    EXPECT_LT(time.elapsed(), 3000) << text.left(60).constData();
  }
}

TEST(VersionFeed, SurvivesWhateverItsDescriptionIs) {
  for (const char* tag :
       {"<b>", "<table><tr><td>", "<ul><li>", "<p>", "<blockquote>", "<a href='x'>", "<", "&", "&#", "<!--",
        "<style>", "<table>", "<td colspan=999999999 rowspan=999999999>", "<img width=9e99>",
        "<ol start=99999999999>", "<font size=9999999999>", "<div style='x:", "<hr>"}) {
    const QByteArray description = "<![CDATA[" + QByteArray(tag).repeated(20000) + "]]>";
    QElapsedTimer time;
    time.start();
    EXPECT_EQ(
        newest(item("<sparkle:version>2</sparkle:version><description>" + description + "</description>")),
        "2/")
        << tag;
    EXPECT_LT(time.elapsed(), 1000) << tag;
  }
}

TEST(VersionFeed, SurvivesDamageOfEveryKind) {
  const QByteArray whole =
      feed(enclosed("9", "sparkle:shortVersionString=\"1.9\"") +
           item("<sparkle:version>10</sparkle:version><description><![CDATA[<p>New</p>]]></description>"));
  for (qsizetype length = 0; length + 1 < whole.size(); ++length)
    ASSERT_EQ(readAppcast(whole.left(length)).error(), NotUnderstood) << length;
  QRandomGenerator random(7);
  int read = 0;
  for (int i = 0; i < 3000; ++i) {
    QByteArray damaged = whole;
    for (int hits = random.bounded(1, 4); hits > 0; --hits) {
      const qsizetype at = random.bounded(static_cast<int>(damaged.size()));
      switch (random.bounded(3)) {
        case 0:
          damaged[at] = static_cast<char>(random.bounded(256));
          break;
        case 1:
          damaged.remove(at, random.bounded(1, 20));
          break;
        default:
          damaged.insert(at,
                         whole.mid(random.bounded(static_cast<int>(whole.size())), random.bounded(1, 40)));
      }
    }
    const auto found = readAppcast(damaged);
    if (!found.ok()) continue;
    ++read;
    if (!*found) continue;
    EXPECT_LE((*found)->version.size(), 40);
    EXPECT_TRUE((*found)->page.isEmpty() || (*found)->page.scheme().startsWith("http"));
  }
  EXPECT_GT(read, 100) << "some damage is harmless";
  EXPECT_LT(read, 2900) << "and most is not";
}
