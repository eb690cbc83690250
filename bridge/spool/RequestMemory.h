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

/// A link request that was heard.
struct HeardRequest {
  QString application;  ///< bundle identifier
  QString identifier;   ///< as applications hold it: see applicationIdentifier()
  QString studyUID;     ///< empty when the request named no study
  QDate studyDay;       ///< invalid when the request had none
  QDateTime time;

  bool operator==(const HeardRequest&) const = default;
};

/// A patient's identifier as applications hold it: "-" for each "/", nothing around it.
QString applicationIdentifier(const QString& identifier);

/// The link requests that were heard of late, kept in a file. A reply whose study is not named belongs to the
/// latest request of its application for its patient when that was heard within the last 24 hours, whatever
/// the days: who pages back to an earlier examination while a study is open means that study. An older
/// request counts only when it is for the day that the reply tells; the latest such one is taken.
class RequestMemory {
 public:
  static constexpr int Most = 500;
  static constexpr int Days = 90;
  static constexpr int HoursOfTheLatest = 24;

  /// The file need not exist yet.
  explicit RequestMemory(const QString& path);

  /// Reads the file, and forgets what is too old by now. Fails with what was wrong with
  /// it; a damaged one is kept as "requests.damaged" beside it, and the memory goes on without.
  velmora::base::Result<> open(const QDateTime& now);
  /// Remembers a request; one that names no patient is passed over. Fails when it is not in the file
  /// yet.
  velmora::base::Result<> remember(const QVariantMap& payload, const QString& application,
                                   const QDateTime& time);
  /// Writes what is not in the file yet.
  velmora::base::Result<> save();
  bool isSaved() const { return saved_; }
  /// Fills in the study of the request that the reply belongs to, if there is one.
  void recall(SpooledReply& reply) const;

  const QList<HeardRequest>& requests() const { return requests_; }

 private:
  void forgetOld(const QDateTime& now);

  QString path_;
  bool saved_ = true;
  QList<HeardRequest> requests_;  // in the order in which they were heard
};

}  // namespace bridge
