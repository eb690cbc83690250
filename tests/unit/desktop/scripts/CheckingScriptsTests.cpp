// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Scripts that are looked at, and not run.
#include "desktop/scripts/QtScripts.h"

#include <QCursor>
#include <QGuiApplication>
#include <QStandardPaths>
#include <thread>

#include "testing/files/EnvironmentVariable.h"
#include "testing/files/Fifo.h"
#include "testing/files/Files.h"
#include "testing/files/TemporaryHome.h"
#include "testing/main/Shown.h"
#include "testing/standins/VirtualRunLoop.h"
#include "tests/unit/desktop/scripts/QtScriptsTesting.h"

using namespace velmora;

using testing_support::pinned;
using testkit::EnvironmentVariable;
using testkit::TemporaryHome;
using testkit::writeFile;
using velmora::desktop::QtScripts;
using velmora::platform::Script;
using velmora::platform::ScriptError;
using velmora::platform::ScriptText;
using velmora::platform::TextRange;
using velmora::testkit::Fifo;

namespace {

class CheckingScripts : public testing::Test {
 protected:
  /// What compiling finds; nothing when there is no error.
  std::optional<ScriptError> errorIn(const QString& source) {
    script = scripts->initWithSource(source);
    if (!script) {
      ADD_FAILURE() << "refused";
      return std::nullopt;
    }
    const platform::ScriptResult compiled = script->compileAndReturnError();
    return compiled.ok() ? std::nullopt : std::optional(compiled.failure());
  }
  /// A folder with a program "shfmt" that is that script, for PATH.
  QByteArray folderWithFormatter(const QByteArray& program) const {
    const QString path = home.path("tools/shfmt");
    writeFile(path, "#!/bin/sh\n" + program);
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return QFile::encodeName(home.path("tools"));
  }
  /// A folder without any program, for PATH.
  QByteArray emptyFolder() const { return QFile::encodeName(home.makeFolder("empty")); }

  TemporaryHome home;
  testkit::VirtualRunLoop runLoop;
  std::optional<QtScripts> scripts{runLoop};
  std::unique_ptr<Script> script;
};

}  // namespace

TEST_F(CheckingScripts, HaveTheFormatterThatTheyAreTestedWith) {
  ASSERT_FALSE(QStandardPaths::findExecutable("shfmt").isEmpty()) << "the package shfmt is missing";
}

TEST_F(CheckingScripts, RefuseWhatCannotBeAScriptAtAll) {
  EXPECT_FALSE(scripts->initWithSource(QString("echo a") + QChar(0) + "b"));
  EXPECT_FALSE(scripts->initWithSource(QString("echo ") + QChar(0xd83d)));
  EXPECT_FALSE(scripts->initWithSource(QString(4 * 1024 * 1024 + 1, '#')));
  EXPECT_TRUE(scripts->initWithSource(QString(4 * 1024 * 1024, '#')));
  EXPECT_TRUE(scripts->initWithSource(""));
}

TEST_F(CheckingScripts, FormatAndStyleWhatHasNoError) {
  EXPECT_FALSE(errorIn("if   true\nthen\necho 'a'   # b\nfi"));
  const std::optional<ScriptText> text = script->richTextSource();
  ASSERT_TRUE(text);
  EXPECT_EQ(text->text, "if true; then\n\techo 'a' # b\nfi\n");
  const QList<ScriptText::Run> runs{{{0, 2}, ScriptText::Style::Keyword},
                                    {{9, 4}, ScriptText::Style::Keyword},
                                    {{20, 3}, ScriptText::Style::String},
                                    {{24, 3}, ScriptText::Style::Comment},
                                    {{28, 2}, ScriptText::Style::Keyword}};
  EXPECT_EQ(text->runs, runs);

  EXPECT_FALSE(errorIn(text->text)) << "and leave alone what is formatted";
  EXPECT_EQ(script->richTextSource()->text, text->text);
}

TEST_F(CheckingScripts, KeepEveryCharacterOfOtherWritings) {
  EXPECT_FALSE(errorIn("echo  'Größe 患者 😀 \u00a0|'"));
  EXPECT_EQ(script->richTextSource()->text, "echo 'Größe 患者 😀 \u00a0|'\n");
}

TEST_F(CheckingScripts, RunNothing) {
  EXPECT_FALSE(errorIn("touch ~/made; echo $(touch ~/made)"));
  EXPECT_FALSE(QFile::exists(home.path("made")));
}

TEST_F(CheckingScripts, HaveNoFormattedFormBeforeTheyAreCompiledOrWithAnError) {
  EXPECT_FALSE(scripts->initWithSource("echo a")->richTextSource());
  EXPECT_TRUE(errorIn("echo a )"));
  EXPECT_FALSE(script->richTextSource());
}

TEST_F(CheckingScripts, PointAtASyntaxErrorOnTheLastLineBehindTabsAndNonLatinText) {
  const QString source = "# Größe der 患者\n\techo ok\n\tgröße=1; echo \"😀\" ) x";
  const std::optional<ScriptError> error = errorIn(source);
  ASSERT_TRUE(error);
  EXPECT_EQ(pinned(source, *error), ")");
  EXPECT_EQ(error->range.location, source.lastIndexOf(')')) << "characters, not bytes";
  EXPECT_EQ(error->briefMessage, "a command can only contain words and redirects; encountered )");
  EXPECT_EQ(error->message, "3:25: " + error->briefMessage);
}

