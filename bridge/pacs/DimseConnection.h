// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmnet/dcmlayer.h>

#include <QDeadlineTimer>
#include <QtGlobal>

namespace bridge {

/// What is left of the time and the size of an exchange over DIMSE.
struct DimseLimits {
  QDeadlineTimer deadline;
  qint64 bytesToRead = 0;
};

/// Makes connections that keep to limits, which their owner sets anew for each exchange and which outlive
/// them. The toolkit's own connections limit the time of a single read only: an archive that sends a byte now
/// and then could hold us for as long as it likes, and one that never stops sending could fill the memory.
class DimseConnections : public DcmTransportLayer {
 public:
  explicit DimseConnections(DimseLimits& limits) : limits_(limits) {}
  DcmTransportConnection* createConnection(DcmNativeSocketType socket, OFBool secure) noexcept override;

 private:
  DimseLimits& limits_;
};

}  // namespace bridge
