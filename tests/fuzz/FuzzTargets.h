// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <array>

/// What the fuzzers feed, and the tests feed again with every input that once mattered. Each takes any bytes
/// at all, and ends the process (abort, or a sanitizer) when something is wrong.
namespace fuzz {

/// A data file: as it stands, with its checksum put right, and as the content of a proper file. What is read
/// can be written and read again, and shows what it can show.
void dataFile(const QByteArray& input);
/// A notification from a stranger, through a real bus connection: the input says which values of which types.
/// What arrives can be sent on without loss.
void busPayload(const QByteArray& input);
/// An information dictionary.
void informationDictionary(const QByteArray& input);
/// A reference file: as it stands and with its digest put right. What it answers are numbers.
void referenceFile(const QByteArray& input);
/// A DICOM file, as it stands and as the data set of one in each of the transfer syntaxes; and a JPEG image
/// that becomes a DICOM object. What is written is of the study and the patient that were read.
void dicomFile(const QByteArray& input);
/// A link reply from a stranger, and the files of the spool: from the values to the study that it goes into
/// and the object that it becomes there. No chart goes to a patient whom it does not name.
void linkReply(const QByteArray& input);

struct Target {
  const char* name;
  void (*run)(const QByteArray& input);
};
inline constexpr std::array<Target, 6> targets{{{"data-file", dataFile},
                                                {"bus-payload", busPayload},
                                                {"information-dictionary", informationDictionary},
                                                {"reference-file", referenceFile},
                                                {"dicom-file", dicomFile},
                                                {"link-reply", linkReply}}};

/// Ends the process with a word when what must hold does not.
void require(bool holds, const char* what);

}  // namespace fuzz
