// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QDate>
#include <QDateTime>
#include <QString>
#include <QVariantMap>
#include <optional>

#include "bridge/dicom/Study.h"

namespace bridge {

/// A chart that an application sent, as the spool keeps it. What is here was fixed when it arrived.
struct SpooledReply {
  QString sopInstanceUID;     ///< of the object that it will be
  QDateTime arrival;          ///< with its offset from UTC
  QString application;        ///< bundle identifier
  QString identifier;         ///< the patient's, as it came
  QString patientName;        ///< as it came; for the eyes of whoever looks after a chart that was set aside
  QDate birthDay;             ///< the local calendar day when it arrived; invalid when none came
  QDate studyDay;             ///< likewise
  QString studyID;            ///< of the reply; empty when it names none
  QString requestedStudyUID;  ///< of the request that it belongs to; empty when there is none
  QString description;
  QString complaint;  ///< why it can never be sent; empty when nothing is wrong with it
  QByteArray jpeg;

  bool operator==(const SpooledReply&) const = default;
};

/// Takes over what a link reply says (link::readReply). Returns nothing when it has no chart to keep.
std::optional<SpooledReply> spooledReply(const QVariantMap& payload, const QString& application,
                                         const QDateTime& arrival);

/// Where a chart belongs, and which object it is there. Decided once.
struct Decision {
  Study study;
  QString seriesInstanceUID;
  int seriesNumber = 0;
  int instanceNumber = 1;
  bool showsPatient = true;  ///< as in Chart

  bool operator==(const Decision&) const = default;
};

enum class SpoolState { Waiting, Stored, Aside };

/// What has become of a reply so far.
struct EntryState {
  SpoolState state = SpoolState::Waiting;
  QDateTime changed;                 ///< when this was written
  int tries = 0;                     ///< exchanges with the PACS that failed and will be repeated
  QString reason;                    ///< of the last failure, or for setting it aside
  std::optional<Decision> decision;  ///< dropped when stored

  // What is left of a stored reply; empty before.
  QString sopInstanceUID;
  QString studyInstanceUID;
  QString application;
  QDateTime arrival;

  bool operator==(const EntryState&) const = default;
};

// As files. Each file begins with a line that names its kind and holds the SHA-256 of the rest, so that a
// damaged one is not taken for a whole one.

QByteArray encodeReply(const SpooledReply& reply);
/// Nothing when the file is damaged, cut, or of another kind.
std::optional<SpooledReply> decodeReply(const QByteArray& file);
/// All but the JPEG, from the first HeadSize bytes of the file. The SHA-256 is not looked at.
std::optional<SpooledReply> decodeReplyHead(const QByteArray& beginning);
inline constexpr qint64 HeadSize = 64 * 1024;

QByteArray encodeState(const EntryState& state);
std::optional<EntryState> decodeState(const QByteArray& file);
inline constexpr qint64 LargestState = 256 * 1024;

}  // namespace bridge
