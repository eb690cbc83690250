// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include "base/Result.h"
#include "bridge/dicom/Study.h"

namespace bridge {

/// Why an exchange with the PACS failed. The kind decides whether a chart waits or is set aside.
struct PacsFailure : velmora::base::Failure {
  enum class Kind {
    TryAgain,  ///< it could not be reached, is busy, or broke off: later it may work
    Never,     ///< it understood and refused: the same again will be refused again
  };
  Kind kind = Kind::TryAgain;

  static PacsFailure tryAgain(const QString& reason) { return {{reason}, Kind::TryAgain}; }
  static PacsFailure never(const QString& reason) { return {{reason}, Kind::Never}; }
};

/// What an exchange with the PACS brought.
template <typename Value = void>
using PacsResult = velmora::base::Result<Value, PacsFailure>;

/// The archive in which the studies are. Calls wait for the answer, with a time-out of their own, and are
/// made from one thread at a time, never from one that has a window or a bus to serve.
class Pacs {
 public:
  virtual ~Pacs() = default;

  /// At most this many studies are looked at; more is an error that asks for a narrower question.
  static constexpr int MostStudies = 500;

  /// The studies that match all of the query.
  virtual PacsResult<QList<Study>> findStudies(const StudyQuery& query) = 0;
  /// Stores one DICOM object (a whole file, with its meta header). Succeeds only when the PACS has said so
  /// for this SOP Instance UID. Storing what is there already is no error.
  virtual PacsResult<> store(const QByteArray& file, const QString& sopClassUID,
                             const QString& sopInstanceUID) = 0;
  /// Whether the archive answers at all and would let us find and store; the reason in plain words if not.
  virtual PacsResult<> check() = 0;
};

}  // namespace bridge
