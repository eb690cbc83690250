// SPDX-License-Identifier: LGPL-3.0-or-later
#include "orv/documents/OrvRescue.h"

#include <QFileInfo>
#include <tuple>

#include "base/log/Log.h"
#include "orv/documents/OrvKeptCopies.h"
#include "orv/documents/OrvWrittenFolders.h"
#include "platform/controls/Alert.h"
#include "platform/controls/Panels.h"
#include "platform/text/Localization.h"

using namespace velmora;

using velmora::platform::formatted;
using velmora::platform::localizedString;
using velmora::platform::SaveOutcome;

namespace {

QString fileNameOf(const OrvRescue::Content& content) {
  return base::appendingPathExtension(content.displayName, content.typeName);
}

QString notSavedMessage(const QString& name) {
  return formatted(localizedString("OrvDocument", "The record '%@' could not be saved."), {name});
}

}  // namespace

OrvRescue::Outcome OrvRescue::keepDropped(const Content& content) {
  const base::Result<QString> copy = copies_.keepRescueCopy(fileNameOf(content), content.data);
  if (copy.ok()) {
    base::logLine(QStringLiteral("Unsaved changes were kept in %1").arg(QFileInfo(*copy).path()));
    return {SaveOutcome::Kept, *copy};
  }
  const QString message =
      formatted(localizedString("OrvDocument", "Unsaved changes to '%@' are about to be dropped."),
                {content.displayName});
  return {askWhereToSave(content, message, localizedString("OrvDocument", "No copy of them could be kept.")),
          std::nullopt};
}

SaveOutcome OrvRescue::keepUnsaved(const QString& fileName, const Content& content, const QString& reason) {
  if (content.data.isEmpty()) {
    tellNotSaved(fileName, reason);
    return SaveOutcome::Unsaved;
  }
  const base::Result<QString> copy = copies_.keepRescueCopy(fileName, content.data);
  if (copy.ok()) {
    tellNotSaved(fileName,
                 reason + QStringLiteral("\n\n") +
                     formatted(localizedString("OrvDocument", "A copy was kept as '%@'."), {*copy}));
    return SaveOutcome::Kept;
  }
  // Neither here nor there: the record exists in memory only, and what comes next may be its closing.
  return askWhereToSave(
      content, notSavedMessage(fileName),
      reason + QStringLiteral("\n\n") + localizedString("OrvDocument", "No copy could be kept either."));
}

void OrvRescue::keepQuietly(const Content& content) {
  std::ignore = copies_.keepRescueCopy(fileNameOf(content), content.data);
}

void OrvRescue::tellAboutCopy(const QString& name, const QString& copy) {
  alerts_.runModal(
      {formatted(localizedString("OrvDocument", "'%@' was closed with unsaved changes"), {name}),
       localizedString("OrvVersion", "OK"), QString(), QString(),
       formatted(localizedString("OrvDocument", "A copy with the changes was kept as '%@'."), {copy})});
}

SaveOutcome OrvRescue::askWhereToSave(const Content& content, const QString& message,
                                      const QString& information) {
  const int answer = alerts_.runModal({message, localizedString("OrvDocument", "Save Elsewhere..."),
                                       localizedString("OrvDocument", "Don't Save"),
                                       localizedString("OrvVersion", "Cancel"), information});
  if (answer == platform::AlertAlternateReturn) return SaveOutcome::GivenUp;
  const bool saved = answer == platform::AlertDefaultReturn && saveElsewhere(content);
  return saved ? SaveOutcome::Kept : SaveOutcome::Unsaved;
}

bool OrvRescue::saveElsewhere(const Content& content) {
  for (;;) {
    platform::SavePanel panel;
    panel.title = localizedString("OrvDocument", "Save Elsewhere");
    panel.nameFieldStringValue = content.displayName;
    panel.requiredFileType = content.typeName;
    if (panels_.runModal(panel) != platform::PanelOKButton) return false;
    const base::Result<> written = writtenFolders_.write(panel.url.toLocalFile(), content.data);
    if (written.ok()) return true;
    tellNotSaved(panel.url.fileName(), written.error());
  }
}

void OrvRescue::tellNotSaved(const QString& name, const QString& reason) {
  alerts_.runModal(
      {notSavedMessage(name), localizedString("OrvVersion", "OK"), QString(), QString(), reason});
}
