// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/osirix/LinkReceiver.h"

#include <QDateTime>
#include <stdexcept>

#include "platform/AssertionFailure.h"
#include "platform/DocumentController.h"
#include "platform/FileManager.h"
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

QString identifierOf(const platform::Notification& notification) {
  const QVariant value = notification.userInfo.value(link::Identifier);
  // A dictionary or a list is no identifier, whatever text it might be turned into.
  platform::requireValue(value.typeId() == QMetaType::QString && !value.toString().isNull(), "VelmoraAppController");
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
  const QString identifier = identifierOf(notification);
  VelmoraDocument* target = frontDocument();
  if (!target) throw std::out_of_range("VelmoraAppController: a study was chosen, but no document is open");

  if (target->lookUp(identifier, false)) {
    services_.runLoop.performAfterDelay(this, NewRecordDelay, [this, notification] { deferredNewRecord(notification); });
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

void LinkReceiver::deferredNewRecord(const platform::Notification& notification) {
  VelmoraDocument* target = frontDocument();
  if (!target) return;
  const QString file = platform::deletingPathExtension(target->fileURL().fileName());
  if (file != identifierOf(notification)) {
    platform::logLine(QStringLiteral("A study was chosen, but its patient's record is not in front: nothing was added"));
    return;
  }
  target->doNewRecord(this);
  target->setName(notification.userInfo.value(link::Name).toString());
  target->setExamDate(dateOf(notification, link::DateOfStudy));
  target->directUpdateDisplayAndSetDirty(this);
}

}  // namespace velmora
