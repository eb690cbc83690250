// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The document as the delegate of its text fields.
#include <QLineEdit>

#include "platform/controls/Alert.h"
#include "platform/text/Localization.h"
#include "platform/Services.h"
#include "velmora/document/VelmoraDocument.h"

using namespace velmora;

using velmora::platform::localizedString;

bool VelmoraDocument::controlTextShouldBeginEditing(QLineEdit* control) {
  const bool guardedField = control && (control == referenceIDField_ || control == birthDateField_);
  if (!guardedField || control->text().isEmpty()) return true;
  const int answer = services().alerts.runModal(
      {localizedString("VelmoraDocument", "This entry has already been defined"),
       localizedString("VelmoraDocument", "Modify"), localizedString("OrvVersion", "Cancel"), QString(),
       localizedString("VelmoraDocument", "Are you sure you want to modify this item?")});
  return answer != platform::AlertAlternateReturn && answer != platform::AlertStopped;
}

void VelmoraDocument::controlTextDidBeginEditing(QLineEdit* control) {
  updateChangeCount(platform::ChangeType::Done);
  if (control != referenceIDField_) holdsMoreThanIdentifier_ = true;
}

void VelmoraDocument::controlTextDidEndEditing(QLineEdit*) {
  const QString name = preferredFileName(false).toUpper();
  if (isBlank()) {
    setIdentifier(name);
    docIsBlank_ = false;
  }
  synchronizeWindowTitle();
  if (!lookUpRequired_ || name.isEmpty()) {
    updateArrayOrder();
    return;
  }
  lookUpRequired_ = false;
  lookUp(name, true);
}
