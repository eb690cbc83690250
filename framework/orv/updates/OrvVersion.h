// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

#include "base/Export.h"
#include "base/Result.h"

namespace velmora::platform {
struct Services;
}  // namespace velmora::platform

namespace velmora::orv {
struct AppcastItem;
}

/// What is known of the application's version, and whether there is a newer one. One object serves the
/// application; its owner hands it out.
class VELMORA_EXPORT OrvVersion : public QObject {
 public:
  /// The local notifications that end a check.
  inline static const QString CheckSuccessful = QStringLiteral("VersionCheckSuccessful");
  inline static const QString CheckUnsuccessful = QStringLiteral("VersionCheckUnsuccessful");

  explicit OrvVersion(velmora::platform::Services& services) : services_(services) {}

  /// The application's name as people know it.
  QString applicationName() const;

  /// Looks for a newer version: asks for the feed (readAppcast) at the address under "SUFeedURL" of the
  /// information dictionary, and for nothing else. Returns at once. In the end CheckSuccessful or
  /// CheckUnsuccessful is posted on the local notification centre, and after that the user is told:
  /// always of a newer version, with a button that opens its page; when `userAsked` also that there is none,
  /// or why the check failed. A check without an address, or without an answer within 30 seconds and 1 MiB,
  /// is unsuccessful.
  ///
  /// While a check is running, a further one joins it: one request, one notification, and the result is
  /// told when either was asked for by the user.
  void checkVersion(bool userAsked);

 private:
  void didLoad(const velmora::base::Result<QByteArray>& page);
  void succeed(const velmora::orv::AppcastItem* newer);
  void fail(const QString& reason);
  bool isNewer(const velmora::orv::AppcastItem& item) const;
  void offer(const velmora::orv::AppcastItem& item);
  void tell(const QString& message, const QString& details);
  /// The check is over; whether the user waits for its result.
  bool end(const QString& notification);
  QString info(const char* key) const;

  velmora::platform::Services& services_;
  bool checking_ = false;
  bool userAsked_ = false;
};
