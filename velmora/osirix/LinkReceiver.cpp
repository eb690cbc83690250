// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/osirix/LinkReceiver.h"

#include <QDateTime>
#include <QUrl>
#include <stdexcept>

#include "platform/Alert.h"
#include "platform/AssertionFailure.h"
#include "platform/DocumentController.h"
#include "platform/Localization.h"
#include "platform/Log.h"
#include "platform/RunLoop.h"
#include "platform/Services.h"
#include "velmora/document/VelmoraDocument.h"
#include "velmora/osirix/LinkPayload.h"
#include "velmora/osirix/LinkProtocol.h"

namespace velmora {

namespace {

/// Time for the file that the look-up found to be opened.
constexpr double NewRecordDelay = 0.1;

/// Far more than any identifier or name has. A text field would cut what is longer than it can hold, and a
/// cut identifier is another patient's; and a name of megabytes would keep the window busy for minutes.
constexpr qsizetype LongestText = 1024;

void requireReasonableTexts(const platform::Notification& notification) {
  for (const QString& key : {link::Identifier, link::Name}) {
    if (notification.userInfo.value(key).toString().size() > LongestText) {
      throw std::length_error("VelmoraAppController: a study was chosen whose " + key.toStdString() +
                              " is longer than any patient's");
    }
  }
}

QString identifierOf(const platform::Notification& notification) {
  const QVariant value = notification.userInfo.value(link::Identifier);
  // A dictionary or a list is no identifier, whatever text it might be turned into.
  platform::requireValue(value.typeId() == QMetaType::QString && !value.toString().isNull(),
                         "VelmoraAppController");
  return link::fileNameIdentifier(value.toString());
}

QDateTime dateOf(const platform::Notification& notification, const QString& key) {
  const QVariant value = notification.userInfo.value(key);
  return value.typeId() == QMetaType::QDateTime ? value.toDateTime() : QDateTime();
}

}  // namespace

LinkReceiver::LinkReceiver(platform::Services& services, platform::DocumentController& controller)
    : services_(services), controller_(controller) {}

VelmoraDocument* LinkReceiver::frontDocument() const {
  const auto& ordered = controller_.orderedDocuments();
  return ordered.isEmpty() ? nullptr : dynamic_cast<VelmoraDocument*>(ordered.first());
}

void LinkReceiver::notifiedOfLinkFromOsirix(const platform::Notification& notification) {
  services_.runLoop.performOnMainThread(this, [this, notification] { doLinkFromOsirix(notification); });
}

void LinkReceiver::doLinkFromOsirix(const platform::Notification& notification) {
  requireReasonableTexts(notification);
  const QString identifier = identifierOf(notification);
  VelmoraDocument* target = frontDocument();
  if (!target) throw std::out_of_range("VelmoraAppController: a study was chosen, but no document is open");

  if (target->lookUp(identifier, false)) {
    services_.runLoop.performAfterDelay(this, NewRecordDelay,
                                        [this, notification] { deferredNewRecord(notification); });
    return;
  }
  target->setIdentifier(identifier);
  const QDateTime birthDate = dateOf(notification, link::DateOfBirth);
  if (birthDate.isValid()) target->setBirthDate(birthDate);
  target->setExamDate(dateOf(notification, link::DateOfStudy));
  target->setName(notification.userInfo.value(link::Name).toString());
  target->setOsiriXStudyID(notification.userInfo.value(link::OsiriXStudyID));
  target->directUpdateDisplayAndSetDirty(this);
}

VelmoraDocument* LinkReceiver::recordOf(const QString& identifier) const {
  const VelmoraDocument* front = frontDocument();
  if (!front) return nullptr;
  const QUrl file = QUrl::fromLocalFile(front->dataFilePath(identifier));
  return dynamic_cast<VelmoraDocument*>(controller_.documentForURL(file));
}

void LinkReceiver::deferredNewRecord(const platform::Notification& notification) {
  if (!frontDocument()) return;
  const QString identifier = identifierOf(notification);
  VelmoraDocument* target = recordOf(identifier);
  // The user has been told already that the file did not open.
  if (!target)
    return platform::logLine(QStringLiteral("The record of a chosen study is not open: nothing was added"));
  if (target->preferredFileName(false).compare(identifier, Qt::CaseInsensitive) != 0) {
    services_.alerts.runModal(
        {platform::formatted(
             platform::localizedString("VelmoraAppController", "No examination was added to '%@'"),
             {target->displayName()}),
         platform::localizedString("OrvVersion", "OK"), QString(), QString(),
         platform::formatted(
             platform::localizedString("VelmoraAppController",
                                       "The file was saved for patient '%@', but the identifier in it "
                                       "reads '%@'."),
             {identifier, target->identifier()})});
    return;
  }
  if (target != frontDocument()) target->showWindows();
  target->doNewRecord(this);
  target->setName(notification.userInfo.value(link::Name).toString());
  target->setExamDate(dateOf(notification, link::DateOfStudy));
  target->directUpdateDisplayAndSetDirty(this);
}

}  // namespace velmora
