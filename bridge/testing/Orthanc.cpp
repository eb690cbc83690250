// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/testing/Orthanc.h"

#include <sys/prctl.h>
#include <csignal>

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTcpServer>
#include <QTcpSocket>
#include <memory>
#include <stdexcept>

namespace bridge_testing {

namespace {

constexpr int Limit = 60000;   // milliseconds, far longer than anything here takes
constexpr int Attempts = 5;    // to find ports that nobody takes meanwhile
constexpr int PollPause = 20;  // milliseconds

[[noreturn]] void fail(const QString& message) { throw std::runtime_error(message.toStdString()); }

bool somebodyListens(int port) {
  QTcpSocket socket;
  socket.connectToHost(QHostAddress::LocalHost, static_cast<quint16>(port));
  return socket.waitForConnected(Limit);
}

}  // namespace

int freePort() {
  QTcpServer server;
  if (!server.listen(QHostAddress::LocalHost)) fail(QStringLiteral("no free port: ") + server.errorString());
  return server.serverPort();
}

Orthanc::Orthanc(const OrthancOptions& options) : options_(options) {
  process_.setProcessChannelMode(QProcess::MergedChannels);
  process_.setStandardOutputFile(folder_.filePath(QStringLiteral("log")), QIODevice::Append);
  process_.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
  for (int attempt = 1; attempt <= Attempts; ++attempt) {
    dicomPort_ = freePort();
    httpPort_ = freePort();
    writeConfiguration();
    if (launch()) return;
  }
  fail(QStringLiteral("Orthanc does not start: ") + QString::fromUtf8(log()));
}

Orthanc::~Orthanc() { kill(); }

void Orthanc::writeConfiguration() const {
  QStringList plugins = options_.plugins;
  if (options_.dicomWeb) plugins.append(QStringLiteral("/usr/share/orthanc/plugins/libOrthancDicomWeb.so"));
  QJsonObject modalities;
  for (const QString& title : options_.mayFind) {
    modalities.insert(title, QJsonObject{{QStringLiteral("AET"), title},
                                         {QStringLiteral("Host"), QStringLiteral("127.0.0.1")},
                                         {QStringLiteral("Port"), 104},
                                         {QStringLiteral("AllowEcho"), true},
                                         {QStringLiteral("AllowFind"), true},
                                         {QStringLiteral("AllowStore"), true}});
  }
  QJsonObject configuration{
      {QStringLiteral("Name"), QStringLiteral("Test")},
      {QStringLiteral("StorageDirectory"), folder_.filePath(QStringLiteral("data"))},
      {QStringLiteral("IndexDirectory"), folder_.filePath(QStringLiteral("data"))},
      {QStringLiteral("Plugins"), QJsonArray::fromStringList(plugins)},
      {QStringLiteral("DicomAet"), options_.aeTitle},
      {QStringLiteral("DicomCheckCalledAet"), options_.checkCalledTitle},
      {QStringLiteral("DicomPort"), dicomPort_},
      {QStringLiteral("HttpPort"), httpPort_},
      {QStringLiteral("RemoteAccessAllowed"), false},
      {QStringLiteral("DicomAlwaysAllowEcho"), options_.strangersMayEcho},
      {QStringLiteral("DicomAlwaysAllowStore"), options_.strangersMayStore},
      {QStringLiteral("DicomAlwaysAllowFind"), false},
      {QStringLiteral("DicomModalities"), modalities},
      {QStringLiteral("OverwriteInstances"), false},
      // It answers queries in this one; in Latin-1, its own choice, names in other scripts are lost.
      {QStringLiteral("DefaultEncoding"), QStringLiteral("Utf8")},
      {QStringLiteral("AuthenticationEnabled"), !options_.user.isEmpty()}};
  if (!options_.user.isEmpty()) {
    configuration.insert(QStringLiteral("RegisteredUsers"), QJsonObject{{options_.user, options_.password}});
  }
  for (auto entry = options_.more.begin(); entry != options_.more.end(); ++entry) {
    configuration.insert(entry.key(), entry.value());
  }
  QFile file(folder_.filePath(QStringLiteral("orthanc.json")));
  if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) fail(file.errorString());
  file.write(QJsonDocument(configuration).toJson());
}

bool Orthanc::launch() {
  process_.start(QStringLiteral("Orthanc"), {folder_.filePath(QStringLiteral("orthanc.json"))});
  QElapsedTimer elapsed;
  elapsed.start();
  while (elapsed.elapsed() < Limit) {
    // Whoever took a port of ours since we chose it answers in its place: then Orthanc ends with an error.
    if (process_.waitForFinished(PollPause) || process_.state() == QProcess::NotRunning) return false;
    if (!log().contains("Orthanc has started")) continue;
    return somebodyListens(dicomPort_) && somebodyListens(httpPort_);
  }
  kill();
  return false;
}

