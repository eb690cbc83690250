// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QRegularExpression>
#include <QSet>

#include "bridge/spool/Spool.h"
#include "bridge/testing/Orthanc.h"
#include "bridge/testing/Replies.h"
#include "bridge/testing/SyntheticStudy.h"
#include "link/bus/BusLink.h"
#include "link/protocol/LinkProtocol.h"
#include "testing/bus/PrivateBus.h"
#include "testing/files/Files.h"
#include "testing/main/Shown.h"
#include "testing/process/Program.h"

namespace serve_testing {

using namespace bridge_testing;
using namespace velmora::testkit;

/// Far longer than anything here takes: reached only when something is broken.
inline constexpr int Limit = 60'000;  // milliseconds

/// `velmora-link serve` as the process that it is.
class ServeProgram : public Program {
 public:
  ServeProgram(const PrivateBus& bus, const QString& config)
      : Program(QStringLiteral(VELMORA_LINK), bus.environment()) {
    start({text("serve"), text("--config"), config});
  }
  /// Reads up to the line that begins so.
  QString lineWith(const char* beginning) { return readLineWith(text(beginning)); }
  /// Waits for a complaint that begins so.
  void waitForComplaint(const char* beginning) { waitForError(text("velmora-link: ") + text(beginning)); }
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

  PrivateBus bus;
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
