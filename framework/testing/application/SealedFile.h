// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>

#include "orv/documents/OrvChecksum.h"

namespace velmora::testkit {

/// A data file written by hand, with the checksum that it must carry put in.
inline QByteArray sealed(QByteArray json) {
  const qsizetype start = json.indexOf('{');
  if (start < 0) return json;
  const bool empty = json.mid(start + 1).trimmed().startsWith('}');
  json.insert(start + 1, "\"checksum\": \"" + velmora::orv::emptyChecksum() + (empty ? "\"" : "\", "));
  return velmora::orv::withChecksum(json);
}

}  // namespace velmora::testkit
