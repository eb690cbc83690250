// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <csignal>
#include <sys/prctl.h>

#include <QProcess>
#include <QRegularExpression>
#include <QSet>

#include "bridge/spool/Spool.h"
#include "link/bus/BusLink.h"
#include "bridge/testing/Orthanc.h"
#include "bridge/testing/SyntheticStudy.h"
#include "tests/unit/bridge/service/ServeTesting.h"
#include "tests/support/PrivateBus.h"
#include "link/protocol/LinkProtocol.h"

namespace serve_testing {

/// Far longer than anything here takes: reached only when something is broken.
inline constexpr int Limit = 60'000;  // milliseconds

/// `velmora-link serve` as the process that it is. It ends with this object, or with the test.
class ServeProgram {
 public:
  ServeProgram(const testing_support::PrivateBus& bus, const QString& config) {
    process_.setProcessEnvironment(bus.environment());
    process_.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    process_.start(QStringLiteral(VELMORA_LINK), {text("serve"), text("--config"), config});
    process_.waitForStarted(Limit);
  }
  ~ServeProgram() { kill(); }
  ServeProgram(const ServeProgram&) = delete;
  ServeProgram& operator=(const ServeProgram&) = delete;

  /// The next line on standard output that begins so, waiting for it; the lines before it are passed over.
  /// Null when none comes.
  QString lineWith(const char* beginning) {
    while (true) {
      while (process_.canReadLine()) {
        const QString line = QString::fromUtf8(process_.readLine()).chopped(1);
        lines_.append(line);
        if (line.startsWith(text(beginning))) return line;
      }
      if (!process_.waitForReadyRead(Limit)) return QString();
    }
  }
  /// Waits for a line on standard error that begins so, after "velmora-link: ".
  bool complains(const char* beginning) {
    const QByteArray wanted = QByteArray("velmora-link: ") + beginning;
    process_.setReadChannel(QProcess::StandardError);
    bool said = false;
    while (!said) {
      while (process_.canReadLine() && !said) said = process_.readLine().startsWith(wanted);
      if (!said && !process_.waitForReadyRead(Limit)) break;
    }
    process_.setReadChannel(QProcess::StandardOutput);
    return said;
  }
  void kill() {
    if (process_.state() != QProcess::NotRunning) {
      process_.kill();
      process_.waitForFinished(Limit);
    }
    while (process_.canReadLine()) lines_.append(QString::fromUtf8(process_.readLine()).chopped(1));
  }
  /// What it ends with when asked to; -1 when it crashed or stays.
  int terminate() {
    process_.terminate();
    return finish();
  }
  int finish() {
    const bool ended = process_.state() == QProcess::NotRunning || process_.waitForFinished(Limit);
    return ended && process_.exitStatus() == QProcess::NormalExit ? process_.exitCode() : -1;
  }
  QByteArray errors() { return process_.readAllStandardError(); }
  /// What it has written on standard output so far, as far as it was read.
  const QStringList& lines() const { return lines_; }

 private:
  QProcess process_;
  QStringList lines_;
};

/// The SOP Instance UID at the end of a "taken" or "stored" line.
inline QString uidIn(const QString& line) { return line.section(QLatin1Char(' '), -1); }
/// The entry's name in such a line.
inline QString nameIn(const QString& line) { return line.section(QLatin1Char(' '), 1, 1); }

/// A bus, an archive, and what serves between them.
class ServeWorld {
 public:
  using Kind = bridge::PacsSettings::Kind;

  explicit ServeWorld(Kind kind = Kind::Dimse) : orthanc(optionsFor(kind)) {
    const QString archive = kind == Kind::Web ? web() : dimse();
    const QString contents =
        QStringLiteral("[pacs]\n%1timeout = 20\n\n[link]\napplications = %2, %3\n\n[spool]\nfolder = %4\n")
            .arg(archive, Growth, Vision, spool());
    writeFile(config(), contents.toUtf8());
  }

  QString spool() const { return temporary_.filePath(text("spool")); }
  QString config() const { return temporary_.filePath(text("velmora-link.conf")); }

  /// Sends on the bus, and returns when the bus has passed it on.
  bool post(const QString& application, const QString& object, const QVariantMap& values) {
    bus_.post({velmora::link::notificationName(application), object, values});
    return bus_.flush(std::chrono::milliseconds(Limit));
  }
  bool reply(const QVariantMap& values, const QString& application = Growth) {
    return post(application, velmora::link::ReplyObject, values);
  }
  void put(const bridge::Study& study) { orthanc.put(bridge_testing::syntheticStudy(study)); }
  /// Which charts the archive has, without what stood in it before.
  QStringList charts(const QList<bridge::Study>& studies) const {
    QStringList uids = orthanc.instances();
    for (const bridge::Study& study : studies) uids.removeOne(bridge_testing::syntheticUID(study));
    return uids;
  }

  testing_support::PrivateBus bus;
  bridge_testing::Orthanc orthanc;

 private:
  static bridge_testing::OrthancOptions optionsFor(Kind kind) {
    bridge_testing::OrthancOptions options;
    options.dicomWeb = kind == Kind::Web;
    return options;
  }
  QString dimse() const {
    const bridge::PacsSettings pacs = orthanc.dimse();
    return QStringLiteral("kind = dimse\nhost = %1\nport = %2\ncalled-ae-title = %3\ncalling-ae-title = %4\n")
        .arg(pacs.host)
        .arg(pacs.port)
        .arg(pacs.calledAETitle, pacs.callingAETitle);
  }
  QString web() const { return QStringLiteral("kind = web\nurl = %1\n").arg(orthanc.web().url.toString()); }

  QTemporaryDir temporary_;
  velmora::link::BusLink bus_{bus.address(), [](const velmora::link::Message&) {}, [](const QString&) {}};
};

}  // namespace serve_testing
