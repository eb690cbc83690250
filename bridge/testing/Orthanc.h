// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QUrl>

#include "bridge/pacs/PacsSettings.h"

namespace bridge_testing {

/// A port of this machine's loopback that nobody listens on at the moment.
int freePort();

struct OrthancOptions {
  QString aeTitle = QStringLiteral("ORTHANC");
  /// Whether an association for another AE title is refused.
  bool checkCalledTitle = false;
  /// AE titles of those who may ask for studies. An Orthanc of its own accord lets everybody store and nobody
  /// find.
  QStringList mayFind{QStringLiteral("VELMORALINK")};
  /// Whether those whom it does not know may store and echo.
  bool strangersMayStore = true;
  bool strangersMayEcho = true;
  bool dicomWeb = false;  ///< whether the DICOMweb plugin is loaded, at /dicom-web
  QStringList plugins;    ///< paths of others
  QString user;           ///< of the HTTP server; empty: nobody has to say who he is
  QString password;
  QJsonObject more;  ///< goes into the configuration as it is
};

/// A real Orthanc on this machine's loopback with a folder of its own. It answers on both of its ports when
/// the constructor returns, and goes with this object, or with the process that made it.
class Orthanc {
 public:
  /// Throws std::runtime_error when it does not come up.
  explicit Orthanc(const OrthancOptions& options = {});
  ~Orthanc();
  Orthanc(const Orthanc&) = delete;
  Orthanc& operator=(const Orthanc&) = delete;

  /// Comes up again after stop() or kill(), with the same data and on the same ports.
  void start();
  /// Ends it as an administrator would.
  void stop();
  /// Ends it in the middle of what it is doing.
  void kill();

  int dicomPort() const { return dicomPort_; }
  int httpPort() const { return httpPort_; }
  /// An address of its HTTP server; `path` begins with "/".
  QUrl url(const QString& path) const;
  /// How it is reached over DIMSE, and over DICOMweb.
  bridge::PacsSettings dimse() const;
  bridge::PacsSettings web() const;

  /// Puts a DICOM file into it over HTTP. Throws std::runtime_error when it is refused.
  void put(const QByteArray& dicomFile);
  /// What its REST interface answers, as JSON and as bytes; throws std::runtime_error when that is an error.
  QJsonDocument get(const QString& path) const;
  QByteArray getBytes(const QString& path) const;
  QByteArray post(const QString& path, const QByteArray& body) const;

  /// SOP Instance UIDs of all that it holds, and of what it holds of one study; sorted.
  QStringList instances() const;
  QStringList instancesOf(const QString& studyInstanceUID) const;
  /// The DICOM file of an object, as it was stored; empty when it holds none of that UID.
  QByteArray fileOf(const QString& sopInstanceUID) const;
  /// Removes all that it holds.
  void clear();

  /// What it has written to its log.
  QByteArray log() const;

 private:
  void writeConfiguration() const;
  bool launch();
  QByteArray request(const QByteArray& method, const QString& path, const QByteArray& body, int limit) const;
  QStringList identifiersOf(const QString& path) const;

  OrthancOptions options_;
  QTemporaryDir folder_;
  QProcess process_;
  int dicomPort_ = 0;
  int httpPort_ = 0;
};

}  // namespace bridge_testing
