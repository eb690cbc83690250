// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/config/Config.h"

#include <sys/stat.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <algorithm>
#include <array>
#include <optional>

#include "bridge/config/ConfigFile.h"
#include "link/protocol/BundleIdentifier.h"

namespace bridge {
namespace {

using velmora::base::Failure;
using velmora::base::Result;

constexpr qint64 MaximumSize = 64 * 1024;
constexpr int MostApplications = 100;
constexpr int MostErrors = 20;

/// A base folder according to freedesktop.org's "XDG Base Directories"; a relative path is ignored.
QString baseFolder(const char* variable, const char* inHome) {
  const QString folder = qEnvironmentVariable(variable);
  if (QDir::isAbsolutePath(folder)) return QDir::cleanPath(folder);
  return QDir::home().filePath(QLatin1String(inHome));
}

QString defaultSpoolFolder() {
  return baseFolder("XDG_STATE_HOME", ".local/state") + QLatin1String("/velmora-link");
}

QString examplePath() {
  return QDir::cleanPath(QCoreApplication::applicationDirPath() +
                         QLatin1String("/../share/velmora-link/velmora-link.conf.example"));
}

std::optional<int> wholeNumber(const QString& text, int least, int most) {
  static const QRegularExpression form(QStringLiteral("\\A[0-9]{1,9}\\z"));
  if (!form.match(text).hasMatch()) return std::nullopt;
  const int number = text.toInt();
  if (number < least || number > most) return std::nullopt;
  return number;
}

// Each of these takes one value. A failure says what is wrong with it, as a continuation of the key.

Result<> takeKind(Config& config, const QString& value) {
  if (value == QLatin1String("dimse")) {
    config.pacs.kind = PacsSettings::Kind::Dimse;
  } else if (value == QLatin1String("web")) {
    config.pacs.kind = PacsSettings::Kind::Web;
  } else {
    return Failure{QStringLiteral("is not \"dimse\" or \"web\"")};
  }
  return {};
}

Result<> takeHost(Config& config, const QString& value) {
  // The DICOM toolkit keeps host, colon and port in 63 characters, and would truncate the port.
  constexpr int LongestHost = 57;
  static const QRegularExpression form(QStringLiteral("\\A[A-Za-z0-9][A-Za-z0-9._-]{0,252}\\z"));
  if (!form.match(value).hasMatch()) {
    return Failure{
        QStringLiteral("is not the name of a host or an IPv4 address (the port is a key of its own)")};
  }
  if (value.size() > LongestHost) {
    return Failure{
        QStringLiteral("has more than %1 characters: write the IPv4 address in its place").arg(LongestHost)};
  }
  config.pacs.host = value;
  return {};
}

Result<> takePort(Config& config, const QString& value) {
  const auto port = wholeNumber(value, 1, 65535);
  if (!port) return Failure{QStringLiteral("is not a whole number from 1 to 65535")};
  config.pacs.port = *port;
  return {};
}

/// PS3.5 6.2, value representation AE: 16 characters of the basic repertoire, no backslash, not blanks alone.
Result<> takeTitle(QString& title, const QString& value) {
  static const QRegularExpression form(QStringLiteral("\\A[ -\\[\\]-~]{1,16}\\z"));
  if (!form.match(value).hasMatch()) {
    return Failure{
        QStringLiteral("is not an AE title: 1 to 16 letters, digits and signs, no backslash, plain ASCII")};
  }
  title = value;
  return {};
}

Result<> takeUrl(Config& config, const QString& value) {
  const QUrl url(value, QUrl::StrictMode);
  const bool web = url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
  if (!url.isValid() || !web || url.host().isEmpty() || url.hasQuery() || url.hasFragment()) {
    return Failure{
        QStringLiteral("is not the address of a DICOMweb service, as in https://pacs.example/dicom-web")};
  }
  if (!url.userInfo().isEmpty()) {
    return Failure{
        QStringLiteral("has a user or password in it: \"user\" and \"password\" are keys of their own")};
  }
  config.pacs.url = url;
  return {};
}

Result<> takeUser(Config& config, const QString& value) {
  // RFC 7617: the colon ends the user's name.
  if (value.contains(QLatin1Char(':'))) return Failure{QStringLiteral("has a colon in it")};
  config.pacs.user = value;
  return {};
}

Result<> takeTimeout(Config& config, const QString& value) {
  const auto seconds = wholeNumber(value, 1, 600);
  if (!seconds) return Failure{QStringLiteral("is not a whole number of seconds from 1 to 600")};
  config.pacs.timeout = std::chrono::seconds(*seconds);
  return {};
}

Result<> takeNames(QStringList& applications, const QString& value) {
  const QStringList names = value.split(QLatin1Char(','));
  for (const QString& each : names) {
    const QString name = each.trimmed();
    if (!velmora::link::isBundleIdentifier(name))
      return Failure{QStringLiteral("names \"%1\", which is no bundle identifier").arg(name)};
    if (applications.contains(name)) return Failure{QStringLiteral("names \"%1\" twice").arg(name)};
    applications.append(name);
  }
  if (applications.size() > MostApplications) {
    return Failure{QStringLiteral("names more than %1 applications").arg(MostApplications)};
  }
  return {};
}

Result<> takeFolder(Config& config, const QString& value) {
  const QString folder = value.startsWith(QLatin1String("~/")) ? QDir::home().filePath(value.mid(2)) : value;
  if (!QDir::isAbsolutePath(folder))
    return Failure{QStringLiteral("is not a folder's whole path, from \"/\" or \"~/\" on")};
  config.spoolFolder = QDir::cleanPath(folder);
  return {};
}

struct Key {
  const char* section;
  const char* name;
  Result<> (*take)(Config&, const QString&);
};

const std::array<Key, 12> Keys{{
    {"pacs", "kind", takeKind},
    {"pacs", "host", takeHost},
    {"pacs", "port", takePort},
    {"pacs", "called-ae-title",
     [](Config& config, const QString& value) { return takeTitle(config.pacs.calledAETitle, value); }},
    {"pacs", "calling-ae-title",
     [](Config& config, const QString& value) { return takeTitle(config.pacs.callingAETitle, value); }},
    {"pacs", "url", takeUrl},
    {"pacs", "user", takeUser},
    {"pacs", "password",
     [](Config& config, const QString& value) {
       config.pacs.password = value;
       return Result<>();
     }},
    {"pacs", "timeout", takeTimeout},
    {"link", "applications",
     [](Config& config, const QString& value) { return takeNames(config.applications, value); }},
    {"link", "charts-without-patient",
     [](Config& config, const QString& value) { return takeNames(config.chartsWithoutPatient, value); }},
    {"spool", "folder", takeFolder},
}};

/// Takes an entry into the configuration.
Result<> take(Config& config, const ConfigEntry& entry) {
  const auto inSection = [&](const Key& key) { return entry.section == QLatin1String(key.section); };
  if (std::none_of(Keys.begin(), Keys.end(), inSection)) {
    return Failure{QStringLiteral("there is no section [%1]").arg(entry.section)};
  }
  const auto key = std::find_if(Keys.begin(), Keys.end(), [&](const Key& each) {
    return inSection(each) && entry.key == QLatin1String(each.name);
  });
  if (key == Keys.end())
    return Failure{QStringLiteral("there is no \"%1\" in [%2]").arg(entry.key, entry.section)};
  if (entry.value.isEmpty()) return Failure{QStringLiteral("\"%1\" has no value").arg(entry.key)};
  const Result<> taken = key->take(config, entry.value);
  if (taken.ok()) return {};
  return Failure{QStringLiteral("\"%1\" %2").arg(entry.key, taken.error())};
}

/// The required keys that are missing.
QStringList missingFrom(const Config& config) {
  QStringList missing;
  if (config.pacs.kind == PacsSettings::Kind::Dimse && config.pacs.host.isEmpty()) {
    missing.append(QStringLiteral("\"host\" is missing in [pacs]"));
  }
  if (config.pacs.kind == PacsSettings::Kind::Web && config.pacs.url.isEmpty()) {
    missing.append(QStringLiteral("\"url\" is missing in [pacs]"));
  }
  if (config.pacs.user.isEmpty() && !config.pacs.password.isEmpty()) {
    missing.append(QStringLiteral("\"user\" is missing in [pacs], and there is a \"password\""));
  }
  if (config.applications.isEmpty()) missing.append(QStringLiteral("\"applications\" is missing in [link]"));
  for (const QString& application : config.chartsWithoutPatient) {
    if (config.applications.contains(application)) continue;
    missing.append(
        QStringLiteral("\"%1\" is missing in \"applications\", and stands in \"charts-without-patient\"")
            .arg(application));
  }
  return missing;
}

struct Contents {
  QByteArray bytes;
  bool othersMayRead = false;
};

Result<Contents> contentsOf(const QString& path) {
  const QFileInfo info(path);
  if (!info.exists()) {
    return Failure{QStringLiteral("there is no such file; an example to copy is %1").arg(examplePath())};
  }
  // Opening a pipe would wait for a writer.
  if (!info.isFile()) return Failure{QStringLiteral("this is not a file")};
  QFile file(path);
  struct stat state = {};
  if (!file.open(QIODevice::ReadOnly) || ::fstat(file.handle(), &state) != 0) {
    return Failure{QStringLiteral("cannot be read: %1").arg(file.errorString())};
  }
  const Contents contents{file.read(MaximumSize + 1), (state.st_mode & (S_IRWXG | S_IRWXO)) != 0};
  if (contents.bytes.size() > MaximumSize) return Failure{QStringLiteral("is larger than 64 KiB")};
  if (file.error() != QFile::NoError) {
    return Failure{QStringLiteral("cannot be read: %1").arg(file.errorString())};
  }
  return contents;
}

}  // namespace

QString configPath() {
  return baseFolder("XDG_CONFIG_HOME", ".config") + QLatin1String("/velmora-link/velmora-link.conf");
}

Result<Config> readConfig(const QString& path) {
  QStringList errors;
  const auto complain = [&](const QString& message) { errors.append(path + QLatin1Char(':') + message); };
  const auto complainOfAll = [&](const QString& message) { complain(QLatin1Char(' ') + message); };

  const Result<Contents> contents = contentsOf(path);
  if (!contents.ok()) return Failure{path + QStringLiteral(": ") + contents.error()};
  const ConfigEntries file = parseConfig(contents->bytes);
  for (const QString& error : file.errors) complain(error);
  Config config;
  config.spoolFolder = defaultSpoolFolder();
  for (const ConfigEntry& entry : file.entries) {
    const Result<> taken = take(config, entry);
    if (!taken.ok()) complain(QStringLiteral("%1: %2").arg(entry.line).arg(taken.error()));
  }
  // The missing key may be in a line that could not be parsed.
  if (errors.isEmpty()) {
    const QStringList missing = missingFrom(config);
    for (const QString& each : missing) complainOfAll(each);
  }
  if (!config.pacs.password.isEmpty() && contents->othersMayRead) {
    complainOfAll(
        QStringLiteral("there is a password in it, and others than you may read it: chmod 600 %1").arg(path));
  }
  if (errors.isEmpty()) return config;
  if (errors.size() > MostErrors) {
    const qsizetype more = errors.size() - MostErrors;
    errors.resize(MostErrors);
    complainOfAll(QStringLiteral("and %1 more").arg(more));
  }
  return Failure{errors.join(QLatin1Char('\n'))};
}

}  // namespace bridge
