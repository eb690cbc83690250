// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QDate>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include "base/Export.h"

namespace velmora::link {

/// A link reply as it was received. A value that is absent, or not what the protocol says it is, is empty.
struct LinkReply {
  static constexpr qsizetype LongestText = 1024;  ///< in UTF-16 units; longer texts are cut

  QString identifier;
  QString name;
  QDate birthDay;   ///< the local calendar day, in the years 1 to 9999
  QDate studyDay;   ///< likewise
  QString studyID;  ///< empty also where the value is no text: such a value names no study
  QString description;
  QByteArray jpeg;

  /// What is wrong with the reply, in words for the user.
  QStringList complaints;
  /// Whether the chart can be filed in spite of that. Only a missing caption is no obstacle: what else
  /// is wrong says that the sender cannot be relied on.
  bool canBeFiled = true;
};

/// Reads the payload of a link reply.
VELMORA_EXPORT LinkReply readReply(const QVariantMap& payload);

}  // namespace velmora::link
