// SPDX-License-Identifier: LGPL-3.0-or-later
#include <QFile>
#include <array>

#include "bridge/cli/Commands.h"
#include "bridge/cli/SendRequest.h"
#include "bridge/cli/StudyJson.h"
#include "link/protocol/LinkPayload.h"
#include "link/protocol/LinkProtocol.h"
#include "link/wire/WireFormat.h"

using namespace velmora;

namespace bridge {
namespace {

struct KeyOption {
  QString option;
  QString key;
  QString description;
};

const std::array<KeyOption, 5>& keyOptions() {
  static const std::array<KeyOption, 5> options{
      KeyOption{QStringLiteral("identifier"), link::Identifier,
                QStringLiteral("The patient's identifier. Required.")},
      KeyOption{QStringLiteral("name"), link::Name, QStringLiteral("The patient's name.")},
      KeyOption{QStringLiteral("birth-date"), link::DateOfBirth,
                QStringLiteral("Date of birth, YYYY-MM-DD.")},
      KeyOption{QStringLiteral("study-date"), link::DateOfStudy,
                QStringLiteral("Date of the study, YYYY-MM-DD.")},
      KeyOption{QStringLiteral("study-id"), link::OsiriXStudyID,
                QStringLiteral("The viewer's identifier of the study.")}};
  return options;
}

/// The study that the file and the options describe; options override the file.
base::Result<QVariantMap> studyFrom(const QCommandLineParser& parser) {
  QVariantMap study;
  const QString path = parser.value(QStringLiteral("json"));
  if (parser.isSet(QStringLiteral("json"))) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
      return base::Failure{QStringLiteral("cannot read %1: %2").arg(path, file.errorString())};
    }
    const QByteArray contents = file.read(link::MaximumSize + 1);
    if (file.error() != QFile::NoError) {
      return base::Failure{QStringLiteral("cannot read %1: %2").arg(path, file.errorString())};
    }
    if (contents.size() > link::MaximumSize) return base::Failure{path + QStringLiteral(" is too large")};
    base::Result<QVariantMap> read = studyFromJson(contents);
    if (!read) return base::Failure{QStringLiteral("%1 is %2").arg(path, read.error())};
    study = std::move(read).value();
  }
  for (const KeyOption& each : keyOptions()) {
    if (parser.isSet(each.option)) study.insert(each.key, parser.value(each.option));
  }
  return study;
}

}  // namespace

int runRequest(const QStringList& arguments) {
  QCommandLineParser parser;
  parser.setApplicationDescription(
      QStringLiteral("Sends a study to the running application with that bundle identifier. Only what\n"
                     "is given is sent."));
  parser.addPositionalArgument(QStringLiteral("request"), QStringLiteral("This command."));
  parser.addOption({QStringLiteral("application"),
                    QStringLiteral("The application's bundle identifier. Required."),
                    QStringLiteral("bundle-identifier")});
  for (const KeyOption& each : keyOptions()) {
    parser.addOption({each.option, each.description, each.option});
  }
  parser.addOption(
      {QStringLiteral("json"),
       QStringLiteral("A JSON object with the keys Identifier, Name, DateOfBirth, DateOfStudy (dates as "
                      "YYYY-MM-DD) and OsiriXStudyID. The other options override it."),
       QStringLiteral("file")});
  if (const auto end = parse(parser, arguments)) return *end;

  const auto application = applicationOption(parser);
  if (!application) return WrongUsage;
  const base::Result<QVariantMap> study = studyFrom(parser);
  const base::Result<QVariantMap> request = study ? link::requestPayload(*study) : study;
  if (!request) {
    printError(request.error());
    return WrongUsage;
  }
  const base::Result<> sent = sendRequest(*application, *request);
  if (sent) return Success;
  printError(sent.error());
  return Failure;
}

}  // namespace bridge
