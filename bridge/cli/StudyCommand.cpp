// SPDX-License-Identifier: LGPL-3.0-or-later
#include <unistd.h>

#include <memory>

#include "base/CalendarDay.h"
#include "bridge/cli/Commands.h"
#include "bridge/cli/DesktopNotice.h"
#include "bridge/cli/SendRequest.h"
#include "bridge/cli/StudyAddress.h"
#include "bridge/dicom/PersonName.h"
#include "bridge/dicom/StudyFile.h"
#include "bridge/dicom/Uid.h"
#include "bridge/pacs/PacsFactory.h"
#include "link/protocol/LinkPayload.h"
#include "link/protocol/LinkProtocol.h"

using namespace velmora;

namespace bridge {
namespace {

/// Why there is not one study.
struct NotOne : base::Failure {
  QStringList candidates = {};  ///< those among which to choose, a line each
};
using Choice = base::Result<Study, NotOne>;

/// A text of the archive on one line.
QString onOneLine(const QString& text) {
  QString line = text.simplified();
  line.removeIf([](QChar c) { return !c.isPrint() && !c.isSurrogate(); });
  return line;
}

QString lineOf(const Study& study) {
  const QString date =
      study.studyDate.isValid() ? study.studyDate.toString(Qt::ISODate) : QStringLiteral("no date");
  return QStringList{date, onOneLine(study.description), onOneLine(study.accessionNumber),
                     onOneLine(study.studyInstanceUID)}
      .join(QLatin1Char('\t'));
}

/// The one study of the archive that the query means.
Choice chosenFrom(const PacsSettings& settings, const StudyQuery& query) {
  const PacsResult<QList<Study>> studies = makePacs(settings)->findStudies(query);
  if (!studies.ok()) return NotOne{studies.failure()};
  if (studies->isEmpty()) return NotOne{{QStringLiteral("the archive has no such study")}};
  if (studies->size() == 1) return studies->first();
  NotOne several{{QStringLiteral("the archive has %1 such studies; choose one by its Study Instance UID")
                      .arg(studies->size())}};
  for (const Study& each : *studies) several.candidates.append(lineOf(each));
  return several;
}

/// The study of a file, or of a folder of files.
Choice chosenFrom(const QString& path) {
  const base::Result<Study> study = studyFromPath(path);
  return study.ok() ? Choice(*study) : NotOne{study.failure()};
}

/// The link request for a study. Leaves out what the study does not say.
base::Result<QVariantMap> requestFor(const Study& study) {
  if (study.patientID.isEmpty())
    return base::Failure{QStringLiteral("the study has no patient identifier (Patient ID)")};
  QVariantMap details{{link::Identifier, study.patientID}, {link::OsiriXStudyID, study.studyInstanceUID}};
  const QString name = readablePersonName(study.patientName);
  if (!name.isEmpty()) details.insert(link::Name, name);
  if (study.birthDate.isValid()) details.insert(link::DateOfBirth, study.birthDate.toString(Qt::ISODate));
  if (study.studyDate.isValid()) details.insert(link::DateOfStudy, study.studyDate.toString(Qt::ISODate));
  return link::requestPayload(details);
}

base::Result<> send(const Choice& choice, const QString& application) {
  if (!choice.ok()) return choice.failure();
  const base::Result<QVariantMap> request = requestFor(*choice);
  return request ? sendRequest(application, *request) : request.failure();
}

/// What to say when a study was sent and nobody seems to have heard it. A warning only:
/// an application need not have a name on the bus.
std::optional<QString> warningAbout(const QString& application) {
  if (mayBeRunning(application)) return std::nullopt;
  return QStringLiteral("%1 does not seem to be running: start it, and open the study once more")
      .arg(application);
}

int wrong(const QString& message) {
  printError(message);
  return WrongUsage;
}

/// The query that the options make. When they are wrong, says so and returns nothing.
std::optional<StudyQuery> queryOf(const QCommandLineParser& parser) {
  StudyQuery query;
  query.studyInstanceUID = parser.value(QStringLiteral("uid"));
  query.accessionNumber = parser.value(QStringLiteral("accession"));
  query.patientID = parser.value(QStringLiteral("patient"));
  if (parser.isSet(QStringLiteral("uid")) && !isUid(query.studyInstanceUID)) {
    wrong(QStringLiteral("--uid: not a UID"));
    return std::nullopt;
  }
  for (const char* const option : {"accession", "patient"}) {
    const QString name = QString::fromLatin1(option);
    if (parser.isSet(name) && parser.value(name).isEmpty()) {
      wrong(QStringLiteral("--%1 is empty").arg(name));
      return std::nullopt;
    }
  }
  if (parser.isSet(QStringLiteral("date"))) {
    const QString date = parser.value(QStringLiteral("date"));
    const QDate day = base::dayFromIso(date);
    if (!base::noonOf(day).isValid()) {
      wrong(QStringLiteral("--date: \"%1\" is not a date of the form YYYY-MM-DD").arg(date));
      return std::nullopt;
    }
    query.studyDate = day;
  }
  return query;
}

void addOptions(QCommandLineParser& parser) {
  parser.setApplicationDescription(
      QStringLiteral("Finds one study, in the archive or in a file, and sends it to an application. When\n"
                     "several match, they are listed: date, description, accession number, UID."));
  parser.addPositionalArgument(QStringLiteral("study"), QStringLiteral("This command."));
  const auto option = [&](const char* name, const char* description, const char* value) {
    parser.addOption(
        {QString::fromLatin1(name), QString::fromLatin1(description), QString::fromLatin1(value)});
  };
  option("uid", "The study's Study Instance UID.", "uid");
  option("accession", "The study's accession number.", "number");
  option("patient", "The patient's identifier (Patient ID).", "identifier");
  option("date", "The date of the study, YYYY-MM-DD; with --patient.", "date");
  option("file", "A DICOM file of the study, or a folder of such files, in place of the archive.", "path");
  option("application", "The application's bundle identifier. Otherwise the first that is configured.",
         "bundle-identifier");
  addConfigOption(parser);
}

/// Tells a user who clicked a link, and sees no terminal, what went wrong.
int refuse(const QString& message, ExitCode code) {
  printError(message);
  if (::isatty(STDERR_FILENO) == 0) showOnDesktop(QStringLiteral("The study could not be opened"), message);
  return code;
}

}  // namespace

int runStudy(const QStringList& arguments) {
  QCommandLineParser parser;
  addOptions(parser);
  if (const auto end = parse(parser, arguments)) return *end;
  int ways = 0;
  for (const char* const way : {"uid", "accession", "patient", "file"}) {
    ways += parser.isSet(QString::fromLatin1(way)) ? 1 : 0;
  }
  if (ways != 1) return wrong(QStringLiteral("one of --uid, --accession, --patient and --file is needed"));
  if (parser.isSet(QStringLiteral("date")) && !parser.isSet(QStringLiteral("patient"))) {
    return wrong(QStringLiteral("--date goes with --patient"));
  }
  const auto query = queryOf(parser);
  if (!query) return WrongUsage;
  std::optional<QString> application;
  if (parser.isSet(QStringLiteral("application"))) {
    application = applicationOption(parser);
    if (!application) return WrongUsage;
  }
  Config config;
  const bool fromFile = parser.isSet(QStringLiteral("file"));
  if (!fromFile || !application) {
    const auto read = configOption(parser);
    if (!read) return WrongUsage;
    config = *read;
    if (!application) application = config.applications.value(0);
  }
  const Choice choice =
      fromFile ? chosenFrom(parser.value(QStringLiteral("file"))) : chosenFrom(config.pacs, *query);
  const base::Result<> sent = send(choice, *application);
  if (sent) {
    if (const auto warning = warningAbout(*application)) printError(*warning);
    return Success;
  }
  printError(sent.error());
  for (const QString& line : choice.failure().candidates) printLine(line);
  return Failure;
}

int runOpen(const QStringList& arguments) {
  QCommandLineParser parser;
  parser.setApplicationDescription(
      QStringLiteral("Sends the study that a velmora-link: address names to an application. The desktop\n"
                     "calls it when such a link is opened."));
  parser.addPositionalArgument(QStringLiteral("open"), QStringLiteral("This command."));
  parser.addPositionalArgument(
      QStringLiteral("address"),
      QStringLiteral(
          "velmora-link:study?uid=... with the keys uid, accession, patient, date and application."));
  addConfigOption(parser);
  const auto end = parse(parser, arguments, 1);
  if (end == Success) return Success;
  const base::Result<StudyAddress> address = studyAddress(parser.positionalArguments().value(1));
  if (end || !address) {
    return refuse(QStringLiteral("the link cannot be followed: %1")
                      .arg(end ? QStringLiteral("it is no address") : address.error()),
                  WrongUsage);
  }
  const auto config = readConfig(configPathOption(parser));
  if (!config.ok()) return refuse(config.error(), WrongUsage);
  const QString application =
      address->application.isEmpty() ? config->applications.value(0) : address->application;
  if (!config->applications.contains(application)) {
    return refuse(
        QStringLiteral("the link cannot be followed: its application is not among those configured"),
        WrongUsage);
  }
  const Choice choice = chosenFrom(config->pacs, address->query);
  const base::Result<> sent = send(choice, application);
  if (sent) {
    const auto warning = warningAbout(application);
    return warning ? refuse(*warning, Success) : Success;
  }
  return refuse((QStringList(sent.error()) + choice.failure().candidates).join(QLatin1Char('\n')), Failure);
}

}  // namespace bridge
