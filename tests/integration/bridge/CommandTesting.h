// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "bridge/config/Config.h"
#include "testing/bus/PrivateBus.h"
#include "testing/files/Files.h"
#include "testing/main/Shown.h"
#include "testing/process/Program.h"

/// What the tests of the commands share: a folder with a configuration, a spool and a bus of their own.
namespace command_testing {

inline QString text(const char* utf8) { return QString::fromUtf8(utf8); }

class Commands : public ::testing::Test {
 protected:
  void SetUp() override { configure(text("host = 127.0.0.1\nport = 1\n")); }

  /// Writes the configuration with these lines in [pacs].
  void configure(const QString& pacs) {
    velmora::testkit::writeFile(
        config(),
        (text("[pacs]\n") + pacs + text("[link]\napplications = org.velmora.growth\n[spool]\nfolder = ") +
         spool() + text("\n"))
            .toUtf8());
    ASSERT_TRUE(QFile::setPermissions(config(), QFile::ReadOwner | QFile::WriteOwner));
  }
  /// The same for an archive that the settings describe.
  void configure(const bridge::PacsSettings& pacs) {
    if (pacs.kind == bridge::PacsSettings::Kind::Dimse) {
      configure(text("host = %1\nport = %2\ncalled-ae-title = %3\ncalling-ae-title = %4\ntimeout = 60\n")
                    .arg(pacs.host)
                    .arg(pacs.port)
                    .arg(pacs.calledAETitle, pacs.callingAETitle));
      return;
    }
    QString lines = text("kind = web\nurl = %1\ntimeout = 60\n").arg(pacs.url.toString());
    if (!pacs.user.isEmpty()) lines += text("user = %1\npassword = %2\n").arg(pacs.user, pacs.password);
    configure(lines);
  }

  QString config() const { return folder_.filePath(text("velmora-link.conf")); }
  QString spool() const { return folder_.filePath(text("spool")); }

  /// Runs a command to its end and keeps what it printed.
  int run(const QStringList& arguments) {
    velmora::testkit::Program program(QStringLiteral(VELMORA_LINK), environment_);
    const int code = program.run(arguments + QStringList{text("--config"), config()});
    output_ = program.output();
    errors_ = program.errors();
    return code;
  }
  /// The line of the output that begins so, or with blanks and so; empty when there is none.
  QString line(const char* beginning) const {
    const QStringList lines = output_.split(QLatin1Char('\n'));
    for (const QString& each : lines) {
      if (each.simplified().startsWith(text(beginning))) return each.simplified();
    }
    return QString();
  }

  QTemporaryDir folder_;
  velmora::testkit::PrivateBus bus_;
  QProcessEnvironment environment_ = bus_.environment();
  QString output_;
  QString errors_;
};

}  // namespace command_testing
