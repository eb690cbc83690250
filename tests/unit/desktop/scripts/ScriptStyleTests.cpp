// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include "desktop/scripts/ShellStyles.h"
#include "testing/main/Shown.h"

using velmora::desktop::styledRuns;
using velmora::platform::ScriptText;

namespace {

/// A source with its runs in brackets: [k if] for a keyword, [s "a"] for a string, [c # a] for a comment.
QString marked(const QString& source) {
  QString text;
  qsizetype at = 0;
  for (const ScriptText::Run& run : styledRuns(source)) {
    EXPECT_GE(run.range.location, at) << "runs overlap or are out of order: " << qPrintable(source);
    EXPECT_GT(run.range.length, 0) << qPrintable(source);
    const char* letter = run.style == ScriptText::Style::Keyword  ? "k"
                         : run.style == ScriptText::Style::String ? "s"
                                                                  : "c";
    text += source.mid(at, run.range.location - at);
    at = run.range.location + run.range.length;
    text += QString("[%1 %2]").arg(letter, source.mid(run.range.location, run.range.length));
  }
  EXPECT_LE(at, source.size());
  return text + source.mid(at);
}

struct Case {
  const char* source;
  const char* marked;
};

void expectMarked(std::initializer_list<Case> cases) {
  for (const Case& c : cases) EXPECT_EQ(marked(c.source), c.marked);
}

}  // namespace

TEST(ScriptStyle, MarksReservedWordsOnlyWhereACommandBegins) {
  expectMarked({
      {"if a; then b; elif c; then d; else e; fi",
       "[k if] a; [k then] b; [k elif] c; [k then] d; [k else] e; [k fi]"},
      {"while a; do b; done", "[k while] a; [k do] b; [k done]"},
      {"until a\ndo\nb\ndone", "[k until] a\n[k do]\nb\n[k done]"},
      {"echo if then done", "echo if then done"},
      {"if if a; then b; fi then c; fi", "[k if] [k if] a; [k then] b; [k fi] [k then] c; [k fi]"},
      {"! a && ! b || { c; }", "[k !] a && [k !] b || [k {] c; [k }]"},
      {"f() { a; }", "f() [k {] a; [k }]"},
      {"(if a; then b; fi) | while c; do d; done",
       "([k if] a; [k then] b; [k fi]) | [k while] c; [k do] d; [k done]"},
      {"if (a) then b; fi", "[k if] (a) [k then] b; [k fi]"},
      {"a=1 if", "a=1 if"},
      {"'if' a; \\if a; i\"f\"", "[s 'if'] a; \\if a; i[s \"f\"]"},
      {"iffy a; done2", "iffy a; done2"},
      {"a > if; b 2>&1 && if c", "a > if; b 2>&1 && [k if] c"},
      {"a & if b", "a & [k if] b"},
      {"done < in", "[k done] < in"},
      {"$x if", "$x if"},
      {"if", "[k if]"},
      {"größe; fi", "größe; [k fi]"},
  });
}

TEST(ScriptStyle, KnowsTheWordsOfForAndCase) {
  expectMarked({
      {"for if in do done; do a; done", "[k for] if [k in] do done; [k do] a; [k done]"},
      {"for x do a; done", "[k for] x [k do] a; [k done]"},
      {"for x\nin a; do b; done", "[k for] x\n[k in] a; [k do] b; [k done]"},
      {"for x; do a; done", "[k for] x; [k do] a; [k done]"},
      {"in a", "in a"},
      {"case in in in) a ;; esac", "[k case] in [k in] in) a ;; [k esac]"},
      {"case $x in\nif|esac) if a; then b; fi ;;\n(do) c;;\nesac\nif d",
       "[k case] $x [k in]\nif|esac) [k if] a; [k then] b; [k fi] ;;\n(do) c;;\n[k esac]\n[k if] d"},
      {"case a in b) case c in d) e;; esac;; f) g; esac; if",
       "[k case] a [k in] b) [k case] c [k in] d) e;; [k esac];; f) g; [k esac]; [k if]"},
      {"case \"$x\" in \"a b\") (c);; esac", "[k case] [s \"$x\"] [k in] [s \"a b\"]) (c);; [k esac]"},
  });
}

