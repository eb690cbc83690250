// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/scripts/ShellStyles.h"

#include <QStringList>
#include <utility>

namespace velmora::desktop {

namespace {

using Style = platform::ScriptText::Style;

/// Reads a source once, from its beginning to its end. What is begun inside something else (commands inside a
/// string, a string inside an expansion) is a level of its own.
class Scanner {
 public:
  explicit Scanner(const QString& source) : text_(source) { levels_.append(Level{}); }

  QList<platform::ScriptText::Run> scan() {
    while (at_ < text_.size()) {
      switch (top().kind) {
        case Kind::Commands:
          readCommands();
          break;
        case Kind::DoubleQuotes:
          readDoubleQuotes();
          break;
        case Kind::Parameter:
          readParameter();
          break;
        case Kind::Arithmetic:
          readArithmetic();
          break;
      }
    }
    // A backslash at the very end has nothing behind it.
    at_ = text_.size();
    while (levels_.size() > 1) leaveUnfinished();
    finishWord();
    return runs_;
  }

 private:
  enum class Kind { Commands, DoubleQuotes, Parameter, Arithmetic };
  /// What the next word of the commands is.
  enum class Next { Any, ForName, ForIn, CaseWord, CaseIn, HereDelimiter };
  struct Level {
    Kind kind = Kind::Commands;
    char end = 0;               // of commands: ')', '`', or nothing for the script itself
    qsizetype stringBegin = 0;  // of double quotes: where the stretch begins that is not styled yet
    int parentheses = 0;        // of arithmetic: how many are open
    qsizetype wordBegin = -1;   // of commands: the word that is being read
    bool wordIsPlain = true;    // without quotes and expansions
    bool reserved = true;       // a reserved word would be one here
    Next next = Next::Any;
    QList<bool> inPattern;  // the case statements that are open; whether a pattern is being read
    bool patternBegins = false;
  };
  struct HereDocument {
    QString delimiter;
    bool withoutTabs;
  };

  Level& top() { return levels_.last(); }
  char at(qsizetype position) const { return position < text_.size() ? text_[position].toLatin1() : '\0'; }
  void add(qsizetype begin, qsizetype end, Style style) {
    if (end > begin) runs_.append({{begin, end - begin}, style});
  }

  void enter(Kind kind, char end, qsizetype length) {
    if (top().kind == Kind::DoubleQuotes) add(top().stringBegin, at_, Style::String);
    if (top().kind == Kind::Commands && end != '(') beginWord(false);
    Level level;
    level.kind = kind;
    level.end = end == '(' ? ')' : end;
    level.stringBegin = at_;
    if (end == '`') ++backquotes_;
    levels_.append(level);
    at_ += length;
  }
  /// Ends the level that is being read, just before `at_`.
  void leave() {
    if (top().kind == Kind::DoubleQuotes) add(top().stringBegin, at_, Style::String);
    if (top().kind == Kind::Commands && top().end == '`') --backquotes_;
    levels_.removeLast();
    top().stringBegin = at_;
  }

  /// What means the same in commands, double quotes, expansions and arithmetic. False when there is nothing
  /// of it.
  bool readCommon() {
    switch (at(at_)) {
      case '\\':
        at_ += 2;
        return true;
      case '`':
        readBackquote();
        return true;
      case '$':
        readDollar();
        return true;
      default:
        return false;
    }
  }
  void readBackquote() {
    if (backquotes_ == 0) {
      enter(Kind::Commands, '`', 1);
      return;
    }
    // The first one that is not escaped ends the commands, whatever is open within them.
    while (!(top().kind == Kind::Commands && top().end == '`')) leaveUnfinished();
    finishWord();
    ++at_;
    leave();
  }
  void leaveUnfinished() {
    if (top().kind == Kind::Commands) finishWord();
    leave();
  }
  void readDollar() {
    const char next = at(at_ + 1);
    if (next == '(' && at(at_ + 2) == '(') {
      enter(Kind::Arithmetic, 0, 3);
    } else if (next == '(') {
      enter(Kind::Commands, ')', 2);
    } else if (next == '{') {
      enter(Kind::Parameter, '}', 2);
    } else {
      // "$#" begins no comment.
      at_ += QByteArrayView("#?$!*@-").contains(next) ? 2 : 1;
    }
  }
  void readSingleQuotes(qsizetype begin, qsizetype quote) {
    const qsizetype closing = text_.indexOf(QLatin1Char('\''), quote + 1);
    at_ = closing < 0 ? text_.size() : closing + 1;
    add(begin, at_, Style::String);
  }

