// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include "bridge/pacs/Pacs.h"
#include "bridge/pacs/PacsSettings.h"

namespace bridge {

class DimseAssociation;

/// An archive that is reached over DIMSE (PS3.7): C-FIND finds studies, C-STORE stores objects, each in an
/// association of its own.
class DimsePacs final : public Pacs {
 public:
  explicit DimsePacs(const PacsSettings& settings) : settings_(settings) {}

  /// A study must match every member that is not empty letter by letter; a wildcard in them is an ordinary
  /// character.
  PacsResult<QList<Study>> findStudies(const StudyQuery& query) override;
  /// The file is one that was made here: the DICOM toolkit reads it, as it reads nothing that was received.
  /// It is sent in its transfer syntax. Never when the archive takes no objects of the class, or none in that
  /// transfer syntax.
  PacsResult<> store(const QByteArray& file, const QString& sopClassUID,
                     const QString& sopInstanceUID) override;
  /// Echoes, asks for a study that is nowhere, and asks whether a chart could be stored.
  PacsResult<> check() override;

 private:
  static PacsResult<QList<Study>> find(DimseAssociation& association, int index, const StudyQuery& query);

  PacsSettings settings_;
};

}  // namespace bridge