TEST(ScriptStyle, MarksStringsWithTheirQuotes) {
  expectMarked({
      {"echo 'a \"b\" # c' d", "echo [s 'a \"b\" # c'] d"},
      {"echo \"a 'b' \\\" # c\" d", "echo [s \"a 'b' \\\" # c\"] d"},
      {"echo 'a\\' b", "echo [s 'a\\'] b"},
      {"echo $'a b' c", "echo [s $'a b'] c"},
      {"echo \\\"a\\\" \\'b", "echo \\\"a\\\" \\'b"},
      {"x=\"a\"'b'c", "x=[s \"a\"][s 'b']c"},
      {"echo \"a\nif b\nc\"\nif d", "echo [s \"a\nif b\nc\"]\n[k if] d"},
      {"echo \"患者 😀\" b", "echo [s \"患者 😀\"] b"},
      {"echo \"open", "echo [s \"open]"},
      {"echo 'open", "echo [s 'open]"},
      {"echo \"$x costs $5\"", "echo [s \"$x costs $5\"]"},
      {"echo \"a\\", "echo [s \"a\\]"},
  });
}

TEST(ScriptStyle, ReadsCommandsAndExpansionsInsideStrings) {
  expectMarked({
      {"echo \"a $(if b \"c\" # d\n) e\" f", "echo [s \"a ]$([k if] b [s \"c\"] [c # d]\n)[s  e\"] f"},
      {"echo \"a `if b` c\" d", "echo [s \"a ]`[k if] b`[s  c\"] d"},
      {"a=`if b; then c; fi`; if", "a=`[k if] b; [k then] c; [k fi]`; [k if]"},
      {"echo `a # b` if", "echo `a [c # b]` if"},
      {"echo \"${a:-'}\" b", "echo [s \"]${a:-'}[s \"] b"},
      {"echo ${a:-'}'} b 'c'", "echo ${a:-[s '}']} b [s 'c']"},
      {"echo ${a:-\"}\"} \"c\"", "echo ${a:-[s \"}\"]} [s \"c\"]"},
      {"echo \"$((1 + (2 * 3)))\" if", "echo [s \"]$((1 + (2 * 3)))[s \"] if"},
      {"echo $((a)) 'b'", "echo $((a)) [s 'b']"},
      {"$(a) if; if", "$(a) if; [k if]"},
      {"echo $(case x in a) b;; esac) 'c'", "echo $([k case] x [k in] a) b;; [k esac]) [s 'c']"},
      {"echo \"$(", "echo [s \"]$("},
      {"`\"`if", "`[s \"]`if"},
  });
}

TEST(ScriptStyle, MarksCommentsOnlyWhereAWordCouldBegin) {
  expectMarked({
      {"# if 'a'\nif b # c", "[c # if 'a']\n[k if] b [c # c]"},
      {"echo a#b ${#c} $# $((2#11)) \\# d", "echo a#b ${#c} $# $((2#11)) \\# d"},
      {"a;#b", "a;[c #b]"},
      {"(#b\n)", "([c #b]\n)"},
      {"#!/bin/sh", "[c #!/bin/sh]"},
      {"a \\\n# b", "a \\\n[c # b]"},
      {"# ü 患者\nif", "[c # ü 患者]\n[k if]"},
      {"case a in # b\nc) d;; esac", "[k case] a [k in] [c # b]\nc) d;; [k esac]"},
  });
}

TEST(ScriptStyle, LeavesHereDocumentsAsTheyAre) {
  expectMarked({
      {"cat <<EOF\nif it's # \"\nEOF\nif a", "cat <<EOF\nif it's # \"\nEOF\n[k if] a"},
      {"cat <<'E F' 'x'\nif '\n E F\nE F\nif a", "cat <<[s 'E F'] [s 'x']\nif '\n E F\nE F\n[k if] a"},
      {"cat <<-\\EOF\n\tif '\n\tEOF\nif a", "cat <<-\\EOF\n\tif '\n\tEOF\n[k if] a"},
      {"cat <<A - <<B; if c\n'\nB\nA\n'\nB\nif d", "cat <<A - <<B; [k if] c\n'\nB\nA\n'\nB\n[k if] d"},
      {"x=$(cat <<EOF\n)'\nEOF\n); if a", "x=$(cat <<EOF\n)'\nEOF\n); [k if] a"},
      {"cat <<EOF\nif", "cat <<EOF\nif"},
      {"cat <<EOF\n\tEOF\nif\nEOF\nif", "cat <<EOF\n\tEOF\nif\nEOF\n[k if]"},
  });
}

TEST(ScriptStyle, EndsWithAnySource) {
  expectMarked({{"", ""},
                {"\\", "\\"},
                {"$", "$"},
                {")", ")"},
                {"))esac;;", "))[k esac];;"},
                {"<<", "<<"},
                {"`", "`"}});
  // Every beginning of a script that has everything in it.
  const QString everything =
      "case \"$(a `b \"c\" \\`d\\` # e`)\" in '1'|${2:-\"x\"}) f <<-E >&2;; esac # g\n\t$((1+(2)))\n\tE\n{ "
      "h; } \\\n";
  for (qsizetype length = 0; length <= everything.size(); ++length) marked(everything.first(length));
}
