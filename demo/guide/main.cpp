// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Takes the pictures of the user guide, in every language that it has.
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <cstdio>

#include "base/process/SignalHandler.h"
#include "demo/Report.h"
#include "demo/guide/GuidePictures.h"
#include "testing/waiting/Waiting.h"

using namespace velmora::testkit;

namespace {

const QList<demo::GuideLanguage> Languages{
    {"en", "en_GB"}, {"de", "de_DE"}, {"fr", "fr_FR"}, {"es", "es_ES"}};

QString beside(const QString& path) { return QCoreApplication::applicationDirPath() + '/' + path; }

qint64 sizeOfPictures(const QString& folder) {
  qint64 size = 0;
  const QFileInfoList files = QDir(folder).entryInfoList({"*.png"}, QDir::Files);
  for (const QFileInfo& file : files) size += file.size();
  return size;
}

int take(const QCommandLineParser& options) {
  const QString guide = QDir(options.value("guide")).absolutePath();
  QTemporaryDir traceFolder(QDir::tempPath() + "/velmora-guide-XXXXXX");
  demo::Report report(traceFolder.path());
  const demo::GuideCast cast{options.value("application"), "org.velmora.growth", options.value("link")};
  for (const demo::GuideLanguage& language : Languages) {
    const QString folder = guide + '/' + language.code + "/images";
    QElapsedTimer time;
    time.start();
    try {
      demo::GuidePictures(report, cast, language, folder, QCoreApplication::applicationFilePath()).take();
    } catch (const Interrupted&) {
      throw;
    } catch (const std::exception& error) {
      traceFolder.setAutoRemove(false);
      report.say(QString("guide: %1: %2").arg(language.code, QString(error.what())));
      report.say("guide: the trace is in " + traceFolder.path());
      return 1;
    }
    report.say(QString("guide: %1: %2 kB of pictures in %3 s")
                   .arg(language.code)
                   .arg(sizeOfPictures(folder) / 1000)
                   .arg(static_cast<double>(time.elapsed()) / 1000, 0, 'f', 1));
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  QCommandLineParser options;
  options.setApplicationDescription(
      "Takes the pictures of the user guide of the running program, on a virtual screen.");
  options.addHelpOption();
  options.addOptions(
      {{"guide", "The folder of the guide; pictures go to <language>/images in it.", "folder"},
       {"application", "The application that the guide is about.", "program", beside("growth")},
       {"link", "The program at the viewer's end.", "program", beside("velmora-link")}});
  options.process(application);
  if (!options.isSet("guide")) {
    std::fprintf(stderr, "guide: --guide is missing\n");
    return 2;
  }
  const velmora::base::SignalHandler signals(velmora::base::SignalHandler::Program::Console, interrupt);
  try {
    return take(options);
  } catch (const Interrupted&) {
    std::fprintf(stderr, "guide: stopped on request\n");
    return 130;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "guide: %s\n", error.what());
    return 1;
  }
}