void Orthanc::start() {
  if (process_.state() != QProcess::NotRunning) return;
  // What an earlier run has said must not be taken for this one's.
  QFile::remove(folder_.filePath(QStringLiteral("log")));
  for (int attempt = 1; attempt <= Attempts; ++attempt) {
    if (launch()) return;
  }
  fail(QStringLiteral("Orthanc does not start again: ") + QString::fromUtf8(log()));
}

void Orthanc::stop() {
  if (process_.state() == QProcess::NotRunning) return;
  process_.terminate();
  if (!process_.waitForFinished(Limit)) kill();
}

void Orthanc::kill() {
  if (process_.state() == QProcess::NotRunning) return;
  process_.kill();
  process_.waitForFinished(Limit);
}

QUrl Orthanc::url(const QString& path) const {
  return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(httpPort_).arg(path));
}

bridge::PacsSettings Orthanc::dimse() const {
  bridge::PacsSettings settings;
  settings.kind = bridge::PacsSettings::Kind::Dimse;
  settings.host = QStringLiteral("127.0.0.1");
  settings.port = dicomPort_;
  settings.calledAETitle = options_.aeTitle;
  settings.callingAETitle = QStringLiteral("VELMORALINK");
  settings.timeout = std::chrono::seconds(60);
  return settings;
}

bridge::PacsSettings Orthanc::web() const {
  bridge::PacsSettings settings;
  settings.kind = bridge::PacsSettings::Kind::Web;
  settings.url = url(QStringLiteral("/dicom-web"));
  settings.user = options_.user;
  settings.password = options_.password;
  settings.timeout = std::chrono::seconds(60);
  return settings;
}

QByteArray Orthanc::request(const QByteArray& method, const QString& path, const QByteArray& body,
                            int limit) const {
  QNetworkAccessManager network;
  QNetworkRequest what(url(path));
  what.setTransferTimeout(limit);
  what.setHeader(QNetworkRequest::ContentTypeHeader, QByteArray("application/octet-stream"));
  if (!options_.user.isEmpty()) {
    const QByteArray who = (options_.user + QLatin1Char(':') + options_.password).toUtf8();
    what.setRawHeader("Authorization", "Basic " + who.toBase64());
  }
  const std::unique_ptr<QNetworkReply> reply(network.sendCustomRequest(what, method, body));
  QEventLoop loop;
  QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
  if (!reply->isFinished()) loop.exec();
  if (reply->error() != QNetworkReply::NoError) fail(path + QStringLiteral(": ") + reply->errorString());
  return reply->readAll();
}

void Orthanc::put(const QByteArray& dicomFile) { post(QStringLiteral("/instances"), dicomFile); }

QJsonDocument Orthanc::get(const QString& path) const { return QJsonDocument::fromJson(getBytes(path)); }

QByteArray Orthanc::getBytes(const QString& path) const { return request("GET", path, QByteArray(), Limit); }

QByteArray Orthanc::post(const QString& path, const QByteArray& body) const {
  return request("POST", path, body, Limit);
}

QStringList Orthanc::identifiersOf(const QString& path) const {
  QStringList uids;
  const QJsonArray instances = get(path).array();
  for (const QJsonValue instance : instances) {
    uids.append(instance[QLatin1String("MainDicomTags")][QLatin1String("SOPInstanceUID")].toString());
  }
  uids.sort();
  return uids;
}

QStringList Orthanc::instances() const { return identifiersOf(QStringLiteral("/instances?expand")); }

QStringList Orthanc::instancesOf(const QString& studyInstanceUID) const {
  const QJsonArray found =
      QJsonDocument::fromJson(post(QStringLiteral("/tools/lookup"), studyInstanceUID.toUtf8())).array();
  if (found.isEmpty()) return {};
  return identifiersOf(
      QStringLiteral("/studies/%1/instances").arg(found.first()[QLatin1String("ID")].toString()));
}

QByteArray Orthanc::fileOf(const QString& sopInstanceUID) const {
  const QJsonArray found =
      QJsonDocument::fromJson(post(QStringLiteral("/tools/lookup"), sopInstanceUID.toUtf8())).array();
  if (found.isEmpty()) return QByteArray();
  return getBytes(QStringLiteral("/instances/%1/file").arg(found.first()[QLatin1String("ID")].toString()));
}

void Orthanc::clear() {
  const QJsonArray patients = get(QStringLiteral("/patients")).array();
  for (const QJsonValue patient : patients) {
    request("DELETE", QStringLiteral("/patients/") + patient.toString(), QByteArray(), Limit);
  }
}

QByteArray Orthanc::log() const {
  QFile file(folder_.filePath(QStringLiteral("log")));
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

}  // namespace bridge_testing
