// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QList>
#include <QStringList>

#include "desktop/activation/ActivationRequest.h"

namespace velmora::desktop {

/// The command line, without the program's name, that asks for `request`.
QStringList argumentsFor(const ActivationRequest& request);

/// Those of the requests left undone by an ending application that each need a new start of the program.
/// Coming to the front needs one only where no other request shows a window, and then a single one.
QList<ActivationRequest> startsFor(const QList<ActivationRequest>& left);

/// Starts the program again for requests that were accepted here too late to be carried out.
void leaveToAnother(const QList<ActivationRequest>& left);

}  // namespace velmora::desktop
