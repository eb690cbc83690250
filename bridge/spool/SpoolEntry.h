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

/// A chart that an application sent, as the spool keeps it; fixed on arrival.
struct SpooledReply {
  QString sopInstanceUID;     ///< of the DICOM object that it becomes
  QDateTime arrival;          ///< with its offset from UTC
  QString application;        ///< bundle identifier
  QString identifier;         ///< the patient's, as it came
  QString patientName;        ///< as it came; for the person who deals with a chart that was set aside
  QDate birthDay;             ///< the local calendar day; invalid when the reply had none
  QDate studyDay;             ///< likewise
  QString studyID;            ///< as in the reply; empty when it names no study
  QString requestedStudyUID;  ///< of the request that it belongs to; empty when there is no such request
  QString description;
  QString complaint;  ///< why it can never be sent; empty when it can
  QByteArray jpeg;

  bool operator==(const SpooledReply&) const = default;
};

/// Takes over what a link reply says (link::readReply). Returns nothing when it has no chart to keep.
std::optional<SpooledReply> spooledReply(const QVariantMap& payload, const QString& application,
                                         const QDateTime& arrival);

/// The study that a chart belongs to, and its place there. Decided once.
struct Decision {
  Study study;
  QString seriesInstanceUID;
  int seriesNumber = 0;
  int instanceNumber = 1;
  bool showsPatient = true;  ///< as in Chart

  bool operator==(const Decision&) const = default;
};

enum class SpoolState { Waiting, Stored, Aside };

/// The state of a reply.
struct EntryState {
  SpoolState state = SpoolState::Waiting;
  QDateTime changed;                 ///< when this was written
  int tries = 0;                     ///< failed exchanges with the PACS that will be repeated
  QString reason;                    ///< of the last failure, or why it was set aside
  std::optional<Decision> decision;  ///< empty once stored

  // What is kept of a stored reply; empty before.
  QString sopInstanceUID;
  QString studyInstanceUID;
  QString application;
  QDateTime arrival;

  bool operator==(const EntryState&) const = default;
};

// The files. Each begins with a line that names its kind and holds the SHA-256 of the rest, so that damage is
// detected.

QByteArray encodeReply(const SpooledReply& reply);
/// Returns nothing when the file is damaged, truncated or of another kind.
std::optional<SpooledReply> decodeReply(const QByteArray& file);
/// Reads all but the JPEG from the first HeadSize bytes of the file. Does not check the SHA-256.
std::optional<SpooledReply> decodeReplyHead(const QByteArray& beginning);
inline constexpr qint64 HeadSize = 64 * 1024;

QByteArray encodeState(const EntryState& state);
std::optional<EntryState> decodeState(const QByteArray& file);
inline constexpr qint64 LargestState = 256 * 1024;

}  // namespace bridge
