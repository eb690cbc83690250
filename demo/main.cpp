// SPDX-License-Identifier: LGPL-3.0-or-later
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <cstdio>
#include <cstring>

#include "base/process/SignalHandler.h"
#include "demo/PacsRoad.h"
#include "demo/Report.h"
#include "demo/Road.h"
#include "testing/person/Stage.h"
#include "testing/waiting/Waiting.h"

using namespace velmora::testkit;

namespace {

// An earlier run's folder is used again; a folder with other things in it is not touched.
QString preparedFolder(const QString& wanted) {
  if (wanted.isEmpty()) {
    QTemporaryDir folder(QDir::tempPath() + "/velmora-demo-XXXXXX");
    folder.setAutoRemove(false);
    if (!folder.isValid()) throw Differs("a temporary folder", folder.errorString());
    return folder.path();
  }
  const QDir folder(wanted);
  if (!folder.exists() && !QDir().mkpath(wanted)) throw Differs("to make " + wanted, "it was not possible");
  if (!folder.isEmpty() && !folder.exists("trace.txt"))
    throw Differs(wanted + " to be empty or an earlier demonstration's", "other files in it");
  for (const char* own : {"viewer", "export", "records", "screens"})
    QDir(folder.filePath(own)).removeRecursively();
  for (const char* own : {"study.dcm", "capture.dcm", "orthanc.log"}) QFile::remove(folder.filePath(own));
  return folder.absolutePath();
}

QString beside(const QString& path) { return QCoreApplication::applicationDirPath() + '/' + path; }

// Plays to the end, or as far as it goes; what came in the way has been told.
template <class AnyRoad>
bool playedThrough(AnyRoad& road, demo::Report& report) {
  try {
    road.play();
  } catch (const Interrupted&) {
    throw;
  } catch (const std::exception& difference) {
    report.failed(difference.what());
    road.keepEverything("differs");
    return false;
  }
  road.keepEverything(QString());
  return true;
}

// Plays the road that is asked for.
bool playedThrough(const QCommandLineParser& options, const QString& out, demo::Report& report) {
  const auto screen = options.isSet("virtual") ? Stage::Screen::Virtual : Stage::Screen::UsersOrVirtual;
  Stage stage(report.tracer(), screen, QCoreApplication::applicationFilePath());
  report.say("demo: on " + stage.screenDescription());
  const demo::Cast cast{options.value("application"), "org.velmora.growth", options.value("link"), out};
  if (options.isSet("pacs")) {
    demo::PacsRoad road(report, stage, cast, beside("../lib/velmora-orthanc.so"));
    return playedThrough(road, report);
  }
  demo::Road road(report, stage, cast);
  return playedThrough(road, report);
}

int play(const QCommandLineParser& options, const QString& out) {
  demo::Report report(out);
  QString ending;
  int code = 1;
  try {
    if (playedThrough(options, out, report)) {
      ending = QString("demo: %1 steps, all as expected").arg(report.stepsPassed());
      code = 0;
    } else {
      ending = QString("demo: step %1 differs").arg(report.number());
    }
  } catch (const Interrupted&) {
    ending = "demo: stopped on request";
    code = 130;
  } catch (const std::exception& error) {
    ending = QString("demo: ") + error.what();
  }
  report.say("demo: trace, charts and pictures are in " + out);
  report.say(ending);
  return code;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 2 && std::strcmp(argv[1], "--check-screen") == 0) return Stage::checkScreen(argc, argv);

  const QCoreApplication application(argc, argv);
  QCommandLineParser options;
  options.setApplicationDescription(
      "Plays the road of one study with the real programs: from the viewer into a record, and as a chart "
      "back.\n"
      "Ends with 0 when every step came out as expected. Takes about half a minute.");
  options.addHelpOption();
  options.addOptions({{"out", "Where trace.txt, the pictures and the charts are kept.", "folder"},
                      {"pacs", "The study is in an archive (Orthanc), and the chart goes back into it."},
                      {"virtual", "On a virtual screen, even if there is a real one."},
                      {"application", "The application to play with.", "program", beside("growth")},
                      {"link", "The program at the viewer's end.", "program", beside("velmora-link")}});
  options.process(application);
  const velmora::base::SignalHandler signals(velmora::base::SignalHandler::Program::Console, interrupt);
  try {
    return play(options, preparedFolder(options.value("out")));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "demo: %s\n", error.what());
    return 1;
  }
}
