// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDate>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QVariantMap>

#include "base/Result.h"
#include "bridge/spool/SpoolEntry.h"

namespace bridge {

/// A link request that was received.
struct ReceivedRequest {
  QString application;  ///< bundle identifier
  QString identifier;   ///< as applications hold it: see applicationIdentifier()
  QString studyUID;     ///< empty when the request named no study
  QDate studyDay;       ///< invalid when the request had none
  QDateTime time;

  bool operator==(const ReceivedRequest&) const = default;
};

/// A patient's identifier as applications hold it: "-" for each "/", nothing around it.
QString applicationIdentifier(const QString& identifier);

/// The latest link requests that were received, kept in a file. A reply that names no study belongs to the
/// latest request of its application for its patient if that request was received within the last 24 hours,
/// whatever the days: a user who pages back to an earlier examination while a study is open means that study.
/// An older request counts only if it is for the day that the reply names; the latest of those is taken.
class RequestHistory {
 public:
  static constexpr int Most = 500;
  static constexpr int Days = 90;
  static constexpr int HoursOfTheLatest = 24;

  /// The file need not exist yet.
  explicit RequestHistory(const QString& path);

  /// Reads the file and forgets requests that are too old. Fails with what is wrong with the file; a damaged
  /// one is kept beside it as "requests.damaged", and the history starts empty. One that the disk does not
  /// give for now is read by a later save(), and not written over before.
  velmora::base::Result<> open(const QDateTime& now);
  /// Remembers a request, unless it names no patient. Fails when the request could not be written yet.
  velmora::base::Result<> remember(const QVariantMap& payload, const QString& application,
                                   const QDateTime& time);
  /// Writes the requests that are not in the file yet.
  velmora::base::Result<> save();
  bool isSaved() const { return saved_ && isRead_; }
  /// Sets the study of the request that the reply belongs to, if there is one.
  void matchToRequest(SpooledReply& reply) const;

  const QList<ReceivedRequest>& requests() const { return requests_; }

 private:
  void forgetOld(const QDateTime& now);
  velmora::base::Result<> readFile();

  QString path_;
  bool isRead_ = true;  // false while the disk does not give the file
  bool saved_ = true;
  QList<ReceivedRequest> requests_;  // in the order of arrival
};

}  // namespace bridge