  void readDoubleQuotes() {
    if (readCommon()) return;
    if (at(at_++) == '"') leave();
  }

  void readParameter() {
    if (readCommon()) return;
    const bool quoted = levels_[levels_.size() - 2].kind == Kind::DoubleQuotes;
    switch (at(at_)) {
      case '"':
        enter(Kind::DoubleQuotes, 0, 1);
        return;
      case '\'':
        if (quoted) break;
        readSingleQuotes(at_, at_);
        return;
      case '}':
        ++at_;
        leave();
        return;
      default:
        break;
    }
    ++at_;
  }

  void readArithmetic() {
    if (readCommon()) return;
    const char c = at(at_++);
    if (c == '(') ++top().parentheses;
    if (c != ')' || top().parentheses-- > 0) return;
    if (at(at_) == ')') ++at_;
    leave();
  }

  void readCommands() {
    const char c = at(at_);
    switch (c) {
      case ' ':
      case '\t':
      case '\r':
        finishWord();
        ++at_;
        return;
      case '\n':
        readLineEnd();
        return;
      case ';':
      case '&':
      case '|':
        readSeparator(c);
        return;
      case '<':
      case '>':
        readRedirection(c);
        return;
      case '(':
      case ')':
        readParenthesis(c);
        return;
      case '#':
        if (top().wordBegin < 0) {
          readComment();
          return;
        }
        break;
      default:
        break;
    }
    readWord(c);
  }

  void readWord(char c) {
    // A line that is continued.
    if (c == '\\' && at(at_ + 1) == '\n' && top().wordBegin < 0) {
      at_ += 2;
      return;
    }
    const bool plain = c != '\\' && c != '\'' && c != '"' && c != '$';
    if (c != '`' || backquotes_ == 0) beginWord(plain);
    if (c == '\'') {
      readSingleQuotes(at_, at_);
    } else if (c == '$' && at(at_ + 1) == '\'') {
      readSingleQuotes(at_, at_ + 1);
    } else if (c == '"') {
      enter(Kind::DoubleQuotes, 0, 1);
    } else if (!readCommon()) {
      ++at_;
    }
  }
  void beginWord(bool plain) {
    if (top().wordBegin < 0) {
      top().wordBegin = at_;
      top().wordIsPlain = true;
    }
    if (!plain) top().wordIsPlain = false;
  }

  void readComment() {
    qsizetype end = text_.indexOf(QLatin1Char('\n'), at_);
    if (end < 0) end = text_.size();
    // The one that ends commands in back quotes ends a comment among them, too.
    const qsizetype closing = backquotes_ > 0 ? text_.indexOf(QLatin1Char('`'), at_) : -1;
    if (closing >= 0 && closing < end) end = closing;
    add(at_, end, Style::Comment);
    at_ = end;
  }
  void readLineEnd() {
    finishWord();
    ++at_;
    top().reserved = true;
    for (const HereDocument& document : std::exchange(hereDocuments_, {})) skip(document);
  }
  void skip(const HereDocument& document) {
    while (at_ < text_.size()) {
      qsizetype end = text_.indexOf(QLatin1Char('\n'), at_);
      if (end < 0) end = text_.size();
      qsizetype begin = at_;
      while (document.withoutTabs && begin < end && at(begin) == '\t') ++begin;
      at_ = std::min(end + 1, text_.size());
      if (QStringView(text_).mid(begin, end - begin) == document.delimiter) return;
    }
  }
  bool readsPattern() { return !top().inPattern.isEmpty() && top().inPattern.last(); }

