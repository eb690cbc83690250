// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/pacs/DimseStatus.h"

#include <array>

namespace bridge {

namespace {

QString meaningOf(quint16 status) {
  struct Meaning {
    quint16 mask;
    quint16 status;
    const char* words;
  };
  static constexpr std::array<Meaning, 10> Meanings{{{0xffff, 0x0110, "processing failure"},
                                                     {0xffff, 0x0117, "invalid object"},
                                                     {0xffff, 0x0118, "unknown class of objects"},
                                                     {0xffff, 0x0122, "class of objects not supported"},
                                                     {0xffff, 0x0124, "not authorised"},
                                                     {0xffff, 0x0211, "unrecognised operation"},
                                                     {0xff00, 0xa700, "out of resources"},
                                                     {0xff00, 0xa900, "the data do not match their class"},
                                                     {0xff00, 0xfe00, "cancelled"},
                                                     {0xf000, 0xc000, "unable to understand or to process"}}};
  for (const Meaning& each : Meanings) {
    if ((status & each.mask) == each.status) return QString::fromLatin1(each.words);
  }
  return QStringLiteral("failure");
}

PacsFailure refused(bool final, const char* what, quint16 status) {
  const QString reason = QStringLiteral("the archive %1: %2 (status 0x%3)")
                             .arg(QString::fromLatin1(what), meaningOf(status))
                             .arg(status, 4, 16, QLatin1Char('0'));
  return final ? PacsFailure::never(reason) : PacsFailure::tryAgain(reason);
}

constexpr int classOf(quint16 status) { return status & 0xff00; }
constexpr int familyOf(quint16 status) { return status & 0xf000; }

}  // namespace

bool isPending(quint16 status) { return status == 0xff00 || status == 0xff01; }

PacsResult<> storeOutcome(quint16 status) {
  if (status == 0x0000 || status == 0x0111 || familyOf(status) == 0xb000) return {};
  const bool final = classOf(status) == 0xa900 || familyOf(status) == 0xc000 || status == 0x0117 ||
                     status == 0x0118 || status == 0x0122 || status == 0x0211 || status == 0x0212;
  return refused(final, "refused the object", status);
}

PacsResult<> findOutcome(quint16 status) {
  if (status == 0x0000) return {};
  const bool final = classOf(status) == 0xa900 || status == 0x0122;
  return refused(final, "did not answer the question", status);
}

}  // namespace bridge
