// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <functional>

#include "bridge/pacs/Pacs.h"

namespace bridge_testing {

/// An archive in memory that does what the test says.
class ScriptedPacs : public bridge::Pacs {
 public:
  struct Stored {
    QString uid;
    QByteArray file;
  };

  bridge::PacsResult<QList<bridge::Study>> findStudies(const bridge::StudyQuery& query) override {
    queries.append(query);
    if (!findResult.ok()) return findResult.failure();
    QList<bridge::Study> found;
    for (const bridge::Study& each : studies) {
      const bool right =
          (query.studyInstanceUID.isEmpty() || query.studyInstanceUID == each.studyInstanceUID) &&
          (query.patientID.isEmpty() || query.patientID == each.patientID.trimmed()) &&
          (!query.studyDate.isValid() || query.studyDate == each.studyDate);
      if (right) found.append(each);
    }
    return found;
  }
  bridge::PacsResult<> store(const QByteArray& file, const QString&, const QString& uid) override {
    ++stores;
    const bridge::PacsResult<> result = storeResult ? storeResult(uid) : bridge::PacsResult<>();
    if (result.ok()) stored.append({uid, file});
    return result;
  }
  bridge::PacsResult<> check() override { return findResult; }

  QStringList storedUids() const {
    QStringList uids;
    for (const Stored& each : stored) uids.append(each.uid);
    return uids;
  }

  QList<bridge::Study> studies;
  bridge::PacsResult<> findResult;
  std::function<bridge::PacsResult<>(const QString& uid)> storeResult;
  QList<bridge::StudyQuery> queries;
  QList<Stored> stored;
  int stores = 0;
};

inline const bridge::PacsResult<> Away = bridge::PacsFailure::tryAgain(QStringLiteral("nobody there"));
inline const bridge::PacsResult<> Refused = bridge::PacsFailure::never(QStringLiteral("not wanted"));

}  // namespace bridge_testing
