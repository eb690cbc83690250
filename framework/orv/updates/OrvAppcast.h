// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <optional>

#include "base/Result.h"

namespace velmora::orv {

/// A version that a feed offers. At least one of the two version texts is there.
struct AppcastItem {
  QString version;       ///< the one to compare (sparkle:version); empty when the feed gives none
  QString shortVersion;  ///< the one for people (sparkle:shortVersionString); empty when the feed gives none
  QUrl page;             ///< where to get it, http or https; empty when the feed names no such address
  QString whatIsNew;     ///< plain text, a screenful at most; empty when the feed says nothing

  /// The text that people know the version by.
  const QString& shownVersion() const { return shortVersion.isEmpty() ? version : shortVersion; }
};

/// The newest version that a feed offers this system, if it offers one: RSS 2.0 whose items carry the
/// attributes or elements of the namespace http://www.andymatuschak.org/xml-namespaces/sparkle.
///
/// Entries for other systems (sparkle:os other than "linux") and of a channel that one has to ask for
/// (sparkle:channel, beta versions) are passed over. The page is the item's link, else its enclosure, else
/// its release notes, else the link of the whole feed.
///
/// The text comes from outside and may be anything: a document type declaration, and with it every entity of
/// its own, is refused, and so are more than 1000 items, elements within elements deeper than 32, and tags of
/// more than 4096 characters.
base::Result<std::optional<AppcastItem>> readAppcast(const QByteArray& feed);

}  // namespace velmora::orv