  void readSeparator(char c) {
    finishWord();
    const bool twice = at(at_ + 1) == c;
    at_ += twice ? 2 : 1;
    if (readsPattern()) return;
    top().reserved = true;
    top().next = Next::Any;
    if (c == ';' && twice && !top().inPattern.isEmpty()) {
      top().inPattern.last() = true;
      top().patternBegins = true;
    }
  }
  void readRedirection(char c) {
    finishWord();
    top().reserved = false;
    const char second = at(at_ + 1);
    const bool hereDocument = c == '<' && second == '<';
    at_ += second == '&' || second == c || (c == '<' && second == '>') || (c == '>' && second == '|') ? 2 : 1;
    if (!hereDocument) return;
    top().next = Next::HereDelimiter;
    withoutTabs_ = at(at_) == '-';
    if (withoutTabs_) ++at_;
  }
  void readParenthesis(char c) {
    finishWord();
    if (c == '(') {
      if (readsPattern())
        ++at_;
      else
        enter(Kind::Commands, '(', 1);
      return;
    }
    ++at_;
    if (readsPattern()) {
      top().inPattern.last() = false;
      top().reserved = true;
    } else if (top().end == ')') {
      leave();
      if (top().kind == Kind::Commands && top().wordBegin < 0) top().reserved = true;
    }
  }

  /// The word that has been read up to `at_` is complete.
  void finishWord() {
    Level& level = top();
    if (level.wordBegin < 0) return;
    const qsizetype begin = std::exchange(level.wordBegin, -1);
    const QString word = text_.mid(begin, at_ - begin);
    const Next next = std::exchange(level.next, Next::Any);
    bool reserved = false;
    if (next == Next::HereDelimiter) {
      hereDocuments_.append({unquoted(word), withoutTabs_});
    } else if (next == Next::ForName || next == Next::CaseWord) {
      level.next = next == Next::ForName ? Next::ForIn : Next::CaseIn;
    } else if (next == Next::CaseIn && word == QLatin1String("in")) {
      reserved = level.wordIsPlain;
      level.inPattern.append(true);
      level.patternBegins = true;
    } else if (next == Next::ForIn && word == QLatin1String("in")) {
      reserved = level.wordIsPlain;
      level.reserved = false;
    } else if (readsPattern()) {
      reserved = level.patternBegins && word == QLatin1String("esac");
      level.patternBegins = false;
      if (reserved) endCase();
    } else {
      reserved = level.wordIsPlain && level.reserved && takeReserved(word);
      if (!reserved) level.reserved = false;
    }
    if (reserved) add(begin, at_, Style::Keyword);
  }
  void endCase() {
    if (!top().inPattern.isEmpty()) top().inPattern.removeLast();
    top().reserved = true;
  }
  bool takeReserved(const QString& word) {
    static const QStringList followedByCommands{
        QStringLiteral("if"),    QStringLiteral("then"),  QStringLiteral("elif"), QStringLiteral("else"),
        QStringLiteral("while"), QStringLiteral("until"), QStringLiteral("do"),   QStringLiteral("{"),
        QStringLiteral("!"),     QStringLiteral("fi"),    QStringLiteral("done"), QStringLiteral("}")};
    // Another reserved word may also follow the last three: "fi fi".
    top().reserved = true;
    if (followedByCommands.contains(word)) return true;
    if (word == QLatin1String("esac")) {
      endCase();
      return true;
    }
    if (word == QLatin1String("for")) top().next = Next::ForName;
    if (word == QLatin1String("case")) top().next = Next::CaseWord;
    return top().next != Next::Any;
  }
  static QString unquoted(QString word) {
    for (const char quote : {'\'', '"', '\\'}) word.remove(QLatin1Char(quote));
    return word;
  }

  const QString& text_;
  qsizetype at_ = 0;
  QList<Level> levels_;
  int backquotes_ = 0;                 // how many of the levels are commands in back quotes
  QList<HereDocument> hereDocuments_;  // whose text begins with the next line
  bool withoutTabs_ = false;
  QList<platform::ScriptText::Run> runs_;
};

}  // namespace

QList<platform::ScriptText::Run> styledRuns(const QString& source) { return Scanner(source).scan(); }

}  // namespace velmora::desktop
