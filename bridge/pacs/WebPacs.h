// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include "bridge/pacs/Pacs.h"
#include "bridge/pacs/PacsSettings.h"

namespace bridge {

/// An archive that is reached over DICOMweb (PS3.18): QIDO-RS finds studies, STOW-RS stores objects.
///
/// What an administrator can mend (a wrong address or password, a missing permission, a certificate) is
/// TryAgain, so that a slip in the configuration sets no chart aside.
class WebPacs final : public Pacs {
 public:
  explicit WebPacs(const PacsSettings& settings) : settings_(settings) {}

  /// A study must match every member that is not empty letter by letter; a wildcard in them is an ordinary
  /// character.
  PacsResult<QList<Study>> findStudies(const StudyQuery& query) override;
  PacsResult<> store(const QByteArray& file, const QString& sopClassUID,
                     const QString& sopInstanceUID) override;
  /// Asks for a study that is nowhere, and sends a package to store with nothing in it.
  PacsResult<> check() override;

 private:
  PacsSettings settings_;
};

}  // namespace bridge
