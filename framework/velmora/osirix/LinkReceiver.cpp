// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/osirix/LinkReceiver.h"

#include <QUrl>
#include <stdexcept>
#include <utility>

#include "base/Result.h"
#include "base/log/AssertionFailure.h"
#include "base/log/Log.h"
#include "link/protocol/LinkPayload.h"
#include "link/protocol/LinkProtocol.h"
#include "platform/controls/Alert.h"
#include "platform/documents/DocumentController.h"
#include "platform/runloop/RunLoop.h"
#include "platform/text/Localization.h"
#include "velmora/document/VelmoraDocument.h"

namespace velmora {

namespace {

/// Time for the file that the look-up found to be opened.
constexpr double NewRecordDelay = 0.1;

/// Far more than any identifier or name has. A text field would cut what is longer than it can hold, and a
/// cut identifier is another patient's; and a name of megabytes would keep the window busy for minutes.
constexpr qsizetype LongestText = 1024;

/// Roughly the memory that a value holds.
qsizetype bytesOf(const QVariant& value) {
  constexpr qsizetype BytesOfAny = 32;
  qsizetype bytes = BytesOfAny;
  if (value.typeId() == QMetaType::QString) {
    bytes += value.toString().size() * static_cast<qsizetype>(sizeof(QChar));
  } else if (value.typeId() == QMetaType::QByteArray) {
    bytes += value.toByteArray().size();
  } else if (value.typeId() == QMetaType::QVariantList) {
    for (const QVariant& each : value.toList()) bytes += bytesOf(each);
  } else if (value.typeId() == QMetaType::QVariantMap) {
    const QVariantMap map = value.toMap();
    for (auto each = map.begin(); each != map.end(); ++each) bytes += bytesOf(each.key()) + bytesOf(*each);
  }
  return bytes;
}

/// Refuses texts of absurd length.
base::Result<> checkLengths(const link::LinkRequest& request) {
  const auto tooLong = [](const QString& key) {
    return base::Failure{
        QStringLiteral("VelmoraAppController: a study was chosen whose %1 is longer than any patient's")
            .arg(key)};
  };
  if (request.identifier.toString().size() > LongestText) return tooLong(link::Identifier);
  if (request.name.size() > LongestText) return tooLong(link::Name);
  return {};
}

QString identifierOf(const link::LinkRequest& request) {
  const QVariant& value = request.identifier;
  // A dictionary or a list is no identifier, whatever text it might be turned into.
  base::requireValue(value.typeId() == QMetaType::QString && !value.toString().isNull(),
                     "VelmoraAppController");
  return link::fileNameIdentifier(value.toString());
}

}  // namespace

VelmoraDocument* LinkReceiver::frontDocument() const {
  const auto& ordered = controller_.orderedDocuments();
  return ordered.isEmpty() ? nullptr : dynamic_cast<VelmoraDocument*>(ordered.first());
}

void LinkReceiver::notifiedOfLinkFromOsirix(const platform::Notification& notification) {
  // It may have to wait, and may hold a picture of megabytes.
  const platform::Notification request{notification.name, {}, link::requestKeysOnly(notification.userInfo)};
  const qsizetype bytes = bytesOf(request.userInfo);
  const base::Result<> lengths = checkLengths(link::readRequest(request.userInfo));
  if (!lengths.ok()) return base::logLine(lengths.error());
  if (bytes > LongestRequest) {
    return base::logLine(
        QStringLiteral("VelmoraAppController: a study was chosen whose details are far too long"));
  }
  if (!mayWait(bytes)) return;
  runLoop_.performOnMainThread(this, [this, request, bytes] {
    hasWaited(bytes);
    doLinkFromOsirix(request);
  });
}

bool LinkReceiver::mayWait(qsizetype bytes) {
  const std::lock_guard lock(mutex_);
  if (waiting_ >= MostWaiting || bytesWaiting_ + bytes > MostBytesWaiting) {
    if (!std::exchange(refusing_, true)) {
      base::logLine(QStringLiteral("%1 chosen studies wait: more are not taken until they are dealt with")
                        .arg(waiting_));
    }
    return false;
  }
  ++waiting_;
  bytesWaiting_ += bytes;
  return true;
}

void LinkReceiver::hasWaited(qsizetype bytes) {
  const std::lock_guard lock(mutex_);
  --waiting_;
  bytesWaiting_ -= bytes;
  if (waiting_ == 0) refusing_ = false;
}

void LinkReceiver::doLinkFromOsirix(const platform::Notification& notification) {
  const link::LinkRequest request = link::readRequest(notification.userInfo);
  const base::Result<> lengths = checkLengths(request);
  if (!lengths.ok()) throw std::length_error(lengths.error().toStdString());
  const QString identifier = identifierOf(request);
  VelmoraDocument* target = frontDocument();
  if (!target) throw std::out_of_range("VelmoraAppController: a study was chosen, but no document is open");

  if (target->lookUp(identifier, false)) {
    runLoop_.performAfterDelay(this, NewRecordDelay,
                               [this, notification] { deferredNewRecord(notification); });
    return;
  }
  target->abandonEditing();
  target->setIdentifier(identifier);
  if (request.birthDate.isValid()) target->setBirthDate(request.birthDate);
  target->setExamDate(request.studyDate);
  target->setName(request.name);
  target->setOsiriXStudyID(request.studyID);
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
  const link::LinkRequest request = link::readRequest(notification.userInfo);
  const QString identifier = identifierOf(request);
  VelmoraDocument* target = recordOf(identifier);
  // Its file did not open, of which the user has been told, or the user has closed it meanwhile.
  if (!target)
    return base::logLine(QStringLiteral("The record of a chosen study is not open: nothing was added"));
  const base::Result<> checked = target->checkIsRecordOf(identifier);
  if (!checked.ok()) {
    alerts_.runModal({platform::formatted(platform::localizedString("VelmoraAppController",
                                                                    "No examination was added to '%@'"),
                                          {target->displayName()}),
                      platform::localizedString("OrvVersion", "OK"), QString(), QString(), checked.error()});
    return;
  }
  if (target != frontDocument()) target->showWindows();
  target->doNewRecord(this);
  target->setName(request.name);
  // A record that has been open for longer may still hold the study of an earlier request, into which the
  // chart of this one must not go.
  target->setOsiriXStudyID(QStringLiteral(""));
  target->setExamDate(request.studyDate);
  target->directUpdateDisplayAndSetDirty(this);
}

}  // namespace velmora
