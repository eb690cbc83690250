// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QList>
#include <QStringList>

#include "desktop/activation/ActivationRequest.h"

namespace velmora::desktop {

/// The command line, without the program's name, that asks for `request`.
QStringList argumentsFor(const ActivationRequest& request);

/// Which of the requests that an ending application has left undone need a start of the program each. To come
/// to the front needs one of its own, and only one, where no other shows a window.
QList<ActivationRequest> startsFor(const QList<ActivationRequest>& left);

/// Starts the program once more for what was accepted here too late to be done.
void leaveToAnother(const QList<ActivationRequest>& left);

}  // namespace velmora::desktop
