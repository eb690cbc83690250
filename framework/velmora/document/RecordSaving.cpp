// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/document/RecordSaving.h"

#include "platform/controls/Alert.h"
#include "platform/text/Localization.h"

using velmora::platform::localizedString;
using velmora::platform::SaveOutcome;

namespace velmora {

void RecordSaving::noteSaved(const QString& name) {
  savedName_ = name;
  holdsMoreThanIdentifier_ = false;
}

RecordSaving::Target RecordSaving::askForTarget(const QString& name) {
  if (name.isEmpty() || savedName_.isEmpty() || name == savedName_) return Target::SameFile;
  const int answer = alerts_.runModal(
      {localizedString("VelmoraDocument", "The identifier of this record has changed"),
       localizedString("VelmoraDocument", "New File"), localizedString("VelmoraDocument", "Same File"),
       localizedString("OrvVersion", "Cancel"),
       platform::formatted(
           localizedString("VelmoraDocument",
                           "It was '%@' and is now '%@'. With a new file the record of '%@' stays as it "
                           "was last saved."),
           {savedName_, name, savedName_})});
  if (answer == platform::AlertDefaultReturn) return Target::NewFile;
  return answer == platform::AlertAlternateReturn ? Target::SameFile : Target::None;
}

bool RecordSaving::mayCloseAfter(SaveOutcome outcome) const {
  // To give up a save is not to give up the record, unless it was to be closed.
  return outcome == SaveOutcome::Kept || (outcome == SaveOutcome::GivenUp && closeRequested_);
}

RecordSaving::CloseAnswer RecordSaving::askBeforeClosing(bool automatic) {
  const int answer = alerts_.runModal({localizedString("VelmoraDocument", "Save changes to document?"),
                                       automatic ? localizedString("VelmoraDocument", "Save")
                                                 : localizedString("VelmoraDocument", "Save As..."),
                                       localizedString("VelmoraDocument", "Don't Save"),
                                       localizedString("OrvVersion", "Cancel"), QString()});
  if (answer == platform::AlertAlternateReturn) return CloseAnswer::Close;
  return answer == platform::AlertDefaultReturn ? CloseAnswer::SaveFirst : CloseAnswer::Stay;
}

}  // namespace velmora
