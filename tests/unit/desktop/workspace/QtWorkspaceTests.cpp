// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/workspace/QtWorkspace.h"

#include <QFile>

#include "testing/main/Shown.h"
#include "tests/unit/desktop/workspace/WorkspaceTesting.h"

using testing_support::ProgramForFiles;
using testing_support::RealWorkspace;

namespace {

TEST_F(RealWorkspace, FindsTheProgramOfADesktopEntry) {
  install("org.velmora.viewer", "TryExec=/bin/sh\nExec=/bin/sh %F\n");
  EXPECT_EQ(workspace.absolutePathForAppBundleWithIdentifier("org.velmora.viewer"), "/bin/sh");
}

TEST_F(RealWorkspace, FindsAProgramByItsNameOnThePath) {
  install("org.velmora.viewer", "TryExec=sh\n");
  const QString found = workspace.absolutePathForAppBundleWithIdentifier("org.velmora.viewer").value();
  EXPECT_TRUE(found.startsWith('/') && found.endsWith("/sh")) << qPrintable(found);
}

TEST_F(RealWorkspace, FindsTheEntryItselfWhereItNamesNoProgram) {
  install("org.velmora.viewer", "");
  EXPECT_EQ(workspace.absolutePathForAppBundleWithIdentifier("org.velmora.viewer"),
            entry("org.velmora.viewer"));
}

TEST_F(RealWorkspace, FindsNothingThatIsNotInstalled) {
  install("org.velmora.viewer", "");
  for (const char* identifier :
       {"org.velmora.other", "", "org.velmora", "../applications/org.velmora.viewer"}) {
    EXPECT_FALSE(workspace.absolutePathForAppBundleWithIdentifier(identifier)) << identifier;
  }
}

TEST_F(RealWorkspace, OpensALocationWithTheProgramForItsKind) {
  ProgramForFiles program;
  QFile page(data.path() + "/page.html");
  ASSERT_TRUE(page.open(QIODevice::WriteOnly));
  page.write("<p>Help</p>");
  page.close();
  EXPECT_TRUE(workspace.openURL(QUrl::fromLocalFile(page.fileName())));
  EXPECT_EQ(program.opened, QList<QUrl>{QUrl::fromLocalFile(page.fileName())});
}

}  // namespace