TEST_F(CheckingScripts, PointAtWhatBeginsAndDoesNotEnd) {
  const std::pair<const char*, const char*> cases[] = {
      {"true\nif a; then\n  b\n", "if"}, {"echo \"ü\nnext line\n", "\"ü"},
      {"echo ü `date\n", "`date"},       {"( a\n", "("},
      {"true\necho a |\n\n", "|"},       {"foo; done\n", "done"},
  };
  for (const auto& [source, expected] : cases) {
    const std::optional<ScriptError> error = errorIn(source);
    ASSERT_TRUE(error) << source;
    EXPECT_EQ(pinned(source, *error), expected) << qPrintable(error->message);
  }
}

TEST_F(CheckingScripts, FindWhatTheShellWouldOnlyFindWhenItGetsThere) {
  EXPECT_TRUE(errorIn("echo $((1+))"));
  EXPECT_TRUE(errorIn("cat <<EOF\nunfinished\n"));
}

TEST_F(CheckingScripts, FindWithoutShfmtWhatTheShellFinds) {
  const EnvironmentVariable path("PATH", emptyFolder());
  const QString source = "true\n\techo größe; fi\n";
  const std::optional<ScriptError> error = errorIn(source);
  ASSERT_TRUE(error);
  EXPECT_EQ(error->briefMessage, "Syntax error: \"fi\" unexpected");
  EXPECT_EQ(pinned(source, *error), "fi");
}

TEST_F(CheckingScripts, LeaveWithoutShfmtTheTextAsItIs) {
  const EnvironmentVariable path("PATH", emptyFolder());
  EXPECT_FALSE(errorIn("echo   a"));
  EXPECT_FALSE(script->richTextSource());
}

TEST_F(CheckingScripts, DoWithoutAShfmtThatDoesNotWork) {
  const char* programs[] = {"exec sleep 1000", "echo wrong >&2; exit 2", "kill -9 $$"};
  for (const char* program : programs) {
    const EnvironmentVariable path("PATH", folderWithFormatter(program) + ":/usr/bin:/bin");
    scripts.emplace(runLoop, desktop::ScriptTimes{.forTools = std::chrono::milliseconds(500)});
    EXPECT_FALSE(errorIn("echo   a")) << program;
    EXPECT_FALSE(script->richTextSource()) << program;
    const std::optional<ScriptError> error = errorIn("a; fi");
    ASSERT_TRUE(error) << program;
    EXPECT_EQ(error->briefMessage, "Syntax error: \"fi\" unexpected");
  }
}

TEST_F(CheckingScripts, HoldTheWindowsUpForAFewSecondsAtMost) {
  EXPECT_LE(desktop::ScriptTimes().forTools, std::chrono::seconds(3));
}

TEST_F(CheckingScripts, ShowABusyPointerWhileTheToolsAreAtWork) {
  const Fifo started(home.path("started"));
  const Fifo go(home.path("go"));
  const EnvironmentVariable path(
      "PATH", folderWithFormatter("echo >~/started; read x <~/go; cat") + ":/usr/bin:/bin");
  std::optional<Qt::CursorShape> shape;
  // Nothing of this thread's runs while it waits for a tool.
  std::thread watching([&] {
    while (started.takeText().isEmpty()) std::this_thread::yield();
    if (const QCursor* cursor = QGuiApplication::overrideCursor()) shape = cursor->shape();
    go.writeLine();
  });
  EXPECT_FALSE(errorIn("echo a"));
  watching.join();
  EXPECT_EQ(shape, Qt::BusyCursor);
  EXPECT_FALSE(QGuiApplication::overrideCursor());
}

TEST_F(CheckingScripts, BelieveTheShellWhereShfmtFindsNothing) {
  const EnvironmentVariable path("PATH", folderWithFormatter("cat") + ":/usr/bin:/bin");
  EXPECT_TRUE(errorIn("a; fi"));
  EXPECT_FALSE(script->richTextSource());
}

TEST_F(CheckingScripts, TakeAScriptOfOneMegabyte) {
  // However busy the machine is.
  scripts.emplace(runLoop, desktop::ScriptTimes{.forTools = std::chrono::minutes(1)});
  QString source;
  while (source.size() < 1024 * 1024) source += "if  true; then echo \"größe $x\"; fi # 患者\n";
  EXPECT_FALSE(errorIn(source));
  const std::optional<ScriptText> text = script->richTextSource();
  ASSERT_TRUE(text);
  EXPECT_EQ(text->runs.size(), source.count('\n') * 5);

  const std::optional<ScriptError> error = errorIn(source + "\tfi");
  ASSERT_TRUE(error);
  EXPECT_EQ(error->range, (TextRange{source.size() + 1, 2}));
}

TEST_F(CheckingScripts, SayThatTheShellCannotReadWhatIsNestedTooDeeply) {
  const std::optional<ScriptError> error = errorIn(QString(1000000, '('));
  ASSERT_TRUE(error);
  EXPECT_EQ(error->message, "The shell cannot read this script.");
  EXPECT_EQ(error->range, (TextRange{1000000, 0}));
}
